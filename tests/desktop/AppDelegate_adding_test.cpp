// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DelegateWorld.h"
#include "FileRowView.h"
#include "LogCapture.h"
#include "PanelWorld.h"
#include "PopoverWindow.h"
#include "TextLabel.h"

#include <QApplication>
#include <QDateTime>
#include <QJsonArray>
#include <QTest>

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace lapsa::test {

namespace {

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

/// Whether a label with that text is visible.
bool showsText(const QString& text)
{
    return std::ranges::any_of(QApplication::allWidgets(), [&text](const QWidget* widget) {
        const auto* const label = qobject_cast<const TextLabel*>(widget);
        return label != nullptr && label->isVisible() && label->text() == text;
    });
}

} // namespace

class AppDelegateAddingTest final : public QObject
{
    Q_OBJECT

private slots:

    static void initTestCase() { PanelWorld::setUpApplication(); }

    void init() { qputenv("LC_ALL", "en_GB.UTF-8"); }

    void theMenuPutsTheSelectionOnCountdownAsTheHotKeyDoes()
    {
        DelegateWorld program;
        const QString file = program.home.makeFile(u"a.txt"_s);
        program.selection.answer = file;
        program.start();

        program.choose(u"Add Finder selection"_s);

        QVERIFY(DelegateWorld::shows<PopoverWindow>());
        program.time.advance(300ms);
        QVERIFY(program.lists(file));
    }

    void theHotKeyAddsTheSelectionWithTheRulesAndOpensThePanel()
    {
        DelegateWorld program;
        const QString second = program.home.makeFile(u"b.zip"_s);
        const QString first = program.home.makeFile(u"a.txt"_s);
        program.selection.answer = FileManagerSelection::Paths{second, first};
        program.start();

        program.hotKeys.press();

        QVERIFY(DelegateWorld::shows<PopoverWindow>());
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
        DelegateWorld program;
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
        DelegateWorld program;
        program.selection.answer = FileManagerSelection::Failure{u"no answer"_s};
        program.start();
        const LogCapture log;

        program.hotKeys.press();

        QVERIFY(DelegateWorld::shows<PopoverWindow>());
        QCOMPARE(log.lines(), QStringList{u"Lapsa Finder selection error: no answer"_s});
        program.time.advance(300ms);
        QCOMPARE(program.storedItems().size(), 0);
    }

    void nothingSelectedOpensThePanel()
    {
        DelegateWorld program;
        program.start();

        program.hotKeys.press();

        QVERIFY(DelegateWorld::shows<PopoverWindow>());
    }

    void anEmptyListEndsTheProcessAndLosesNothing()
    {
        DelegateWorld program;
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
        DelegateWorld program;
        const QString file = program.home.makeFile(u"a.txt"_s);
        program.start();

        program.delegate->applicationOpen({QUrl::fromLocalFile(file)});

        QVERIFY(!DelegateWorld::shows<PopoverWindow>());
        program.time.advance(300ms);
        QVERIFY(program.lists(file));
    }

    void whatTheHotKeyMayNotTakeIsSaidInThePanel()
    {
        DelegateWorld program;
        program.selection.answer = FileManagerSelection::Paths{program.home.path(u"."_s).chopped(2)};
        program.start();

        program.hotKeys.press();

        QCOMPARE(program.storedItems().size(), 0);
        QVERIFY(showsText(u"Your home folder cannot be put on countdown."_s));
    }

    void whatAFolderMeansThatWasOpenedIsSaidByTheNextPanel()
    {
        DelegateWorld program;
        program.home.makeFile(u"folder/file"_s);
        program.start();

        program.delegate->applicationOpen({QUrl::fromLocalFile(program.home.path(u"folder"_s))});
        program.delegate->openPanel();

        QVERIFY(showsText(u"“folder” goes as a whole: 1 file."_s));
    }
};

} // namespace lapsa::test

QTEST_MAIN(lapsa::test::AppDelegateAddingTest)
#include "AppDelegate_adding_test.moc"
