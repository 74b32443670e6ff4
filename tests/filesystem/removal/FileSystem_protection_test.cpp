// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileBatch.h"
#include "FileSystem.h"
#include "FileTree.h"
#include "Privileges.h"
#include "Refusal.h"
#include "TemporaryHome.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <pwd.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <tuple>

using namespace lapsa;
using namespace lapsa::test;
using namespace Qt::StringLiterals;

/// What may be neither moved, nor removed, nor trashed.
class FileSystem_protection_test final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase() { std::ignore = PrivateMounts::available(); } // before the first temporary folder

    void init();
    void cleanup();

    void aProtectedPathStaysWhereItIs_data();
    void aProtectedPathStaysWhereItIs();
    void whereALinkInTheDataFolderLeadsStaysWhereItIs_data();
    void whereALinkInTheDataFolderLeadsStaysWhereItIs();
    void whatIsAboveTheHomeStaysWhereItIs_data();
    void whatIsAboveTheHomeStaysWhereItIs();
    void aMountPointStaysWhereItIs_data();
    void aMountPointStaysWhereItIs();
    void theHomeIsProtectedThroughAnotherMount();
    void everythingElseInTheHomeIsFree_data();
    void everythingElseInTheHomeIsFree();

private:
    void expectRefused(const QString& path);

    std::unique_ptr<QTemporaryDir> m_outside;
    std::unique_ptr<TemporaryHome> m_home;
    fileSystem::Protection m_protection;
};

void FileSystem_protection_test::init()
{
    m_outside = std::make_unique<QTemporaryDir>();
    m_home = std::make_unique<TemporaryHome>();
    m_home->makeFile(u"data/Lapsa/Recovery/parked"_s);
    m_protection = {.folder = m_home->path(u"data/Lapsa"_s)};
}

void FileSystem_protection_test::cleanup()
{
    m_home.reset();
    m_outside.reset();
}

void FileSystem_protection_test::expectRefused(const QString& path)
{
    const auto codeOf = [](const Result<void>& result) { return result ? 0 : result.error().code; };
    const auto before = treeAt(m_home->path({}));

    QVERIFY(fileSystem::refusalOf(path, m_protection));
    QCOMPARE(codeOf(fileSystem::Batch(m_protection).remove(path)), EPERM);
    QCOMPARE(codeOf(fileSystem::Batch(m_protection).move(path, m_outside->filePath(u"moved"_s))), EPERM);
    QCOMPARE(codeOf(fileSystem::Batch(m_protection).moveToTrash(path)), EPERM);

    QCOMPARE(treeAt(m_home->path({})), before);
    QVERIFY(rawNames(m_outside->path()).isEmpty());
}

void FileSystem_protection_test::aProtectedPathStaysWhereItIs_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("the home folder") << u"HOME"_s;
    QTest::newRow("the home folder, reached by a link in the path") << u"HOME/to above/NAME"_s;
    QTest::newRow("the data folder") << u"HOME/data/Lapsa"_s;
    QTest::newRow("the data folder with a slash") << u"HOME/data/Lapsa/"_s;
    QTest::newRow("a folder in the data folder") << u"HOME/data/Lapsa/Recovery"_s;
    QTest::newRow("a folder above the data folder") << u"HOME/data"_s;
    QTest::newRow("a link on the way to the data folder") << u"HOME/link"_s;
}

void FileSystem_protection_test::aProtectedPathStaysWhereItIs()
{
    QFETCH(QString, path);
    const QString home = m_home->path(u"."_s).chopped(2);
    QVERIFY(QFile::link(home.section(u'/', 0, -2), m_home->path(u"to above"_s)));
    if (path.endsWith(u"link"_s)) {
        QVERIFY(QFile::link(u"data"_s, m_home->path(u"link"_s)));
        m_protection.folder = m_home->path(u"link/Lapsa"_s);
    }

    expectRefused(path.replace(u"HOME"_s, home).replace(u"NAME"_s, home.section(u'/', -1)));
}

void FileSystem_protection_test::whereALinkInTheDataFolderLeadsStaysWhereItIs_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("the link") << u"data/Lapsa/Recovery"_s;
    QTest::newRow("a link on the way") << u"disk"_s;
    QTest::newRow("its target") << u"large/disk/parked"_s;
    QTest::newRow("its target by way of another link") << u"disk/parked"_s;
    QTest::newRow("what holds the target") << u"large/disk"_s;
    QTest::newRow("what holds that") << u"large"_s;
}

void FileSystem_protection_test::whereALinkInTheDataFolderLeadsStaysWhereItIs()
{
    QFETCH(QString, path);
    m_home->makeFile(u"large/disk/parked/file"_s);
    QVERIFY(QFile::link(u"large/disk"_s, m_home->path(u"disk"_s)));
    QVERIFY(QDir(m_home->path(u"data/Lapsa/Recovery"_s)).removeRecursively());
    QVERIFY(QFile::link(u"../../disk/parked"_s, m_home->path(u"data/Lapsa/Recovery"_s)));

    expectRefused(m_home->path(path));
}

