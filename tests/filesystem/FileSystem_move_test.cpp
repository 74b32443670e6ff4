// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileBatch.h"
#include "FileSystem.h"
#include "FileTree.h"
#include "Privileges.h"
#include "TemporaryHome.h"

#include <QFile>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <memory>
#include <thread>
#include <tuple>

using namespace lapsa;
using namespace lapsa::test;
using namespace Qt::StringLiterals;

/// Moves within one file system.
class FileSystem_move_test final : public QObject
{
    Q_OBJECT

private slots:

    void init() { m_home = std::make_unique<TemporaryHome>(); }

    void cleanup() { m_home.reset(); }

    void everyKindOfEntryIsMovedAsItIs_data();
    void everyKindOfEntryIsMovedAsItIs();
    void aFailingMoveChangesNothing_data();
    void aFailingMoveChangesNothing();
    void aMissingRightChangesNothing();
    void aNameThatIsTakenMeanwhileIsNotOverwritten();

private:
    [[nodiscard]] int move(const QString& from, const QString& to) const;

    std::unique_ptr<TemporaryHome> m_home;
};

int FileSystem_move_test::move(const QString& from, const QString& to) const
{
    const Result<void> result = fileSystem::Batch({}).move(from, to);
    return result ? 0 : result.error().code;
}

void FileSystem_move_test::everyKindOfEntryIsMovedAsItIs_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("a file") << QByteArray("file");
    QTest::newRow("a folder") << QByteArray("folder");
    QTest::newRow("a link to a folder") << QByteArray("link");
    QTest::newRow("a dangling link") << QByteArray("dangling");
    QTest::newRow("a line break") << QByteArray("a\nb");
    QTest::newRow("percent, quotes, backslash") << QByteArray("100% \"a\" 'b' \\");
    QTest::newRow("255 bytes") << QByteArray(255, 'n');
}

void FileSystem_move_test::everyKindOfEntryIsMovedAsItIs()
{
    QFETCH(QByteArray, name);
    const QString from = m_home->makeFolder(u"in"_s) + u'/' + QString::fromUtf8(name);
    const QString to = m_home->makeFolder(u"out"_s) + u'/' + QString::fromUtf8(name);
    m_home->makeFile(u"target/precious"_s);
    if (name == "folder") {
        m_home->makeFile(u"in/folder/a/b"_s);
    } else if (name == "link" || name == "dangling") {
        QVERIFY(QFile::link(name == "link" ? m_home->path(u"target"_s) : u"nowhere"_s, from));
    } else {
        makeRawFile(from.toUtf8());
    }
    const auto before = treeAt(from);

    QCOMPARE(move(from, to), 0);

    QCOMPARE(treeAt(to), before);
    QVERIFY(treeAt(from).isEmpty());
    QCOMPARE(rawNames(m_home->path(u"target"_s)), QList<QByteArray>{"precious"});
}

void FileSystem_move_test::aFailingMoveChangesNothing_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    QTest::addColumn<int>("code");
    QTest::newRow("onto a file") << u"HOME/file"_s << u"HOME/other"_s << EEXIST;
    QTest::newRow("onto a dangling link") << u"HOME/file"_s << u"HOME/dangling"_s << EEXIST;
    QTest::newRow("a folder onto an empty one") << u"HOME/folder"_s << u"HOME/empty"_s << EEXIST;
    QTest::newRow("onto itself") << u"HOME/file"_s << u"HOME/file"_s << EEXIST;
    QTest::newRow("a folder into itself") << u"HOME/folder"_s << u"HOME/folder/sub/copy"_s << EINVAL;
    QTest::newRow("what is not there") << u"HOME/nothing"_s << u"HOME/new"_s << ENOENT;
    QTest::newRow("into a folder that is not there") << u"HOME/file"_s << u"HOME/nothing/new"_s << ENOENT;
    QTest::newRow("into a file") << u"HOME/file"_s << u"HOME/other/new"_s << ENOTDIR;
    QTest::newRow("from an empty path") << QString() << u"HOME/new"_s << EINVAL;
    QTest::newRow("to an empty path") << u"HOME/file"_s << QString() << EINVAL;
    QTest::newRow("from a relative path") << u"file"_s << u"HOME/new"_s << EINVAL;
    QTest::newRow("to a relative path") << u"HOME/file"_s << u"new"_s << EINVAL;
    QTest::newRow("to two dots") << u"HOME/file"_s << u"HOME/folder/.."_s << EINVAL;
    QTest::newRow("to a name that is too long") << u"HOME/file"_s << u"HOME/"_s + QString(256, u'n') << ENAMETOOLONG;
}

void FileSystem_move_test::aFailingMoveChangesNothing()
{
    QFETCH(QString, from);
    QFETCH(QString, to);
    const QString home = m_home->path(u"."_s).chopped(2);
    m_home->makeFile(u"file"_s, "file\n");
    m_home->makeFile(u"other"_s, "other\n");
    m_home->makeFile(u"folder/sub/inside"_s);
    m_home->makeFolder(u"empty"_s);
    QVERIFY(QFile::link(u"nowhere"_s, m_home->path(u"dangling"_s)));
    const auto before = treeAt(home);

    const int code = move(from.replace(u"HOME"_s, home), to.replace(u"HOME"_s, home));

    QTEST(code, "code");
    QCOMPARE(treeAt(home), before);
}

void FileSystem_move_test::aMissingRightChangesNothing()
{
    if (::geteuid() != 0) {
        QSKIP("acts as another user, which needs root");
    }
    m_home->makeFile(u"locked/file"_s);
    m_home->makeFolder(u"out"_s);
    for (const QString& path : {u"."_s, u"locked"_s, u"locked/file"_s, u"out"_s}) {
        giveToOrdinaryUser(m_home->path(path));
    }
    QCOMPARE(::chmod(m_home->path(u"locked"_s).toUtf8().constData(), 0555), 0);
    const auto before = treeAt(m_home->path(u"."_s));

    QCOMPARE(asOrdinaryUser([&] { return move(m_home->path(u"locked/file"_s), m_home->path(u"out/file"_s)); }), EACCES);

    QCOMPARE(treeAt(m_home->path(u"."_s)), before);
}

void FileSystem_move_test::aNameThatIsTakenMeanwhileIsNotOverwritten()
{
    constexpr int rounds = 2000;
    m_home->makeFolder(u"out"_s);
    const QByteArray out = m_home->path(u"out/"_s).toUtf8();
    std::atomic<int> current = 0;
    std::thread planter([&] {
        // Always one ahead, on the very name that is moved to.
        for (int planted = 0; planted < rounds; planted = current + 1) {
            const QByteArray name = out + QByteArray::number(planted);
            std::ignore = ::symlink("planted", name.constData());
        }
    });

    int moved = 0;
    for (int i = 0; i < rounds; ++i) {
        current = i;
        const QString from = m_home->makeFile(u"file"_s, QByteArray::number(i));
        const int error = move(from, QString::fromUtf8(out) + QString::number(i));
        struct stat status = {};
        QCOMPARE(::lstat((out + QByteArray::number(i)).constData(), &status), 0);
        QCOMPARE(S_ISREG(status.st_mode), error == 0);
        QCOMPARE(QFile::exists(from), error != 0);
        QVERIFY(error == 0 || error == EEXIST);
        moved += error == 0 ? 1 : 0;
    }
    current = rounds;

    planter.join();
    QVERIFY(moved > 0 && moved < rounds);
}

QTEST_GUILESS_MAIN(FileSystem_move_test)
#include "FileSystem_move_test.moc"
