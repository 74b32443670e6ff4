// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DesktopSession.h"
#include "LapsaProcess.h"
#include "Settling.h"
#include "StackedWindows.h"

#include <QApplication>
#include <QTest>

#include <optional>
#include <tuple>
#include <utility>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

const QString otherProgram = u"other-program"_s;
constexpr QRect otherPlace(20, 600, 200, 100);
/// Seen from the panel's top left corner.
constexpr QPoint gear(388, 42);
constexpr QPoint dropZone(215, 150);
constexpr QPoint countLine(215, 249);

/// The splash has the same title.
std::optional<ManagedWindow> panel()
{
    const std::optional<ManagedWindow> window = windowTitled(u"Lapsa"_s);
    return window && window->inner.size() == QSize(430, 560) ? window : std::nullopt;
}

std::optional<ManagedWindow> preferences()
{
    return windowTitled(u"Preferences"_s);
}

bool preferencesAreAbove()
{
    return isAbove(u"Preferences"_s, u"Lapsa"_s);
}

bool panelIsAbove()
{
    return isAbove(u"Lapsa"_s, u"Preferences"_s);
}

bool preferencesLieBesideThePanel()
{
    const auto window = preferences();
    const auto popover = panel();
    return window && popover && window->inner.size() == QSize(620, 620) && !window->frame.intersects(popover->inner);
}

} // namespace

} // namespace lapsa::test

Q_DECLARE_METATYPE(std::optional<lapsa::test::Edge>)

namespace lapsa::test {

/// The panel and the other windows of the program, on a real X server with a window manager and taskbars.
class OwnWindowsDesktopTest final : public QObject
{
    Q_OBJECT

private slots:

    void cleanup()
    {
        m_lapsa.reset();
        m_other.reset();
        m_desktop.reset();
    }

    void thePreferencesOpenBesideThePanel_data()
    {
        QTest::addColumn<std::optional<Edge>>("taskbar");
        QTest::newRow("in the corner") << std::optional<Edge>();
        QTest::newRow("an icon at the right of a taskbar at the top") << std::optional(Edge::Top);
        QTest::newRow("an icon at the right of a taskbar at the bottom") << std::optional(Edge::Bottom);
        QTest::newRow("an icon in a taskbar at the left") << std::optional(Edge::Left);
        QTest::newRow("an icon in a taskbar at the right") << std::optional(Edge::Right);
    }

    void thePreferencesOpenBesideThePanel()
    {
        QFETCH(const std::optional<Edge>, taskbar);
        QVERIFY(begin(u"1280x1024x24"_s, taskbar));
        QVERIFY(openPanel());

        click(gear);

        QVERIFY2(comesTrue(&preferencesLieBesideThePanel), sight());
        QVERIFY(QRect(0, 0, 1280, 1024).contains(preferences()->frame));
    }

    void whereThereIsTooLittleRoomThePreferencesStandAboveThePanel_data()
    {
        QTest::addColumn<std::optional<Edge>>("taskbar");
        QTest::newRow("in the corner") << std::optional<Edge>();
        QTest::newRow("an icon at the right of a taskbar at the top") << std::optional(Edge::Top);
        QTest::newRow("an icon at the right of a taskbar at the bottom") << std::optional(Edge::Bottom);
    }

    void whereThereIsTooLittleRoomThePreferencesStandAboveThePanel()
    {
        QFETCH(const std::optional<Edge>, taskbar);
        QVERIFY(begin(u"1024x768x24"_s, taskbar));
        QVERIFY(openPanel());

        click(gear);

        QVERIFY2(comesTrue(&preferencesAreAbove), sight());
        QCOMPARE(settled([] { return preferences()->frame.left(); }, 0), 0);
        QVERIFY(preferences()->frame.width() > 1024 - 430);
    }

    void whicheverOfTheTwoIsUsedStandsAboveTheOther()
    {
        QVERIFY(begin(u"1024x768x24"_s));
        QVERIFY(openPanel());
        click(gear);
        QVERIFY2(comesTrue(&preferencesAreAbove), sight());

        click(countLine);
        QVERIFY(comesTrue(&panelIsAbove));
        VirtualDisplay::click(preferences()->inner.topLeft() + QPoint(20, 20));

        QVERIFY2(comesTrue(&preferencesAreAbove), sight());
    }

