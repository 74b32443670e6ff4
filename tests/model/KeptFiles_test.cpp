// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "KeptFiles.h"
#include "LogCapture.h"
#include "Privileges.h"
#include "TemporaryHome.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <sys/stat.h>

#include <tuple>

using namespace lapsa;
using namespace Qt::StringLiterals;

namespace {

const QString keptFolder = u".local/state/Lapsa"_s;

QByteArray content(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

mode_t modeOf(const QString& path)
{
    struct stat status = {};
    return ::stat(path.toUtf8().constData(), &status) == 0 ? status.st_mode & 07777 : 0;
}

} // namespace

class KeptFiles_test final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase() { std::ignore = test::PrivateMounts::available(); } // before the first temporary folder

    void aCopyIsKeptForTheUserAloneAndTheLogSaysWhere()
    {
        const test::TemporaryHome home;
        home.writeDataFile(u"settings.json"_s, "twenty rules");
        const test::LogCapture log;

        keepCopyOf(home.dataPath(u"settings.json"_s));

        const QString kept = home.path(keptFolder + u"/settings-1.json"_s);
        QCOMPARE(content(kept), QByteArray("twenty rules"));
        QCOMPARE(modeOf(kept), mode_t{0600});
        QCOMPARE(modeOf(home.path(keptFolder)), mode_t{0700});
        QCOMPARE(log.lines(), QStringList{u"Lapsa replaces settings.json, a copy is kept: "_s + kept});
    }

    void theLastTenOfEachFileAreKept()
    {
        const test::TemporaryHome home;
        home.writeDataFile(u"settings.json"_s, "rules");
        keepCopyOf(home.dataPath(u"settings.json"_s));
        home.makeFile(keptFolder + u"/state-x.json"_s);
        for (int number = 1; number <= 12; ++number) {
            home.writeDataFile(u"state.json"_s, QByteArray::number(number));
            keepCopyOf(home.dataPath(u"state.json"_s));
        }

        QStringList names = home.names(keptFolder);
        QVERIFY(names.removeOne(u"settings-1.json"_s));
        QVERIFY(names.removeOne(u"state-x.json"_s));
        QCOMPARE(names.size(), mostKeptFiles);
        QVERIFY(!names.contains(u"state-2.json"_s));
        QCOMPARE(content(home.path(keptFolder + u"/state-3.json"_s)), QByteArray("3"));
        QCOMPARE(content(home.path(keptFolder + u"/state-12.json"_s)), QByteArray("12"));
    }

    void theSameAgainIsNotKeptTwice()
    {
        const test::TemporaryHome home;
        home.writeDataFile(u"state.json"_s, "[{");
        keepCopyOf(home.dataPath(u"state.json"_s));
        const test::LogCapture log;

        keepCopyOf(home.dataPath(u"state.json"_s));

        QCOMPARE(home.names(keptFolder), QStringList{u"state-1.json"_s});
        QCOMPARE(log.lines().size(), 1);
        QVERIFY(log.lines().first().endsWith(u"state-1.json"_s));
    }

    void whatHoldsNothingIsNotKept()
    {
        const test::TemporaryHome home;
        home.writeDataFile(u"state.json"_s, "");
        const test::LogCapture log;

        keepCopyOf(home.dataPath(u"state.json"_s));
        keepCopyOf(home.dataPath(u"missing.json"_s));

        QVERIFY(!QFileInfo::exists(home.path(keptFolder)));
        QCOMPARE(log.lines(), QStringList());
    }

    void aFileThatCannotBeReadIsKeptItself_data()
    {
        QTest::addColumn<bool>("otherUsers");
        QTest::addColumn<bool>("otherDisk");
        QTest::newRow("without rights") << false << false;
        QTest::newRow("of another user") << true << false;
        QTest::newRow("where the copies are on another disk") << false << true;
    }

    void aFileThatCannotBeReadIsKeptItself()
    {
        QFETCH(bool, otherUsers);
        QFETCH(bool, otherDisk);
        if (!test::PrivateMounts::available()) {
            QSKIP("acts as another user, which needs root");
        }
        const test::TemporaryHome home;
        test::PrivateMounts mounts;
        if (otherDisk) {
            mounts.mountTemporary(home.path(u".local/state"_s));
        }
        home.makeFolder(u".local/state"_s);
        home.writeDataFile(u"state.json"_s, "[items]");
        const QString list = home.dataPath(u"state.json"_s);
        QCOMPARE(::chmod(list.toUtf8().constData(), otherUsers ? 0600 : 0), 0);
        for (const QString& path :
             {home.path({}), home.path(u".local"_s), home.path(u".local/state"_s), home.dataPath()}) {
            test::giveToOrdinaryUser(path);
        }
        if (!otherUsers) {
            test::giveToOrdinaryUser(list);
        }
        const test::LogCapture log;

        QCOMPARE(test::asOrdinaryUser([&] {
                     keepCopyOf(list);
                     return 0;
                 }),
                 0);

        const QString kept = otherDisk ? home.dataPath(u"state-1.json"_s) : home.path(keptFolder + u"/state-1.json"_s);
        QVERIFY(!QFileInfo::exists(list));
        QCOMPARE(content(kept), QByteArray("[items]"));
        QCOMPARE(log.lines(), QStringList{u"Lapsa replaces state.json, a copy is kept: "_s + kept});
    }

    void whatIsNoFileIsLeftInSilence()
    {
        const test::TemporaryHome home;
        QVERIFY(QDir().mkpath(home.dataPath(u"state.json/inside"_s)));
        const test::LogCapture log;

        keepCopyOf(home.dataPath(u"state.json"_s));

        QVERIFY(QFileInfo::exists(home.dataPath(u"state.json/inside"_s)));
        QCOMPARE(log.lines(), QStringList());
    }

    void aCopyThatCannotBeKeptIsOneLine()
    {
        const test::TemporaryHome home;
        home.writeDataFile(u"state.json"_s, "[{");
        home.makeFile(u".local/state"_s, "in the way");
        const test::LogCapture log;

        keepCopyOf(home.dataPath(u"state.json"_s));

        QCOMPARE(log.lines().size(), 1);
        QVERIFY(log.lines().first().startsWith(u"Lapsa replaces state.json, no copy is kept: "_s));
    }
};

QTEST_GUILESS_MAIN(KeptFiles_test)

#include "KeptFiles_test.moc"
