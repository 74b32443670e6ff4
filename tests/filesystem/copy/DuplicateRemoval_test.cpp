// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AtPath.h"
#include "DuplicateRemoval.h"
#include "FileBatch.h"
#include "FileTree.h"
#include "TwoDisks.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

using namespace lapsa;
using namespace lapsa::test;
using namespace Qt::StringLiterals;
using fileSystem::Duplicate;
using fileSystem::MarkIs;

namespace {

constexpr const char* mark = "user.lapsa.moving";

struct stat statusOf(const QString& path)
{
    struct stat status = {};
    ::lstat(path.toUtf8().constData(), &status);
    return status;
}

void setMark(const QString& path, const QByteArray& value)
{
    QCOMPARE(::setxattr(path.toUtf8().constData(), mark, value.constData(), std::size_t(value.size()), 0), 0);
}

/// As a copy that was complete when the process ended.
void markAsCopy(const QString& path)
{
    setMark(path, QByteArray::number(qulonglong{statusOf(path).st_ino}));
}

void makeEqualTimes(const QString& path)
{
    const timespec time{.tv_sec = 1'500'000'000, .tv_nsec = 42};
    const timespec times[] = {time, time};
    ::utimensat(AT_FDCWD, path.toUtf8().constData(), times, AT_SYMLINK_NOFOLLOW);
}

void make(const QString& path, const QByteArray& content)
{
    makeRawFile(path.toUtf8(), content);
    makeEqualTimes(path);
}

Duplicate removed(const QString& copy, const QString& original)
{
    const Result<AtPath> place = openParentOf(original);
    const auto status = statAt(place.value().folder.get(), place.value().name.constData(), STATX_BASIC_STATS);
    return fileSystem::removeDuplicate(copy, original, identityOf(status.value()), MarkIs::OnCopy);
}

} // namespace

class DuplicateRemoval_test final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase()
    {
        if (!PrivateMounts::available()) {
            QSKIP("needs root");
        }
    }

    void aMarkedCopyGoesWhileItsOriginalStands()
    {
        TwoDisks disks;
        const QString copy = disks.home.path(u"copy"_s);
        make(disks.there(u"file"_s), "content");
        make(copy, "content");
        markAsCopy(copy);

        QCOMPARE(removed(copy, disks.there(u"file"_s)), Duplicate::Gone);

        QVERIFY(!QFile::exists(copy));
        QCOMPARE(contentOf(disks.there(u"file"_s)), "content");
    }

    void nothingElseGoes_data()
    {
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<Duplicate>("expected");

        QTest::newRow("no mark") << QByteArray() << QByteArray("content") << Duplicate::NotMarked;
        QTest::newRow("the mark of another file") << QByteArray("1") << QByteArray("content") << Duplicate::NotMarked;
        QTest::newRow("a huge mark") << QByteArray(3000, '7') << QByteArray("content") << Duplicate::NotMarked;
        QTest::newRow("no number") << QByteArray("/etc/passwd\n") << QByteArray("content") << Duplicate::NotMarked;
        QTest::newRow("one other byte") << QByteArray("own") << QByteArray("Content") << Duplicate::Differs;
        QTest::newRow("another length") << QByteArray("own") << QByteArray("content.") << Duplicate::Differs;
    }

    void nothingElseGoes()
    {
        QFETCH(const QByteArray, value);
        QFETCH(const QByteArray, content);
        QFETCH(const Duplicate, expected);
        TwoDisks disks;
        const QString copy = disks.home.path(u"copy"_s);
        make(disks.there(u"file"_s), "content");
        make(copy, content);
        if (value == "own") {
            markAsCopy(copy);
        } else if (!value.isEmpty()) {
            setMark(copy, value);
        }

        QCOMPARE(removed(copy, disks.there(u"file"_s)), expected);

        QCOMPARE(contentOf(copy), content);
    }

    void anOriginalThatIsALinkToTheCopyIsNone()
    {
        TwoDisks disks;
        const QString copy = disks.home.path(u"copy"_s);
        make(copy, "content");
        markAsCopy(copy);
        const QString link = disks.there(u"file"_s);
        QCOMPARE(::symlink(copy.toUtf8().constData(), link.toUtf8().constData()), 0);

        QCOMPARE(removed(copy, link), Duplicate::Differs);

        QCOMPARE(contentOf(copy), "content");
    }

