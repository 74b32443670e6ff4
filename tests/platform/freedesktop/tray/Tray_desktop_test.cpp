// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "JSONEncoder.h"
#include "LapsaSettings.h"
#include "Settling.h"
#include "TrayFixture.h"

#include <QTest>

#include <algorithm>
#include <optional>
#include <tuple>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

using Button = VirtualDisplay::Button;

bool preferencesAreOpen()
{
    constexpr QSize preferencesSize(620, 620);
    const QList<QRect> windows = VirtualDisplay::windowsOfClass(u"lapsa"_s);
    return std::ranges::any_of(windows, [&](const QRect& window) { return window.size() == preferencesSize; });
}

} // namespace

/// The program in the trays of real desktops, with real clicks.
class TrayDesktopTest final : public TrayFixture
{
    Q_OBJECT

private slots:

    void init() { prepare(); }

    void cleanup() { end(); }

    void aLeftClickOpensThePanelAndTheNextClosesIt_data() { addTaskbars(); }

    void aLeftClickOpensThePanelAndTheNextClosesIt()
    {
        QVERIFY(begin());

        VirtualDisplay::click(icon());
        QVERIFY(comesTrue(&panel));
        VirtualDisplay::click(icon());
        QVERIFY(comesTrue([] { return !panel(); }));

        endsQuietly();
    }

    void aPanelThatClosesByItselfIsClosedByAClickOnTheIconAsWell_data()
    {
        QTest::addColumn<Taskbar>("taskbar");
        QTest::addColumn<bool>("slowly");
        QTest::newRow("Xfce, a quick click") << Taskbar::Xfce << false;
        QTest::newRow("Xfce, a slow click") << Taskbar::Xfce << true;
        QTest::newRow("LXQt, a quick click") << Taskbar::Lxqt << false;
        QTest::newRow("LXQt, a slow click") << Taskbar::Lxqt << true;
        QTest::newRow("trayer, a quick click") << Taskbar::Trayer << false;
        QTest::newRow("trayer, a slow click") << Taskbar::Trayer << true;
    }

    void aPanelThatClosesByItselfIsClosedByAClickOnTheIconAsWell()
    {
        QFETCH(const bool, slowly);
        const auto click = slowly ? &VirtualDisplay::clickSlowly : &clickQuickly;
        LapsaSettings settings;
        settings.keepPanelOpen = false;
        m_desktop->home().writeDataFile(u"settings.json"_s, JSONEncoder::lapsa().encode(settings));
        QVERIFY(begin());

        click(icon());
        QVERIFY(comesTrue(&panel));
        click(icon());
        QVERIFY(comesTrue([] { return !panel(); }));
        // Had the click been taken for one elsewhere and for another one on the icon, the panel would be on its way
        // back, and this one would close it.
        click(icon());

        QVERIFY(comesTrue(&panel));
    }

    void aRightClickOpensTheMenuAndALeftClickStillOpensThePanel_data() { addTaskbars(); }

    void aRightClickOpensTheMenuAndALeftClickStillOpensThePanel()
    {
        QVERIFY(begin());

        openMenu();
        QVERIFY(!panel());
        closeMenu();
        VirtualDisplay::click(icon());

        QVERIFY(comesTrue(&panel));
        QVERIFY(!m_desktop->menu());
    }

    void theMenuIsUsedFromTheKeyboard_data() { addTaskbars(); }

    void theMenuIsUsedFromTheKeyboard()
    {
        QVERIFY(begin());

        openMenu();
        VirtualDisplay::press(u"Up"_s); // the last entry
        VirtualDisplay::press(u"Return"_s);

        QCOMPARE(m_lapsa->exitCode(), 0);
    }

    void theShortcutsOfTheMenuWorkWhileItIsOpen_data() { addTaskbars(); }

    void theShortcutsOfTheMenuWorkWhileItIsOpen()
    {
        QVERIFY(begin());

        openMenu();
        QVERIFY(succeeds([this] { return openedByShortcut(); }));
        QVERIFY(comesTrue([this] { return !m_desktop->menu(); }));
        openMenu();
        QVERIFY(succeeds([this] { return endedByShortcut(); }));

        QCOMPARE(m_lapsa->exitCode(), 0);
    }

    void theShortcutsOfAClosedMenuDoNothing_data() { addTaskbars(); }

    void theShortcutsOfAClosedMenuDoNothing()
    {
        QVERIFY(begin());
        openMenu();
        closeMenu();

        VirtualDisplay::press(u"ctrl+q"_s);

        // It is alive and does what it is asked, which it could not if it were on its way out.
        VirtualDisplay::click(icon());
        QVERIFY(comesTrue(&panel));
        QVERIFY(m_lapsa->running());
    }

private:
    static void clickQuickly(const QPoint& point) { VirtualDisplay::click(point); }

    void openMenu() const
    {
        QVERIFY(succeeds([this] { return menuOpenedByClick(); }));
    }

    /// One try: a menu goes by itself when a window that has only just come up takes the focus.
    [[nodiscard]] bool menuOpenedByClick() const
    {
        if (!m_desktop->menu()) {
            VirtualDisplay::click(icon(), Button::Right);
        }
        std::ignore = QTest::qWaitFor([this] { return m_desktop->menu().has_value(); }, 2000);
        return settledFor(500, [this] { return m_desktop->menu().has_value(); });
    }

    void closeMenu() const
    {
        VirtualDisplay::press(u"Escape"_s);
        QVERIFY(comesTrue([this] { return !m_desktop->menu(); }));
    }

    /// One try: a menu is seen a moment before it has the keyboard.
    [[nodiscard]] bool openedByShortcut() const
    {
        if (m_desktop->menu()) {
            VirtualDisplay::press(u"ctrl+comma"_s);
        }
        return preferencesAreOpen();
    }

    [[nodiscard]] bool endedByShortcut() const
    {
        if (m_desktop->menu()) {
            VirtualDisplay::press(u"ctrl+q"_s);
        }
        return !m_lapsa->running();
    }
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::TrayDesktopTest)

#include "Tray_desktop_test.moc"
