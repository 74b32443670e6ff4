// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileBatch.h"
#include "FileSystem.h"
#include "FileTree.h"
#include "KnownPaths.h"
#include "Privileges.h"
#include "TemporaryHome.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <tuple>

using namespace lapsa;
using namespace lapsa::test;
using namespace Qt::StringLiterals;

/// Two ordinary users of one machine. One of them has files on countdown, the other would like to have the wrong ones
/// taken.
class FileSystem_strangers_test final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void aLinkOfSomebodyElseIsNotFollowed_data();
    void aLinkOfSomebodyElseIsNotFollowed();
    void aLinkOfTheUserOrTheAdministratorIsFollowed_data();
    void aLinkOfTheUserOrTheAdministratorIsFollowed();
    void aFolderThatSomebodyExchangedIsNotEntered_data();
    void aFolderThatSomebodyExchangedIsNotEntered();
    void whatNobodyExchangedIsTaken_data();
    void whatNobodyExchangedIsTaken();
    void aWatchedFolderThatSomebodyExchangedIsNotListed_data();
    void aWatchedFolderThatSomebodyExchangedIsNotListed();

private:
    [[nodiscard]] QString knownPathsFile() const { return m_home->path(u"home/known"_s); }

    [[nodiscard]] int save(fileSystem::KnownPaths& known) const;
    [[nodiscard]] int remember(const QString& path) const;
    [[nodiscard]] int remove(const QString& path) const;
    void exchange(const QString& how) const;

    std::unique_ptr<TemporaryHome> m_home;
};

namespace {

constexpr unsigned stranger = 65533;

int codeOf(const Result<void>& result)
{
    return result ? 0 : result.error().code;
}

void setMode(const QString& path, mode_t mode)
{
    QCOMPARE(::chmod(path.toUtf8().constData(), mode), 0);
}

} // namespace

void FileSystem_strangers_test::initTestCase()
{
    if (!PrivateMounts::available()) {
        QSKIP("acts as two users, which needs root");
    }
}

// home/ belongs to the user; group/ to the administrator, and all may write it; inbox/ in it to the stranger, and his
// group may write it, as the user may.
void FileSystem_strangers_test::init()
{
    m_home = std::make_unique<TemporaryHome>();
    setMode(m_home->path(u"."_s), 0755);
    giveToOrdinaryUser(m_home->path(u"."_s));
    for (const QString& path : {u"home/Documents"_s, u"home/Letters"_s, u"home/open"_s}) {
        m_home->makeFile(path + u"/thesis.tex"_s, "years of work\n");
    }
    m_home->makeFile(u"group/inbox/thesis.tex"_s, "a draft\n");
    for (const QString& path : {u"home"_s, u"home/Documents"_s, u"home/Documents/thesis.tex"_s, u"home/Letters"_s,
                                u"home/Letters/thesis.tex"_s, u"home/open"_s, u"home/open/thesis.tex"_s}) {
        giveToOrdinaryUser(m_home->path(path));
    }
    giveTo(stranger, m_home->path(u"group/inbox"_s));
    setMode(m_home->path(u"group"_s), 0777);
    setMode(m_home->path(u"group/inbox"_s), 0777);
    setMode(m_home->path(u"home/open"_s), 0777);
    setMode(m_home->path(u"home/Documents"_s), 0700);
}

int FileSystem_strangers_test::save(fileSystem::KnownPaths& known) const
{
    const QString file = knownPathsFile();
    const auto made = fileSystem::createDirectory(file.left(file.lastIndexOf(u'/')), fileSystem::Access::OwnerOnly);
    return codeOf(made ? fileSystem::writeAtomically(file, known.takeChanges() ? known.content() : QByteArray())
                       : made);
}

void FileSystem_strangers_test::cleanup()
{
    m_home.reset();
}

