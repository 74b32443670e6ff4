// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "SteeredDisk.h"
#include "TemporaryHome.h"
#include "ThreadWorld.h"

#include <QSignalSpy>
#include <QTest>

#include <functional>
#include <optional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace lapsa::test {

namespace {

constexpr int patience = ThreadWorld::patience;

using Change = std::function<void(LapsaStore& store, const LapsaItem& item)>;

/// A folder on a slow disk that is removed for good.
struct RemovalWorld
{
    static constexpr int files = 64;

    explicit RemovalWorld(TemporaryHome& ownHome)
        : home(ownHome)
        , disk(withFiles(ownHome), ownHome.path(u"disk"_s))
    {}

    static QString withFiles(TemporaryHome& home)
    {
        for (int number = 0; number < files; ++number) {
            home.makeFile(u"source/big/%1"_s.arg(number));
        }
        return home.path(u"source"_s);
    }

    void deleteNow(const LapsaItem& item)
    {
        world.store.deleteNow(item, [this](const LapsaStore::Deletion& known) { outcome = known.outcome; });
    }

    /// Until a part of it is gone.
    LapsaItem begin()
    {
        LapsaSettings settings = world.store.settings();
        settings.useRecoveryWindow = false;
        settings.useTrash = false;
        world.store.setSettings(settings);
        world.add({home.path(u"disk/big"_s)});
        const LapsaItem item = world.store.items().constFirst();
        disk.answerAfter(20ms);
        deleteNow(item);
        const auto isSeen = [&] {
            const std::optional<ItemWork> work = world.store.workOn(item.id);
            return work && work->kind == ItemWork::Kind::Removing && work->done > 0;
        };
        [&] { QTRY_VERIFY_WITH_TIMEOUT(isSeen() || outcome, patience); }();
        [&] { QVERIFY2(!outcome, "the removal was not seen"); }();
        return item;
    }

    TemporaryHome& home;
    SteeredDisk disk;
    ThreadWorld world;
    std::optional<LapsaStore::DeleteOutcome> outcome;
};

} // namespace

/// What is told of a folder whose removal for good was stopped after a part of it had gone.
class LapsaStore_stopped_removal_test final : public QObject
{
    Q_OBJECT

private slots:

    void aStoppedRemovalTellsWhatIsLeft_data()
    {
        QTest::addColumn<Change>("stop");
        QTest::addColumn<Change>("change");

        const Change lock = [](LapsaStore& store, const LapsaItem& item) { store.toggleLock(item); };
        const Change giveTime = [](LapsaStore& store, const LapsaItem& item) { store.updateExpiration(item, 30); };
        const Change takeOff = [](LapsaStore& store, const LapsaItem& item) { store.removeFromList(item); };
        QTest::newRow("locked, then unlocked") << lock << lock;
        QTest::newRow("locked, then given time") << lock << giveTime;
        QTest::newRow("given time, then locked") << giveTime << lock;
        QTest::newRow("given time, then off the list") << giveTime << takeOff;
    }

    void aStoppedRemovalTellsWhatIsLeft()
    {
        QFETCH(const Change, stop);
        QFETCH(const Change, change);
        RemovalWorld removal(*m_home);
        LapsaStore& store = removal.world.store;
        const LapsaItem item = removal.begin();
        QSignalSpy announced(&store, &LapsaStore::willChange);

        stop(store, item);
        announced.clear();
        QTRY_VERIFY_WITH_TIMEOUT(removal.outcome, patience);

        QCOMPARE(*removal.outcome, LapsaStore::DeleteOutcome::Stopped);
        const qsizetype left = m_home->names(u"source/big"_s).size();
        QVERIFY(left > 0 && left < RemovalWorld::files);
        QVERIFY(!announced.isEmpty());
        QTRY_VERIFY_WITH_TIMEOUT(!store.isWorking(), patience);
        QCOMPARE(store.workOn(item.id), (ItemWork{.kind = ItemWork::Kind::Stopped, .done = left}));

        change(store, item);
        QCOMPARE(store.workOn(item.id), std::nullopt);
    }

    void whatIsLeftIsNotToldOfWhatWentLater()
    {
        RemovalWorld removal(*m_home);
        LapsaStore& store = removal.world.store;
        const LapsaItem item = removal.begin();
        store.toggleLock(item);
        QTRY_VERIFY_WITH_TIMEOUT(removal.outcome, patience);
        QVERIFY(store.workOn(item.id));

        removal.disk.answerAfter(0ms);
        removal.outcome.reset();
        removal.deleteNow(item);
        QTRY_VERIFY_WITH_TIMEOUT(removal.outcome, patience);

        QCOMPARE(*removal.outcome, LapsaStore::DeleteOutcome::OffTheList);
        QCOMPARE(store.workOn(item.id), std::nullopt);
        QVERIFY(m_home->names(u"source"_s).isEmpty());
    }

    void init()
    {
        if (!SteeredDisk::available()) {
            QSKIP("needs a file system of its own");
        }
        m_home.emplace();
    }

private:
    std::optional<TemporaryHome> m_home;
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::LapsaStore_stopped_removal_test)
#include "LapsaStore_stopped_removal_test.moc"
