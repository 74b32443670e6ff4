// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AutoCleanFolderView.h"
#include "NoFoldersView.h"
#include "PanelWorld.h"
#include "PreferencesWorld.h"
#include "PushButton.h"
#include "Stepper.h"
#include "TextLabel.h"
#include "Toggle.h"

#include <QApplication>
#include <QDir>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

/// The folders' tab, with the folder "Incoming" of the home watched.
struct FolderWorld : PreferencesWorld
{
    FolderWorld()
    {
        view.showTab(PreferencesView::Tab::Folders);
        store().addAutoCleanFolder(QUrl::fromLocalFile(folder));
        settle();
    }

    /// Another look, as when the pointer comes to the switch.
    void pointAtTheSwitch()
    {
        QEvent enter(QEvent::Enter);
        QApplication::sendEvent(&named<Toggle>(card(), u"Include existing files"_s), &enter);
        settle();
    }

    [[nodiscard]] AutoCleanFolderView& card() const { return *view.findChild<AutoCleanFolderView*>(); }

    [[nodiscard]] bool shows(const QString& text) const
    {
        const QList<TextLabel*> labels = card().findChildren<TextLabel*>();
        return std::ranges::any_of(
            labels, [&text](const TextLabel* label) { return label->isVisible() && label->text() == text; });
    }

    const QString folder = home.makeFolder(u"Incoming"_s);
};

bool offersDownloads(const PreferencesWorld& world)
{
    const QList<PushButton*> buttons = world.view.findChild<NoFoldersView*>()->findChildren<PushButton*>();
    return std::ranges::any_of(buttons, &PushButton::isVisible);
}

} // namespace

