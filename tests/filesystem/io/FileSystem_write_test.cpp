// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileSystem.h"
#include "FileTree.h"
#include "Privileges.h"
#include "TemporaryHome.h"

#include <QFile>
#include <QTest>

#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <cerrno>
#include <memory>
#include <tuple>

using namespace lapsa;
using namespace lapsa::test;
using namespace Qt::StringLiterals;

/// Replacing the content of a file.
class FileSystem_write_test final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase() { std::ignore = PrivateMounts::available(); } // before the first temporary folder

    void init() { m_home = std::make_unique<TemporaryHome>(); }

    void cleanup() { m_home.reset(); }

    void theNewContentIsThereForItsOwnerOnly_data();
    void theNewContentIsThereForItsOwnerOnly();
    void aLinkIsWrittenThrough_data();
    void aLinkIsWrittenThrough();
    void aTemporaryFileLeftBehindIsReplaced();
    void theUmaskTakesNothingAway();
    void whatIsNoFileIsLeftAlone_data();
    void whatIsNoFileIsLeftAlone();
    void aLinkOfSomebodyElseIsNotWrittenThrough();
    void aFailureLeavesTheOldContentAndNothingElse_data();
    void aFailureLeavesTheOldContentAndNothingElse();
    void aFullDiskLeavesTheOldContent();

private:
    [[nodiscard]] static int write(const QString& path, const QByteArray& content);
    [[nodiscard]] QByteArray content(const QString& relative) const;

    std::unique_ptr<TemporaryHome> m_home;
};

int FileSystem_write_test::write(const QString& path, const QByteArray& content)
{
    const Result<void> result = fileSystem::writeAtomically(path, content);
    return result ? 0 : result.error().code;
}

QByteArray FileSystem_write_test::content(const QString& relative) const
{
    QFile file(m_home->path(relative));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void FileSystem_write_test::theNewContentIsThereForItsOwnerOnly_data()
{
    QTest::addColumn<bool>("existed");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("a new file") << false << QByteArray("new\n");
    QTest::newRow("in place of another") << true << QByteArray("new\n");
    QTest::newRow("empty") << true << QByteArray();
    QTest::newRow("large") << true << QByteArray(5'000'000, 'x');
}

void FileSystem_write_test::theNewContentIsThereForItsOwnerOnly()
{
    QFETCH(bool, existed);
    QFETCH(QByteArray, bytes);
    m_home->makeFolder(u"d"_s);
    if (existed) {
        m_home->makeFile(u"d/state.json"_s, "old\n");
    }

    QCOMPARE(write(m_home->path(u"d/state.json"_s), bytes), 0);

    QCOMPARE(content(u"d/state.json"_s), bytes);
    QCOMPARE(m_home->names(u"d"_s), QStringList{u"state.json"_s});
    struct stat status = {};
    QCOMPARE(::stat(m_home->path(u"d/state.json"_s).toUtf8().constData(), &status), 0);
    QCOMPARE(status.st_mode & 07777U, 0600U);
}

void FileSystem_write_test::aLinkIsWrittenThrough_data()
{
    QTest::addColumn<QString>("target");
    QTest::newRow("relative") << u"../kept/file"_s;
    QTest::newRow("absolute") << u"HOME/kept/file"_s;
    QTest::newRow("over another link") << u"../kept/link"_s;
    QTest::newRow("dangling") << u"../kept/not yet there"_s;
}

void FileSystem_write_test::aLinkIsWrittenThrough()
{
    QFETCH(QString, target);
    m_home->makeFile(u"kept/file"_s, "old\n");
    m_home->makeFolder(u"d"_s);
    QVERIFY(QFile::link(u"file"_s, m_home->path(u"kept/link"_s)));
    QVERIFY(QFile::link(target.replace(u"HOME"_s, m_home->path(u"."_s).chopped(2)), m_home->path(u"d/state.json"_s)));

    QCOMPARE(write(m_home->path(u"d/state.json"_s), "new\n"), 0);

    QCOMPARE(content(u"d/state.json"_s), QByteArray("new\n"));
    QVERIFY(QFile::symLinkTarget(m_home->path(u"d/state.json"_s)).contains(u"kept"_s));
    QCOMPARE(m_home->names(u"d"_s), QStringList{u"state.json"_s});
    QCOMPARE(content(target.endsWith(u"there"_s) ? u"kept/not yet there"_s : u"kept/file"_s), QByteArray("new\n"));
}

void FileSystem_write_test::aTemporaryFileLeftBehindIsReplaced()
{
    m_home->makeFile(u"d/.a.0123456789abcdef.tmp"_s, "half writ");
    const QStringList others = {u".a.0123456789abcdeg.tmp"_s, u".b.0123456789abcdef.tmp"_s, u"a.tmp"_s};
    for (const QString& other : others) {
        m_home->makeFile(u"d/"_s + other, "somebody's");
    }
    QVERIFY(QFile::link(u"a.tmp"_s, m_home->path(u"d/.a.fedcba9876543210.tmp"_s)));

    QCOMPARE(write(m_home->path(u"d/a"_s), "new\n"), 0);

    QStringList left = others + QStringList{u"a"_s, u".a.fedcba9876543210.tmp"_s};
    QStringList found = m_home->names(u"d"_s);
    left.sort();
    found.sort();
    QCOMPARE(found, left);
    QCOMPARE(content(u"d/a.tmp"_s), QByteArray("somebody's"));
}

void FileSystem_write_test::theUmaskTakesNothingAway()
{
    const mode_t before = ::umask(0777);

    const int error = write(m_home->path(u"a"_s), "new\n");

    ::umask(before);
    struct stat status = {};
    QCOMPARE(error, 0);
    QCOMPARE(::stat(m_home->path(u"a"_s).toUtf8().constData(), &status), 0);
    QCOMPARE(status.st_mode & 07777U, 0600U);
}

void FileSystem_write_test::whatIsNoFileIsLeftAlone_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("a device") << u"device"_s;
    QTest::newRow("a link to a device") << u"link"_s;
    QTest::newRow("a pipe") << u"pipe"_s;
}

