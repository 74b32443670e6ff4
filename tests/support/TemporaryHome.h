// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

namespace lapsa::test {

/// A home folder of its own for one test, on a real file system: `HOME`, `XDG_DATA_HOME` and `XDG_STATE_HOME`
/// point into it until it goes.
class TemporaryHome final
{
public:
    TemporaryHome();
    TemporaryHome(const TemporaryHome&) = delete;
    TemporaryHome& operator=(const TemporaryHome&) = delete;
    ~TemporaryHome();

    /// Absolute path of `relative` in the home folder; nothing is created.
    [[nodiscard]] QString path(const QString& relative) const;
    /// Absolute path of `relative` in Lapsa's data folder; nothing is created.
    [[nodiscard]] QString dataPath(const QString& relative = {}) const;

    /// Writes a file with all folders above it; returns its path.
    QString makeFile(const QString& relative, const QByteArray& content = "content\n") const;
    /// Makes a folder with all folders above it; returns its path.
    QString makeFolder(const QString& relative) const;
    /// Writes a file into Lapsa's data folder, which is made where it is missing.
    void writeDataFile(const QString& name, const QByteArray& content) const;
    /// The content of a file of the data folder; null when there is none.
    [[nodiscard]] QByteArray dataFile(const QString& name) const;
    /// The names in a folder of the home, hidden ones too, sorted; empty when there is no such folder.
    [[nodiscard]] QStringList names(const QString& relative) const;

private:
    QTemporaryDir m_folder;
    QByteArray m_home;
    QByteArray m_dataHome;
    QByteArray m_stateHome;
};

} // namespace lapsa::test