/// What the folders' tab says about a folder, and what it says while there is none.
class AutoCleanFolderViewTest final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase()
    {
        PanelWorld::setUpApplication();
        qunsetenv("XDG_CONFIG_HOME");
    }

    void whileTheRulesApplyTheCardSaysWhatHolds()
    {
        FolderWorld world;
        QVERIFY(world.shows(u"By the rules; other files 2h."_s));

        world.changeElsewhere([](LapsaSettings& settings) { settings.defaultExpirationMinutes = 1500; });
        QVERIFY(world.shows(u"By the rules; other files 1d 1h."_s));
        world.changeElsewhere(
            [](LapsaSettings& settings) { settings.autoCleanFolders.first().applyFileTypeRules = false; });
        QVERIFY(!world.shows(u"By the rules; other files 1d 1h."_s));
    }

    void whileTheRulesApplyTheEditorIsDimmedAndCanBeSet()
    {
        FolderWorld world;
        auto& days = named<Stepper>(world.card(), u"Days"_s);
        QVERIFY(days.dimmed());

        QTest::keyClick(&days, Qt::Key_Up);
        QCOMPARE(world.settings().autoCleanFolders.constFirst().lifespanMinutes, 10080 + 1440);
        world.changeElsewhere(
            [](LapsaSettings& settings) { settings.autoCleanFolders.first().applyFileTypeRules = false; });

        QVERIFY(!days.dimmed());
    }

    void includingExistingFilesSaysBeforeWhatItDoes()
    {
        FolderWorld world;
        QVERIFY(world.shows(u"No files here."_s));
        for (int number = 0; number < 11; ++number) {
            world.home.makeFile(u"Incoming/%1.txt"_s.arg(number));
        }
        for (int number = 0; number < 4; ++number) {
            world.add(world.home.path(u"Incoming/%1.txt"_s.arg(number)));
        }

        world.pointAtTheSwitch();

        QVERIFY(world.shows(u"11 files here, 7 of them would go in 2h."_s));
        QCOMPARE(named<Toggle>(world.card(), u"Include existing files"_s).accessibleDescription(),
                 u"11 files here, 7 of them would go in 2h."_s);
    }

    void whatIsSaidFollowsTheSettingsWithoutAnotherLook()
    {
        FolderWorld world;
        world.home.makeFile(u"Incoming/a.txt"_s);
        world.home.makeFile(u"Incoming/b.zip"_s);
        world.pointAtTheSwitch();
        world.home.makeFile(u"Incoming/c.txt"_s);

        QVERIFY(world.shows(u"2 files here, all of them would go, the first in 2h."_s));
        world.changeElsewhere([](LapsaSettings& settings) {
            settings.autoCleanFolders.first().applyFileTypeRules = false;
            settings.autoCleanFolders.first().lifespanMinutes = 60;
        });
        QVERIFY(world.shows(u"2 files here, all of them would go in 1h."_s));
        world.changeElsewhere(
            [](LapsaSettings& settings) { settings.autoCleanFolders.first().includeExistingFiles = true; });
        QVERIFY(world.shows(u"2 files here, all of them will go in 1h."_s));
        world.changeElsewhere([](LapsaSettings& settings) { settings.pauseAllCountdowns = true; });
        QVERIFY(world.shows(u"2 files here, all of them would go in 1h."_s));
    }

    void theFolderIsLookedAtWhenItsTabIsShown()
    {
        FolderWorld world;
        world.view.showTab(PreferencesView::Tab::General);
        world.home.makeFile(u"Incoming/a.txt"_s);

        world.view.showTab(PreferencesView::Tab::Folders);

        QVERIFY(world.shows(u"1 file here, it would go in 2h."_s));
    }

    void aFolderThatIsGoneSaysSo()
    {
        FolderWorld world;
        QVERIFY(QDir().rmdir(world.folder));

        world.pointAtTheSwitch();

        QVERIFY(world.shows(u"This folder cannot be read now."_s));
    }

    void filesAreCountedOnALaneWhileTheCardIsUsable()
    {
        FolderWorld world;
        world.lanes.setRuns(ManualLanes::Runs::WhenTheTestSaysSo);
        world.home.makeFile(u"Incoming/a.txt"_s);

        world.pointAtTheSwitch();
        QVERIFY(world.shows(u"No files here."_s)); // as it was
        named<Toggle>(world.card(), u"Apply file type rules"_s).click();
        world.settle();
        QVERIFY(!world.settings().autoCleanFolders.constFirst().applyFileTypeRules);
        world.lanes.runAll();

        QVERIFY(world.shows(u"1 file here, it would go in 7d."_s));
    }

    void aFolderThatDoesNotAnswerIsAskedOnce()
    {
        FolderWorld world;
        world.lanes.setRuns(ManualLanes::Runs::WhenTheTestSaysSo);
        world.pointAtTheSwitch();
        const Lanes::Report hangs = world.lanes.workOnNext();
        QVERIFY(hangs);

        for (int times = 0; times < 50; ++times) {
            world.pointAtTheSwitch();
        }

        QVERIFY(world.lanes.isIdle());
    }

    void anAnswerForACardThatIsGoneChangesNothing()
    {
        FolderWorld world;
        world.lanes.setRuns(ManualLanes::Runs::WhenTheTestSaysSo);
        world.pointAtTheSwitch();
        const Lanes::Report report = world.lanes.workOnNext();
        QVERIFY(report);

        world.store().removeAutoCleanFolder(world.settings().autoCleanFolders.constFirst().id);
        world.settle();
        report();

        QCOMPARE(world.view.findChild<AutoCleanFolderView*>(), nullptr);
    }

    void theDownloadsAreOfferedAsSoonAsALaneHasFoundThem()
    {
        PreferencesWorld world;
        world.home.makeFolder(u"Downloads"_s);
        world.lanes.setRuns(ManualLanes::Runs::WhenTheTestSaysSo);

        world.view.showTab(PreferencesView::Tab::Folders);
        QVERIFY(!offersDownloads(world));
        world.lanes.runAll();

        QVERIFY(offersDownloads(world));
    }

    void theEmptyTabExplainsItselfAndOffersTheDownloads()
    {
        PreferencesWorld world;
        const QString downloads = world.home.makeFolder(u"Downloads"_s);
        world.view.showTab(PreferencesView::Tab::Folders);
        world.settle();
        auto& empty = *world.view.findChild<NoFoldersView*>();
        QVERIFY(empty.isVisible());
        QVERIFY(empty.findChild<TextLabel*>()->text().startsWith(u"Every new file in a folder"_s));

        named<PushButton>(empty, u"Add “Downloads”"_s).click();
        world.settle();

        QCOMPARE(world.settings().autoCleanFolders.size(), 1);
        QCOMPARE(world.settings().autoCleanFolders.constFirst().folderPath, downloads);
        QVERIFY(!empty.isVisible());
        world.store().removeAutoCleanFolder(world.settings().autoCleanFolders.constFirst().id);
        world.settle();
        QVERIFY(empty.isVisible());
    }

    void theDownloadsAreNamedAsTheDesktopNamesThem()
    {
        const Language language("it_IT.UTF-8");
        PreferencesWorld world;
        world.home.makeFolder(u"Scaricati"_s);
        world.home.makeFile(u".config/user-dirs.dirs"_s, "XDG_DOWNLOAD_DIR=\"$HOME/Scaricati\"\n");

        world.view.showTab(PreferencesView::Tab::Folders);

        QVERIFY(named<PushButton>(*world.view.findChild<NoFoldersView*>(), u"Aggiungi “Scaricati”"_s).isVisible());
    }

    void noDownloadsAreOfferedWhereThereAreNone()
    {
        PreferencesWorld world;

        world.view.showTab(PreferencesView::Tab::Folders);

        QVERIFY(!offersDownloads(world));
    }

    void theHomeFolderIsNotOffered()
    {
        PreferencesWorld world;
        world.home.makeFile(u".config/user-dirs.dirs"_s, "XDG_DOWNLOAD_DIR=\"$HOME/\"\n");

        world.view.showTab(PreferencesView::Tab::Folders);

        QVERIFY(!offersDownloads(world));
    }
};

} // namespace lapsa::test

QTEST_MAIN(lapsa::test::AutoCleanFolderViewTest)
#include "AutoCleanFolderView_test.moc"