void FileSystem_write_test::whatIsNoFileIsLeftAlone()
{
    QFETCH(QString, path);
    if (::geteuid() != 0) {
        QSKIP("makes a device, which needs root");
    }
    QCOMPARE(::mknod(m_home->path(u"device"_s).toUtf8().constData(), S_IFCHR | 0600, makedev(1, 3)), 0);
    QCOMPARE(::mkfifo(m_home->path(u"pipe"_s).toUtf8().constData(), 0600), 0);
    QVERIFY(QFile::link(u"device"_s, m_home->path(u"link"_s)));
    const auto before = treeAt(m_home->path({}));

    QCOMPARE(write(m_home->path(path), "new\n"), EINVAL);

    QCOMPARE(treeAt(m_home->path({})), before);
}

void FileSystem_write_test::aLinkOfSomebodyElseIsNotWrittenThrough()
{
    if (::geteuid() != 0) {
        QSKIP("gives a link to another user, which needs root");
    }
    m_home->makeFile(u"precious"_s, "precious\n");
    QVERIFY(QFile::link(u"precious"_s, m_home->path(u"link"_s)));
    giveToOrdinaryUser(m_home->path(u"link"_s));

    QCOMPARE(write(m_home->path(u"link"_s), "new\n"), EACCES);

    QCOMPARE(content(u"precious"_s), QByteArray("precious\n"));
}

void FileSystem_write_test::aFailureLeavesTheOldContentAndNothingElse_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("code");
    QTest::newRow("a missing folder") << u"HOME/nowhere/a"_s << ENOENT;
    QTest::newRow("a folder in its place") << u"HOME/d/folder"_s << EISDIR;
    QTest::newRow("a link that leads to itself") << u"HOME/d/loop"_s << ELOOP;
    QTest::newRow("a relative path") << u"state.json"_s << EINVAL;
    QTest::newRow("an empty path") << QString() << EINVAL;
    QTest::newRow("a name that is too long") << u"HOME/d/"_s + QString(256, u'n') << ENAMETOOLONG;
}

void FileSystem_write_test::aFailureLeavesTheOldContentAndNothingElse()
{
    QFETCH(QString, path);
    QFETCH(int, code);
    m_home->makeFolder(u"d/folder"_s);
    QVERIFY(QFile::link(u"loop"_s, m_home->path(u"d/loop"_s)));
    const auto names = m_home->names(u"d"_s);

    QCOMPARE(write(path.replace(u"HOME"_s, m_home->path(u"."_s).chopped(2)), "new\n"), code);

    QCOMPARE(m_home->names(u"d"_s), names);
}

void FileSystem_write_test::aFullDiskLeavesTheOldContent()
{
    if (!PrivateMounts::available()) {
        QSKIP("mounts a small file system, which needs root");
    }
    constexpr int page = 4096;
    constexpr int pages = 24;
    int failures = 0;
    for (int filled = 0; filled <= pages; ++filled) {
        PrivateMounts mounts;
        mounts.mountTemporary(m_home->path(u"disk"_s), "size=" + QByteArray::number(page * pages));
        const QByteArray before(3 * page, 'o');
        QCOMPARE(write(m_home->path(u"disk/a"_s), before), 0);
        QFile filling(m_home->path(u"disk/filling"_s));
        QVERIFY(filling.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        std::ignore = filling.write(QByteArray(page * filled, 'f')); // the last ones do not fit any more
        const QByteArray after(5 * page, 'n');

        const int error = write(m_home->path(u"disk/a"_s), after);

        QVERIFY(error == 0 || error == ENOSPC);
        QCOMPARE(content(u"disk/a"_s), error == 0 ? after : before);
        QCOMPARE(m_home->names(u"disk"_s), (QStringList{u"a"_s, u"filling"_s}));
        failures += error == 0 ? 0 : 1;
    }
    QVERIFY(failures > 0 && failures < pages);
}

QTEST_GUILESS_MAIN(FileSystem_write_test)
#include "FileSystem_write_test.moc"
