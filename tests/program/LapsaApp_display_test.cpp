// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LapsaProcess.h"
#include "SessionBus.h"
#include "Settling.h"
#include "TemporaryHome.h"
#include "VirtualDisplay.h"

#include <QTest>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

constexpr int patience = 30'000;

template <typename T>
using Reply = std::unique_ptr<T, void (*)(void*)>;

/// The size of the first icon that a window has (`_NET_WM_ICON` of the Extended Window Manager Hints); empty without.
QSize iconSizeOf(xcb_window_t window)
{
    const std::unique_ptr<xcb_connection_t, void (*)(xcb_connection_t*)> connection(xcb_connect(nullptr, nullptr),
                                                                                    xcb_disconnect);
    const QByteArray name("_NET_WM_ICON");
    const Reply<xcb_intern_atom_reply_t> atom(
        xcb_intern_atom_reply(connection.get(),
                              xcb_intern_atom(connection.get(), false, std::uint16_t(name.size()), name.constData()),
                              nullptr),
        std::free);
    const Reply<xcb_get_property_reply_t> property(
        xcb_get_property_reply(connection.get(),
                               xcb_get_property(connection.get(), false, window, atom->atom, XCB_ATOM_CARDINAL, 0, 2),
                               nullptr),
        std::free);
    if (!property || xcb_get_property_value_length(property.get()) < 2 * int(sizeof(std::uint32_t))) {
        return {};
    }
    const auto* const size = static_cast<const std::uint32_t*>(xcb_get_property_value(property.get()));
    return {int(size[0]), int(size[1])};
}

/// 0 while it shows none.
xcb_window_t shownWindow()
{
    return outputOf(u"xdotool"_s, {u"search"_s, u"--onlyvisible"_s, u"--class"_s, u"lapsa"_s}).trimmed().toUInt();
}

} // namespace

/// The program on a real X server.
class LapsaAppDisplayTest final : public QObject
{
    Q_OBJECT

private slots:

    void whenTheDisplayGoesAwayNothingIsLost()
    {
        const TemporaryHome home;
        const SessionBus bus;
        VirtualDisplay display;
        const QString file = home.makeFile(u"late.txt"_s);
        LapsaProcess lapsa;
        QTRY_VERIFY_WITH_TIMEOUT(bus.hasOwner(u"org.lapsa.Lapsa"_s), patience);
        LapsaProcess second({file});
        QCOMPARE(second.exitCode(), 0);

        display.crash();

        QVERIFY(lapsa.exitCode() >= 0);
        QCOMPARE(storedPaths(home), QStringList{file});
        QCOMPARE(lapsa.standardError(), QByteArray());
    }

    void aWindowHasTheIconOfTheApplication()
    {
        const TemporaryHome home;
        const SessionBus bus;
        const VirtualDisplay display;
        const LapsaProcess lapsa;

        QVERIFY(succeeds([] { return !iconSizeOf(shownWindow()).isEmpty(); }));
    }

    void onADisplayStandardErrorStaysEmpty()
    {
        const TemporaryHome home;
        const SessionBus bus;
        const VirtualDisplay display;
        LapsaProcess lapsa({home.makeFile(u"a.txt"_s)});
        QTRY_VERIFY_WITH_TIMEOUT(!storedPaths(home).isEmpty(), patience);

        QCOMPARE(lapsa.terminate(), 0);

        QCOMPARE(lapsa.standardError(), QByteArray());
    }
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::LapsaAppDisplayTest)
#include "LapsaApp_display_test.moc"
