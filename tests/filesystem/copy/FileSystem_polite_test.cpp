// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileBatch.h"
#include "FileSystem.h"
#include "FileTree.h"
#include "LoopDisk.h"
#include "Privileges.h"
#include "TemporaryHome.h"
#include "WorkObserver.h"

#include <QFile>
#include <QTest>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <vector>

using namespace lapsa;
using namespace lapsa::test;
using namespace Qt::StringLiterals;

namespace {

constexpr qint64 megabyte = 1 << 20;

// As ioprio_set(2) has them; <linux/ioprio.h> of some releases of Linux 6.1 cannot be read by a C++ compiler.
constexpr int whoProcess = 1;
constexpr int lowestBestEffort = (2 << 13) | 7;

int priority()
{
    return static_cast<int>(::syscall(SYS_ioprio_get, whoProcess, 0));
}

/// Notes the priority with which the work is done, step by step.
class PriorityWatcher final : public fileSystem::WorkObserver
{
public:
    void copied(std::int64_t /*bytes*/, std::int64_t /*total*/) override { seen.push_back(priority()); }

    void removed(std::int64_t /*entries*/) override { seen.push_back(priority()); }

    [[nodiscard]] bool stopRequested() const override { return false; }

    std::vector<int> seen;
};

/// How many pages of an open file are in the page cache.
qsizetype cachedPages(int file)
{
    const auto length = std::size_t(::lseek(file, 0, SEEK_END));
    const auto page = std::size_t(::sysconf(_SC_PAGESIZE));
    void* const mapped = ::mmap(nullptr, length, PROT_READ, MAP_SHARED, file, 0);
    std::vector<unsigned char> pages((length + page - 1) / page);
    if (mapped == MAP_FAILED || ::mincore(mapped, length, pages.data()) != 0) {
        return -1;
    }
    ::munmap(mapped, length);
    return std::ranges::count_if(pages, [](unsigned char flags) { return (flags & 1U) != 0; });
}

/// Opens a file for reading, with its content in the page cache or not.
int openedFile(const QString& path, bool cached)
{
    const int file = ::open(path.toUtf8().constData(), O_RDONLY | O_CLOEXEC);
    ::fsync(file);
    ::posix_fadvise(file, 0, 0, POSIX_FADV_DONTNEED);
    std::vector<char> buffer(megabyte);
    for (ssize_t got = 1; cached && got > 0;) {
        got = ::read(file, buffer.data(), buffer.size());
    }
    return file;
}

} // namespace

/// What others on the machine notice of moves to another file system.
class FileSystem_polite_test final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void whatCannotFitIsNotBegun_data();
    void whatCannotFitIsNotBegun();
    void holesAndSecondNamesTakeNoRoom();
    void aLongCopyYieldsToOthers_data();
    void aLongCopyYieldsToOthers();
    void aLongRemovalYieldsToOthers();
    void shortWorkIsDoneAsBefore();
    void aLongCopyLeavesThePageCacheAlone_data();
    void aLongCopyLeavesThePageCacheAlone();

private:
    [[nodiscard]] int move(const QString& name, fileSystem::WorkObserver* observer = nullptr)
    {
        fileSystem::Batch batch({});
        batch.observe(observer);
        batch.announceLongWork([&](std::int64_t) { m_announced = true; });
        const Result<void> moved = batch.move(m_home->path(name), there(u"copy"_s));
        return moved ? 0 : moved.error().code;
    }

    [[nodiscard]] QString there(const QString& name) const { return m_home->path(u"other/"_s + name); }

    void mountOther(const QByteArray& options)
    {
        m_mounts = std::make_unique<PrivateMounts>();
        m_mounts->mountTemporary(there({}), options);
    }

    std::unique_ptr<TemporaryHome> m_home;
    std::unique_ptr<PrivateMounts> m_mounts;
    bool m_announced = false;
};

void FileSystem_polite_test::initTestCase()
{
    if (!PrivateMounts::available()) {
        QSKIP("a second file system is mounted for these tests, which needs root");
    }
}

void FileSystem_polite_test::init()
{
    m_home = std::make_unique<TemporaryHome>();
    m_announced = false;
}

void FileSystem_polite_test::cleanup()
{
    m_mounts.reset();
    m_home.reset();
}

void FileSystem_polite_test::whatCannotFitIsNotBegun_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("a file") << u"folder/sub/large"_s;
    QTest::newRow("a folder") << u"folder"_s;
}

void FileSystem_polite_test::whatCannotFitIsNotBegun()
{
    QFETCH(const QString, name);
    mountOther("size=2m");
    m_home->makeFile(u"folder/small"_s);
    m_home->makeFile(u"folder/sub/large"_s, QByteArray(3 * megabyte, 'x'));
    const auto before = treeAt(m_home->path(name));

    struct : fileSystem::WorkObserver
    {
        void copied(std::int64_t bytes, std::int64_t /*total*/) override { most = std::max(most, bytes); }

        void removed(std::int64_t /*entries*/) override {}

        [[nodiscard]] bool stopRequested() const override { return false; }

        std::int64_t most = 0;
    } observer;

    QCOMPARE(move(name, &observer), ENOSPC);

    QVERIFY(!m_announced || name == u"folder"_s); // a folder is measured first, which may take long
    QCOMPARE(observer.most, 0);
    QCOMPARE(treeAt(m_home->path(name)), before);
    QVERIFY(rawNames(there({})).isEmpty());
}

