// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "PanelWorld.h"
#include "RowIconButton.h"

#include <QAccessible>
#include <QTest>

using namespace lapsa;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

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

} // namespace

/// What a screen reader says by itself.
class LapsaPanelView_announcements_test final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase()
    {
        test::PanelWorld::setUpApplication();
        QAccessible::setActive(true);
        QAccessible::installUpdateHandler(note);
    }

    void anItemThatRunsOutIsAnnounced_data();
    void anItemThatRunsOutIsAnnounced();
    void manyItemsThatRunOutAreOneAnnouncement();
    void whatTheUserTakesOffIsNotAnnounced();
    void aLockByAWarningIsAnnounced_data();
    void aLockByAWarningIsAnnounced();
};

void LapsaPanelView_announcements_test::anItemThatRunsOutIsAnnounced_data()
{
    QTest::addColumn<QByteArray>("locale");
    QTest::addColumn<QString>("text");
    QTest::newRow("English") << QByteArray("en_US.UTF-8") << u"“a.txt” has left the list"_s;
    QTest::newRow("Italian") << QByteArray("it_IT.UTF-8") << u"“a.txt” non è più nella lista"_s;
}

void LapsaPanelView_announcements_test::anItemThatRunsOutIsAnnounced()
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

void LapsaPanelView_announcements_test::manyItemsThatRunOutAreOneAnnouncement()
{
    if (!QAccessible::isActive()) {
        QSKIP("without a screen there is no screen reader"); // it runs on a display as well
    }
    PanelWorld world;
    for (int index = 0; index < 3; ++index) {
        world.addItem(u"file %1.txt"_s.arg(index), 1);
    }
    said().clear();

    world.time.setClock(world.time.now() + 61s);
    world.store().deleteExpiredItems();
    PanelWorld::settle();

    QCOMPARE(said(), QStringList{u"3 items have left the list"_s});
}

void LapsaPanelView_announcements_test::whatTheUserTakesOffIsNotAnnounced()
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

void LapsaPanelView_announcements_test::aLockByAWarningIsAnnounced_data()
{
    QTest::addColumn<QByteArray>("locale");
    QTest::addColumn<QString>("one");
    QTest::addColumn<QString>("two");
    QTest::newRow("English") << QByteArray("en_US.UTF-8") << u"“a.txt” is locked"_s << u"2 items are locked"_s;
    QTest::newRow("Italian") << QByteArray("it_IT.UTF-8") << u"“a.txt” è bloccato"_s << u"2 elementi sono bloccati"_s;
}

void LapsaPanelView_announcements_test::aLockByAWarningIsAnnounced()
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

QTEST_MAIN(LapsaPanelView_announcements_test)
#include "LapsaPanelView_announcements_test.moc"
