// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileBatch.h"
#include "FileTree.h"
#include "NumberedFiles.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <cerrno>
#include <optional>
#include <tuple>

using namespace lapsa;
using namespace lapsa::test;
using namespace Qt::StringLiterals;

/// What is shared between neighbours, while somebody else changes the folders. What one operation does to one entry is
/// tested with the functions for one.
class FileBatch_test final : public QObject
{
    Q_OBJECT

private slots:

    void init() { m_files.emplace(); }

    void neighboursAreMovedEachToItsPlace()
    {
        fileSystem::Batch batch({});

        for (int number = 0; number < NumberedFiles::count; ++number) {
            QVERIFY(batch.move(m_files->from(number), m_files->to(number)));
        }

        QCOMPARE(m_files->home.names(u"from"_s), QStringList());
        for (int number = 0; number < NumberedFiles::count; ++number) {
            QCOMPARE(contentAt(u"to/%1"_s.arg(number)), QByteArray::number(number));
        }
    }

    void neighboursAreRemoved()
    {
        fileSystem::Batch batch({});

        for (int number = 0; number < NumberedFiles::count; ++number) {
            QVERIFY(batch.remove(m_files->from(number)));
        }

        QCOMPARE(m_files->home.names(u"from"_s), QStringList());
    }

    void aFolderPutIntoThePlaceOfAnotherIsSeen()
    {
        fileSystem::Batch batch({});
        QVERIFY(batch.move(m_files->from(0), m_files->to(0)));

        QVERIFY(QDir().rename(m_files->home.path(u"from"_s), m_files->home.path(u"kept"_s)));
        m_files->home.makeFile(u"from/new"_s);
        QVERIFY(batch.move(m_files->home.path(u"from/new"_s), m_files->home.path(u"to/new"_s)));

        QCOMPARE(m_files->home.names(u"from"_s), QStringList());
        QCOMPARE(m_files->home.names(u"to"_s), QStringList({u"0"_s, u"new"_s}));
    }

    void aFolderThatWasRenamedIsNotFollowedForLong()
    {
        fileSystem::Batch batch({});
        QVERIFY(batch.move(m_files->from(0), m_files->to(0)));

        QVERIFY(QDir().rename(m_files->home.path(u"from"_s), m_files->home.path(u"kept"_s)));
        for (int number = 1; number < NumberedFiles::count; ++number) {
            std::ignore = batch.move(m_files->from(number), m_files->to(number));
        }

        QVERIFY(m_files->home.names(u"kept"_s).size() >= NumberedFiles::count - 32);
    }

    void aDestinationThatWasRemovedAndMadeAnewIsFound()
    {
        fileSystem::Batch batch({});
        QVERIFY(batch.move(m_files->from(0), m_files->to(0)));

        QVERIFY(QDir(m_files->home.path(u"to"_s)).removeRecursively());
        m_files->home.makeFolder(u"to"_s);
        QVERIFY(batch.move(m_files->from(1), m_files->to(1)));

        QCOMPARE(m_files->home.names(u"to"_s), QStringList({u"1"_s}));
    }

    void whatIsNotThereIsNotFound()
    {
        fileSystem::Batch batch({});
        QVERIFY(QFile::link(u"/nowhere"_s, m_files->home.path(u"from/link"_s)));

        QVERIFY(batch.find(m_files->from(0)).exists());
        const fileSystem::BatchEntry missing = batch.find(m_files->home.path(u"from/missing"_s));
        QVERIFY(!missing.exists());
        QVERIFY(!missing.info());
        QCOMPARE(codeOf(batch.move(missing, m_files->to(0))), ENOENT);
        const fileSystem::BatchEntry inMissing = batch.find(m_files->home.path(u"missing/0"_s));
        QVERIFY(!inMissing.exists());
        QCOMPARE(codeOf(batch.remove(inMissing)), ENOENT);
        const fileSystem::BatchEntry relative = batch.find(u"relative"_s);
        QVERIFY(!relative.exists());
        QCOMPARE(codeOf(batch.remove(relative)), EINVAL);
        const fileSystem::BatchEntry link = batch.find(m_files->home.path(u"from/link"_s));
        QVERIFY(!link.exists());
        QVERIFY(batch.remove(link)); // the link itself is there

        QCOMPARE(m_files->home.names(u"from"_s).size(), NumberedFiles::count);
    }

    void aFailedMoveCanBeTriedUnderAnotherName()
    {
        fileSystem::Batch batch({});
        m_files->home.makeFile(u"to/0"_s, "somebody else's");

        const fileSystem::BatchEntry entry = batch.find(m_files->from(0));
        QCOMPARE(codeOf(batch.move(entry, m_files->to(0))), EEXIST);
        QVERIFY(batch.move(entry, m_files->to(1)));

        QCOMPARE(contentAt(u"to/0"_s), QByteArray("somebody else's"));
        QCOMPARE(contentAt(u"to/1"_s), QByteArray("0"));
    }

    void anEntryIsActedOnInTheFolderThatItWasFoundIn()
    {
        fileSystem::Batch batch({});

        const fileSystem::BatchEntry entry = batch.find(m_files->from(0));
        QVERIFY(QDir().rename(m_files->home.path(u"from"_s), m_files->home.path(u"kept"_s)));
        m_files->home.makeFile(u"from/0"_s, "somebody else's");
        QVERIFY(batch.remove(entry));

        QCOMPARE(contentAt(u"from/0"_s), QByteArray("somebody else's"));
        QCOMPARE(m_files->home.names(u"kept"_s).size(), NumberedFiles::count - 1);
    }

private:
    /// Of a path in the home.
    [[nodiscard]] QByteArray contentAt(const QString& relative) const
    {
        return contentOf(m_files->home.path(relative));
    }

    static int codeOf(const Result<void>& result) { return result ? 0 : result.error().code; }

    std::optional<NumberedFiles> m_files;
};

QTEST_GUILESS_MAIN(FileBatch_test)

#include "FileBatch_test.moc"
