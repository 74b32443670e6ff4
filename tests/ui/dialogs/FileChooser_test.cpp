// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "OpenChooser.h"
#include "PanelWorld.h"
#include "PreferencesWorld.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QDialog>
#include <QLineEdit>
#include <QTest>

using namespace Qt::StringLiterals;

namespace lapsa::test {

/// Choosing files and folders to add.
class FileChooserTest final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase() { PanelWorld::setUpApplication(); }

    void theFileChooserOpensAtHomeAndThenWhereItWasLeft()
    {
        const WorkingDirectory elsewhere(u"/usr/share"_s);
        PanelWorld world;
        world.home.makeFile(u"Incoming/inside.txt"_s);
        {
            const OpenChooser chooser = chooserOf(world);
            QTRY_VERIFY(chooser.shown().contains(u"Incoming"_s));
            chooser.go(world.home.path(u"Incoming"_s));
            QTRY_COMPARE(chooser.shown(), QStringList{u"inside.txt"_s});
            QTest::keyClick(&chooser.dialog(), Qt::Key_Escape);
            QTRY_VERIFY(world.panel.chooser() == nullptr);
        }
        const OpenChooser chooser = chooserOf(world);
        QTRY_COMPARE(chooser.shown(), QStringList{u"inside.txt"_s});
        QVERIFY(!chooser.button(u"Add"_s).isEnabled());
    }

    void theFileChooserGoesToATypedFolderAndAddsAFolderByItsButton()
    {
        PanelWorld world;
        const QString folder = world.home.makeFolder(u"Incoming"_s);
        const OpenChooser chooser = chooserOf(world);

        chooser.go(folder);
        QVERIFY(chooser.open());
        QVERIFY(world.store().items().isEmpty());
        QVERIFY(!chooser.button(u"Add"_s).isEnabled());
        chooser.field().setText(folder);
        chooser.button(u"Add"_s).click();
        PanelWorld::settle();

        QCOMPARE(world.listedNames(), QStringList{u"Incoming"_s});
    }

    void returnOnATypedFileAddsIt()
    {
        PanelWorld world;
        const QString file = world.home.makeFile(u"notes.txt"_s);
        const OpenChooser chooser = chooserOf(world);

        chooser.go(file);
        PanelWorld::settle();

        QCOMPARE(world.listedNames(), QStringList{u"notes.txt"_s});
        QVERIFY(!chooser.open());
    }

    void aDoubleClickGoesIntoAFolderAndAddsAFile()
    {
        PanelWorld world;
        world.home.makeFile(u"Incoming/notes.txt"_s);
        const OpenChooser chooser = chooserOf(world);
        QTRY_VERIFY(chooser.shown().contains(u"Incoming"_s));

        chooser.doubleClick(u"Incoming"_s);
        QTRY_COMPARE(chooser.shown(), QStringList{u"notes.txt"_s});
        QVERIFY(world.store().items().isEmpty());
        chooser.doubleClick(u"notes.txt"_s);
        PanelWorld::settle();

        QCOMPARE(world.listedNames(), QStringList{u"notes.txt"_s});
    }

    void hiddenFilesAreShownOnDemand()
    {
        PanelWorld world;
        world.home.makeFile(u"place/.secret"_s);
        world.home.makeFile(u"place/notes.txt"_s);
        const OpenChooser chooser = chooserOf(world);
        chooser.go(world.home.path(u"place"_s));
        QTRY_COMPARE(chooser.shown(), QStringList{u"notes.txt"_s});

        chooser.names().setFocus();
        pressKey(chooser.dialog(), Qt::Key_H, Qt::ControlModifier);
        QTRY_COMPARE(chooser.shown(), (QStringList{u".secret"_s, u"notes.txt"_s}));
        pressKey(chooser.dialog(), Qt::Key_H, Qt::ControlModifier);

        QTRY_COMPARE(chooser.shown(), QStringList{u"notes.txt"_s});
    }

    void theKeyboardGoesUpAndBackAndForward()
    {
        PanelWorld world;
        world.home.makeFile(u"outer/inner/notes.txt"_s);
        const OpenChooser chooser = chooserOf(world);
        chooser.go(world.home.path(u"outer/inner"_s));
        QTRY_COMPARE(chooser.shown(), QStringList{u"notes.txt"_s});

        pressKey(chooser.dialog(), Qt::Key_Up, Qt::AltModifier);
        QTRY_COMPARE(chooser.shown(), QStringList{u"inner"_s});
        pressKey(chooser.dialog(), Qt::Key_Left, Qt::AltModifier);
        QTRY_COMPARE(chooser.shown(), QStringList{u"notes.txt"_s});
        pressKey(chooser.dialog(), Qt::Key_Right, Qt::AltModifier);
        QTRY_COMPARE(chooser.shown(), QStringList{u"inner"_s});
        chooser.names().setFocus();
        QTest::keyClick(&chooser.names(), Qt::Key_Down);
        QTest::keyClick(&chooser.names(), Qt::Key_Return);

        QTRY_COMPARE(chooser.shown(), QStringList{u"notes.txt"_s});
        QVERIFY(world.store().items().isEmpty());
    }
};

} // namespace lapsa::test

QTEST_MAIN(lapsa::test::FileChooserTest)
#include "FileChooser_test.moc"
