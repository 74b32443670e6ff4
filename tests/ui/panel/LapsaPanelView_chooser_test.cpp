// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DropZone.h"
#include "FileChooser.h"
#include "PanelWorld.h"
#include "PushButton.h"
#include "TextLabel.h"

#include <QApplication>
#include <QLineEdit>
#include <QTest>
#include <QTreeView>

using namespace lapsa;
using namespace Qt::StringLiterals;

/// The dialog that a click on the drop zone opens.
class LapsaPanelView_chooser_test final : public QObject
{
    Q_OBJECT

private slots:

    void init() { test::PanelWorld::setUpApplication(); }

    void theChooserTakesFilesAndFoldersInOneCall();
    void theChooserSpeaksTheLanguageAlsoWithAFolderSelected_data();
    void theChooserSpeaksTheLanguageAlsoWithAFolderSelected();
    void aCancelledChooserAddsNothing();
};

namespace {

using test::named;
using test::PanelWorld;

/// The labels and buttons of a file dialog as they are shown.
QStringList textsOf(const FileChooser& chooser)
{
    QStringList shown;
    for (const TextLabel* const label : chooser.findChildren<TextLabel*>()) {
        shown.push_back(label->text());
    }
    for (const PushButton* const button : chooser.findChildren<PushButton*>()) {
        shown.push_back(button->text());
    }
    return shown;
}

/// Goes into a folder as the user does.
void enter(const FileChooser& chooser, const QString& folder)
{
    auto* const field = chooser.findChild<QLineEdit*>();
    field->setText(folder);
    QTest::keyClick(field, Qt::Key_Return);
}

DropZone& zone(PanelWorld& world)
{
    return *world.panel.findChild<DropZone*>();
}

} // namespace

void LapsaPanelView_chooser_test::theChooserTakesFilesAndFoldersInOneCall()
{
    PanelWorld world;
    world.home.makeFile(u"chosen/a file.txt"_s);
    world.home.makeFolder(u"chosen/a folder"_s);
    world.home.makeFile(u"chosen/left alone.txt"_s);
    QTest::mouseClick(&zone(world), Qt::LeftButton);
    FileChooser* const chooser = world.panel.chooser();
    QVERIFY(chooser != nullptr);
    enter(*chooser, world.home.path(u"chosen"_s));
    auto* const view = chooser->findChild<QTreeView*>();
    QTRY_COMPARE(view->model()->rowCount(view->rootIndex()), 3);
    // In two calls, the second one would be announced while the first one's item is on the list.
    QList<qsizetype> before;
    connect(&world.store(), &LapsaStore::willChange, this, [&] { before.push_back(world.store().items().size()); });

    for (int row = 0; row < 3; ++row) {
        const QModelIndex index = view->model()->index(row, 0, view->rootIndex());
        if (index.data().toString() != u"left alone.txt"_s) {
            view->selectionModel()->select(index, QItemSelectionModel::Select | QItemSelectionModel::Rows);
        }
    }
    named<PushButton>(*chooser, u"Add"_s).click();

    QStringList names = world.listedNames();
    names.sort();
    QCOMPARE(names, (QStringList{u"a file.txt"_s, u"a folder"_s}));
    QVERIFY(before.contains(0) && !before.contains(1));
    QCOMPARE(world.store().lastMessage(), u"“a folder” goes as a whole: no files yet."_s);
    QTRY_VERIFY(world.panel.chooser() == nullptr);
}

void LapsaPanelView_chooser_test::theChooserSpeaksTheLanguageAlsoWithAFolderSelected_data()
{
    QTest::addColumn<QByteArray>("locale");
    QTest::addColumn<QStringList>("texts");
    QTest::newRow("English") << QByteArray("en_US.UTF-8") << QStringList{u"Name:"_s, u"Cancel"_s, u"Add"_s};
    QTest::newRow("Italian") << QByteArray("it_IT.UTF-8") << QStringList{u"Nome:"_s, u"Annulla"_s, u"Aggiungi"_s};
}

void LapsaPanelView_chooser_test::theChooserSpeaksTheLanguageAlsoWithAFolderSelected()
{
    QFETCH(const QByteArray, locale);
    QFETCH(const QStringList, texts);
    const test::Language language(locale.constData());
    PanelWorld world;
    world.home.makeFolder(u"chosen/a folder"_s);
    QTest::mouseClick(&zone(world), Qt::LeftButton);
    FileChooser& chooser = *world.panel.chooser();
    QCOMPARE(textsOf(chooser), texts);
    enter(chooser, world.home.path(u"chosen"_s));
    auto* const view = chooser.findChild<QTreeView*>();
    QTRY_COMPARE(view->model()->rowCount(view->rootIndex()), 1);

    view->setCurrentIndex(view->model()->index(0, 0, view->rootIndex()));
    QVERIFY(named<PushButton>(chooser, texts.constLast()).isEnabled());
    PanelWorld::settle();

    QCOMPARE(textsOf(chooser), texts);
    QTest::keyClick(&chooser, Qt::Key_Escape);
    QTRY_VERIFY(world.panel.chooser() == nullptr);
}

void LapsaPanelView_chooser_test::aCancelledChooserAddsNothing()
{
    PanelWorld world;
    QTest::keyClick(&zone(world), Qt::Key_Space);
    QVERIFY(world.panel.chooser() != nullptr);

    world.panel.chooser()->reject();

    QVERIFY(world.store().items().isEmpty());
    QTRY_VERIFY(world.panel.chooser() == nullptr);
    QTest::mouseClick(&zone(world), Qt::LeftButton);
    QVERIFY(world.panel.chooser() != nullptr);
}

QTEST_MAIN(LapsaPanelView_chooser_test)
#include "LapsaPanelView_chooser_test.moc"
