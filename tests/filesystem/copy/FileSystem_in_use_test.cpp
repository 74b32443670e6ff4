// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileBatch.h"
#include "FileSystem.h"
#include "FileTree.h"
#include "Privileges.h"
#include "TemporaryHome.h"

#include <QFile>
#include <QTest>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <memory>
#include <thread>

using namespace lapsa;
using namespace lapsa::test;
using namespace Qt::StringLiterals;

/// Moves to another file system of what other programs are writing.
class FileSystem_in_use_test final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void whatIsOpenForWritingStaysUntilItIsNot_data();
    void whatIsOpenForWritingStaysUntilItIsNot();
    void aFileThatIsMappedStaysUntilItIsNot();
    void whatIsOpenForReadingIsMoved();
    void whoOpensItDuringTheCopyKeepsTheOriginal_data();
    void whoOpensItDuringTheCopyKeepsTheOriginal();
    void anotherNameWrittenWithItsTimePutBackIsSeen();
    void withinAFileSystemAnOpenFileIsMoved();

private:
    [[nodiscard]] int move(const QString& from, const QString& to) const
    {
        const Result<void> moved = fileSystem::Batch({}).move(from, to);
        return moved ? 0 : moved.error().code;
    }

    [[nodiscard]] QString there(const QString& name) const { return m_home->path(u"other/"_s + name); }

    std::unique_ptr<TemporaryHome> m_home;
    std::unique_ptr<PrivateMounts> m_mounts;
};

void FileSystem_in_use_test::initTestCase()
{
    if (!PrivateMounts::available()) {
        QSKIP("a second file system is mounted for these tests, which needs root");
    }
}

void FileSystem_in_use_test::init()
{
    m_home = std::make_unique<TemporaryHome>();
    m_mounts = std::make_unique<PrivateMounts>();
    m_mounts->mountTemporary(m_home->path(u"other"_s), "size=512m");
}

void FileSystem_in_use_test::cleanup()
{
    m_mounts.reset();
    m_home.reset();
}

void FileSystem_in_use_test::whatIsOpenForWritingStaysUntilItIsNot_data()
{
    QTest::addColumn<QString>("moved");
    QTest::newRow("a file") << u"folder/sub/file"_s;
    QTest::newRow("a folder that holds it") << u"folder"_s;
}

void FileSystem_in_use_test::whatIsOpenForWritingStaysUntilItIsNot()
{
    QFETCH(QString, moved);
    m_home->makeFile(u"folder/other"_s);
    const QString file = m_home->makeFile(u"folder/sub/file"_s);
    const auto before = treeAt(m_home->path(u"folder"_s));
    const int writer = ::open(file.toUtf8().constData(), O_WRONLY | O_APPEND);

    QCOMPARE(move(m_home->path(moved), there(u"copy"_s)), ETXTBSY);
    QCOMPARE(treeAt(m_home->path(u"folder"_s)), before);
    QVERIFY(rawNames(there({})).isEmpty());

    ::close(writer);
    QCOMPARE(move(m_home->path(moved), there(u"copy"_s)), 0);
    QVERIFY(!fileSystem::exists(m_home->path(moved)));
}

void FileSystem_in_use_test::aFileThatIsMappedStaysUntilItIsNot()
{
    constexpr std::size_t size = 1 << 20;
    const QString file = m_home->makeFile(u"file"_s, QByteArray(size, 'a'));
    const int writer = ::open(file.toUtf8().constData(), O_RDWR);
    auto* const mapped = static_cast<char*>(::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, writer, 0));
    ::close(writer);
    QVERIFY(mapped != MAP_FAILED);
    mapped[0] = 'b'; // from now on writing to this page tells no time

    const int error = move(file, there(u"copy"_s));
    mapped[1] = 'c';
    ::munmap(mapped, size);

    QCOMPARE(error, ETXTBSY);
    QCOMPARE(move(file, there(u"copy"_s)), 0);
    QFile copy(there(u"copy"_s));
    QVERIFY(copy.open(QIODevice::ReadOnly));
    QCOMPARE(copy.read(3), "bca");
}

