// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "LapsaProcess.h"
#include "SessionBus.h"
#include "TemporaryHome.h"

#include <QObject>
#include <QString>
#include <QTest>

#include <optional>

namespace lapsa::test {

/// What the tests of the whole program share: a home and a session bus for each test.
class LapsaAppFixture : public QObject
{
    Q_OBJECT

protected:
    static constexpr int patience = 30'000;

    [[nodiscard]] static QString busName() { return QStringLiteral("org.lapsa.Lapsa"); }

    void begin()
    {
        m_home.emplace();
        m_bus.emplace();
    }

    void end()
    {
        m_bus.reset();
        m_home.reset();
    }

    void waitForName() const { QTRY_VERIFY_WITH_TIMEOUT(m_bus->hasOwner(busName()), patience); }

    /// Starts and ends the program, which leaves its settings behind.
    void makeSettings() const
    {
        LapsaProcess lapsa;
        waitForName();
        QCOMPARE(lapsa.terminate(), 0);
    }

    std::optional<TemporaryHome> m_home;
    std::optional<SessionBus> m_bus;
};

} // namespace lapsa::test
