// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LapsaAppFixture.h"
#include "LapsaProcess.h"
#include "SteeredDisk.h"

#include <QDateTime>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <csignal>
#include <optional>

using namespace Qt::StringLiterals;

namespace lapsa::test {

/// The program as a whole, beside a disk that stops answering.
class LapsaAppDeadDiskTest final : public LapsaAppFixture
{
    Q_OBJECT

private slots:

    void initTestCase()
    {
        if (!SteeredDisk::available()) {
            QSKIP("no disk to be stopped");
        }
    }

    void init()
    {
        begin();
        m_disk.emplace(m_home->makeFolder(u"served"_s), m_home->makeFolder(u"disk"_s));
    }

    void cleanup()
    {
        m_disk.reset();
        end();
    }

    void itStartsWorksAndEndsWhileADueFileHangs()
    {
        const QString here = m_home->makeFile(u"here.txt"_s);
        const QString there = m_home->makeFile(u"disk/there.txt"_s);
        writeDue({there, here});
        m_disk->stopAnswering();

        LapsaProcess lapsa;
        waitForName();
        m_disk->awaitStoppedCall();
        QTRY_VERIFY_WITH_TIMEOUT(!QFile::exists(here), patience);

        lapsa.send(SIGTERM);
        // This disk holds a process back until it answers. Everything else has ended: the next one can start.
        QTRY_VERIFY_WITH_TIMEOUT(!m_bus->hasOwner(busName()), patience);
        QCOMPARE(storedPaths(*m_home), QStringList{there});
        LapsaProcess next;
        waitForName();
        next.send(SIGTERM);
        QTRY_VERIFY_WITH_TIMEOUT(!m_bus->hasOwner(busName()), patience);
        m_disk->answerAgain();
        QCOMPARE(lapsa.exitCode(), 0);
        QCOMPARE(next.exitCode(), 0);
        QCOMPARE(lapsa.standardError() + next.standardError(), QByteArray());
    }

    void aSecondStartWithAFileThereHandsItOver()
    {
        const QString there = m_home->makeFile(u"disk/there.txt"_s);
        LapsaProcess lapsa;
        waitForName();
        m_disk->stopAnswering();

        LapsaProcess second({there});

        QCOMPARE(second.exitCode(), 0);
        m_disk->awaitStoppedCall();
        m_disk->answerAgain();
        QTRY_COMPARE_WITH_TIMEOUT(storedPaths(*m_home), QStringList{there}, patience);
        QCOMPARE(lapsa.terminate(), 0);
    }

private:
    /// The list, with these files overdue.
    void writeDue(const QStringList& paths) const
    {
        QJsonArray list;
        const auto hours = [](int count) {
            return QDateTime::currentDateTimeUtc().addSecs(qint64{count} * 3600).toString(Qt::ISODate);
        };
        for (const QString& path : paths) {
            list.push_back(QJsonObject{{u"addedAt"_s, hours(-2)},
                                       {u"displayName"_s, path.section(u'/', -1)},
                                       {u"expiresAt"_s, hours(-1)},
                                       {u"fiveMinuteWarningSent"_s, true},
                                       {u"id"_s, u"00000000-0000-4000-8000-%1"_s.arg(list.size(), 12, 10, QChar(u'0'))},
                                       {u"locked"_s, false},
                                       {u"path"_s, path}});
        }
        m_home->writeDataFile(u"state.json"_s, QJsonDocument(list).toJson());
    }

    std::optional<SteeredDisk> m_disk;
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::LapsaAppDeadDiskTest)
#include "LapsaApp_dead_disk_test.moc"
