// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DesktopFacilities.h"
#include "HelperProcess.h"
#include "PanelController.h"
#include "PanelWorld.h"
#include "PointerMonitor.h"
#include "RecordingDesktop.h"
#include "SessionBus.h"
#include "SplashView.h"
#include "SplashWindowController.h"
#include "StoreWorld.h"
#include "TemporaryHome.h"
#include "VirtualDisplay.h"
#include "WindowManager.h"
#include "WindowSystem.h"

#include <QApplication>
#include <QImage>
#include <QPixmap>
#include <QPointer>
#include <QTest>
#include <QThread>
#include <QWindow>

#include <memory>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace lapsa::test {

namespace {

constexpr int patience = 10'000;

SplashView* shownSplash()
{
    for (QWidget* const window : QApplication::topLevelWidgets()) {
        if (auto* const splash = qobject_cast<SplashView*>(window)) {
            return splash;
        }
    }
    return nullptr;
}

/// The controller over the real store.
class PanelOnDesktop final : public StoreWorld
{
public:
    explicit PanelOnDesktop(WindowSystem& windowSystem)
        : controller({{store(), time, time, icons, kinds, store()}, folderPicker, windowSystem, *pointer})
    {}

    RecordingIcons icons;
    RecordingStatusButton button;
    RecordingFolderPicker folderPicker;
    std::unique_ptr<PointerMonitor> pointer = makePointerMonitor();
    PanelController controller;
};

} // namespace

/// Windows that are shown while a real compositing manager is turned on and off.
class CompositingDesktopTest final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase() { PanelWorld::setUpApplication(); }

    void cleanup()
    {
        WindowManager::setCompositing(false);
        QTRY_VERIFY_WITH_TIMEOUT(!m_windowSystem->compositingAvailable(), patience);
    }

    void anOpenPanelFollowsWithTheSameWindow()
    {
        const QRect place(850, 0, 430, 560);
        PanelOnDesktop world(*m_windowSystem);
        world.button.place.reset();
        world.controller.show(&world.button);
        QWidget& panel = *world.controller.popover();
        QVERIFY(QTest::qWaitForWindowActive(&panel, patience));
        const WId native = panel.winId();
        QCOMPARE(panel.geometry(), place);
        QVERIFY(panel.windowHandle()->format().hasAlpha());

        WindowManager::setCompositing(true);
        QTRY_COMPARE_WITH_TIMEOUT(panel.geometry(), place.adjusted(-24, 0, 0, 30), patience);
        const int corner = panel.grab().toImage().pixelColor(24, 559).alpha();
        QVERIFY2(corner > 0 && corner < 128, QByteArray::number(corner)); // round, on its shadow

        WindowManager::setCompositing(false);
        QTRY_COMPARE_WITH_TIMEOUT(panel.geometry(), place, patience);
        QCOMPARE(panel.grab().toImage().pixelColor(1, 558).alpha(), 255);
        QCOMPARE(panel.winId(), native);
        QVERIFY(panel.isActiveWindow());
    }

    void theSplashFollows()
    {
        SplashWindowController::showSplash(600s, *m_windowSystem);
        const QPointer<SplashView> splash = shownSplash();
        QVERIFY(splash != nullptr);
        const QRect picture = splash->geometry();
        QCOMPARE(picture.size(), SplashView::extent);

        WindowManager::setCompositing(true);
        QTRY_COMPARE_WITH_TIMEOUT(splash->contentsRect().translated(splash->pos()), picture, patience);
        QTRY_VERIFY_WITH_TIMEOUT(splash->width() > picture.width(), patience);
        WindowManager::setCompositing(false);

        QTRY_COMPARE_WITH_TIMEOUT(splash->geometry(), picture, patience);
        delete splash;
    }

private:
    std::unique_ptr<WindowSystem> m_windowSystem = makeWindowSystem();
};

} // namespace lapsa::test

int main(int argc, char** argv)
{
    const lapsa::test::TemporaryHome home;
    const lapsa::test::SessionBus bus;
    const lapsa::test::VirtualDisplay display;
    const lapsa::test::HelperProcess settings(lapsa::test::foundProgram(u"xfce4/xfconf/xfconfd"_s));
    while (!bus.hasOwner(u"org.xfce.Xfconf"_s)) {
        QThread::msleep(20);
    }
    const lapsa::test::WindowManager windowManager(lapsa::test::WindowManager::Compositing::BySetting);
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    lapsa::test::CompositingDesktopTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "Compositing_desktop_test.moc"