    void anotherPathToTheCopyIsNoOriginal()
    {
        TwoDisks disks;
        const QString folder = disks.home.path(u"folder"_s);
        QDir().mkpath(folder);
        make(folder + u"/copy"_s, "content");
        markAsCopy(folder + u"/copy"_s);
        QCOMPARE(::link((folder + u"/copy"_s).toUtf8().constData(), (folder + u"/other"_s).toUtf8().constData()), 0);
        const QString alias = disks.there(u"alias"_s);
        QCOMPARE(::symlink(folder.toUtf8().constData(), alias.toUtf8().constData()), 0);

        QCOMPARE(removed(folder + u"/copy"_s, alias + u"/copy"_s), Duplicate::Unknown);

        QCOMPARE(contentOf(folder + u"/copy"_s), "content");
    }

    void ofAFolderOnlyTheSameGoes()
    {
        TwoDisks disks;
        const QString copy = disks.home.path(u"copy"_s);
        const QString original = disks.there(u"folder"_s);
        for (const QString& folder : {copy, original}) {
            QDir().mkpath(folder + u"/sub"_s);
            make(folder + u"/same"_s, "same");
            make(folder + u"/sub/same"_s, "same as well");
        }
        QDir().mkpath(copy + u"/empty"_s);
        make(copy + u"/sub/gone"_s, "only here");
        make(copy + u"/changed"_s, "before");
        make(original + u"/changed"_s, "after!");
        markAsCopy(copy);

        QCOMPARE(removed(copy, original), Duplicate::Differs);

        QVERIFY(!QFile::exists(copy + u"/same"_s));
        QVERIFY(!QFile::exists(copy + u"/sub/same"_s));
        QCOMPARE(contentOf(copy + u"/sub/gone"_s), "only here");
        QCOMPARE(contentOf(copy + u"/changed"_s), "before");
        QVERIFY(QFile::exists(copy + u"/empty"_s));
        QCOMPARE(contentOf(original + u"/same"_s), "same");
    }

    void aFolderThatALinkLeadsToIsNoTwin()
    {
        TwoDisks disks;
        const QString copy = disks.home.path(u"copy"_s);
        const QString original = disks.there(u"folder"_s);
        QDir().mkpath(copy + u"/sub"_s);
        QDir().mkpath(original);
        make(copy + u"/sub/file"_s, "the last one");
        QCOMPARE(::symlink((copy + u"/sub"_s).toUtf8().constData(), (original + u"/sub"_s).toUtf8().constData()), 0);
        markAsCopy(copy);

        std::ignore = removed(copy, original);

        QCOMPARE(contentOf(copy + u"/sub/file"_s), "the last one");
    }

    void aCopyKeepsItsMarkUntilItsOriginalIsGoneOnTheDiskToo()
    {
        TwoDisks disks;
        const QString file = disks.home.path(u"file"_s);
        const QString folder = disks.home.path(u"folder"_s);
        make(disks.there(u"file"_s), "content");
        QDir().mkpath(disks.there(u"folder/sub"_s));

        fileSystem::Batch batch({});
        QVERIFY(batch.move(disks.there(u"file"_s), file));
        QVERIFY(batch.move(disks.there(u"folder"_s), folder));
        QVERIFY(fileSystem::isUnfinished(file));
        QVERIFY(fileSystem::isUnfinished(folder));

        batch.settleCopies();
        QVERIFY(!fileSystem::isUnfinished(file));
        QVERIFY(!fileSystem::isUnfinished(folder));
    }

    void aNewCopyOfTheSameNameKeepsItsMark()
    {
        TwoDisks disks;
        const QString copy = disks.home.path(u"copy"_s);
        make(disks.there(u"file"_s), "content");
        {
            fileSystem::Batch batch({});
            QVERIFY(batch.move(disks.there(u"file"_s), copy));
            QVERIFY(QFile::rename(copy, disks.home.path(u"elsewhere"_s)));
            make(copy, "another");
            markAsCopy(copy);
        }

        QVERIFY(fileSystem::isUnfinished(copy));
    }

    void aMoveLeavesNoMark()
    {
        TwoDisks disks;
        make(disks.there(u"file"_s), "content");
        setMark(disks.there(u"file"_s), "planted");
        const QString to = disks.home.path(u"file"_s);

        QCOMPARE(TwoDisks::move(disks.there(u"file"_s), to), 0);

        QVERIFY(!fileSystem::isUnfinished(to));
        QCOMPARE(::getxattr(to.toUtf8().constData(), mark, nullptr, 0), -1);
        QCOMPARE(errno, ENODATA);
    }
};

QTEST_GUILESS_MAIN(DuplicateRemoval_test)
#include "DuplicateRemoval_test.moc"
