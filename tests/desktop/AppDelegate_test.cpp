// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AppDelegate.h"
#include "DelegateWorld.h"
#include "PanelWorld.h"
#include "SplashView.h"

#include <QTest>

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <functional>

Q_DECLARE_METATYPE(std::function<void(lapsa::AppDelegate&)>)

using namespace Qt::StringLiterals;

namespace lapsa::test {

class AppDelegateTest final : public QObject
{
    Q_OBJECT

private slots:

    static void initTestCase() { PanelWorld::setUpApplication(); }

    void init() { qputenv("LC_ALL", "en_GB.UTF-8"); }

    void everythingIsAskedForOnceAtTheStart()
    {
        DelegateWorld program;
        program.start();

        QCOMPARE(program.notificationCentre.authorizationRequests, 1);
        QCOMPARE(program.hotKeys.registered.size(), 1);
        QCOMPARE(program.hotKeys.registered.first().letter, 'y');
        QVERIFY(program.hotKeys.registered.first().super);
        QVERIFY(program.hotKeys.registered.first().shift);
        QVERIFY(DelegateWorld::shows<SplashView>());
    }

    void whatIsAskedForBeforeTheLaunchEndsTheProcess_data()
    {
        QTest::addColumn<std::function<void(AppDelegate&)>>("ask");
        const auto row = [](const char* name, std::function<void(AppDelegate&)> ask) { QTest::newRow(name) << ask; };
        row("open files", [](AppDelegate& delegate) { delegate.applicationOpen({}); });
        row("toggle the panel", [](AppDelegate& delegate) { delegate.togglePanel({}); });
        row("open the panel", &AppDelegate::openPanel);
        row("open the preferences", &AppDelegate::openPreferences);
        row("add the selection", &AppDelegate::addFinderSelectionFromShortcut);
        row("add the selection by the menu", &AppDelegate::addFinderSelectionMenu);
        row("an action by its name", [](AppDelegate& delegate) { delegate.performAction(u"open-lapsa"_s); });
        row("save", &AppDelegate::saveEverything);
        row("terminate", &AppDelegate::applicationWillTerminate);
    }

    void whatIsAskedForBeforeTheLaunchEndsTheProcess()
    {
        QFETCH(const std::function<void(AppDelegate&)>, ask);
        DelegateWorld program;
        program.selection.answer = FileManagerSelection::Paths{u"/nowhere"_s};
        program.make();

        const pid_t child = ::fork();
        if (child == 0) {
            std::signal(SIGABRT, SIG_DFL); // no report of a crash that is meant
            std::signal(SIGSEGV, SIG_DFL);
            qInstallMessageHandler(nullptr); // to this test it would be a failure
            ask(*program.delegate);
            std::_Exit(EXIT_SUCCESS);
        }
        int status = 0;
        QCOMPARE(::waitpid(child, &status, 0), child);

        QVERIFY(WIFSIGNALED(status));
        QCOMPARE(WTERMSIG(status), SIGABRT);
    }

    void anEndThatIsAskedForBeforeTheEventLoopRunsIsNotForgotten()
    {
        DelegateWorld program;
        program.start();
        QVERIFY(!program.delegate->quitting());

        program.choose(u"Quit"_s);

        QVERIFY(program.delegate->quitting());
    }

    void whatWasOpenedJustBeforeTheEndIsStillOnTheList()
    {
        DelegateWorld program;
        const QString file = program.home.makeFile(u"a.txt"_s);
        program.start();
        program.lanes.setRuns(ManualLanes::Runs::WhenTheTestSaysSo);
        program.delegate->applicationOpen({QUrl::fromLocalFile(file)});
        QVERIFY(!program.lists(file));

        program.delegate->applicationWillTerminate();

        QVERIFY(program.lists(file));
    }

    void theEndGivesTheKeyBackAndSavesAtOnce()
    {
        DelegateWorld program;
        const QString file = program.home.makeFile(u"a.txt"_s);
        program.start();
        program.delegate->applicationOpen({QUrl::fromLocalFile(file)});

        program.delegate->applicationWillTerminate();

        QCOMPARE(program.hotKeys.released, 1);
        QVERIFY(program.lists(file));
        program.delegate->applicationWillTerminate();
        QCOMPARE(program.hotKeys.released, 1);
    }
};

} // namespace lapsa::test

QTEST_MAIN(lapsa::test::AppDelegateTest)
#include "AppDelegate_test.moc"
