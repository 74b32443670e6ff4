// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AlertDialog.h"
#include "DelegateWorld.h"
#include "PanelWorld.h"
#include "PopoverWindow.h"
#include "PreferencesView.h"
#include "RecoveryView.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace lapsa::test {

namespace {

QStringList titlesOf(const QList<StatusMenuEntry>& menu)
{
    QStringList titles;
    for (const StatusMenuEntry& entry : menu) {
        titles.push_back(entry.title);
    }
    return titles;
}

} // namespace

class AppDelegateTrayTest final : public QObject
{
    Q_OBJECT

private slots:

    static void initTestCase() { PanelWorld::setUpApplication(); }

    void init() { qputenv("LC_ALL", "en_GB.UTF-8"); }

    void theStatusButtonShowsItsImageAndItsToolTip()
    {
        DelegateWorld program;
        program.start();

        QCOMPARE(program.button().images, (QList<std::pair<QString, int>>{{u"StatusIcon"_s, 18}}));
        QCOMPARE(program.button().titles, QStringList());
        QCOMPARE(program.button().toolTips, QStringList{u"Lapsa"_s});
    }

    void withoutItsImageTheButtonShowsTheLetterC()
    {
        DelegateWorld program;
        program.statusBar.imagesFound = false;
        program.start();

        QCOMPARE(program.button().titles, QStringList{u"C"_s});
    }

    void theMenuHasItsSevenEntries()
    {
        DelegateWorld program;
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
        DelegateWorld program;
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
        DelegateWorld program;
        program.statusBar.itemsHaveButtons = false;
        program.start();

        program.delegate->openPanel();

        QCOMPARE(program.menu().size(), 0);
        QVERIFY(!DelegateWorld::shows<PopoverWindow>());
        QVERIFY(DelegateWorld::shows<AlertDialog>());
        program.delegate->clearStatusButtonHighlight();
    }

    void aClickTogglesThePanelAndItsHighlight()
    {
        DelegateWorld program;
        program.start();

        emit program.button().clicked(program.button().frame());
        QVERIFY(DelegateWorld::shows<PopoverWindow>());
        emit program.button().clicked(program.button().frame());

        QVERIFY(!DelegateWorld::shows<PopoverWindow>());
        QCOMPARE(program.button().highlights, QList({true, false}));
    }

    void theMenusEntriesDoWhatTheySay()
    {
        DelegateWorld program;
        program.start();

        program.choose(u"Open Lapsa"_s);
        QVERIFY(DelegateWorld::shows<PopoverWindow>());
        program.choose(u"Open Lapsa"_s);
        QVERIFY(DelegateWorld::shows<PopoverWindow>());
        program.choose(u"Preferences"_s);
        QVERIFY(DelegateWorld::shows<PreferencesView>());
        program.choose(u"Open data folder"_s);
        QCOMPARE(program.workspace.revealed, QList{QUrl::fromLocalFile(program.home.dataPath())});
    }

    void theActionsOfTheDesktopEntryDoWhatTheMenuDoes()
    {
        DelegateWorld program;
        const QString file = program.home.makeFile(u"a.txt"_s);
        program.start();

        program.delegate->performAction(u"open-lapsa"_s);
        QVERIFY(DelegateWorld::shows<PopoverWindow>());
        program.delegate->performAction(u"preferences"_s);
        QVERIFY(DelegateWorld::shows<PreferencesView>());
        program.delegate->performAction(u"recovery"_s);
        QVERIFY(DelegateWorld::shows<RecoveryView>());
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
        DelegateWorld program;
        program.start();

        for (const QString& name : {u""_s, u"nonsense"_s, u"Quit"_s, u"quit "_s}) {
            program.delegate->performAction(name);
        }

        QVERIFY(!DelegateWorld::shows<PopoverWindow>());
        QVERIFY(!DelegateWorld::shows<PreferencesView>());
        QVERIFY(!DelegateWorld::shows<RecoveryView>());
        QCOMPARE(program.workspace.revealed, QList<QUrl>());
        QVERIFY(!program.delegate->quitting());
    }
};

} // namespace lapsa::test

QTEST_MAIN(lapsa::test::AppDelegateTrayTest)
#include "AppDelegate_tray_test.moc"
