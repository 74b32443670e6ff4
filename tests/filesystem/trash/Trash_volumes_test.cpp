// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileTree.h"
#include "HomeTrash.h"
#include "Privileges.h"
#include "TemporaryHome.h"

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

/// The freedesktop trash of other volumes.
class Trash_volumes_test final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase() { std::ignore = PrivateMounts::available(); } // before the first temporary folder

    void init() { m_home = std::make_unique<TemporaryHome>(); }

    void cleanup() { m_home.reset(); }

    void anotherVolumeHasATrashOfItsOwn();
    void theSharedTrashOfAVolumeIsUsedOnlyWhereItIsSafe_data();
    void theSharedTrashOfAVolumeIsUsedOnlyWhereItIsSafe();
    void aPlantedTrashFolderIsNotUsed();
    void anotherMountOfTheSameVolumeHasATrashOfItsOwn();
    void onAnOverlayTheHomeTrashIsUsed();

private:
    [[nodiscard]] QByteArray contentAt(const QString& relative) const { return contentOf(m_home->path(relative)); }

    std::unique_ptr<TemporaryHome> m_home;
};

void Trash_volumes_test::anotherVolumeHasATrashOfItsOwn()
{
    if (!PrivateMounts::available()) {
        QSKIP("mounts a file system, which needs root");
    }
    PrivateMounts mounts;
    mounts.mountTemporary(m_home->path(u"disk"_s));
    const QString own = u"disk/.Trash-%1"_s.arg(::geteuid());

    QCOMPARE(trash(m_home->makeFile(u"disk/a folder/file"_s)), 0);

    QVERIFY(m_home->names(trashedFiles).isEmpty());
    QCOMPARE(m_home->names(own + u"/files"_s), QStringList{u"file"_s});
    QVERIFY(contentAt(own + u"/info/file.trashinfo"_s).startsWith("[Trash Info]\nPath=a%20folder/file\nDeletionDate="));
}

void Trash_volumes_test::theSharedTrashOfAVolumeIsUsedOnlyWhereItIsSafe_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<bool>("used");
    QTest::newRow("a sticky folder") << u"sticky"_s << true;
    QTest::newRow("a folder that is not sticky") << u"plain"_s << false;
    QTest::newRow("a link to a sticky folder") << u"link"_s << false;
    QTest::newRow("a sticky folder of a stranger's") << u"stranger"_s << false;
    QTest::newRow("a sticky folder of the volume's owner") << u"owner"_s << true;
}

void Trash_volumes_test::theSharedTrashOfAVolumeIsUsedOnlyWhereItIsSafe()
{
    QFETCH(QString, kind);
    QFETCH(bool, used);
    if (!PrivateMounts::available()) {
        QSKIP("mounts a file system, which needs root");
    }
    PrivateMounts mounts;
    mounts.mountTemporary(m_home->path(u"disk"_s));
    const QString folder = m_home->makeFolder(kind == u"link"_s ? u"disk/elsewhere"_s : u"disk/.Trash"_s);
    QCOMPARE(::chmod(folder.toUtf8().constData(), kind == u"plain"_s ? 0777 : 01777), 0);
    if (kind == u"link"_s) {
        QVERIFY(QFile::link(folder, m_home->path(u"disk/.Trash"_s)));
    }

    if (kind == u"stranger"_s || kind == u"owner"_s) {
        giveToOrdinaryUser(folder);
    }
    if (kind == u"owner"_s) {
        giveToOrdinaryUser(m_home->path(u"disk"_s));
    }

    QCOMPARE(trash(m_home->makeFile(u"disk/file"_s)), 0);

    const QString user = QString::number(::geteuid());
    QCOMPARE(m_home->names(u"disk/.Trash/%1/files"_s.arg(user)).size(), used ? 1 : 0);
    QCOMPARE(m_home->names(u"disk/.Trash-%1/files"_s.arg(user)).size(), used ? 0 : 1);
}

void Trash_volumes_test::aPlantedTrashFolderIsNotUsed()
{
    if (!PrivateMounts::available()) {
        QSKIP("mounts a file system, which needs root");
    }
    PrivateMounts mounts;
    mounts.mountTemporary(m_home->path(u"disk"_s));
    const QString planted = m_home->makeFolder(u"disk/.Trash-%1"_s.arg(::geteuid()));
    giveToOrdinaryUser(planted);
    const QString file = m_home->makeFile(u"disk/file"_s);

    QCOMPARE(trash(file), EACCES);

    QVERIFY(QFile::exists(file));
    QVERIFY(rawNames(planted).isEmpty());
}

void Trash_volumes_test::anotherMountOfTheSameVolumeHasATrashOfItsOwn()
{
    if (!PrivateMounts::available()) {
        QSKIP("mounts a file system, which needs root");
    }
    PrivateMounts mounts;
    m_home->makeFile(u"original/file"_s);
    mounts.bind(m_home->path(u"original"_s), m_home->makeFolder(u"mirror"_s));

    QCOMPARE(trash(m_home->path(u"mirror/file"_s)), 0);

    QCOMPARE(m_home->names(u"mirror/.Trash-%1/files"_s.arg(::geteuid())), QStringList{u"file"_s});
    QVERIFY(m_home->names(trashRecords).isEmpty());
}

void Trash_volumes_test::onAnOverlayTheHomeTrashIsUsed()
{
    if (!PrivateMounts::available()) {
        QSKIP("mounts an overlay, which needs root");
    }
    // The layers on file systems of their own, as on a live system.
    PrivateMounts mounts;
    mounts.mountTemporary(m_home->path(u"lower"_s));
    mounts.mountTemporary(m_home->path(u"upper"_s));
    m_home->makeFile(u"lower/home/file"_s);
    m_home->makeFolder(u"upper/changes"_s);
    m_home->makeFolder(u"upper/work"_s);
    const QString merged = m_home->makeFolder(u"merged"_s);
    mounts.mount("overlay", merged,
                 "lowerdir=" + m_home->path(u"lower"_s).toUtf8() + ",upperdir=" +
                     m_home->path(u"upper/changes"_s).toUtf8() + ",workdir=" + m_home->path(u"upper/work"_s).toUtf8());
    qputenv("XDG_DATA_HOME", m_home->path(u"merged/home/.local/share"_s).toUtf8());

    QCOMPARE(trash(m_home->path(u"merged/home/file"_s)), 0);

    QCOMPARE(m_home->names(u"merged/home/.local/share/Trash/files"_s), QStringList{u"file"_s});
    QCOMPARE(m_home->names(u"merged"_s), QStringList{u"home"_s});
}

QTEST_GUILESS_MAIN(Trash_volumes_test)
#include "Trash_volumes_test.moc"