int FileSystem_strangers_test::remember(const QString& path) const
{
    return asOrdinaryUser([&] {
        fileSystem::KnownPaths known(knownPathsFile());
        known.remember({path});
        known.rememberFolder(path.left(path.lastIndexOf(u'/')));
        known.keepOnly({path}, {});
        return save(known);
    });
}

/// In another process, as after a restart.
int FileSystem_strangers_test::remove(const QString& path) const
{
    return asOrdinaryUser([&] {
        const fileSystem::KnownPaths known(knownPathsFile());
        return codeOf(fileSystem::Batch({.folder = {}, .knownPaths = &known}).remove(path));
    });
}

/// What the stranger does to `group/inbox`.
void FileSystem_strangers_test::exchange(const QString& how) const
{
    const QString group = m_home->path(u"group"_s);
    const int done = asUser(stranger, [&] {
        if (!QFile::rename(group + u"/inbox"_s, group + u"/aside"_s)) {
            return 1;
        }
        if (how == u"link"_s) {
            return QFile::link(m_home->path(u"home/Documents"_s), group + u"/inbox"_s) ? 0 : 2;
        }
        if (how == u"folder"_s) {
            return QFile::rename(group + u"/private"_s, group + u"/inbox"_s) ? 0 : 3;
        }
        return QFile::rename(group + u"/shortcut"_s, group + u"/inbox"_s) ? 0 : 4;
    });
    QCOMPARE(done, 0);
}

void FileSystem_strangers_test::aLinkOfSomebodyElseIsNotFollowed_data()
{
    QTest::addColumn<QString>("how");
    QTest::newRow("removed") << u"remove"_s;
    QTest::newRow("moved") << u"move"_s;
    QTest::newRow("moved to the Trash") << u"trash"_s;
    QTest::newRow("moved there") << u"destination"_s;
}

void FileSystem_strangers_test::aLinkOfSomebodyElseIsNotFollowed()
{
    QFETCH(QString, how);
    exchange(u"link"_s);
    const QString path = m_home->path(u"group/inbox/thesis.tex"_s);
    const QString mine = m_home->path(u"home/Letters/thesis.tex"_s);
    const auto before = treeAt(m_home->path(u"home"_s));

    const int error = asOrdinaryUser([&] {
        if (how == u"remove"_s) {
            return codeOf(fileSystem::Batch({}).remove(path));
        }
        if (how == u"move"_s) {
            return codeOf(fileSystem::Batch({}).move(path, m_home->path(u"home/taken"_s)));
        }
        if (how == u"trash"_s) {
            return codeOf(fileSystem::Batch({}).moveToTrash(path));
        }
        return codeOf(fileSystem::Batch({}).move(mine, m_home->path(u"group/inbox/planted"_s)));
    });

    QCOMPARE(error, EACCES);
    QCOMPARE(treeAt(m_home->path(u"home"_s)), before);
}

void FileSystem_strangers_test::aLinkOfTheUserOrTheAdministratorIsFollowed_data()
{
    QTest::addColumn<uint>("owner");
    QTest::newRow("of the user") << ordinaryUser;
    QTest::newRow("of the administrator") << 0U;
}

void FileSystem_strangers_test::aLinkOfTheUserOrTheAdministratorIsFollowed()
{
    QFETCH(uint, owner);
    QVERIFY(QFile::link(u"../home"_s, m_home->path(u"group/way"_s)));
    QVERIFY(QFile::link(u"Documents"_s, m_home->path(u"home/papers"_s)));
    giveTo(owner, m_home->path(u"group/way"_s));
    giveTo(owner, m_home->path(u"home/papers"_s));

    QCOMPARE(remove(m_home->path(u"group/way/papers/thesis.tex"_s)), 0);

    QVERIFY(rawNames(m_home->path(u"home/Documents"_s)).isEmpty());
}

