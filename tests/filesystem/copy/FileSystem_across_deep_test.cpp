// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileBatch.h"
#include "FileSystem.h"
#include "Privileges.h"
#include "TwoDisks.h"

#include <QFile>
#include <QTest>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <optional>

using namespace lapsa;
using namespace lapsa::test;
using namespace Qt::StringLiterals;

/// Moves of deep folders from one file system to another.
class FileSystem_across_deep_test final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase();

    void init() { m_disks.emplace(); }

    void cleanup() { m_disks.reset(); }

    void aFolderOfMoreLevelsThanDescriptorsArrives();
    void aDeepFolderTakesNoMoreMemoryThanItHasFolders();

private:
    std::optional<TwoDisks> m_disks;
};

namespace {

/// Of this process, in bytes.
qint64 addressSpace()
{
    QFile file(u"/proc/self/statm"_s);
    return file.open(QIODevice::ReadOnly) ? file.readAll().split(' ').first().toLongLong() * ::sysconf(_SC_PAGESIZE)
                                          : 0;
}

} // namespace

void FileSystem_across_deep_test::initTestCase()
{
    if (!PrivateMounts::available()) {
        QSKIP("a second file system is mounted for these tests, which needs root");
    }
}

void FileSystem_across_deep_test::aFolderOfMoreLevelsThanDescriptorsArrives()
{
    const QString from = m_disks->home.makeFolder(u"deep"_s);
    constexpr int levels = 1200;
    int folder = ::open(from.toUtf8().constData(), O_RDONLY | O_DIRECTORY);
    for (int level = 0; level < levels; ++level) {
        QCOMPARE(::mkdirat(folder, "below", 0755), 0);
        const int below = ::openat(folder, "below", O_RDONLY | O_DIRECTORY);
        ::close(folder);
        folder = below;
    }
    ::close(::openat(folder, "bottom", O_WRONLY | O_CREAT, 0644));
    ::close(folder);

    QCOMPARE(TwoDisks::move(from, m_disks->there(u"deep"_s)), 0);

    QVERIFY(!fileSystem::exists(from));
    folder = ::open(m_disks->there(u"deep"_s).toUtf8().constData(), O_RDONLY | O_DIRECTORY);
    for (int level = 0; level < levels; ++level) {
        const int below = ::openat(folder, "below", O_RDONLY | O_DIRECTORY);
        ::close(folder);
        folder = below;
    }
    QCOMPARE(::faccessat(folder, "bottom", F_OK, 0), 0);
    ::close(folder);
    QVERIFY(fileSystem::Batch({}).remove(m_disks->there(u"deep"_s)));
}

void FileSystem_across_deep_test::aDeepFolderTakesNoMoreMemoryThanItHasFolders()
{
    const QString from = m_disks->home.makeFolder(u"deep"_s);
    constexpr int levels = 2000;
    const QByteArray name(255, 'n');
    int folder = ::open(from.toUtf8().constData(), O_RDONLY | O_DIRECTORY);
    for (int level = 0; level < levels; ++level) {
        QCOMPARE(::mkdirat(folder, name.constData(), 0755), 0);
        const int below = ::openat(folder, name.constData(), O_RDONLY | O_DIRECTORY);
        ::close(folder);
        folder = below;
    }
    ::close(::openat(folder, "first", O_WRONLY | O_CREAT, 0644));
    QCOMPARE(::linkat(folder, "first", folder, "second", 0), 0);
    ::close(folder);

    const int error = asUser(0, [&] {
        // Whole paths would take 512 MB.
        const rlim_t room = rlim_t(addressSpace()) + (rlim_t{128} << 20);
        const rlimit limit{.rlim_cur = room, .rlim_max = room};
        return ::setrlimit(RLIMIT_AS, &limit) == 0 ? TwoDisks::move(from, m_disks->there(u"deep"_s)) : 255;
    });

    QCOMPARE(error, 0);
    QVERIFY(!fileSystem::exists(from));
    folder = ::open(m_disks->there(u"deep"_s).toUtf8().constData(), O_RDONLY | O_DIRECTORY);
    for (int level = 0; level < levels; ++level) {
        const int below = ::openat(folder, name.constData(), O_RDONLY | O_DIRECTORY);
        ::close(folder);
        folder = below;
    }
    struct stat first = {};
    struct stat second = {};
    QCOMPARE(::fstatat(folder, "first", &first, 0), 0);
    QCOMPARE(::fstatat(folder, "second", &second, 0), 0);
    QCOMPARE(first.st_ino, second.st_ino);
    ::close(folder);
    QVERIFY(fileSystem::Batch({}).remove(m_disks->there(u"deep"_s)));
}

QTEST_GUILESS_MAIN(FileSystem_across_deep_test)
#include "FileSystem_across_deep_test.moc"
