// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ExampleProgram.h"
#include "PlayedWatcher.h"
#include "SessionBus.h"
#include "TrayStatusItem.h"

#include <QApplication>
#include <QTest>

#include <tuple>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

constexpr int patience = 20'000;

} // namespace

/// The clicks that a tray host reports.
class TrayClicksTest final : public QObject
{
    Q_OBJECT

public:
    explicit TrayClicksTest(const SessionBus& bus)
        : m_bus(bus)
    {}

private slots:

    /// As waybar calls for the second press of a double click.
    void twoCallsAtOnceAreOneClick()
    {
        const PlayedWatcher watcher(m_bus);
        const TrayStatusItem item(exampleProgram());
        int clicks = 0;
        connect(&item, &StatusButton::clicked, this, [&clicks] { ++clicks; });
        QTRY_COMPARE_WITH_TIMEOUT(watcher.items.size(), 1, patience);

        watcher.activateTwice(700, 12);
        call(watcher, u"SecondaryActivate"_s); // is answered after both
        QCOMPARE(clicks, 1);
    }

    void aLaterCallIsAnotherClick()
    {
        const PlayedWatcher watcher(m_bus);
        const TrayStatusItem item(exampleProgram());
        int clicks = 0;
        connect(&item, &StatusButton::clicked, this, [&clicks] { ++clicks; });
        QTRY_COMPARE_WITH_TIMEOUT(watcher.items.size(), 1, patience);

        call(watcher, u"Activate"_s);
        QCOMPARE(clicks, 1);
        QTRY_VERIFY_WITH_TIMEOUT((call(watcher, u"Activate"_s), clicks == 2), patience);
    }

private:
    static void call(const PlayedWatcher& watcher, const QString& method)
    {
        std::ignore = watcher.ask(u"/StatusNotifierItem"_s, u"org.kde.StatusNotifierItem"_s, method, {700, 12});
    }

    const SessionBus& m_bus;
};

} // namespace lapsa::test

int main(int argc, char* argv[])
{
    // Before the application: its session bus is looked up once.
    const lapsa::test::SessionBus bus;
    const QApplication application(argc, argv);
    lapsa::test::TrayClicksTest test(bus);
    return QTest::qExec(&test, argc, argv);
}

#include "TrayClicks_test.moc"
