// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileBatch.h"
#include "TemporaryHome.h"
#include "UserFolders.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <tuple>

using namespace Qt::StringLiterals;

namespace lapsa::test {

/// What is shared between neighbours, while somebody else changes the folders. What one operation does to one entry is
/// tested with the functions for one.
class FileBatchTest final : public QObject
{
    Q_OBJECT

private slots:

    void init()
    {
        m_home.emplace();
        m_home->makeFolder(u"to"_s);
        for (int number = 0; number < count; ++number) {
            m_home->makeFile(u"from/%1"_s.arg(number), QByteArray::number(number));
        }
    }

    void neighboursAreMovedEachToItsPlace()
    {
        fileSystem::Batch batch({});

        for (int number = 0; number < count; ++number) {
            QVERIFY(batch.move(from(number), to(number)));
        }

        QCOMPARE(m_home->names(u"from"_s), QStringList());
        for (int number = 0; number < count; ++number) {
            QCOMPARE(contentOf(u"to/%1"_s.arg(number)), QByteArray::number(number));
        }
    }

    void neighboursAreRemoved()
    {
        fileSystem::Batch batch({});

        for (int number = 0; number < count; ++number) {
            QVERIFY(batch.remove(from(number)));
        }

        QCOMPARE(m_home->names(u"from"_s), QStringList());
    }

    void neighboursGoToTheTrash()
    {
        fileSystem::Batch batch({});

        for (int number = 0; number < count; ++number) {
            QVERIFY(batch.moveToTrash(from(number)));
        }

        QCOMPARE(m_home->names(u"from"_s), QStringList());
        QCOMPARE(trashed(u"files"_s).size(), count);
        QCOMPARE(trashed(u"info"_s).size(), count);
    }

    void aFolderPutIntoThePlaceOfAnotherIsSeen()
    {
        fileSystem::Batch batch({});
        QVERIFY(batch.move(from(0), to(0)));

        QVERIFY(QDir().rename(m_home->path(u"from"_s), m_home->path(u"kept"_s)));
        m_home->makeFile(u"from/new"_s);
        QVERIFY(batch.move(m_home->path(u"from/new"_s), m_home->path(u"to/new"_s)));

        QCOMPARE(m_home->names(u"from"_s), QStringList());
        QCOMPARE(m_home->names(u"to"_s), QStringList({u"0"_s, u"new"_s}));
    }

    void aFolderThatWasRenamedIsNotFollowedForLong()
    {
        fileSystem::Batch batch({});
        QVERIFY(batch.move(from(0), to(0)));

        QVERIFY(QDir().rename(m_home->path(u"from"_s), m_home->path(u"kept"_s)));
        for (int number = 1; number < count; ++number) {
            std::ignore = batch.move(from(number), to(number));
        }

        QVERIFY(m_home->names(u"kept"_s).size() >= count - 32);
    }

    void aDestinationThatWasRemovedAndMadeAnewIsFound()
    {
        fileSystem::Batch batch({});
        QVERIFY(batch.move(from(0), to(0)));

        QVERIFY(QDir(m_home->path(u"to"_s)).removeRecursively());
        m_home->makeFolder(u"to"_s);
        QVERIFY(batch.move(from(1), to(1)));

        QCOMPARE(m_home->names(u"to"_s), QStringList({u"1"_s}));
    }

    void aTrashThatWasRemovedIsMadeAnew()
    {
        fileSystem::Batch batch({});
        QVERIFY(batch.moveToTrash(from(0)));

        QVERIFY(QDir(userFolders::applicationSupport().first() + u"/Trash"_s).removeRecursively());
        QVERIFY(batch.moveToTrash(from(1)));

        QCOMPARE(trashed(u"files"_s), QStringList({u"1"_s}));
    }

    void whatIsExpectedInTheTrashGetsThereWithItsRecord()
    {
        fileSystem::Batch batch({});
        batch.expectTrash(allPaths());

        for (const QString& path : allPaths()) {
            QVERIFY(batch.moveToTrash(path));
        }

        QCOMPARE(trashed(u"files"_s).size(), count);
        QCOMPARE(trashed(u"info"_s).size(), count);
        for (int number = 0; number < count; ++number) {
            QCOMPARE(contentOf(trash + u"/files/%1"_s.arg(number)), QByteArray::number(number));
            QVERIFY(recordOf(number).contains("\nPath=" + from(number).toUtf8() + "\nDeletionDate=2"));
        }
    }

