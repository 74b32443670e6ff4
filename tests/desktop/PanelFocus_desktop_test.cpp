// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DesktopFacilities.h"
#include "FileListView.h"
#include "FileRowView.h"
#include "HelperProcess.h"
#include "PanelController.h"
#include "PanelWorld.h"
#include "PointerMonitor.h"
#include "RecordingDesktop.h"
#include "RowIconButton.h"
#include "SessionBus.h"
#include "StoreWorld.h"
#include "TemporaryHome.h"
#include "VirtualDisplay.h"
#include "WindowManager.h"
#include "WindowSystem.h"

#include <QApplication>
#include <QTest>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

constexpr int patience = 30'000;

/// The open panel over three real files, in its real window.
class ThreeFiles final : public StoreWorld
{
public:
    ThreeFiles()
    {
        changeSettings([](LapsaSettings& settings) { settings.keepPanelOpen = true; });
        for (const QString& name : {u"a.txt"_s, u"b.txt"_s, u"c.txt"_s}) {
            add(home.makeFile(name), 120);
        }
        button.place.reset();
        show();
    }

    void show()
    {
        controller.show(&button);
        if (!QTest::qWaitForWindowActive(controller.popover(), patience)) {
            qFatal("the panel does not become active");
        }
    }

    [[nodiscard]] FileListView& list() const { return *controller.popover()->findChild<FileListView*>(); }

    [[nodiscard]] FileRowView& row(qsizetype index) const { return *list().visibleRows().at(index); }

    /// On the screen.
    [[nodiscard]] QPoint placeOfTrash(qsizetype index) const
    {
        const auto& trash = named<RowIconButton>(row(index), u"Delete now"_s);
        return trash.mapToGlobal(trash.rect().center());
    }

    RecordingIcons icons;
    RecordingStatusButton button;
    RecordingFolderPicker folderPicker;
    std::unique_ptr<WindowSystem> windowSystem = makeWindowSystem();
    std::unique_ptr<PointerMonitor> pointer = makePointerMonitor();
    PanelController controller{{{store(), time, time, icons, kinds, store()}, folderPicker, *windowSystem, *pointer}};
};

/// Clicks twice, and waits until a widget has got the second click.
class DoubleClick final : public QObject
{
public:
    explicit DoubleClick(const QPoint& place)
    {
        qApp->installEventFilter(this);
        const QStringList there{QString::number(place.x()), QString::number(place.y())};
        std::ignore =
            outputOf(u"xdotool"_s, QStringList{u"mousemove"_s} + there +
                                       QStringList{u"click"_s, u"--repeat"_s, u"2"_s, u"--delay"_s, u"60"_s, u"1"_s});
        if (!QTest::qWaitFor([this] { return m_seen; }, patience)) {
            qFatal("the second click does not come");
        }
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        m_seen = m_seen || (event->type() == QEvent::MouseButtonDblClick && watched->isWidgetType());
        return false;
    }

private:
    bool m_seen = false;
};

} // namespace

/// With the clicks and keys of a real X server, and a window manager.
class PanelFocusDesktopTest final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase()
    {
        PanelWorld::setUpApplication();
        QWidget probe;
        probe.show();
        QTRY_VERIFY_WITH_TIMEOUT(!outputOf(u"xdotool"_s, {u"getactivewindow"_s}).trimmed().isEmpty(), patience);
    }

    void aDoubleClickOnTheTrashTakesOneFileAndTheNextKeysNone()
    {
        const ThreeFiles world;

        const DoubleClick clicks(world.placeOfTrash(0));
        QCOMPARE(world.listedNames(), (QStringList{u"b.txt"_s, u"c.txt"_s}));
        QCOMPARE(QApplication::focusWidget(), static_cast<QWidget*>(&world.row(0)));
        VirtualDisplay::press(u"space"_s);
        VirtualDisplay::press(u"Return"_s);
        VirtualDisplay::press(u"Down"_s);
        QTRY_COMPARE_WITH_TIMEOUT(QApplication::focusWidget(), static_cast<QWidget*>(&world.row(1)), patience);

        QCOMPARE(world.listedNames(), (QStringList{u"b.txt"_s, u"c.txt"_s}));
    }

    void aReopenedPanelForgetsTheButtonThatHadTheFocus()
    {
        ThreeFiles world;
        VirtualDisplay::press(u"Down"_s);
        for (int stop = 0; stop < 4; ++stop) {
            VirtualDisplay::press(u"Tab"_s);
        }
        QTRY_VERIFY_WITH_TIMEOUT(named<RowIconButton>(world.row(0), u"Delete now"_s).hasFocus(), patience);

        world.controller.close();
        world.show();
        VirtualDisplay::press(u"Return"_s);
        VirtualDisplay::press(u"space"_s);
        VirtualDisplay::press(u"End"_s);
        QTRY_COMPARE_WITH_TIMEOUT(QApplication::focusWidget(), static_cast<QWidget*>(&world.row(2)), patience);

        QCOMPARE(world.listedNames().size(), 3);
    }
};

namespace {

int run(int argc, char** argv)
{
    const TemporaryHome home;
    const SessionBus bus;
    const VirtualDisplay display;
    const WindowManager windowManager;
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    PanelFocusDesktopTest test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace

} // namespace lapsa::test

int main(int argc, char** argv)
{
    return lapsa::test::run(argc, argv);
}

#include "PanelFocus_desktop_test.moc"
