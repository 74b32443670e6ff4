// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "HangingMounts.h"
#include "LogCapture.h"
#include "ManualTime.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace lapsa::test {

namespace {

struct World
{
    ManualTime time;
    HangingMounts mounts{time};
    LogCapture log;
};

} // namespace

class HangingMountsTest final : public QObject
{
    Q_OBJECT

private slots:

    void aMountThatAnswersWithinTenSecondsIsNotToldOf()
    {
        World world;
        world.mounts.hangs(u"/mnt/nas"_s);

        world.time.advance(7900ms);
        world.mounts.isBack(u"/mnt/nas"_s);
        world.time.advance(60s);

        QCOMPARE(world.log.lines(), QStringList());
    }

    void aMountThatDoesNotAnswerIsToldOfOnceAndAgainWhenItAnswers()
    {
        World world;
        world.mounts.hangs(u"/mnt/nas"_s);
        world.time.advance(1s);
        world.mounts.hangs(u"/mnt/nas"_s);

        world.time.advance(60s);
        world.mounts.hangs(u"/mnt/nas"_s);
        world.time.advance(60s);
        QCOMPARE(world.log.lines(), QStringList{u"Lapsa waits for /mnt/nas"_s});
        world.mounts.isBack(u"/mnt/nas"_s);
        world.mounts.isBack(u"/mnt/nas"_s);
        QCOMPARE(world.log.lines().size(), 1);
        world.mounts.isBack(u"/mnt/nas"_s);

        QCOMPARE(world.log.lines(),
                 (QStringList{u"Lapsa waits for /mnt/nas"_s, u"Lapsa no longer waits for /mnt/nas"_s}));
    }

    void eachMountIsToldOfByItself()
    {
        World world;
        world.mounts.hangs(u"/mnt/nas"_s);
        world.mounts.hangs(u"/media/stick"_s);
        world.time.advance(5s);
        world.mounts.isBack(u"/mnt/nas"_s);

        world.time.advance(5s);

        QCOMPARE(world.log.lines(), QStringList{u"Lapsa waits for /media/stick"_s});
    }

    void aMountThatHangsAgainIsToldOfAgain()
    {
        World world;
        for (int i = 0; i < 2; ++i) {
            world.mounts.hangs(u"/mnt/nas"_s);
            world.time.advance(8s);
            world.mounts.isBack(u"/mnt/nas"_s);
        }

        QCOMPARE(world.log.lines().count(u"Lapsa waits for /mnt/nas"_s), 2);
    }
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::HangingMountsTest)
#include "HangingMounts_test.moc"
