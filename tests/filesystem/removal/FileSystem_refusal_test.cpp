// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileSystem.h"
#include "Privileges.h"
#include "Refusal.h"
#include "TemporaryHome.h"

#include <QFile>
#include <QTest>

#include <memory>
#include <optional>
#include <tuple>

using namespace lapsa;
using namespace lapsa::test;
using namespace Qt::StringLiterals;

using fileSystem::Refusal;

Q_DECLARE_METATYPE(std::optional<Refusal>)

/// What is told of what may never be taken. Nothing is moved or removed here.
class FileSystem_refusal_test final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase() { std::ignore = PrivateMounts::available(); } // before the first temporary folder

    void init()
    {
        m_home = std::make_unique<TemporaryHome>();
        m_home->makeFile(u"data/Lapsa/Recovery/parked"_s);
        m_protection = {.folder = m_home->path(u"data/Lapsa"_s)};
    }

    void cleanup() { m_home.reset(); }

    void theReasonIsTold_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<std::optional<Refusal>>("refusal");
        const auto row = [](const char* name, const QString& path, std::optional<Refusal> refusal) {
            QTest::newRow(name) << path << refusal;
        };
        row("the root", u"/"_s, Refusal::Root);
        row("the root, written with more slashes", u"//"_s, Refusal::Root);
        row("the home folder", u"TOP/users/ada"_s, Refusal::Home);
        row("the home folder, reached by a link in the path", u"TOP/link/ada"_s, Refusal::Home);
        row("what holds the home folder", u"TOP/users"_s, Refusal::HoldsHome);
        row("the protected folder", u"TOP/data/Lapsa"_s, Refusal::ProtectedFolder);
        row("what holds the protected folder", u"TOP/data"_s, Refusal::HoldsProtectedFolder);
        row("a link to what holds the home folder", u"TOP/link"_s, std::nullopt);
        row("a folder in the home folder", u"TOP/users/ada/folder"_s, std::nullopt);
        row("a file", u"TOP/users/ada/folder/file"_s, std::nullopt);
        row("a folder in the protected folder", u"TOP/data/Lapsa/Recovery"_s, Refusal::ProtectedFolder);
        row("what is in that one", u"TOP/data/Lapsa/Recovery/parked"_s, std::nullopt);
        row("nothing", u"TOP/users/ada/missing"_s, std::nullopt);
        row("a relative path", u"home"_s, std::nullopt);
        row("an empty path", u""_s, std::nullopt);
    }

    void theReasonIsTold()
    {
        QFETCH(QString, path);
        m_home->makeFile(u"users/ada/folder/file"_s);
        qputenv("HOME", m_home->path(u"users/ada"_s).toUtf8());
        QVERIFY(QFile::link(u"users"_s, m_home->path(u"link"_s)));
        path.replace(u"TOP"_s, m_home->path(u"."_s).chopped(2));

        QTEST(fileSystem::refusalOf(path, m_protection), "refusal");
    }

    void aLinkOnTheWayToTheProtectedFolderHoldsItAndOneThatIsTheLastStepIsIt()
    {
        QVERIFY(QFile::link(u"data"_s, m_home->path(u"link"_s)));
        QVERIFY(QFile::link(u"data/Lapsa"_s, m_home->path(u"last"_s)));

        QCOMPARE(fileSystem::refusalOf(m_home->path(u"link"_s), {.folder = m_home->path(u"link/Lapsa"_s)}),
                 std::optional(Refusal::HoldsProtectedFolder));
        QCOMPARE(fileSystem::refusalOf(m_home->path(u"last"_s), {.folder = m_home->path(u"last"_s)}),
                 std::optional(Refusal::ProtectedFolder));
    }

    void theTargetOfAProtectedFolderThatIsALinkIsTheFolderItself()
    {
        m_home->makeFolder(u"elsewhere/parked"_s);
        QVERIFY(QFile::link(u"elsewhere/parked"_s, m_home->path(u"link"_s)));
        const fileSystem::Protection protection{.folder = m_home->path(u"link"_s)};

        QCOMPARE(fileSystem::refusalOf(m_home->path(u"elsewhere/parked"_s), protection),
                 std::optional(Refusal::ProtectedFolder));
        QCOMPARE(fileSystem::refusalOf(m_home->path(u"elsewhere"_s), protection),
                 std::optional(Refusal::HoldsProtectedFolder));
    }

    void aMountPointIsToldFromWhatHoldsOne()
    {
        if (!PrivateMounts::available()) {
            QSKIP("mounts file systems, which needs root");
        }
        PrivateMounts mounts;
        mounts.mountTemporary(m_home->makeFolder(u"disks/one"_s));
        const QString file = m_home->makeFile(u"mounted file"_s);
        mounts.bind(m_home->makeFile(u"original"_s), file);

        QCOMPARE(fileSystem::refusalOf(m_home->path(u"disks/one"_s), m_protection), std::optional(Refusal::MountPoint));
        QCOMPARE(fileSystem::refusalOf(file, m_protection), std::optional(Refusal::MountPoint));
        QCOMPARE(fileSystem::refusalOf(m_home->path(u"disks"_s), m_protection),
                 std::optional(Refusal::HoldsMountPoint));
        QVERIFY(fileSystem::status(m_home->path(u"disks/one"_s)).isMountPoint);
        QVERIFY(fileSystem::status(file).isMountPoint);
        QVERIFY(!fileSystem::status(m_home->path(u"disks"_s)).isMountPoint);
    }

    void aHomeFolderOnADiskOfItsOwnIsTheHomeFolder()
    {
        if (!PrivateMounts::available()) {
            QSKIP("mounts file systems, which needs root");
        }
        PrivateMounts mounts;
        const QString home = m_home->makeFolder(u"users/ada"_s);
        mounts.mountTemporary(home);
        qputenv("HOME", home.toUtf8());

        QCOMPARE(fileSystem::refusalOf(home, m_protection), std::optional(Refusal::Home));
        QCOMPARE(fileSystem::refusalOf(m_home->path(u"users"_s), m_protection), std::optional(Refusal::HoldsHome));
    }

private:
    std::unique_ptr<TemporaryHome> m_home;
    fileSystem::Protection m_protection;
};

QTEST_GUILESS_MAIN(FileSystem_refusal_test)

#include "FileSystem_refusal_test.moc"
