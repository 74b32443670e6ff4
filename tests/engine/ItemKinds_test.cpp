// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ItemKinds.h"
#include "ManualLanes.h"
#include "TemporaryHome.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace lapsa;
using namespace Qt::StringLiterals;
using test::ManualLanes;

/// Whether items are files or folders.
class ItemKinds_test final : public QObject
{
    Q_OBJECT

private slots:

    void aPathIsAFileOrAFolder_data();
    void aPathIsAFileOrAFolder();
    void nothingIsKnownUntilTheLaneHasLooked();
    void theAnswerComesOnce();
    void aPathThatIsKnownIsNotLookedAtOnceMore();
    void aFileThatBecameAFolderIsFoundByAnotherLook();
    void aFolderThatDoesNotAnswerIsAskedOnce();
    void whatWaitedIsLookedAtTogether();
    void anotherFolderDoesNotWait();
    void nobodyHearsTheAnswerOnceTheKindsAreGone();
};

void ItemKinds_test::aPathIsAFileOrAFolder_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<ItemKind>("kind");
    QTest::newRow("a file") << u"file.txt"_s << ItemKind::File;
    QTest::newRow("a folder") << u"folder"_s << ItemKind::Folder;
    QTest::newRow("a folder that is called like a file") << u"folder.txt"_s << ItemKind::Folder;
    QTest::newRow("a link to a folder") << u"link"_s << ItemKind::Folder;
    QTest::newRow("nothing") << u"nothing"_s << ItemKind::File;
}

void ItemKinds_test::aPathIsAFileOrAFolder()
{
    QFETCH(const QString, name);
    QFETCH(const ItemKind, kind);
    const test::TemporaryHome home;
    home.makeFile(u"file.txt"_s);
    home.makeFolder(u"folder.txt"_s);
    QVERIFY(QFile::link(home.makeFolder(u"folder"_s), home.path(u"link"_s)));
    ManualLanes lanes(ManualLanes::Runs::AtOnce);
    ItemKinds kinds(lanes);

    kinds.lookUp(home.path(name));

    QCOMPARE(kinds.kindOf(home.path(name)), kind);
}

void ItemKinds_test::nothingIsKnownUntilTheLaneHasLooked()
{
    const test::TemporaryHome home;
    const QString folder = home.makeFolder(u"folder"_s);
    ManualLanes lanes;
    ItemKinds kinds(lanes);
    const QSignalSpy found(&kinds, &ItemKinds::found);

    kinds.lookUp(folder);
    QCOMPARE(kinds.kindOf(folder), ItemKind::Unknown);
    const Lanes::Report report = lanes.workOnNext();
    QCOMPARE(kinds.kindOf(folder), ItemKind::Unknown);
    QVERIFY(found.isEmpty());

    report();
    QCOMPARE(kinds.kindOf(folder), ItemKind::Folder);
    QCOMPARE(found, QList<QVariantList>{{folder}});
}

void ItemKinds_test::theAnswerComesOnce()
{
    const test::TemporaryHome home;
    const QString folder = home.makeFolder(u"folder"_s);
    ManualLanes lanes(ManualLanes::Runs::AtOnce);
    ItemKinds kinds(lanes);
    const QSignalSpy found(&kinds, &ItemKinds::found);

    kinds.lookUp(folder);
    kinds.lookUp(folder);

    QCOMPARE(found.size(), 1);
}

void ItemKinds_test::aPathThatIsKnownIsNotLookedAtOnceMore()
{
    const test::TemporaryHome home;
    const QString file = home.makeFile(u"file.txt"_s);
    ManualLanes lanes;
    ItemKinds kinds(lanes);
    kinds.lookUpOnce(file);
    QVERIFY(!lanes.isIdle());
    lanes.runAll();

    kinds.lookUpOnce(file);

    QVERIFY(lanes.isIdle());
}

void ItemKinds_test::aFileThatBecameAFolderIsFoundByAnotherLook()
{
    const test::TemporaryHome home;
    const QString path = home.makeFile(u"a"_s);
    ManualLanes lanes(ManualLanes::Runs::AtOnce);
    ItemKinds kinds(lanes);
    kinds.lookUp(path);
    QVERIFY(QFile::remove(path) && QDir().mkdir(path));
    const QSignalSpy found(&kinds, &ItemKinds::found);

    kinds.lookUp(path);

    QCOMPARE(kinds.kindOf(path), ItemKind::Folder);
    QCOMPARE(found.size(), 1);
}

void ItemKinds_test::aFolderThatDoesNotAnswerIsAskedOnce()
{
    const test::TemporaryHome home;
    ManualLanes lanes;
    ItemKinds kinds(lanes);
    kinds.lookUp(home.path(u"1.txt"_s));
    const Lanes::Report hangs = lanes.workOnNext();

    for (int number = 1; number <= 100; ++number) {
        kinds.lookUp(home.path(u"%1.txt"_s.arg(number)));
    }

    QVERIFY(lanes.isIdle());
}

void ItemKinds_test::whatWaitedIsLookedAtTogether()
{
    const test::TemporaryHome home;
    const QString first = home.makeFile(u"first"_s);
    const QStringList others{home.makeFolder(u"second"_s), home.makeFolder(u"third"_s)};
    ManualLanes lanes;
    ItemKinds kinds(lanes);
    kinds.lookUp(first);
    const Lanes::Report report = lanes.workOnNext();
    for (const QString& path : others) {
        kinds.lookUp(path);
    }

    report();
    QCOMPARE(kinds.kindOf(first), ItemKind::File);
    lanes.runNext();

    for (const QString& path : others) {
        QCOMPARE(kinds.kindOf(path), ItemKind::Folder);
    }
    QVERIFY(lanes.isIdle());
}

void ItemKinds_test::anotherFolderDoesNotWait()
{
    const test::TemporaryHome home;
    const QString other = home.makeFolder(u"other/folder"_s);
    ManualLanes lanes;
    ItemKinds kinds(lanes);
    kinds.lookUp(home.path(u"a"_s));
    const Lanes::Report hangs = lanes.workOnNext();

    kinds.lookUp(other);
    lanes.runAll();

    QCOMPARE(kinds.kindOf(other), ItemKind::Folder);
}

void ItemKinds_test::nobodyHearsTheAnswerOnceTheKindsAreGone()
{
    const test::TemporaryHome home;
    ManualLanes lanes;
    auto kinds = std::make_unique<ItemKinds>(lanes);
    int heard = 0;
    connect(kinds.get(), &ItemKinds::found, this, [&heard] { ++heard; });
    kinds->lookUp(home.makeFolder(u"a"_s));
    const Lanes::Report report = lanes.workOnNext();

    kinds.reset();
    report();

    QCOMPARE(heard, 0);
}

QTEST_GUILESS_MAIN(ItemKinds_test)
#include "ItemKinds_test.moc"
