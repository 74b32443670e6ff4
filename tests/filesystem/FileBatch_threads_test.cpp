// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileBatch.h"
#include "KnownPaths.h"
#include "Privileges.h"
#include "TemporaryHome.h"

#include <QTest>

#include <sys/stat.h>

#include <atomic>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

using namespace lapsa;
using namespace lapsa::test;
using namespace Qt::StringLiterals;

/// Several batches at the same time, each on a thread of its own.
class FileBatch_threads_test final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase() { std::ignore = PrivateMounts::available(); } // before the first temporary folder

    void init();
    void cleanup();

    void equalNamesGoIntoOneTrash();
    void foldersAreMovedToOneOtherFileSystem();
    void foldersAreRemoved();

private:
    static constexpr int threads = 4;
    static constexpr int entries = 25;

    /// Calls `work` with each thread's batch and every number of its entries. Returns how often it succeeded.
    int together(const std::function<Result<void>(fileSystem::Batch&, const QString&)>& work) const;

    void makeFolders() const;

    std::unique_ptr<TemporaryHome> m_home;
    std::unique_ptr<PrivateMounts> m_mounts;
};

void FileBatch_threads_test::init()
{
    m_home = std::make_unique<TemporaryHome>();
}

void FileBatch_threads_test::cleanup()
{
    m_mounts.reset();
    m_home.reset();
}

int FileBatch_threads_test::together(const std::function<Result<void>(fileSystem::Batch&, const QString&)>& work) const
{
    // Others may write there, so that the paths to its entries are checked.
    std::ignore = ::chmod(m_home->makeFolder(u"in"_s).toUtf8().constData(), 0777);
    const fileSystem::KnownPaths known(m_home->path(u"known"_s));
    std::atomic<int> successes = 0;
    std::vector<std::thread> running;
    for (int thread = 0; thread < threads; ++thread) {
        running.emplace_back([&, thread] {
            fileSystem::KnownPaths own = known;
            own.rememberFolder(m_home->path(u"in"_s));
            fileSystem::Batch batch({.folder = m_home->path(u"protected"_s), .knownPaths = &own});
            for (int entry = 0; entry < entries; ++entry) {
                successes += work(batch, u"in/%1/%2/same"_s.arg(thread).arg(entry)) ? 1 : 0;
            }
        });
    }
    for (std::thread& thread : running) {
        thread.join();
    }
    return successes;
}

void FileBatch_threads_test::makeFolders() const
{
    for (int thread = 0; thread < threads; ++thread) {
        for (int entry = 0; entry < entries; ++entry) {
            m_home->makeFile(u"in/%1/%2/same/sub/file"_s.arg(thread).arg(entry));
        }
    }
}

void FileBatch_threads_test::equalNamesGoIntoOneTrash()
{
    const int successes = together([&](fileSystem::Batch& batch, const QString& path) {
        return batch.moveToTrash(m_home->makeFile(path, path.toUtf8()));
    });

    QCOMPARE(successes, threads * entries);
    QCOMPARE(m_home->names(u".local/share/Trash/files"_s).size(), threads * entries);
    QCOMPARE(m_home->names(u".local/share/Trash/info"_s).size(), threads * entries);
}

void FileBatch_threads_test::foldersAreMovedToOneOtherFileSystem()
{
    if (!PrivateMounts::available()) {
        QSKIP("a second file system is mounted for this test, which needs root");
    }
    m_mounts = std::make_unique<PrivateMounts>();
    m_mounts->mountTemporary(m_home->path(u"other"_s));
    makeFolders();

    const int successes = together([&](fileSystem::Batch& batch, const QString& path) {
        return batch.move(m_home->path(path), m_home->path(u"other/"_s + QString(path).replace(u'/', u'-')));
    });

    QCOMPARE(successes, threads * entries);
    QCOMPARE(m_home->names(u"other"_s).size(), threads * entries);
}

void FileBatch_threads_test::foldersAreRemoved()
{
    makeFolders();

    const int successes =
        together([&](fileSystem::Batch& batch, const QString& path) { return batch.remove(m_home->path(path)); });

    QCOMPARE(successes, threads * entries);
    QVERIFY(m_home->names(u"in/0/0"_s).isEmpty());
}

QTEST_GUILESS_MAIN(FileBatch_threads_test)
#include "FileBatch_threads_test.moc"
