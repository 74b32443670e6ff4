// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AlertDialog.h"
#include "AppDelegate.h"
#include "FileRowView.h"
#include "LogCapture.h"
#include "ManualTime.h"
#include "PanelWorld.h"
#include "PopoverWindow.h"
#include "PreferencesView.h"
#include "Recorders.h"
#include "RecordingDesktop.h"
#include "SplashView.h"
#include "TemporaryHome.h"
#include "TextLabel.h"

#include <QApplication>
#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <memory>

Q_DECLARE_METATYPE(std::function<void(lapsa::AppDelegate&)>)

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace lapsa::test {

namespace {

using UserInfo = QHash<QString, QString>;

/// The whole program but for the desktop around it.
class Program final
{
public:
    Program() = default;
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    ~Program()
    {
        // The time that ends the splash does not pass here.
        for (QWidget* const window : QApplication::topLevelWidgets()) {
            if (qobject_cast<SplashView*>(window) != nullptr) {
                delete window;
            }
        }
    }

    /// What is on disk and on the desktop can be prepared before start().
    void start()
    {
        make();
        delegate->applicationDidFinishLaunching();
    }

    /// Without the launch.
    void make()
    {
        delegate = std::make_unique<AppDelegate>(
            AppDelegate::Environment{time, time, appearance, workspace, pasteboard, notificationCentre, statusBar,
                                     hotKeys, selection, folderPicker, windowSystem, pointer});
    }

    /// The entry of the menu with that title is chosen.
    void choose(const QString& title) const
    {
        const auto entry = std::ranges::find(menu(), title, &StatusMenuEntry::title);
        if (entry == menu().end()) {
            qFatal("no such entry");
        }
        entry->action();
    }

    [[nodiscard]] RecordingStatusButton& button() const { return statusBar.item->theButton; }

    [[nodiscard]] const QList<StatusMenuEntry>& menu() const { return statusBar.item->menu; }

    /// Whether a window of that type is there to be seen.
    template <typename T>
    [[nodiscard]] static bool shows()
    {
        return std::ranges::any_of(QApplication::topLevelWidgets(), [](const QWidget* window) {
            return window->isVisible() && qobject_cast<const T*>(window) != nullptr;
        });
    }

    /// Whether a label with that text is there to be seen.
    [[nodiscard]] static bool showsText(const QString& text)
    {
        return std::ranges::any_of(QApplication::allWidgets(), [&text](const QWidget* widget) {
            const auto* const label = qobject_cast<const TextLabel*>(widget);
            return label != nullptr && label->isVisible() && label->text() == text;
        });
    }

    [[nodiscard]] QJsonArray storedItems() const
    {
        return QJsonDocument::fromJson(home.dataFile(u"state.json"_s)).array();
    }

    /// Whether the state file names that path.
    [[nodiscard]] bool lists(const QString& path) const
    {
        return std::ranges::any_of(storedItems(),
                                   [&path](const QJsonValue& item) { return item[u"path"_s].toString() == path; });
    }

    TemporaryHome home;
    ManualTime time;
    RecordingAppearance appearance;
    RecordingWorkspace workspace;
    RecordingPasteboard pasteboard;
    RecordingNotificationCentre notificationCentre;
    RecordingStatusBar statusBar;
    RecordingHotKeys hotKeys;
    PlayedSelection selection;
    RecordingFolderPicker folderPicker;
    PlainWindowSystem windowSystem;
    PlayedPointer pointer;
    std::unique_ptr<AppDelegate> delegate;
};

/// The files whose rows are lit in the open panel.
QStringList litFiles()
{
    QStringList names;
    for (const QWidget* const widget : QApplication::allWidgets()) {
        const auto* const row = qobject_cast<const FileRowView*>(widget);
        if (row != nullptr && row->isVisible() && row->light() > 0) {
            names.push_back(row->item().displayName);
        }
    }
    return names;
}

QStringList titlesOf(const QList<StatusMenuEntry>& menu)
{
    QStringList titles;
    for (const StatusMenuEntry& entry : menu) {
        titles.push_back(entry.title);
    }
    return titles;
}

} // namespace

class AppDelegateTest final : public QObject
{
    Q_OBJECT

private slots:

    static void initTestCase() { PanelWorld::setUpApplication(); }

    void init() { qputenv("LC_ALL", "en_GB.UTF-8"); }

    void theStatusButtonShowsItsImageAndItsToolTip()
    {
        Program program;
        program.start();

        QCOMPARE(program.button().images, (QList<std::pair<QString, int>>{{u"StatusIcon"_s, 18}}));
        QCOMPARE(program.button().titles, QStringList());
        QCOMPARE(program.button().toolTips, QStringList{u"Lapsa"_s});
    }

    void withoutItsImageTheButtonShowsTheLetterC()
    {
        Program program;
        program.statusBar.imagesFound = false;
        program.start();

        QCOMPARE(program.button().titles, QStringList{u"C"_s});
    }

    void theMenuHasItsSevenEntries()
    {
        Program program;
        program.start();

        QCOMPARE(titlesOf(program.menu()), QStringList({u"Open Lapsa"_s,
                                                        u"Preferences"_s,
                                                        {},
                                                        u"Add Finder selection"_s,
                                                        u"Open data folder"_s,
                                                        {},
                                                        u"Quit"_s}));
        QCOMPARE(program.menu()[1].shortcut, u"Ctrl+,"_s);
        QCOMPARE(program.menu()[6].shortcut, u"Ctrl+Q"_s);
    }

    void inItalianTheMenuIsItalianFromTheStartOn()
    {
        qputenv("LC_ALL", "it_IT.UTF-8");
        Program program;
        program.start();
        qputenv("LC_ALL", "en_GB.UTF-8");

        QCOMPARE(titlesOf(program.menu()), QStringList({u"Apri Lapsa"_s,
                                                        u"Preferenze"_s,
                                                        {},
                                                        u"Aggiungi selezione Finder"_s,
                                                        u"Apri cartella dati"_s,
                                                        {},
                                                        u"Esci"_s}));
    }

    void aDesktopWithoutAPlaceForTheButtonGetsNoMenuAndAnAlertForAPanel()
    {
        Program program;
        program.statusBar.itemsHaveButtons = false;
        program.start();

        program.delegate->openPanel();

        QCOMPARE(program.menu().size(), 0);
        QVERIFY(!Program::shows<PopoverWindow>());
        QVERIFY(Program::shows<AlertDialog>());
        program.delegate->clearStatusButtonHighlight();
    }

    void everythingIsAskedForOnceAtTheStart()
    {
        Program program;
        program.start();

        QCOMPARE(program.notificationCentre.authorizationRequests, 1);
        QCOMPARE(program.hotKeys.registered.size(), 1);
        QCOMPARE(program.hotKeys.registered.first().letter, 'y');
        QVERIFY(program.hotKeys.registered.first().super);
        QVERIFY(program.hotKeys.registered.first().shift);
        QVERIFY(Program::shows<SplashView>());
    }

    void aClickTogglesThePanelAndItsHighlight()
    {
        Program program;
        program.start();

        emit program.button().clicked(program.button().frame());
        QVERIFY(Program::shows<PopoverWindow>());
        emit program.button().clicked(program.button().frame());

        QVERIFY(!Program::shows<PopoverWindow>());
        QCOMPARE(program.button().highlights, QList({true, false}));
    }

    void theMenusEntriesDoWhatTheySay()
    {
        Program program;
        program.start();

        program.choose(u"Open Lapsa"_s);
        QVERIFY(Program::shows<PopoverWindow>());
        program.choose(u"Open Lapsa"_s);
        QVERIFY(Program::shows<PopoverWindow>());
        program.choose(u"Preferences"_s);
        QVERIFY(Program::shows<PreferencesView>());
        program.choose(u"Open data folder"_s);
        QCOMPARE(program.workspace.revealed, QList{QUrl::fromLocalFile(program.home.dataPath())});
    }

    void theActionsOfTheDesktopEntryDoWhatTheMenuDoes()
    {
        Program program;
        const QString file = program.home.makeFile(u"a.txt"_s);
        program.start();

        program.delegate->performAction(u"open-lapsa"_s);
        QVERIFY(Program::shows<PopoverWindow>());
        program.delegate->performAction(u"preferences"_s);
        QVERIFY(Program::shows<PreferencesView>());
        program.delegate->performAction(u"open-data-folder"_s);
        QCOMPARE(program.workspace.revealed, QList{QUrl::fromLocalFile(program.home.dataPath())});
        program.selection.answer = file;
        program.delegate->performAction(u"add-selection"_s);
        program.time.advance(300ms);
        QVERIFY(program.lists(file));
        QVERIFY(!program.delegate->quitting());
        program.delegate->performAction(u"quit"_s);
        QVERIFY(program.delegate->quitting());
    }

    void anActionThatThereIsNotDoesNothing()
    {
        Program program;
        program.start();

        for (const QString& name : {u""_s, u"nonsense"_s, u"Quit"_s, u"quit "_s}) {
            program.delegate->performAction(name);
        }

        QVERIFY(!Program::shows<PopoverWindow>());
        QVERIFY(!Program::shows<PreferencesView>());
        QCOMPARE(program.workspace.revealed, QList<QUrl>());
        QVERIFY(!program.delegate->quitting());
    }

    void theMenuPutsTheSelectionOnCountdownAsTheHotKeyDoes()
    {
        Program program;
        const QString file = program.home.makeFile(u"a.txt"_s);
        program.selection.answer = file;
        program.start();

        program.choose(u"Add Finder selection"_s);

        QVERIFY(Program::shows<PopoverWindow>());
        program.time.advance(300ms);
        QVERIFY(program.lists(file));
    }

    void theHotKeyAddsTheSelectionWithTheRulesAndOpensThePanel()
    {
        Program program;
        const QString second = program.home.makeFile(u"b.zip"_s);
        const QString first = program.home.makeFile(u"a.txt"_s);
        program.selection.answer = FileManagerSelection::Paths{second, first};
        program.start();

        program.hotKeys.press();

        QVERIFY(Program::shows<PopoverWindow>());
        program.time.advance(300ms);
        const QJsonArray items = program.storedItems();
        QCOMPARE(items.size(), 2);
        QCOMPARE(items[0][u"path"_s].toString(), second);
        QCOMPARE(items[1][u"path"_s].toString(), first);
        // Seven days for an archive, two hours for everything else.
        const auto lifespan = [](const QJsonValue& item) {
            return QDateTime::fromString(item[u"addedAt"_s].toString(), Qt::ISODate)
                .secsTo(QDateTime::fromString(item[u"expiresAt"_s].toString(), Qt::ISODate));
        };
        QCOMPARE(lifespan(items[0]), 7 * 24 * 3600);
        QCOMPARE(lifespan(items[1]), 2 * 3600);
    }

    void whatTheUserAddsIsLitInTheOpenPanel()
    {
        Program program;
        program.start();
        program.delegate->applicationOpen({QUrl::fromLocalFile(program.home.makeFile(u"while closed.txt"_s))});
        program.selection.answer = program.home.makeFile(u"by key.txt"_s);

        program.hotKeys.press();
        QCOMPARE(litFiles(), QStringList{u"by key.txt"_s});
        program.delegate->applicationOpen({QUrl::fromLocalFile(program.home.makeFile(u"opened with.txt"_s))});

        QCOMPARE(litFiles(), QStringList{u"opened with.txt"_s});
    }

    void aFailureAddsNothingButOpensThePanel()
    {
        Program program;
        program.selection.answer = FileManagerSelection::Failure{u"no answer"_s};
        program.start();
        const LogCapture log;

        program.hotKeys.press();

        QVERIFY(Program::shows<PopoverWindow>());
        QCOMPARE(log.lines(), QStringList{u"Lapsa Finder selection error: no answer"_s});
        program.time.advance(300ms);
        QCOMPARE(program.storedItems().size(), 0);
    }

    void nothingSelectedOpensThePanel()
    {
        Program program;
        program.start();

        program.hotKeys.press();

        QVERIFY(Program::shows<PopoverWindow>());
    }

    void anEmptyListEndsTheProcessAndLosesNothing()
    {
        Program program;
        const QString file = program.home.makeFile(u"a.txt"_s);
        program.start();
        program.delegate->applicationOpen({QUrl::fromLocalFile(file)});
        QVERIFY(!program.lists(file)); // its save is still pending
        program.selection.answer = FileManagerSelection::Paths();

        const pid_t child = ::fork();
        if (child == 0) {
            std::signal(SIGABRT, SIG_DFL); // no report of a crash that is meant
            program.hotKeys.press();
            std::_Exit(EXIT_SUCCESS);
        }
        int status = 0;
        QCOMPARE(::waitpid(child, &status, 0), child);

        QVERIFY(WIFSIGNALED(status));
        QCOMPARE(WTERMSIG(status), SIGABRT);
        QVERIFY(program.lists(file));
    }

    void openingFilesAppliesTheRulesAndOpensNoPanel()
    {
        Program program;
        const QString file = program.home.makeFile(u"a.txt"_s);
        program.start();

        program.delegate->applicationOpen({QUrl::fromLocalFile(file)});

        QVERIFY(!Program::shows<PopoverWindow>());
        program.time.advance(300ms);
        QVERIFY(program.lists(file));
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
        Program program;
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

    void whatTheHotKeyMayNotTakeIsSaidInThePanel()
    {
        Program program;
        program.selection.answer = FileManagerSelection::Paths{program.home.path(u"."_s).chopped(2)};
        program.start();

        program.hotKeys.press();

        QCOMPARE(program.storedItems().size(), 0);
        QVERIFY(Program::showsText(u"Your home folder cannot be put on countdown."_s));
    }

    void whatAFolderMeansThatWasOpenedIsSaidByTheNextPanel()
    {
        Program program;
        program.home.makeFile(u"folder/file"_s);
        program.start();

        program.delegate->applicationOpen({QUrl::fromLocalFile(program.home.path(u"folder"_s))});
        program.delegate->openPanel();

        QVERIFY(Program::showsText(u"“folder” goes as a whole: 1 file."_s));
    }

    void aClickOnAWarningLocksItsItemAndOpensThePanel()
    {
        Program program;
        program.start();
        program.delegate->applicationOpen({QUrl::fromLocalFile(program.home.makeFile(u"a.txt"_s))});
        program.time.advance(300ms);
        const QString id = program.storedItems()[0][u"id"_s].toString();

        emit program.notificationCentre.responseReceived({{u"itemId"_s, id}});

        QVERIFY(Program::shows<PopoverWindow>());
        program.time.advance(300ms);
        QVERIFY(program.storedItems()[0][u"locked"_s].toBool());
    }

    void lockAllLocksWhatTheWarningWasAboutAndOpensThePanel()
    {
        Program program;
        QList<QUrl> urls;
        for (int number = 0; number < 13; ++number) {
            urls.push_back(QUrl::fromLocalFile(program.home.makeFile(QString::number(number))));
        }
        program.start();
        program.delegate->applicationOpen(urls);
        program.time.advance(2h - 4min);
        QCOMPARE(program.notificationCentre.requests.size(), 11);

        emit program.notificationCentre.responseReceived(program.notificationCentre.requests.last().userInfo);

        QVERIFY(Program::shows<PopoverWindow>());
        program.time.advance(300ms);
        const QJsonArray items = program.storedItems();
        for (int number = 0; number < 13; ++number) {
            QCOMPARE(items[number][u"locked"_s].toBool(), number >= 10);
        }
    }

    void aClickOnAWarningWhoseItemIsGoneOpensThePanel_data()
    {
        QTest::addColumn<UserInfo>("userInfo");
        QTest::newRow("an item that was removed") << UserInfo{{u"itemId"_s, u"gone"_s}};
        QTest::newRow("no item") << UserInfo();
    }

    void aClickOnAWarningWhoseItemIsGoneOpensThePanel()
    {
        QFETCH(const UserInfo, userInfo);
        Program program;
        program.start();

        emit program.notificationCentre.responseReceived(userInfo);

        QVERIFY(Program::shows<PopoverWindow>());
    }

    void anEndThatIsAskedForBeforeTheEventLoopRunsIsNotForgotten()
    {
        Program program;
        program.start();
        QVERIFY(!program.delegate->quitting());

        program.choose(u"Quit"_s);

        QVERIFY(program.delegate->quitting());
    }

    void theEndGivesTheKeyBackAndSavesAtOnce()
    {
        Program program;
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