    void equalNamesThatAreExpectedGetEachARecordOfTheirOwn()
    {
        const QStringList paths = {m_home->makeFile(u"one/name.txt"_s, "1"), m_home->makeFile(u"two/name.txt"_s, "2"),
                                   m_home->makeFile(u"three/name.txt"_s, "3")};
        fileSystem::Batch batch({});
        batch.expectTrash(paths);

        for (const QString& path : paths) {
            QVERIFY(batch.moveToTrash(path));
        }

        QCOMPARE(trashed(u"files"_s), QStringList({u"name.2.txt"_s, u"name.3.txt"_s, u"name.txt"_s}));
        QCOMPARE(contentOf(trash + u"/files/name.2.txt"_s), QByteArray("2"));
        QVERIFY(contentOf(trash + u"/info/name.2.txt.trashinfo"_s).contains("/two/name.txt\n"));
    }

    void whatIsExpectedAndNotTakenLeavesNoRecord()
    {
        {
            fileSystem::Batch batch({});
            batch.expectTrash(allPaths());
            QVERIFY(batch.moveToTrash(from(0)));
            QVERIFY(trashed(u"info"_s).size() > 1); // they are made ahead
            // Neither those that are passed over nor those that do not come any more.
            QVERIFY(batch.moveToTrash(from(5)));
        }

        QCOMPARE(trashed(u"info"_s), QStringList({u"0.trashinfo"_s, u"5.trashinfo"_s}));
        QCOMPARE(m_home->names(u"from"_s).size(), count - 2);
    }

    void whatComesInAnotherOrderThanExpectedGetsThereAsWell()
    {
        QStringList expected = allPaths();
        std::ranges::reverse(expected);
        {
            fileSystem::Batch batch({});
            batch.expectTrash(expected);
            for (const QString& path : allPaths()) {
                QVERIFY(batch.moveToTrash(path));
            }
        }

        QCOMPARE(trashed(u"files"_s).size(), count);
        QCOMPARE(trashed(u"info"_s).size(), count);
    }

    void aNameThatSomebodyTakesAfterItsRecordWasMadeIsNotOverwritten()
    {
        fileSystem::Batch batch({});
        batch.expectTrash(allPaths());
        QVERIFY(batch.moveToTrash(from(0)));

        m_home->makeFile(trash + u"/files/1"_s, "somebody else's");
        QVERIFY(batch.moveToTrash(from(1)));

        QCOMPARE(contentOf(trash + u"/files/1"_s), QByteArray("somebody else's"));
        QCOMPARE(contentOf(trash + u"/files/1.2"_s), QByteArray("1"));
        QVERIFY(contentOf(trash + u"/info/1.2.trashinfo"_s).contains(from(1).toUtf8() + '\n'));
    }

    void aFolderThatGetsAnotherNameMeanwhileIsNotRecordedUnderTheOldOne()
    {
        // By turns, so that each folder is looked up anew.
        const QStringList paths = {m_home->makeFile(u"a/0"_s), m_home->makeFile(u"b/1"_s), m_home->makeFile(u"a/2"_s)};
        fileSystem::Batch batch({});
        batch.expectTrash(paths);
        QVERIFY(batch.moveToTrash(paths.at(0)));

        QVERIFY(QFile::rename(m_home->path(u"a"_s), m_home->path(u"kept"_s)));
        QVERIFY(QFile::link(m_home->path(u"kept"_s), m_home->path(u"a"_s)));
        for (const QString& path : paths.sliced(1)) {
            QVERIFY(batch.moveToTrash(path));
        }

        QVERIFY(recordOf(2).contains("/kept/2\n"));
        QCOMPARE(trashed(u"info"_s).size(), 3);
    }