void FileSystem_strangers_test::aFolderThatSomebodyExchangedIsNotEntered_data()
{
    QTest::addColumn<QString>("how");
    QTest::addColumn<QString>("path");
    QTest::newRow("for a folder of the user's") << u"folder"_s << u"group/inbox/thesis.tex"_s;
    QTest::newRow("for a link of the user's") << u"shortcut"_s << u"group/inbox/thesis.tex"_s;
    QTest::newRow("and it is the entry itself") << u"folder"_s << u"group/inbox"_s;
}

void FileSystem_strangers_test::aFolderThatSomebodyExchangedIsNotEntered()
{
    QFETCH(QString, how);
    QFETCH(QString, path);
    QCOMPARE(remember(m_home->path(path)), 0);
    m_home->makeFile(u"group/private/thesis.tex"_s, "years of work\n");
    giveToOrdinaryUser(m_home->path(u"group/private"_s));
    giveToOrdinaryUser(m_home->path(u"group/private/thesis.tex"_s));
    QVERIFY(QFile::link(u"private"_s, m_home->path(u"group/shortcut"_s)));
    giveToOrdinaryUser(m_home->path(u"group/shortcut"_s));
    exchange(how);

    QCOMPARE(remove(m_home->path(path)), EACCES);

    QVERIFY(fileSystem::exists(m_home->path(u"group/inbox/thesis.tex"_s)));
}

void FileSystem_strangers_test::whatNobodyExchangedIsTaken_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("in a folder for all") << u"group/inbox/thesis.tex"_s;
    QTest::newRow("a folder of somebody else's for all") << u"group/inbox"_s;
    QTest::newRow("in the user's own folder for all") << u"home/open/thesis.tex"_s;
    QTest::newRow("in a private folder") << u"home/Documents/thesis.tex"_s;
    QTest::newRow("in a sticky folder for all") << u"sticky/mine/file"_s;
}

void FileSystem_strangers_test::whatNobodyExchangedIsTaken()
{
    QFETCH(QString, path);
    giveToOrdinaryUser(m_home->makeFile(u"sticky/mine/file"_s));
    giveToOrdinaryUser(m_home->path(u"sticky/mine"_s));
    setMode(m_home->path(u"sticky"_s), 01777);
    QCOMPARE(remember(m_home->path(path)), 0);
    // Changes in it are no exchange.
    QCOMPARE(asOrdinaryUser([&] { return QDir(m_home->path(path).section(u'/', 0, -2)).mkdir(u"more"_s) ? 0 : 1; }), 0);

    QCOMPARE(remove(m_home->path(path)), 0);

    QVERIFY(!fileSystem::exists(m_home->path(path)));
}

void FileSystem_strangers_test::aWatchedFolderThatSomebodyExchangedIsNotListed_data()
{
    QTest::addColumn<QString>("how");
    QTest::addColumn<int>("expected");
    QTest::newRow("not at all") << QString() << 0;
    QTest::newRow("for a link") << u"link"_s << EACCES;
    QTest::newRow("for a folder of the user's") << u"folder"_s << EACCES;
}

void FileSystem_strangers_test::aWatchedFolderThatSomebodyExchangedIsNotListed()
{
    QFETCH(QString, how);
    QFETCH(int, expected);
    const QString inbox = m_home->path(u"group/inbox"_s);
    const int saved = asOrdinaryUser([&] {
        fileSystem::KnownPaths known(knownPathsFile());
        known.rememberFolder(inbox);
        return save(known);
    });
    QCOMPARE(saved, 0);
    m_home->makeFile(u"group/private/thesis.tex"_s);
    giveToOrdinaryUser(m_home->path(u"group/private"_s));
    if (!how.isEmpty()) {
        exchange(how);
    }

    const int error = asOrdinaryUser([&] {
        const fileSystem::KnownPaths known(knownPathsFile());
        return codeOf(fileSystem::forEachVisibleEntry(inbox, known, [](const fileSystem::FolderEntry&) {}));
    });

    QCOMPARE(error, expected);
}

QTEST_GUILESS_MAIN(FileSystem_strangers_test)
#include "FileSystem_strangers_test.moc"
