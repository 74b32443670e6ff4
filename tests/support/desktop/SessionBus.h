// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "HelperProcess.h"

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

#include <optional>

namespace lapsa::test {

/// A session bus of its own. The environment names it until it goes.
class SessionBus final
{
public:
    /// A bus that starts on demand what `services` tells, a folder of service files; without one, nothing. What it
    /// starts has the environment of this moment.
    explicit SessionBus(const QString& services = {});
    SessionBus(const SessionBus&) = delete;
    SessionBus& operator=(const SessionBus&) = delete;
    ~SessionBus();

    [[nodiscard]] const QString& address() const { return m_address; }

    /// Whether somebody owns a name on it. Asked over a connection of its own.
    [[nodiscard]] bool hasOwner(const QString& name) const;

    /// Ends the bus at once, as a crash would. Its address stays in the environment.
    void kill() { m_daemon->kill(); }

private:
    QTemporaryDir m_folder;
    std::optional<HelperProcess> m_daemon;
    QString m_address;
    QByteArray m_previous;
};

/// The environment names a session bus that is not there, until this object goes.
class NoSessionBus final
{
public:
    NoSessionBus();
    NoSessionBus(const NoSessionBus&) = delete;
    NoSessionBus& operator=(const NoSessionBus&) = delete;
    ~NoSessionBus();

private:
    QByteArray m_previous;
};

} // namespace lapsa::test