void FileSystem_polite_test::holesAndSecondNamesTakeNoRoom()
{
    mountOther("size=2m");
    const QByteArray first = m_home->makeFile(u"folder/first"_s, QByteArray(megabyte, 'x')).toUtf8();
    for (const char* const name : {"second", "third"}) {
        QCOMPARE(::link(first.constData(), (m_home->path(u"folder/"_s).toUtf8() + name).constData()), 0);
    }
    QFile sparse(m_home->makeFile(u"folder/sparse"_s));
    QVERIFY(sparse.open(QIODevice::ReadWrite) && sparse.resize(100 * megabyte));
    sparse.close();

    QCOMPARE(move(u"folder"_s), 0);

    QVERIFY(!fileSystem::exists(m_home->path(u"folder"_s)));
}

void FileSystem_polite_test::aLongCopyYieldsToOthers_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("a large file") << u"large"_s;
    QTest::newRow("a folder with a large file") << u"folder"_s;
    QTest::newRow("a folder with many files") << u"many"_s;
}

void FileSystem_polite_test::aLongCopyYieldsToOthers()
{
    QFETCH(const QString, name);
    mountOther("size=256m");
    if (name == u"many"_s) {
        for (int i = 0; i < 2000; ++i) {
            m_home->makeFile(u"many/"_s + QString::number(i), {});
        }
    } else {
        m_home->makeFile(name == u"folder"_s ? u"folder/large"_s : name, QByteArray(40 * megabyte, 'x'));
    }
    const int before = priority();
    PriorityWatcher watcher;

    QCOMPARE(move(name, &watcher), 0);

    QVERIFY(!watcher.seen.empty());
    QCOMPARE(watcher.seen.back(), lowestBestEffort);
    QCOMPARE(priority(), before);
}

void FileSystem_polite_test::aLongRemovalYieldsToOthers()
{
    for (int i = 0; i < 1500; ++i) {
        m_home->makeFile(u"folder/"_s + QString::number(i), {});
    }
    const int before = priority();
    PriorityWatcher watcher;
    fileSystem::Batch batch({});
    batch.observe(&watcher);

    QVERIFY(batch.remove(m_home->path(u"folder"_s)));

    QCOMPARE(watcher.seen.front(), before);
    QCOMPARE(watcher.seen.back(), lowestBestEffort);
    QCOMPARE(priority(), before);
}

void FileSystem_polite_test::shortWorkIsDoneAsBefore()
{
    mountOther("size=64m");
    m_home->makeFile(u"folder/file"_s, QByteArray(megabyte, 'x'));
    const int before = priority();
    PriorityWatcher watcher;

    QCOMPARE(move(u"folder"_s, &watcher), 0);

    QVERIFY(std::ranges::all_of(watcher.seen, [&](int seen) { return seen == before; }));
}

void FileSystem_polite_test::aLongCopyLeavesThePageCacheAlone_data()
{
    QTest::addColumn<bool>("inFolder");
    QTest::addColumn<bool>("inUse");
    QTest::newRow("a file that nobody read") << false << false;
    QTest::newRow("a file in use") << false << true;
    QTest::newRow("in a folder, nobody read it") << true << false;
    QTest::newRow("in a folder, in use") << true << true;
}

void FileSystem_polite_test::aLongCopyLeavesThePageCacheAlone()
{
    QFETCH(const bool, inFolder);
    QFETCH(const bool, inUse);
    const auto disk = LoopDisk::mountedAt(there({}), u"ext4"_s);
    if (!disk) {
        QSKIP("needs a loop device");
    }
    const QString name = inFolder ? u"folder/file"_s : u"file"_s;
    m_home->makeFile(u"folder/other"_s, QByteArray(33 * megabyte, 'y'));
    const QString path = m_home->makeFile(name, QByteArray(40 * megabyte, 'x'));
    const int original = openedFile(path, inUse);
    const qsizetype before = cachedPages(original);
    if (before < 0 || (inUse ? before == 0 : before > 0)) {
        QSKIP("the file system of the temporary folder has no page cache of its own");
    }

    QCOMPARE(move(inFolder ? u"folder"_s : name), 0);

    // The system may take a few pages at any time.
    const qsizetype after = cachedPages(original);
    ::close(original);
    QVERIFY2(inUse ? after > before / 2 : after == 0, QByteArray::number(after));
    const int copy = ::open(there(inFolder ? u"copy/file"_s : u"copy"_s).toUtf8().constData(), O_RDONLY | O_CLOEXEC);
    const qsizetype ofTheCopy = cachedPages(copy);
    ::close(copy);
    QCOMPARE(ofTheCopy, 0);
}

QTEST_GUILESS_MAIN(FileSystem_polite_test)
#include "FileSystem_polite_test.moc"
