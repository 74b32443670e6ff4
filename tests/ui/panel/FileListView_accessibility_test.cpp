// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileListView.h"
#include "FileRowView.h"
#include "JSONEncoder.h"
#include "PanelWorld.h"
#include "PreferencesWorld.h"
#include "PushButton.h"
#include "RowIconButton.h"

#include <QAccessible>
#include <QApplication>
#include <QTest>

#include <algorithm>
#include <functional>
#include <memory>

using namespace lapsa;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// What a screen reader is told of the panel.
class FileListView_accessibility_test final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase();
    void everyItemIsToldInItsPlace();
    void readingThroughTheListKeepsFewItemsInMemory();
    void anItemStaysTheSameWhileOthersGo();
    void anItemOffScreenCanBeGivenTheFocus();
    void theListIsNamedAfterItsCount();
    void anEmptyListSaysSo_data();
    void anEmptyListSaysSo();
    void aRowsButtonsAreReachedFromIt();
    void theSheetIsAModalDialogWithItsTitle();
    void saveIsTheDefaultButton_data();
    void saveIsTheDefaultButton();
    void savePressedByAScreenReaderSaves();
    void noLayerIsToldBetweenAWindowAndItsControls();
    void anItemThatRunsOutIsAnnounced_data();
    void anItemThatRunsOutIsAnnounced();
    void manyItemsThatRunOutAreOneAnnouncement();
    void whatTheUserTakesOffIsNotAnnounced();
    void aLockByAWarningIsAnnounced_data();
    void aLockByAWarningIsAnnounced();
};

namespace {

using test::PanelWorld;

/// What was said by itself, since it was asked last.
QStringList& said()
{
    static QStringList texts;
    return texts;
}

void note(QAccessibleEvent* event)
{
    QAccessibleInterface* const source = event->accessibleInterface();
    if (event->type() == QAccessible::ObjectShow && source->role() == QAccessible::Notification) {
        said().push_back(source->text(QAccessible::Name));
    }
}

QAccessibleInterface& told(QWidget& widget)
{
    return *QAccessible::queryAccessibleInterface(&widget);
}

QString nameOf(int index)
{
    return u"file %1.txt"_s.arg(index);
}

/// A panel over that many items on record; their files do not exist.
class ManyItems final
{
public:
    explicit ManyItems(int count)
    {
        QList<LapsaItem> items;
        for (int index = 0; index < count; ++index) {
            items.push_back({.id = u"item-%1"_s.arg(index),
                             .path = u"/nowhere/"_s + nameOf(index),
                             .displayName = nameOf(index),
                             .addedAt = m_world.time.now(),
                             .expiresAt = m_world.time.now() + 90min});
        }
        m_world.home.writeDataFile(u"state.json"_s, JSONEncoder::lapsa().encode(items));
        m_world.start();
        m_panel = std::make_unique<LapsaPanelView>(
            LapsaPanelView::Environment{m_world.store(), m_world.time, m_world.time, m_icons}, [] {});
        m_panel->show();
        m_panel->activateWindow();
        std::ignore = QTest::qWaitForWindowActive(m_panel.get());
        PanelWorld::settle();
    }

    [[nodiscard]] FileListView& view() const { return *m_panel->findChild<FileListView*>(); }

    [[nodiscard]] QAccessibleInterface& list() const { return told(view()); }

    void remove(int index)
    {
        m_world.store().removeFromList(m_world.item(u"/nowhere/"_s + nameOf(index)));
        PanelWorld::settle();
    }

private:
    test::StoreWorld m_world{false};
    test::RecordingIcons m_icons;
    std::unique_ptr<LapsaPanelView> m_panel;
};

void forEach(QAccessibleInterface& parent, const std::function<void(QAccessibleInterface&)>& visit)
{
    visit(parent);
    for (int index = 0; index < parent.childCount(); ++index) {
        forEach(*parent.child(index), visit);
    }
}

} // namespace

