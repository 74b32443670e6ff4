// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AutoCleanFolderView.h"
#include "FolderChooser.h"
#include "PanelWorld.h"
#include "PreferencesWorld.h"
#include "PushButton.h"
#include "Stepper.h"
#include "Toggle.h"

#include <QAbstractButton>
#include <QDir>
#include <QLineEdit>
#include <QTest>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

AutoCleanFolderView& onlyCard(const PreferencesWorld& world)
{
    const QList<AutoCleanFolderView*> cards = world.view.findChildren<AutoCleanFolderView*>();
    if (cards.size() != 1) {
        qFatal("there are %lld cards", static_cast<long long>(cards.size()));
    }
    return *cards.constFirst();
}

void click(PreferencesWorld& world, QWidget& widget)
{
    QTest::mouseClick(&widget, Qt::LeftButton);
    world.settle();
}

FolderChooser& openChooser(PreferencesWorld& world)
{
    click(world, named<PushButton>(world.view, u"Add folder"_s));
    auto* const chooser = world.view.findChild<FolderChooser*>();
    if (chooser == nullptr || !QTest::qWaitForWindowExposed(chooser)) {
        qFatal("the chooser does not open");
    }
    return *chooser;
}

} // namespace

class FoldersTabTest final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase() { PanelWorld::setUpApplication(); }

    void aFolderIsNamedByItsPath()
    {
        PreferencesWorld world;
        world.view.showTab(PreferencesView::Tab::Folders);

        world.store().addAutoCleanFolder(QUrl::fromLocalFile(u"/srv/scans"_s));
        world.settle();

        QCOMPARE(onlyCard(world).findChild<Toggle*>()->accessibleName(), u"/srv/scans"_s);
    }

    void aFolderWithoutAPathSaysSo()
    {
        PreferencesWorld world;
        world.view.showTab(PreferencesView::Tab::Folders);

        world.changeElsewhere(
            [](LapsaSettings& settings) { settings.autoCleanFolders = {LapsaAutoCleanFolderRule()}; });

        QCOMPARE(onlyCard(world).findChild<Toggle*>()->accessibleName(), u"Folder not set"_s);
    }

    void eachSwitchOfAFolderWritesItsField()
    {
        PreferencesWorld world;
        world.view.showTab(PreferencesView::Tab::Folders);
        world.store().addAutoCleanFolder(QUrl::fromLocalFile(u"/srv/scans"_s));
        world.settle();
        LapsaAutoCleanFolderRule expected = world.settings().autoCleanFolders.constFirst();

        click(world, named<Toggle>(onlyCard(world), u"/srv/scans"_s));
        expected.enabled = false;
        QCOMPARE(world.settings().autoCleanFolders, QList{expected});
        click(world, named<Toggle>(onlyCard(world), u"Include existing files"_s));
        expected.includeExistingFiles = true;
        QCOMPARE(world.settings().autoCleanFolders, QList{expected});
        click(world, named<Toggle>(onlyCard(world), u"Apply file type rules"_s));
        expected.applyFileTypeRules = false;
        QCOMPARE(world.settings().autoCleanFolders, QList{expected});
    }

    void theLifespanOfAFolderStopsAt365Days()
    {
        PreferencesWorld world;
        world.view.showTab(PreferencesView::Tab::Folders);
        world.store().addAutoCleanFolder(QUrl::fromLocalFile(u"/srv/scans"_s));
        world.settle();

        QTest::keyClick(&named<Stepper>(onlyCard(world), u"Days"_s), Qt::Key_End);
        world.settle();

        QCOMPARE(world.settings().autoCleanFolders.constFirst().lifespanMinutes, 525600);
    }

    void removingAFolderTakesItsRule()
    {
        PreferencesWorld world;
        world.view.showTab(PreferencesView::Tab::Folders);
        world.store().addAutoCleanFolder(QUrl::fromLocalFile(u"/srv/scans"_s));
        world.settle();

        click(world, named<PushButton>(onlyCard(world), u"Remove folder"_s));

        QVERIFY(world.settings().autoCleanFolders.isEmpty());
        QVERIFY(world.view.findChildren<AutoCleanFolderView*>().isEmpty());
    }

    void aChosenFolderIsWatched()
    {
        PreferencesWorld world;
        const QString folder = world.home.makeFolder(u"Incoming"_s);
        world.view.showTab(PreferencesView::Tab::Folders);
        FolderChooser& chooser = openChooser(world);
        QVERIFY(world.view.showingFolderPicker());

        chooser.findChild<QLineEdit*>()->setText(folder);
        click(world, named<PushButton>(chooser, u"Add"_s));

        QCOMPARE(world.settings().autoCleanFolders.size(), 1);
        QCOMPARE(world.settings().autoCleanFolders.constFirst().folderPath, folder);
        QTRY_VERIFY(!world.view.showingFolderPicker());
    }

    void aFolderChosenTwiceIsWatchedOnce()
    {
        PreferencesWorld world;
        const QString folder = world.home.makeFolder(u"Incoming"_s);
        world.store().addAutoCleanFolder(QUrl::fromLocalFile(folder));
        world.view.showTab(PreferencesView::Tab::Folders);
        FolderChooser& chooser = openChooser(world);

        chooser.findChild<QLineEdit*>()->setText(folder);
        click(world, named<PushButton>(chooser, u"Add"_s));

        QCOMPARE(world.settings().autoCleanFolders.size(), 1);
    }

    void aCancelledChoiceDoesNothing()
    {
        PreferencesWorld world;
        world.view.showTab(PreferencesView::Tab::Folders);
        FolderChooser& chooser = openChooser(world);

        QTest::keyClick(&chooser, Qt::Key_Escape);
        world.settle();

        QVERIFY(world.settings().autoCleanFolders.isEmpty());
        QVERIFY(world.view.isVisible());
        QTRY_VERIFY(!world.view.showingFolderPicker());
    }

    void theDesktopsOwnDialogIsAskedFirst()
    {
        PreferencesWorld world;
        world.folderPicker.available = true;
        world.view.showTab(PreferencesView::Tab::Folders);

        click(world, named<PushButton>(world.view, u"Add folder"_s));

        QCOMPARE(world.folderPicker.questions.size(), 1);
        QCOMPARE(world.folderPicker.questions[0].title, u"Add folder"_s);
        QCOMPARE(world.folderPicker.questions[0].acceptLabel, u"Add"_s);
        QCOMPARE(world.folderPicker.questions[0].startFolder, QDir::homePath());
        QCOMPARE(world.folderPicker.questions[0].window, std::uintptr_t(world.view.winId()));
        QVERIFY(world.view.showingFolderPicker());
        QVERIFY(world.view.findChildren<FolderChooser*>().isEmpty());
    }

    void whatIsChosenInTheDesktopsDialogIsWatched()
    {
        PreferencesWorld world;
        const QString folder = world.home.makeFolder(u"Incoming/today"_s);
        world.folderPicker.available = true;
        world.view.showTab(PreferencesView::Tab::Folders);
        click(world, named<PushButton>(world.view, u"Add folder"_s));

        world.folderPicker.answer(QUrl::fromLocalFile(folder));
        world.settle();

        QCOMPARE(world.settings().autoCleanFolders.size(), 1);
        QCOMPARE(world.settings().autoCleanFolders.constFirst().folderPath, folder);
        QVERIFY(!world.view.showingFolderPicker());
        click(world, named<PushButton>(world.view, u"Add folder"_s));
        QCOMPARE(world.folderPicker.questions.constLast().startFolder, world.home.path(u"Incoming"_s));
    }

    void aDesktopsDialogThatIsCancelledDoesNothing()
    {
        PreferencesWorld world;
        world.folderPicker.available = true;
        world.view.showTab(PreferencesView::Tab::Folders);
        click(world, named<PushButton>(world.view, u"Add folder"_s));

        world.folderPicker.answer(FolderPicker::Cancelled());
        world.settle();

        QVERIFY(world.settings().autoCleanFolders.isEmpty());
        QVERIFY(!world.view.showingFolderPicker());
        QVERIFY(world.view.findChildren<FolderChooser*>().isEmpty());
    }

    void aSecondPressOpensTheDesktopsDialogAnew()
    {
        PreferencesWorld world;
        world.folderPicker.available = true;
        world.view.showTab(PreferencesView::Tab::Folders);

        click(world, named<PushButton>(world.view, u"Add folder"_s));
        click(world, named<PushButton>(world.view, u"Add folder"_s));

        QCOMPARE(world.folderPicker.questions.size(), 2);
        QCOMPARE(world.folderPicker.closed, 1);
    }

    void aSecondPressOnAddFolderKeepsTheOneChooser()
    {
        PreferencesWorld world;
        world.view.showTab(PreferencesView::Tab::Folders);
        openChooser(world);

        named<PushButton>(world.view, u"Add folder"_s).click();

        QCOMPARE(world.view.findChildren<FolderChooser*>().size(), 1);
    }
};

} // namespace lapsa::test

QTEST_MAIN(lapsa::test::FoldersTabTest)
#include "FoldersTab_test.moc"
