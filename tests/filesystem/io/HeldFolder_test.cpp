// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileBatch.h"
#include "HeldFolder.h"
#include "TemporaryHome.h"

#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <unistd.h>

#include <cerrno>
#include <limits>

using namespace lapsa;
using namespace Qt::StringLiterals;

class HeldFolder_test final : public QObject
{
    Q_OBJECT

private slots:

    void whatIsDoneInItIsDoneThereWhateverBecomesOfItsPath()
    {
        const test::TemporaryHome home;
        home.makeFile(u"folder/a.txt"_s);
        const fileSystem::HeldFolder folder(home.path(u"folder"_s));
        QVERIFY(QFile::rename(home.path(u"folder"_s), home.path(u"moved"_s)));
        home.makeFile(u"folder/a.txt"_s);

        fileSystem::Batch batch({});
        QVERIFY(batch.remove(batch.find(folder, u"a.txt"_s)));

        QVERIFY(!QFile::exists(home.path(u"moved/a.txt"_s)));
        QVERIFY(QFile::exists(home.path(u"folder/a.txt"_s)));
    }

    void onlyTheNameOfAnEntryFindsSomething_data()
    {
        QTest::addColumn<QString>("name");

        QTest::newRow("none") << QString();
        QTest::newRow("the folder itself") << u"."_s;
        QTest::newRow("the folder above") << u".."_s;
        QTest::newRow("a path") << u"sub/a.txt"_s;
        QTest::newRow("an absolute path") << u"%home%/folder/sub/a.txt"_s;
        QTest::newRow("a slash at its end") << u"sub/"_s;
        QTest::newRow("with a NUL") << u"sub\0"_s;
        QTest::newRow("no text") << QString(QChar(0xD800));
    }

    void onlyTheNameOfAnEntryFindsSomething()
    {
        QFETCH(QString, name);
        const test::TemporaryHome home;
        home.makeFile(u"folder/sub/a.txt"_s);
        name.replace(u"%home%"_s, home.path({}));
        const fileSystem::HeldFolder folder(home.path(u"folder"_s));
        fileSystem::Batch batch({});

        const fileSystem::BatchEntry entry = batch.find(folder, name);

        QVERIFY(!entry.exists());
        QVERIFY(!entry.info());
        QVERIFY(!batch.remove(entry));
        QVERIFY(!batch.move(entry, home.path(u"taken"_s)));
        QVERIFY(QFile::exists(home.path(u"folder/sub/a.txt"_s)));
        const auto found = folder.info(name);
        QCOMPARE(found ? 0 : found.error().code, EINVAL);
    }

    void aFolderThatIsNotThereHoldsNothing()
    {
        const test::TemporaryHome home;
        const fileSystem::HeldFolder folder(home.path(u"missing"_s));
        fileSystem::Batch batch({});

        const fileSystem::BatchEntry entry = batch.find(folder, u"tmp"_s);
        QVERIFY(!entry.exists());
        QVERIFY(!batch.remove(entry));
        QCOMPARE(folder.identity().error().code, ENOENT);
        QCOMPARE(folder.info(u"tmp"_s).error().code, ENOENT);
    }

    void aLinkThatLeadsNowhereIsAnEntry()
    {
        const test::TemporaryHome home;
        home.makeFolder(u"folder"_s);
        QVERIFY(QFile::link(u"nowhere"_s, home.path(u"folder/link"_s)));
        fileSystem::Batch batch({});

        const fileSystem::BatchEntry link = batch.find(fileSystem::HeldFolder(home.path(u"folder"_s)), u"link"_s);
        QVERIFY(link.exists());
        QVERIFY(batch.move(link, home.path(u"link"_s)));

        QVERIFY(QFileInfo(home.path(u"link"_s)).isSymLink());
    }

    void onlyAFileOfSeveralNamesTellsItsFolder()
    {
        const test::TemporaryHome home;
        const QByteArray file = home.makeFile(u"folder/a.txt"_s).toUtf8();
        const fileSystem::HeldFolder folder(home.path(u"folder"_s));
        QVERIFY(!folder.info(u"a.txt"_s).value().folderOfName);
        QCOMPARE(::link(file.constData(), (file + "-2").constData()), 0);

        const fileSystem::EntryInfo info = folder.info(u"a.txt"_s).value();

        QVERIFY(info.folderOfName == folder.identity().value());
        QVERIFY(info.identity == folder.info(u"a.txt-2"_s).value().identity);
    }

    void theFoldersAboveAreThoseOnTheDisk()
    {
        const test::TemporaryHome home;
        home.makeFolder(u"real/sub"_s);
        QVERIFY(QFile::link(home.path(u"real/sub"_s), home.path(u"link"_s)));
        const auto identityOf = [&home](const QString& path) {
            return fileSystem::HeldFolder(home.path(path)).identity().value();
        };
        QList<FileIdentity> seen;

        fileSystem::forEachFolderUpwards(home.path(u"link"_s), [&seen](const FileIdentity& identity) {
            seen.push_back(identity);
            return true;
        });

        QVERIFY(seen.mid(0, 3) == QList({identityOf(u"real/sub"_s), identityOf(u"real"_s), identityOf({})}));
        QVERIFY(seen.last() == fileSystem::HeldFolder(u"/"_s).identity().value());
        QCOMPARE(seen.count(seen.last()), 1);
    }

    void longWorkIsAnnouncedBeforeItBegins()
    {
        const test::TemporaryHome home;
        home.makeFile(u"folder/a.txt"_s);
        const QString file = home.makeFile(u"a.txt"_s);
        QList<std::int64_t> announced;
        fileSystem::Batch batch({});
        batch.announceLongWork([&](std::int64_t bytes) {
            announced.push_back(bytes);
            QVERIFY(QFile::exists(home.path(u"folder/a.txt"_s)));
        });

        QVERIFY(batch.remove(file));
        QCOMPARE(announced, QList<std::int64_t>());
        QVERIFY(batch.remove(home.path(u"folder"_s)));

        QCOMPARE(announced, QList{std::numeric_limits<std::int64_t>::max()});
    }
};

QTEST_GUILESS_MAIN(HeldFolder_test)

#include "HeldFolder_test.moc"