void FileListView_accessibility_test::initTestCase()
{
    PanelWorld::setUpApplication();
    QAccessible::setActive(true);
    QAccessible::installUpdateHandler(note);
}

void FileListView_accessibility_test::everyItemIsToldInItsPlace()
{
    const ManyItems many(100000);

    QCOMPARE(many.list().role(), QAccessible::List);
    QCOMPARE(many.list().childCount(), 100000);
    for (const int index : {0, 2, 3, 50000, 99999}) {
        QAccessibleInterface* const item = many.list().child(index);
        QCOMPARE(item->role(), QAccessible::ListItem);
        QCOMPARE(item->text(QAccessible::Name), nameOf(index));
        QCOMPARE(item->text(QAccessible::Description), u"1h 30min left"_s);
        QCOMPARE(many.list().indexOfChild(item), index);
        QCOMPARE(item->parent(), &many.list());
        QVERIFY(item->state().focusable);
        const int top = item->rect().top() - many.list().rect().top();
        QCOMPARE(top, index * (FileRowView::rowHeight() + 10));
    }
    QVERIFY(!many.list().child(0)->state().offscreen);
    QVERIFY(many.list().child(99999)->state().offscreen);
    QVERIFY(many.list().child(100000) == nullptr && many.list().child(-1) == nullptr);
}

void FileListView_accessibility_test::readingThroughTheListKeepsFewItemsInMemory()
{
    const ManyItems many(100000);
    QList<QAccessible::Id> read;

    for (int index = 0; index < 20000; ++index) {
        QAccessibleInterface* const item = many.list().child(index);
        QCOMPARE(item->text(QAccessible::Name), nameOf(index));
        read.push_back(QAccessible::uniqueId(item));
    }

    const auto kept =
        std::ranges::count_if(read, [](QAccessible::Id id) { return QAccessible::accessibleInterface(id) != nullptr; });
    QVERIFY2(kept < 1000, qPrintable(QString::number(kept)));
}

void FileListView_accessibility_test::anItemStaysTheSameWhileOthersGo()
{
    ManyItems many(100);
    QAccessibleInterface* const item = many.list().child(50);
    QCOMPARE(many.list().child(50), item); // asked for again, not made again

    many.remove(3);
    QCOMPARE(item->text(QAccessible::Name), nameOf(50));
    QCOMPARE(many.list().indexOfChild(item), 49);
    QCOMPARE(many.list().child(49), item);
    QVERIFY(item->isValid());
    many.remove(50);

    QVERIFY(!item->isValid());
    QCOMPARE(many.list().childCount(), 98);
}

void FileListView_accessibility_test::anItemOffScreenCanBeGivenTheFocus()
{
    const ManyItems many(100000);

    many.list().child(70000)->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());

    const auto* const row = qobject_cast<FileRowView*>(QApplication::focusWidget());
    QVERIFY(row != nullptr);
    QCOMPARE(row->item().displayName, nameOf(70000));
    QVERIFY(many.view().rect().contains(row->geometry()));
    QVERIFY(many.list().child(70000)->state().focused);
}

void FileListView_accessibility_test::theListIsNamedAfterItsCount()
{
    PanelWorld world;
    world.addItem(u"a.txt"_s);
    QCOMPARE(told(world.list()).text(QAccessible::Name), u"1 item present"_s);

    world.addItem(u"b.txt"_s);

    QCOMPARE(told(world.list()).text(QAccessible::Name), u"2 items present"_s);
    QCOMPARE(told(world.list()).text(QAccessible::Description), QString());
}

void FileListView_accessibility_test::anEmptyListSaysSo_data()
{
    QTest::addColumn<QByteArray>("locale");
    QTest::addColumn<QString>("text");
    QTest::newRow("English") << QByteArray("en_US.UTF-8")
                             << u"Nothing here. Add a file or folder to start a countdown."_s;
    QTest::newRow("Italian") << QByteArray("it_IT.UTF-8")
                             << u"Niente qui. Aggiungi un file o una cartella per avviare un conto alla rovescia."_s;
}

