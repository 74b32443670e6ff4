// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "PanelWorld.h"
#include "WorkAnnouncements.h"

#include <QTest>

#include <chrono>

using namespace lapsa;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class WorkAnnouncements_test final : public QObject
{
    Q_OBJECT

private slots:

    void aLongCopyIsToldAtEveryQuarter();
    void aFastCopyIsToldOnce();
    void aRemovalIsToldEveryTenSeconds();
    void aRemovalThatStandsStillIsNotToldAgain();
    void aDiskThatDoesNotAnswerIsToldOnce();
    void workOnAnotherItemWaitsForItsTurn();
    void workThatBeginsAnewIsToldAnew();
    void aClockThatWasSetBackDoesNotSilenceIt();
};

namespace {

using Kind = ItemWork::Kind;

constexpr TimePoint start{1000h};

/// What is said of one item while time goes by in steps.
class OneItem
{
public:
    QStringList sayAfter(std::chrono::seconds step, const QList<ItemWork>& works)
    {
        QStringList said;
        for (const ItemWork& work : works) {
            m_now += step;
            if (const auto text = m_announcements.next({{.id = u"A"_s, .displayName = u"a"_s, .work = work}}, m_now)) {
                said.push_back(*text);
            }
        }
        return said;
    }

private:
    WorkAnnouncements m_announcements;
    TimePoint m_now = start;
};

QList<ItemWork> copy(int percentPerStep)
{
    QList<ItemWork> works;
    for (int percent = 0; percent < 100; percent += percentPerStep) {
        works.push_back({Kind::Moving, percent, 100});
    }
    return works;
}

} // namespace

void WorkAnnouncements_test::aLongCopyIsToldAtEveryQuarter()
{
    OneItem item;

    QCOMPARE(item.sayAfter(1s, copy(1)), (QStringList{u"“a”: Moving… 0 %"_s, u"“a”: Moving… 25 %"_s,
                                                      u"“a”: Moving… 50 %"_s, u"“a”: Moving… 75 %"_s}));
}

void WorkAnnouncements_test::aFastCopyIsToldOnce()
{
    OneItem item;

    QCOMPARE(item.sayAfter(1s, copy(12)), QStringList{u"“a”: Moving… 0 %"_s});
}

void WorkAnnouncements_test::aRemovalIsToldEveryTenSeconds()
{
    OneItem item;
    QList<ItemWork> works;
    for (int second = 1; second <= 25; ++second) {
        works.push_back({Kind::Removing, 1000 * second, 0});
    }

    QCOMPARE(item.sayAfter(1s, works), (QStringList{u"“a”: Removing… 1,000 files"_s, u"“a”: Removing… 11,000 files"_s,
                                                    u"“a”: Removing… 21,000 files"_s}));
}

void WorkAnnouncements_test::aRemovalThatStandsStillIsNotToldAgain()
{
    OneItem item;

    QCOMPARE(item.sayAfter(20s, QList<ItemWork>(5, {Kind::Removing, 7, 0})).size(), 1);
}

void WorkAnnouncements_test::aDiskThatDoesNotAnswerIsToldOnce()
{
    OneItem item;

    QCOMPARE(item.sayAfter(60s, QList<ItemWork>(5, {Kind::WaitingForDisk, 0, 0})),
             QStringList{u"“a”: Waiting for the disk"_s});
}

void WorkAnnouncements_test::workOnAnotherItemWaitsForItsTurn()
{
    WorkAnnouncements announcements;
    const QList<WorkAnnouncements::Worked> both{
        {.id = u"A"_s, .displayName = u"a"_s, .work = {Kind::WaitingForDisk, 0, 0}},
        {.id = u"B"_s, .displayName = u"b"_s, .work = {Kind::WaitingForDisk, 0, 0}}};

    QCOMPARE(announcements.next(both, start), u"“a”: Waiting for the disk"_s);
    QCOMPARE(announcements.next(both, start + 9s), std::nullopt);
    QCOMPARE(announcements.next(both, start + 10s), u"“b”: Waiting for the disk"_s);
    QCOMPARE(announcements.next(both, start + 20s), std::nullopt);
}

void WorkAnnouncements_test::workThatBeginsAnewIsToldAnew()
{
    WorkAnnouncements announcements;
    const QList<WorkAnnouncements::Worked> work{
        {.id = u"A"_s, .displayName = u"a"_s, .work = {Kind::WaitingForDisk, 0, 0}}};
    QVERIFY(announcements.next(work, start));

    QCOMPARE(announcements.next({}, start + 60s), std::nullopt);

    QVERIFY(announcements.next(work, start + 120s));
}

void WorkAnnouncements_test::aClockThatWasSetBackDoesNotSilenceIt()
{
    WorkAnnouncements announcements;
    QVERIFY(announcements.next({{.id = u"A"_s, .displayName = u"a"_s, .work = {Kind::Moving, 0, 100}}}, start));

    QVERIFY(announcements.next({{.id = u"A"_s, .displayName = u"a"_s, .work = {Kind::Moving, 50, 100}}}, start - 24h));
}

QTEST_MAIN(WorkAnnouncements_test)
#include "WorkAnnouncements_test.moc"