    void whatIsNotThereIsNotFound()
    {
        fileSystem::Batch batch({});
        QVERIFY(QFile::link(u"/nowhere"_s, m_home->path(u"from/link"_s)));

        QVERIFY(batch.find(from(0)).exists());
        const fileSystem::BatchEntry missing = batch.find(m_home->path(u"from/missing"_s));
        QVERIFY(!missing.exists());
        QVERIFY(!missing.info());
        QCOMPARE(codeOf(batch.move(missing, to(0))), ENOENT);
        const fileSystem::BatchEntry inMissing = batch.find(m_home->path(u"missing/0"_s));
        QVERIFY(!inMissing.exists());
        QCOMPARE(codeOf(batch.remove(inMissing)), ENOENT);
        const fileSystem::BatchEntry relative = batch.find(u"relative"_s);
        QVERIFY(!relative.exists());
        QCOMPARE(codeOf(batch.remove(relative)), EINVAL);
        const fileSystem::BatchEntry link = batch.find(m_home->path(u"from/link"_s));
        QVERIFY(!link.exists());
        QVERIFY(batch.remove(link)); // the link itself is there

        QCOMPARE(m_home->names(u"from"_s).size(), count);
    }

    void aFailedMoveCanBeTriedUnderAnotherName()
    {
        fileSystem::Batch batch({});
        m_home->makeFile(u"to/0"_s, "somebody else's");

        const fileSystem::BatchEntry entry = batch.find(from(0));
        QCOMPARE(codeOf(batch.move(entry, to(0))), EEXIST);
        QVERIFY(batch.move(entry, to(1)));

        QCOMPARE(contentOf(u"to/0"_s), QByteArray("somebody else's"));
        QCOMPARE(contentOf(u"to/1"_s), QByteArray("0"));
    }

    void anEntryIsActedOnWhateverWasFoundAfterIt()
    {
        fileSystem::Batch batch({});
        m_home->makeFile(u"other/name"_s, "other");

        const fileSystem::BatchEntry first = batch.find(from(0));
        const fileSystem::BatchEntry second = batch.find(from(1));
        QVERIFY(batch.move(m_home->path(u"other/name"_s), m_home->path(u"to/other"_s)));
        QVERIFY(batch.moveToTrash(first));
        QVERIFY(batch.move(second, to(1)));

        QCOMPARE(m_home->names(u"to"_s), QStringList({u"1"_s, u"other"_s}));
        QVERIFY(recordOf(0).contains(from(0).toUtf8() + '\n'));
    }

    void anEntryIsActedOnInTheFolderThatItWasFoundIn()
    {
        fileSystem::Batch batch({});

        const fileSystem::BatchEntry entry = batch.find(from(0));
        QVERIFY(QDir().rename(m_home->path(u"from"_s), m_home->path(u"kept"_s)));
        m_home->makeFile(u"from/0"_s, "somebody else's");
        QVERIFY(batch.remove(entry));

        QCOMPARE(contentOf(u"from/0"_s), QByteArray("somebody else's"));
        QCOMPARE(m_home->names(u"kept"_s).size(), count - 1);
    }

private:
    /// More than share one opening of a folder, several times.
    static constexpr int count = 100;

    [[nodiscard]] QString from(int number) const { return m_home->path(u"from/%1"_s.arg(number)); }

    [[nodiscard]] QString to(int number) const { return m_home->path(u"to/%1"_s.arg(number)); }

    [[nodiscard]] QStringList allPaths() const
    {
        QStringList paths;
        for (int number = 0; number < count; ++number) {
            paths.push_back(from(number));
        }
        return paths;
    }

    [[nodiscard]] QByteArray recordOf(int number) const
    {
        return contentOf(trash + u"/info/%1.trashinfo"_s.arg(number));
    }

    [[nodiscard]] QByteArray contentOf(const QString& relative) const
    {
        QFile file(m_home->path(relative));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
    }

    /// The entries of one of the trash's two folders.
    static QStringList trashed(const QString& folder)
    {
        return QDir(userFolders::applicationSupport().first() + u"/Trash/"_s + folder).entryList(QDir::Files);
    }

    static int codeOf(const Result<void>& result) { return result ? 0 : result.error().code; }

    const QString trash = u".local/share/Trash"_s;
    std::optional<TemporaryHome> m_home;
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::FileBatchTest)

#include "FileBatch_test.moc"