void FileListView_accessibility_test::anEmptyListSaysSo()
{
    QFETCH(const QByteArray, locale);
    QFETCH(const QString, text);
    const test::Language language(locale.constData());
    PanelWorld world;
    QAccessibleInterface& list = told(world.list());

    QCOMPARE(list.childCount(), 1);
    QCOMPARE(list.child(0)->role(), QAccessible::StaticText);
    QCOMPARE(list.child(0)->text(QAccessible::Name), text);
    QCOMPARE(list.indexOfChild(list.child(0)), 0);
    QCOMPARE(list.text(QAccessible::Description), text);
    QVERIFY(list.state().focused);
}

void FileListView_accessibility_test::aRowsButtonsAreReachedFromIt()
{
    PanelWorld world;
    world.addItem(u"a.txt"_s);
    QStringList buttons;

    forEach(*told(world.list()).child(0), [&](QAccessibleInterface& child) {
        if (child.role() == QAccessible::Button) {
            buttons.push_back(child.text(QAccessible::Name));
        }
    });

    QCOMPARE(buttons, (QStringList{u"Change timer"_s, u"Lock"_s, u"Remove from list"_s, u"Delete now"_s}));
}

void FileListView_accessibility_test::theSheetIsAModalDialogWithItsTitle()
{
    PanelWorld world;
    world.addItem(u"a.txt"_s);
    QTest::mouseClick(&world.button(0, u"Change timer"_s), Qt::LeftButton);
    int dialogs = 0;

    forEach(told(world.panel), [&](QAccessibleInterface& child) {
        if (child.role() == QAccessible::Dialog) {
            ++dialogs;
            QCOMPARE(child.text(QAccessible::Name), u"File timer"_s);
            QVERIFY(child.state().modal);
            QCOMPARE(child.child(0)->role(), QAccessible::Client); // the title is not said twice
        }
    });

    QCOMPARE(dialogs, 1);
}

void FileListView_accessibility_test::saveIsTheDefaultButton_data()
{
    QTest::addColumn<QByteArray>("locale");
    QTest::addColumn<QString>("text");
    QTest::newRow("English") << QByteArray("en_US.UTF-8") << u"Save"_s;
    QTest::newRow("Italian") << QByteArray("it_IT.UTF-8") << u"Salva"_s;
}

void FileListView_accessibility_test::saveIsTheDefaultButton()
{
    QFETCH(const QByteArray, locale);
    QFETCH(const QString, text);
    const test::Language language(locale.constData());
    PanelWorld world;
    world.addItem(u"a.txt"_s);
    QTest::mouseClick(world.row(0).findChildren<RowIconButton*>().first(), Qt::LeftButton);
    QStringList defaults;

    forEach(told(world.panel), [&](QAccessibleInterface& child) {
        if (child.role() == QAccessible::Button && child.state().defaultButton) {
            defaults.push_back(child.text(QAccessible::Name));
        }
    });

    QCOMPARE(defaults, QStringList{text});
}

void FileListView_accessibility_test::savePressedByAScreenReaderSaves()
{
    PanelWorld world;
    const LapsaItem item = world.addItem(u"a.txt"_s);
    QTest::mouseClick(&world.button(0, u"Change timer"_s), Qt::LeftButton);
    test::named<PushButton>(world.panel, u"7d"_s).click();

    told(test::named<PushButton>(world.panel, u"Save"_s))
        .actionInterface()
        ->doAction(QAccessibleActionInterface::pressAction());

    QTRY_VERIFY(!world.panel.showingSheet());
    QCOMPARE(world.item(item.path).expiresAt - world.time.now(), 10080min);
}

void FileListView_accessibility_test::noLayerIsToldBetweenAWindowAndItsControls()
{
    PanelWorld panel;
    test::PreferencesWorld preferences;

    for (QWidget* const window : {static_cast<QWidget*>(&panel.panel), static_cast<QWidget*>(&preferences.view)}) {
        QCOMPARE(told(*window).role(), QAccessible::Window);
        forEach(told(*window), [](QAccessibleInterface& child) {
            QVERIFY(child.role() != QAccessible::LayeredPane);
            QVERIFY(child.role() != QAccessible::Grouping || !child.text(QAccessible::Name).isEmpty());
        });
    }
}

