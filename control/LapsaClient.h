// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDBusMessage>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <optional>

namespace lapsa {

/// Calls `org.lapsa.Lapsa1` and waits for the answers.
class LapsaClient final
{
public:
    using Dictionaries = QList<QVariantMap>;

    enum class Start
    {
        /// Of a Lapsa that is not running but installed.
        Allowed,
        Never,
    };

    LapsaClient();

    /// Whether Lapsa can be called; if not, error() says why.
    [[nodiscard]] bool reach(Start start);

    // Nothing if the call failed; error() says why.

    [[nodiscard]] std::optional<Dictionaries> items();
    [[nodiscard]] std::optional<Dictionaries> recovered();
    /// Any number of paths.
    [[nodiscard]] std::optional<Dictionaries> add(const QStringList& paths, int minutes);
    [[nodiscard]] std::optional<Dictionaries> putBack(const QStringList& ids);
    [[nodiscard]] bool lock(const QString& id, bool locked);
    [[nodiscard]] bool remove(const QString& id);

    [[nodiscard]] const QString& error() const { return m_error; }

private:
    [[nodiscard]] QDBusMessage call(const QString& method, const QVariantList& arguments = {});
    [[nodiscard]] std::optional<Dictionaries> dictionaries(const QString& method, const QVariantList& arguments = {});
    [[nodiscard]] std::optional<Dictionaries> inParts(const QString& method, const QStringList& texts,
                                                      const QVariantList& further);

    QString m_error;
};

} // namespace lapsa
