// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Inventory.h"
#include "Scenario.h"

#include <QByteArray>
#include <QList>
#include <QSet>

namespace lapsa::test {

class FaultWorld;

/// What must hold of a user's files and of the program's own, whatever was injected. Remembers how everything was
/// before.
class Promise final
{
public:
    enum class After
    {
        /// The process went on to its end.
        Fault,
        /// The process was killed: what it had promised to have saved must be there.
        Kill,
        /// Another start without any fault: nothing unfinished may be left.
        Restart,
    };

    /// Of the world as it is now.
    Promise(const FaultWorld& world, const Scenario& scenario);

    /// What is broken of the promise, one line each.
    [[nodiscard]] QList<QByteArray> broken(After after);

    /// Of the last look: how many files had a second whole copy or name.
    [[nodiscard]] int doubled() const { return m_doubled; }

    /// Of the last look: how many files lay in Recovery without a record.
    [[nodiscard]] int unrecorded() const { return m_unrecorded; }

private:
    enum class Spot
    {
        /// Where it was, or where restoring put it.
        Place,
        Recovery,
        Trash,
        /// A copy that is not yet whole.
        Unfinished,
        /// The program's own files and the trash's records.
        Own,
        Elsewhere,
    };

    struct Remembered
    {
        FileFound file;
        /// Of all its names.
        QList<QByteArray> paths;
        bool mayGo = false;
    };

    [[nodiscard]] std::vector<FileFound> everything() const;
    [[nodiscard]] Spot spotOf(const FileFound& file) const;
    [[nodiscard]] bool mayGo(const QByteArray& path) const;
    [[nodiscard]] QByteArray whereIs(const Remembered& wanted, const std::vector<FileFound>& found, After after);
    [[nodiscard]] QByteArray strange(const FileFound& file, After after) const;
    [[nodiscard]] QByteArray withoutRecord(const FileFound& file) const;
    [[nodiscard]] QByteArray notListed(const FileFound& file);
    void readRecords();
    void checkOwnFiles(After after, QList<QByteArray>& findings);

    const FaultWorld& m_world;
    const Scenario& m_scenario;
    QByteArray m_documents;
    QByteArray m_data;
    std::vector<Remembered> m_remembered;
    /// The names in Recovery that have records.
    QSet<QByteArray> m_recorded;
    int m_doubled = 0;
    int m_unrecorded = 0;
    bool m_nothingWasSaved = false;
};

} // namespace lapsa::test