void FileSystem_protection_test::whatIsAboveTheHomeStaysWhereItIs_data()
{
    QTest::addColumn<QString>("path");
    const QString home = QString::fromUtf8(::getpwuid(::getuid())->pw_dir);
    QTest::newRow("the root") << u"/"_s;
    QTest::newRow("the root, written with more slashes") << u"///"_s;
    QTest::newRow("the folder above the home folder") << QString();
    QTest::newRow("the home folder of the user database") << home;
}

void FileSystem_protection_test::whatIsAboveTheHomeStaysWhereItIs()
{
    QFETCH(QString, path);
    const QString above = m_home->path(u"."_s).chopped(2).section(u'/', 0, -2);
    if (!path.isEmpty() && !fileSystem::exists(path)) {
        QSKIP("this user's home folder does not exist");
    }

    // Onto what is there already, so that a mistake here costs nobody his files: it would be EEXIST then.
    QVERIFY(fileSystem::refusalOf(path.isEmpty() ? above : path, m_protection));
    const QString taken = m_home->makeFile(u"taken"_s);
    const Result<void> moved = fileSystem::Batch(m_protection).move(path.isEmpty() ? above : path, taken);

    QVERIFY(!moved);
    QCOMPARE(moved.error().code, EPERM);
}

void FileSystem_protection_test::aMountPointStaysWhereItIs_data()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("of a file system") << u"file system"_s;
    QTest::newRow("of a folder shown twice") << u"folder"_s;
    QTest::newRow("of a file shown twice") << u"file"_s;
    QTest::newRow("somewhere below") << u"below"_s;
}

void FileSystem_protection_test::aMountPointStaysWhereItIs()
{
    QFETCH(QString, kind);
    if (!PrivateMounts::available()) {
        QSKIP("mounts file systems, which needs root");
    }
    PrivateMounts mounts;
    QString path = m_home->makeFolder(u"mounted"_s);
    if (kind == u"file system"_s) {
        mounts.mountTemporary(path);
    } else if (kind == u"folder"_s) {
        mounts.bind(m_home->makeFolder(u"original"_s), path);
    } else if (kind == u"file"_s) {
        path = m_home->makeFile(u"mounted file"_s);
        mounts.bind(m_home->makeFile(u"original file"_s), path);
    } else {
        mounts.mountTemporary(path + u"/deep/down"_s);
    }

    expectRefused(path);
}

void FileSystem_protection_test::theHomeIsProtectedThroughAnotherMount()
{
    if (!PrivateMounts::available()) {
        QSKIP("mounts file systems, which needs root");
    }
    PrivateMounts mounts;
    qputenv("HOME", m_home->makeFolder(u"outer/user"_s).toUtf8());
    m_home->makeFile(u"outer/user/precious"_s);
    mounts.bind(m_home->path(u"outer"_s), m_home->makeFolder(u"mirror"_s));

    const Result<void> removed = fileSystem::Batch(m_protection).remove(m_home->path(u"mirror/user"_s));

    QVERIFY(!removed);
    QCOMPARE(removed.error().code, EPERM);
    QCOMPARE(rawNames(m_home->path(u"outer/user"_s)), QList<QByteArray>{"precious"});
}

void FileSystem_protection_test::everythingElseInTheHomeIsFree_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("a parked file") << u"data/Lapsa/Recovery/parked"_s;
    QTest::newRow("a folder beside the data folder") << u"data/Lapsa2"_s;
    QTest::newRow("a link to the home folder") << u"to home"_s;
    QTest::newRow("a link named as the data folder") << u"elsewhere/Lapsa"_s;
}

void FileSystem_protection_test::everythingElseInTheHomeIsFree()
{
    QFETCH(QString, path);
    m_home->makeFolder(u"data/Lapsa2"_s);
    m_home->makeFolder(u"elsewhere"_s);
    QVERIFY(QFile::link(m_home->path(u"."_s).chopped(2), m_home->path(u"to home"_s)));
    QVERIFY(QFile::link(m_protection.folder, m_home->path(u"elsewhere/Lapsa"_s)));

    QVERIFY(!fileSystem::refusalOf(m_home->path(path), m_protection));
    QVERIFY(fileSystem::Batch(m_protection).remove(m_home->path(path)));

    QVERIFY(treeAt(m_home->path(path)).isEmpty());
    QVERIFY(fileSystem::isDirectory(m_protection.folder));
}

QTEST_GUILESS_MAIN(FileSystem_protection_test)
#include "FileSystem_protection_test.moc"