void FileListView_accessibility_test::anItemThatRunsOutIsAnnounced_data()
{
    QTest::addColumn<QByteArray>("locale");
    QTest::addColumn<QString>("text");
    QTest::newRow("English") << QByteArray("en_US.UTF-8") << u"“a.txt” has left the list"_s;
    QTest::newRow("Italian") << QByteArray("it_IT.UTF-8") << u"“a.txt” non è più nella lista"_s;
}

void FileListView_accessibility_test::anItemThatRunsOutIsAnnounced()
{
    if (!QAccessible::isActive()) {
        QSKIP("without a screen there is no screen reader"); // it runs on a display as well
    }
    QFETCH(const QByteArray, locale);
    QFETCH(const QString, text);
    const test::Language language(locale.constData());
    PanelWorld world;
    world.addItem(u"a.txt"_s, 1);
    world.addItem(u"b.txt"_s, 100);
    said().clear();

    world.time.setClock(world.time.now() + 61s);
    world.store().deleteExpiredItems();
    PanelWorld::settle();

    QCOMPARE(said(), QStringList{text});
}

void FileListView_accessibility_test::manyItemsThatRunOutAreOneAnnouncement()
{
    if (!QAccessible::isActive()) {
        QSKIP("without a screen there is no screen reader"); // it runs on a display as well
    }
    PanelWorld world;
    for (int index = 0; index < 3; ++index) {
        world.addItem(nameOf(index), 1);
    }
    said().clear();

    world.time.setClock(world.time.now() + 61s);
    world.store().deleteExpiredItems();
    PanelWorld::settle();

    QCOMPARE(said(), QStringList{u"3 items have left the list"_s});
}

void FileListView_accessibility_test::whatTheUserTakesOffIsNotAnnounced()
{
    if (!QAccessible::isActive()) {
        QSKIP("without a screen there is no screen reader"); // it runs on a display as well
    }
    PanelWorld world;
    world.addItem(u"a.txt"_s);
    world.addItem(u"b.txt"_s);
    said().clear();

    QTest::mouseClick(&world.button(0, u"Remove from list"_s), Qt::LeftButton);
    QTest::mouseClick(&world.button(1, u"Lock"_s), Qt::LeftButton);
    PanelWorld::settle();

    QCOMPARE(said(), QStringList());
}

void FileListView_accessibility_test::aLockByAWarningIsAnnounced_data()
{
    QTest::addColumn<QByteArray>("locale");
    QTest::addColumn<QString>("one");
    QTest::addColumn<QString>("two");
    QTest::newRow("English") << QByteArray("en_US.UTF-8") << u"“a.txt” is locked"_s << u"2 items are locked"_s;
    QTest::newRow("Italian") << QByteArray("it_IT.UTF-8") << u"“a.txt” è bloccato"_s << u"2 elementi sono bloccati"_s;
}

void FileListView_accessibility_test::aLockByAWarningIsAnnounced()
{
    if (!QAccessible::isActive()) {
        QSKIP("without a screen there is no screen reader"); // it runs on a display as well
    }
    QFETCH(const QByteArray, locale);
    QFETCH(const QString, one);
    QFETCH(const QString, two);
    const test::Language language(locale.constData());
    PanelWorld world;
    const QString first = world.addItem(u"a.txt"_s).id;
    const QString second = world.addItem(u"b.txt"_s).id;
    said().clear();

    world.store().lockItem(first);
    world.panel.announceLocked({first, second});
    world.store().lockItem(second);
    world.panel.announceLocked({first, second});

    QCOMPARE(said(), (QStringList{one, two}));
}

QTEST_MAIN(FileListView_accessibility_test)
#include "FileListView_accessibility_test.moc"