    void thePanelStaysAboveOtherPrograms()
    {
        QVERIFY(begin(u"1024x768x24"_s));
        m_other.emplace(QCoreApplication::applicationFilePath(), QStringList{otherProgram});
        QVERIFY(comesTrue([] { return windowTitled(otherProgram); }));
        QVERIFY(openPanel());
        click(gear);
        QVERIFY2(comesTrue(&preferencesAreAbove), sight());

        VirtualDisplay::click(windowTitled(otherProgram)->frame.center());

        QVERIFY(comesTrue([] { return isAbove(u"Lapsa"_s, otherProgram); }));
    }

    void openPreferencesStepAsideForThePanel()
    {
        QVERIFY(begin(u"1280x1024x24"_s));
        std::ignore =
            outputOf(u"gdbus"_s, {u"call"_s, u"--session"_s, u"--dest"_s, u"org.lapsa.Lapsa"_s, u"--object-path"_s,
                                  u"/org/lapsa/Lapsa"_s, u"--method"_s, u"org.freedesktop.Application.ActivateAction"_s,
                                  u"preferences"_s, u"[]"_s, u"{}"_s});
        QVERIFY(comesTrue(&preferences));

        QVERIFY(openPanel());

        QVERIFY2(comesTrue(&preferencesLieBesideThePanel), sight());
    }

    void theChooserOpensBesideThePanel()
    {
        QVERIFY(begin(u"1280x1024x24"_s));
        QVERIFY(openPanel());

        click(dropZone);

        const auto chooserLiesBeside = [] {
            const auto chooser = windowTitled(u"Choose files or folders"_s);
            return chooser && !chooser->frame.intersects(panel()->inner);
        };
        QVERIFY(comesTrue(chooserLiesBeside));
        QVERIFY(isAbove(u"Choose files or folders"_s, u"Lapsa"_s));
    }

    void noTaskbarShowsThePanel()
    {
        QVERIFY(begin(u"1280x1024x24"_s));

        QVERIFY(openPanel());

        const QByteArray states = outputOf(u"xprop"_s, {u"-id"_s, panel()->id, u"_NET_WM_STATE"_s});
        QVERIFY2(states.contains("_NET_WM_STATE_SKIP_TASKBAR"), states.constData());
        QVERIFY2(states.contains("_NET_WM_STATE_ABOVE"), states.constData());
    }

private:
    /// A desktop with or without a taskbar, Lapsa in its tray.
    [[nodiscard]] bool begin(const QString& screen, std::optional<Edge> taskbar = std::nullopt)
    {
        m_desktop.emplace(screen);
        if (taskbar) {
            m_desktop->startXfceTaskbar(*taskbar);
        }
        m_lapsa.emplace();
        return succeeds([this] { return m_desktop->bus().hasOwner(u"org.lapsa.Lapsa"_s); }) &&
               comesTrue([] { return !windowTitled(u"Lapsa"_s); }) && // the greeting is over
               (!taskbar || comesTrue([this] { return m_desktop->trayIcon(); }));
    }

    [[nodiscard]] bool openPanel() const
    {
        if (const std::optional<QRect> icon = m_desktop->trayIcon()) {
            VirtualDisplay::click(icon->center());
        } else {
            LapsaProcess second;
            std::ignore = second.exitCode();
        }
        return staysInItsPlace();
    }

    /// A window manager may show a window before it has given it its place.
    [[nodiscard]] static bool staysInItsPlace()
    {
        QRect last;
        return comesTrue([&] {
            const QRect now = panel() ? panel()->inner : QRect();
            return !now.isEmpty() && std::exchange(last, now) == now;
        });
    }

    /// On a point of the panel.
    static void click(const QPoint& point)
    {
        const std::optional<ManagedWindow> window = panel();
        QVERIFY(window);
        VirtualDisplay::click(window->inner.topLeft() + point);
    }

    std::optional<DesktopSession> m_desktop;
    std::optional<LapsaProcess> m_lapsa;
    std::optional<HelperProcess> m_other;
};

namespace {

/// A plain window, as another program would show it.
int showOtherProgram(int argc, char** argv)
{
    const QApplication application(argc, argv);
    QWidget window;
    window.setWindowTitle(otherProgram);
    window.setGeometry(otherPlace);
    window.show();
    return QApplication::exec();
}

int run(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    OwnWindowsDesktopTest test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace

} // namespace lapsa::test

int main(int argc, char** argv)
{
    const bool other = argc > 1 && QString::fromLocal8Bit(argv[1]) == lapsa::test::otherProgram;
    return other ? lapsa::test::showOtherProgram(argc, argv) : lapsa::test::run(argc, argv);
}

#include "OwnWindows_desktop_test.moc"
