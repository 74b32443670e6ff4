// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileBatch.h"
#include "LaneJob.h"
#include "PlayedWork.h"
#include "QtMainQueue.h"
#include "SteeredDisk.h"
#include "TemporaryHome.h"
#include "ThreadLanes.h"

#include <QStringList>
#include <QTest>

#include <memory>
#include <optional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace lapsa::test {

namespace {

constexpr int patience = 20'000;

/// On a busy machine other work may hang for a moment as well, and be overtaken.
QStringList sorted(QStringList names)
{
    names.sort();
    return names;
}

/// Moves a file, and notes its name when that is reported.
Lanes::Work moving(const QString& from, const QString& to, QStringList& notes)
{
    return [from, to, &notes](LaneJob&) -> Lanes::Report {
        const bool moved = bool(fileSystem::Batch({}).move(from, to));
        const QString name = from.section(u'/', -1);
        return [moved, name, &notes] { notes << (moved ? name : u"failed: "_s + name); };
    };
}

} // namespace

/// Lanes with real work on a mount that stops answering.
class ThreadLanesDeadDiskTest final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void otherMountsGoOn();
    void theRestOfTheMountGoesOnBehindTheDeadPath();
    void whatHungComesBackWhenTheDiskAnswers();
    void theEndDoesNotWaitForADeadDisk();

private:
    [[nodiscard]] QString disk(const QString& name) const { return m_home->path(u"disk/"_s + name); }

    QtMainQueue m_queue;
    std::unique_ptr<TemporaryHome> m_home;
    std::optional<SteeredDisk> m_disk;
    QStringList m_notes;
    QStringList m_hanging;
    QStringList m_back;

    /// Work hangs after so short a time.
    [[nodiscard]] std::unique_ptr<ThreadLanes> lanes()
    {
        auto made = std::make_unique<ThreadLanes>(m_queue, ThreadLanes::Bounds{.hangsAfter = 50ms});
        made->onHanging([this](const QString& lane) { m_hanging << lane; },
                        [this](const QString& lane) { m_back << lane; });
        return made;
    }
};

void ThreadLanesDeadDiskTest::initTestCase()
{
    if (!SteeredDisk::available()) {
        QSKIP("no steered disk");
    }
}

// disk/ shows behind/, which has a folder with one file each.
void ThreadLanesDeadDiskTest::init()
{
    m_home = std::make_unique<TemporaryHome>();
    for (const QString& name : {u"one"_s, u"two"_s, u"three"_s}) {
        m_home->makeFile(u"behind/in-%1/%1"_s.arg(name));
        m_home->makeFile(u"here/"_s + name);
    }
    m_home->makeFolder(u"gone"_s);
    m_disk.emplace(m_home->path(u"behind"_s), m_home->path(u"disk"_s));
    m_notes.clear();
    m_hanging.clear();
    m_back.clear();
}

void ThreadLanesDeadDiskTest::cleanup()
{
    m_disk.reset();
    m_home.reset();
}

void ThreadLanesDeadDiskTest::otherMountsGoOn()
{
    const auto made = lanes();
    m_disk->stopAnswering();
    const auto dead = made->run(disk(u"in-one/one"_s), moving(disk(u"in-one/one"_s), disk(u"in-one/moved"_s), m_notes));
    m_disk->awaitStoppedCall();

    for (const QString& name : {u"one"_s, u"two"_s}) {
        const QString path = m_home->path(u"here/"_s + name);
        made->run(path, moving(path, m_home->path(u"gone/"_s + name), m_notes));
    }

    QTRY_COMPARE_WITH_TIMEOUT(sorted(m_notes), (QStringList{u"one"_s, u"two"_s}), patience);
    QTRY_VERIFY_WITH_TIMEOUT(m_hanging.contains(m_home->path(u"disk"_s)), patience);
    QCOMPARE(dead->state(), LaneJob::State::Hanging);
}

void ThreadLanesDeadDiskTest::theRestOfTheMountGoesOnBehindTheDeadPath()
{
    const auto made = lanes();
    m_disk->stopAnsweringOn(u"in-one/one"_s);
    for (const QString& name : {u"one"_s, u"two"_s, u"three"_s}) {
        const QString folder = disk(u"in-"_s + name);
        made->run(folder + u'/' + name, moving(folder + u'/' + name, folder + u"/moved"_s, m_notes));
    }

    QTRY_COMPARE_WITH_TIMEOUT(sorted(m_notes), (QStringList{u"three"_s, u"two"_s}), patience);

    m_disk->answerAgain();
    QTRY_COMPARE_WITH_TIMEOUT(m_notes.size(), 3, patience);
    QCOMPARE(m_notes.last(), u"one"_s);
    QCOMPARE(m_home->names(u"behind/in-one"_s), QStringList{u"moved"_s});
}

void ThreadLanesDeadDiskTest::whatHungComesBackWhenTheDiskAnswers()
{
    const auto made = lanes();
    m_disk->stopAnswering();
    const auto job =
        made->run(disk(u"in-one/one"_s), moving(disk(u"in-one/one"_s), m_home->path(u"gone/one"_s), m_notes));
    QTRY_COMPARE_WITH_TIMEOUT(job->state(), LaneJob::State::Hanging, patience);

    m_disk->answerAgain();

    QTRY_COMPARE_WITH_TIMEOUT(m_notes, QStringList{u"one"_s}, patience);
    QVERIFY(m_back.contains(m_home->path(u"disk"_s)));
    QCOMPARE(job->state(), LaneJob::State::Finished);
    QCOMPARE(m_home->names(u"gone"_s), QStringList{u"one"_s});
}

void ThreadLanesDeadDiskTest::theEndDoesNotWaitForADeadDisk()
{
    auto made = lanes();
    m_disk->stopAnswering();
    const auto job = made->run(disk(u"in-one/one"_s), moving(disk(u"in-one/one"_s), disk(u"in-one/moved"_s), m_notes));
    QTRY_COMPARE_WITH_TIMEOUT(job->state(), LaneJob::State::Hanging, patience);

    // It hangs still: waiting for it would never end.
    QVERIFY(made->finish(std::chrono::hours(1)));
    made.reset();

    QVERIFY(m_notes.isEmpty());
    QCOMPARE(m_home->names(u"behind/in-one"_s), QStringList{u"one"_s});
}

} // namespace lapsa::test

using lapsa::test::ThreadLanesDeadDiskTest;

QTEST_GUILESS_MAIN(ThreadLanesDeadDiskTest)
#include "ThreadLanes_dead_disk_test.moc"
