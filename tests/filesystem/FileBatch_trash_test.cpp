// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileBatch.h"
#include "FileTree.h"
#include "NumberedFiles.h"
#include "UserFolders.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <algorithm>
#include <optional>

using namespace lapsa;
using namespace lapsa::test;
using namespace Qt::StringLiterals;

/// Neighbours on their way to the trash, with records made ahead.
class FileBatch_trash_test final : public QObject
{
    Q_OBJECT

private slots:

    void init() { m_files.emplace(); }

    void neighboursGoToTheTrash()
    {
        fileSystem::Batch batch({});

        for (int number = 0; number < NumberedFiles::count; ++number) {
            QVERIFY(batch.moveToTrash(m_files->from(number)));
        }

        QCOMPARE(m_files->home.names(u"from"_s), QStringList());
        QCOMPARE(trashed(u"files"_s).size(), NumberedFiles::count);
        QCOMPARE(trashed(u"info"_s).size(), NumberedFiles::count);
    }

    void aTrashThatWasRemovedIsMadeAnew()
    {
        fileSystem::Batch batch({});
        QVERIFY(batch.moveToTrash(m_files->from(0)));

        QVERIFY(QDir(userFolders::applicationSupport().first() + u"/Trash"_s).removeRecursively());
        QVERIFY(batch.moveToTrash(m_files->from(1)));

        QCOMPARE(trashed(u"files"_s), QStringList({u"1"_s}));
    }

    void whatIsExpectedInTheTrashGetsThereWithItsRecord()
    {
        fileSystem::Batch batch({});
        batch.expectTrash(m_files->allPaths());

        for (const QString& path : m_files->allPaths()) {
            QVERIFY(batch.moveToTrash(path));
        }

        QCOMPARE(trashed(u"files"_s).size(), NumberedFiles::count);
        QCOMPARE(trashed(u"info"_s).size(), NumberedFiles::count);
        for (int number = 0; number < NumberedFiles::count; ++number) {
            QCOMPARE(contentAt(trash + u"/files/%1"_s.arg(number)), QByteArray::number(number));
            QVERIFY(recordOf(number).contains("\nPath=" + m_files->from(number).toUtf8() + "\nDeletionDate=2"));
        }
    }

    void equalNamesThatAreExpectedGetEachARecordOfTheirOwn()
    {
        const QStringList paths = {m_files->home.makeFile(u"one/name.txt"_s, "1"),
                                   m_files->home.makeFile(u"two/name.txt"_s, "2"),
                                   m_files->home.makeFile(u"three/name.txt"_s, "3")};
        fileSystem::Batch batch({});
        batch.expectTrash(paths);

        for (const QString& path : paths) {
            QVERIFY(batch.moveToTrash(path));
        }

        QCOMPARE(trashed(u"files"_s), QStringList({u"name.2.txt"_s, u"name.3.txt"_s, u"name.txt"_s}));
        QCOMPARE(contentAt(trash + u"/files/name.2.txt"_s), QByteArray("2"));
        QVERIFY(contentAt(trash + u"/info/name.2.txt.trashinfo"_s).contains("/two/name.txt\n"));
    }

    void whatIsExpectedAndNotTakenLeavesNoRecord()
    {
        {
            fileSystem::Batch batch({});
            batch.expectTrash(m_files->allPaths());
            QVERIFY(batch.moveToTrash(m_files->from(0)));
            QVERIFY(trashed(u"info"_s).size() > 1); // they are made ahead
            // Neither those that are passed over nor those that do not come any more.
            QVERIFY(batch.moveToTrash(m_files->from(5)));
        }

        QCOMPARE(trashed(u"info"_s), QStringList({u"0.trashinfo"_s, u"5.trashinfo"_s}));
        QCOMPARE(m_files->home.names(u"from"_s).size(), NumberedFiles::count - 2);
    }

    void whatComesInAnotherOrderThanExpectedGetsThereAsWell()
    {
        QStringList expected = m_files->allPaths();
        std::ranges::reverse(expected);
        {
            fileSystem::Batch batch({});
            batch.expectTrash(expected);
            for (const QString& path : m_files->allPaths()) {
                QVERIFY(batch.moveToTrash(path));
            }
        }

        QCOMPARE(trashed(u"files"_s).size(), NumberedFiles::count);
        QCOMPARE(trashed(u"info"_s).size(), NumberedFiles::count);
    }

    void aNameThatSomebodyTakesAfterItsRecordWasMadeIsNotOverwritten()
    {
        fileSystem::Batch batch({});
        batch.expectTrash(m_files->allPaths());
        QVERIFY(batch.moveToTrash(m_files->from(0)));

        m_files->home.makeFile(trash + u"/files/1"_s, "somebody else's");
        QVERIFY(batch.moveToTrash(m_files->from(1)));

        QCOMPARE(contentAt(trash + u"/files/1"_s), QByteArray("somebody else's"));
        QCOMPARE(contentAt(trash + u"/files/1.2"_s), QByteArray("1"));
        QVERIFY(contentAt(trash + u"/info/1.2.trashinfo"_s).contains(m_files->from(1).toUtf8() + '\n'));
    }

    void aFolderThatGetsAnotherNameMeanwhileIsNotRecordedUnderTheOldOne()
    {
        // By turns, so that each folder is looked up anew.
        const QStringList paths = {m_files->home.makeFile(u"a/0"_s), m_files->home.makeFile(u"b/1"_s),
                                   m_files->home.makeFile(u"a/2"_s)};
        fileSystem::Batch batch({});
        batch.expectTrash(paths);
        QVERIFY(batch.moveToTrash(paths.at(0)));

        QVERIFY(QFile::rename(m_files->home.path(u"a"_s), m_files->home.path(u"kept"_s)));
        QVERIFY(QFile::link(m_files->home.path(u"kept"_s), m_files->home.path(u"a"_s)));
        for (const QString& path : paths.sliced(1)) {
            QVERIFY(batch.moveToTrash(path));
        }

        QVERIFY(recordOf(2).contains("/kept/2\n"));
        QCOMPARE(trashed(u"info"_s).size(), 3);
    }

    void anEntryIsActedOnWhateverWasFoundAfterIt()
    {
        fileSystem::Batch batch({});
        m_files->home.makeFile(u"other/name"_s, "other");

        const fileSystem::BatchEntry first = batch.find(m_files->from(0));
        const fileSystem::BatchEntry second = batch.find(m_files->from(1));
        QVERIFY(batch.move(m_files->home.path(u"other/name"_s), m_files->home.path(u"to/other"_s)));
        QVERIFY(batch.moveToTrash(first));
        QVERIFY(batch.move(second, m_files->to(1)));

        QCOMPARE(m_files->home.names(u"to"_s), QStringList({u"1"_s, u"other"_s}));
        QVERIFY(recordOf(0).contains(m_files->from(0).toUtf8() + '\n'));
    }

private:
    /// Of a path in the home.
    [[nodiscard]] QByteArray contentAt(const QString& relative) const
    {
        return contentOf(m_files->home.path(relative));
    }

    [[nodiscard]] QByteArray recordOf(int number) const
    {
        return contentAt(trash + u"/info/%1.trashinfo"_s.arg(number));
    }

    /// The entries of one of the trash's two folders.
    static QStringList trashed(const QString& folder)
    {
        return QDir(userFolders::applicationSupport().first() + u"/Trash/"_s + folder).entryList(QDir::Files);
    }

    const QString trash = u".local/share/Trash"_s;
    std::optional<NumberedFiles> m_files;
};

QTEST_GUILESS_MAIN(FileBatch_trash_test)

#include "FileBatch_trash_test.moc"