void FileSystem_in_use_test::whatIsOpenForReadingIsMoved()
{
    const QString file = m_home->makeFile(u"file"_s);
    const int reader = ::open(file.toUtf8().constData(), O_RDONLY);

    QCOMPARE(move(file, there(u"copy"_s)), 0);

    ::close(reader);
}

void FileSystem_in_use_test::whoOpensItDuringTheCopyKeepsTheOriginal_data()
{
    QTest::addColumn<QString>("moved");
    QTest::newRow("a file") << u"folder/file"_s;
    QTest::newRow("a folder that holds it") << u"folder"_s;
}

void FileSystem_in_use_test::whoOpensItDuringTheCopyKeepsTheOriginal()
{
    QFETCH(QString, moved);
    const QByteArray content(64 << 20, 'a');
    const QByteArray disk = there({}).toUtf8();
    // The moment is known by the room that the copy takes on the other file system. Who comes too late tries again.
    bool inTime = false;
    for (int round = 0; round < 50 && !inTime; ++round) {
        const QString file = m_home->makeFile(u"folder/file"_s, content);
        std::atomic<bool> moving = true;
        std::thread writer([&] {
            struct statvfs status = {};
            do {
                ::statvfs(disk.constData(), &status);
            } while (moving && status.f_blocks - status.f_bfree < 1000);
            const int late = ::open(file.toUtf8().constData(), O_WRONLY);
            inTime = late >= 0 && moving && ::pwrite(late, "late", 4, 0) == 4;
            ::close(late);
        });

        const int error = move(m_home->path(moved), there(u"copy"_s));
        moving = false;
        writer.join();

        QVERIFY(!inTime || error == ETXTBSY);
        if (error == 0) {
            QVERIFY(fileSystem::Batch({}).remove(there(u"copy"_s)));
        }
    }
    QVERIFY(inTime);
    QFile original(m_home->path(u"folder/file"_s));
    QVERIFY(original.open(QIODevice::ReadOnly));
    QCOMPARE(original.read(4), "late");
    QVERIFY(rawNames(there({})).isEmpty());
}

void FileSystem_in_use_test::anotherNameWrittenWithItsTimePutBackIsSeen()
{
    const QString file = m_home->makeFile(u"file"_s, "before\n");
    const QByteArray path = file.toUtf8();
    QCOMPARE(::link(path.constData(), (path + " too").constData()), 0);
    struct stat status = {};
    QCOMPARE(::stat(path.constData(), &status), 0);
    fileSystem::Batch batch({});
    const fileSystem::BatchEntry entry = batch.find(file);
    // Between the look at the file and its copy.
    const int other = ::open((path + " too").constData(), O_WRONLY);
    QCOMPARE(::pwrite(other, "after!\n", 7, 0), 7);
    const timespec times[] = {status.st_atim, status.st_mtim};
    QCOMPARE(::futimens(other, times), 0);
    ::close(other);

    const Result<void> moved = batch.move(entry, there(u"copy"_s));

    QVERIFY(!moved);
    QCOMPARE(moved.error().code, ETXTBSY);
    QVERIFY(fileSystem::exists(file));
    QVERIFY(rawNames(there({})).isEmpty());
}

void FileSystem_in_use_test::withinAFileSystemAnOpenFileIsMoved()
{
    const QString file = m_home->makeFile(u"file"_s);
    const int writer = ::open(file.toUtf8().constData(), O_WRONLY | O_APPEND);

    QCOMPARE(move(file, m_home->path(u"moved"_s)), 0);

    QCOMPARE(::write(writer, "x", 1), 1);
    ::close(writer);
}

QTEST_GUILESS_MAIN(FileSystem_in_use_test)
#include "FileSystem_in_use_test.moc"
