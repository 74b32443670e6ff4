// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "OpenChooser.h"
#include "PanelWorld.h"
#include "PreferencesWorld.h"

#include <QAbstractButton>
#include <QDialog>
#include <QLineEdit>
#include <QTest>

using namespace Qt::StringLiterals;

namespace lapsa::test {

/// Choosing a folder to watch, in our own dialog.
class FolderChooserTest final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase() { PanelWorld::setUpApplication(); }

    void nothingIsChosenUntilSomebodyChose()
    {
        PreferencesWorld world;
        const OpenChooser chooser = chooserOf(world);

        QVERIFY(!chooser.button(u"Add"_s).isEnabled());
        pressKey(chooser.dialog(), Qt::Key_Return);
        world.settle();

        QVERIFY(world.settings().autoCleanFolders.isEmpty());
        QVERIFY(chooser.open());
    }

    void returnAnywhereInTheFolderChooserAddsNothing()
    {
        PreferencesWorld world;
        world.home.makeFolder(u"Incoming"_s);
        const OpenChooser chooser = chooserOf(world);
        QTRY_VERIFY(chooser.shown().contains(u"Incoming"_s));
        chooser.click(u"Incoming"_s);

        for (QWidget* const part : chooser.dialog().findChildren<QWidget*>()) {
            if (part->isVisible() && part->focusPolicy() != Qt::NoFocus &&
                qobject_cast<QAbstractButton*>(part) == nullptr) {
                part->setFocus();
                pressKey(chooser.dialog(), Qt::Key_Return);
                pressKey(chooser.dialog(), Qt::Key_Enter);
            }
        }
        world.settle();

        QVERIFY(world.settings().autoCleanFolders.isEmpty());
        QVERIFY(chooser.open());
    }

    void returnOnATypedFolderGoesThereAndAddAddsIt()
    {
        PreferencesWorld world;
        const QString folder = world.home.makeFolder(u"Incoming"_s);
        world.home.makeFolder(u"Incoming/inside"_s);
        const OpenChooser chooser = chooserOf(world);

        chooser.go(folder);
        QVERIFY(chooser.open());
        QVERIFY(world.settings().autoCleanFolders.isEmpty());
        QTRY_COMPARE(chooser.shown(), QStringList{u"inside"_s});
        chooser.button(u"Add"_s).click();
        world.settle();

        QCOMPARE(world.settings().autoCleanFolders.size(), 1);
        QCOMPARE(world.settings().autoCleanFolders.constFirst().folderPath, folder);
    }

    void addAddsATypedFolderWithoutGoingThere_data()
    {
        QTest::addColumn<QString>("typed");

        QTest::newRow("the whole path") << u"%1/Incoming"_s;
        QTest::newRow("with a slash at its end") << u"%1/Incoming/"_s;
        QTest::newRow("from the home on") << u"~/Incoming"_s;
        QTest::newRow("by its name in the folder shown") << u"Incoming"_s;
    }

    void addAddsATypedFolderWithoutGoingThere()
    {
        QFETCH(const QString, typed);
        PreferencesWorld world;
        const QString folder = world.home.makeFolder(u"Incoming"_s);
        const OpenChooser chooser = chooserOf(world);

        chooser.field().setText(typed.contains(u'%') ? typed.arg(world.home.path({})) : typed);
        QVERIFY(chooser.button(u"Add"_s).isEnabled());
        chooser.button(u"Add"_s).click();
        world.settle();

        QCOMPARE(world.settings().autoCleanFolders.size(), 1);
        QCOMPARE(world.settings().autoCleanFolders.constFirst().folderPath, folder);
    }

    void whatIsNoFolderCannotBeAddedAsOne_data()
    {
        QTest::addColumn<QString>("typed");

        QTest::newRow("nothing") << QString();
        QTest::newRow("a blank") << u" "_s;
        QTest::newRow("a file") << u"notes.txt"_s;
        QTest::newRow("what is not there") << u"nowhere/at/all"_s;
    }

    void whatIsNoFolderCannotBeAddedAsOne()
    {
        QFETCH(const QString, typed);
        PreferencesWorld world;
        world.home.makeFile(u"notes.txt"_s);
        const OpenChooser chooser = chooserOf(world);

        chooser.go(typed);

        QVERIFY(!chooser.button(u"Add"_s).isEnabled());
        QVERIFY(chooser.open());
        QVERIFY(world.settings().autoCleanFolders.isEmpty());
    }

    void theFolderThatIsClickedIsTheOneThatIsAdded()
    {
        PreferencesWorld world;
        const QString folder = world.home.makeFolder(u"Incoming"_s);
        world.home.makeFolder(u"Other"_s);
        const OpenChooser chooser = chooserOf(world);
        QTRY_VERIFY(chooser.shown().contains(u"Incoming"_s));

        chooser.click(u"Other"_s);
        chooser.click(u"Incoming"_s);
        chooser.button(u"Add"_s).click();
        world.settle();

        QCOMPARE(world.settings().autoCleanFolders.size(), 1);
        QCOMPARE(world.settings().autoCleanFolders.constFirst().folderPath, folder);
    }

    void theFolderChooserOpensAtHomeAndThenWhereItWasLeft()
    {
        const WorkingDirectory elsewhere(u"/usr/share"_s);
        PreferencesWorld world;
        const QString folder = world.home.makeFolder(u"Incoming"_s);
        world.home.makeFolder(u"Incoming/inside"_s);
        world.home.makeFolder(u"Other"_s);
        {
            const OpenChooser chooser = chooserOf(world);
            QTRY_VERIFY(chooser.shown().contains(u"Incoming"_s));
            chooser.go(folder);
            QTest::keyClick(&chooser.dialog(), Qt::Key_Escape);
            QTRY_VERIFY(!world.view.showingFolderPicker());
        }
        {
            const OpenChooser chooser = chooserOf(world);
            QTRY_COMPARE(chooser.shown(), QStringList{u"inside"_s});
            QVERIFY(!chooser.button(u"Add"_s).isEnabled());
            QTest::keyClick(&chooser.dialog(), Qt::Key_Escape);
            QTRY_VERIFY(!world.view.showingFolderPicker());
        }
        QVERIFY(QDir(folder).removeRecursively());
        const OpenChooser chooser = chooserOf(world);
        QTRY_COMPARE(chooser.shown(), QStringList{u"Other"_s});
    }
};

} // namespace lapsa::test

QTEST_MAIN(lapsa::test::FolderChooserTest)
#include "FolderChooser_test.moc"
