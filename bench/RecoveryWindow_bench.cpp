// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileIconProvider.h"
#include "JSONEncoder.h"
#include "Measured.h"
#include "PaintedFrames.h"
#include "RecoveryListView.h"
#include "RecoveryView.h"
#include "ShownPanel.h"
#include "StoreWorld.h"

#include <QApplication>
#include <QListWidget>
#include <QUrl>

#include <optional>

namespace lapsa::bench {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// A store with so many records, whose lanes run when told, as the threads of the program: opening waits for none.
class RecordsWorld final
{
public:
    explicit RecordsWorld(std::int64_t count)
    {
        QList<LapsaRecoveryItem> records;
        const QString folder = m_world.home.makeFolder(u".local/share/Lapsa/Recovery"_s);
        for (std::int64_t index = 0; index < count; ++index) {
            records.push_back({.id = QUuid::createUuid(),
                               .originalPath = u"/nowhere/"_s + nameOf(index),
                               .recoveryPath = folder + u'/' + nameOf(index),
                               .displayName = nameOf(index),
                               .deletedAt = m_world.time.now(),
                               .purgeAfter = m_world.time.now() + 24h});
        }
        m_world.home.writeDataFile(u"state.json"_s, "[]\n");
        m_world.home.writeDataFile(u"recovery.json"_s, JSONEncoder::lapsa().encode(records));
        m_world.start();
        m_world.lanes.setRuns(test::ManualLanes::Runs::WhenTheTestSaysSo);
    }

    /// Up to the first frame with rows.
    void open()
    {
        m_window.emplace(RecoveryView::Environment{
            .store = m_world.store(),
            .clock = m_world.time,
            .mainQueue = m_world.time,
            .icons = [](const QString& name, bool isFolder) {
                return themedFileIcon(QUrl::fromLocalFile(u'/' + name), isFolder ? ItemKind::Folder : ItemKind::File);
            }});
        PaintNotes notes;
        notes.watch(*m_window->findChild<RecoveryListView*>()->viewport());
        m_window->show();
        m_window->activateWindow();
        waitForFrame(notes);
    }

    void close()
    {
        waitUntilActive(*m_window);
        m_window.reset();
    }

private:
    test::StoreWorld m_world{false};
    std::optional<RecoveryView> m_window;
};

void openRecovery(benchmark::State& state)
{
    RecordsWorld world(state.range(0));
    OtherWindow other;
    for ([[maybe_unused]] auto iteration : state) {
        measure(state, [&] { world.open(); });
        world.close();
        other.takeFocus();
    }
}

void openPeer(benchmark::State& state)
{
    OtherWindow other;
    for ([[maybe_unused]] auto iteration : state) {
        std::optional<QListWidget> list;
        measure(state, [&] {
            list.emplace();
            list->setUniformItemSizes(true);
            list->resize(RecoveryView::extent);
            for (std::int64_t index = 0; index < state.range(0); ++index) {
                list->addItem(nameOf(index));
            }
            PaintNotes notes;
            notes.watch(*list->viewport());
            list->show();
            list->activateWindow();
            waitForFrame(notes);
        });
        waitUntilActive(*list);
        list.reset();
        other.takeFocus();
    }
}

void settings(benchmark::internal::Benchmark* added)
{
    added->Arg(10)->Arg(100000)->Iterations(20)->Apply(inMilliseconds);
}

BENCHMARK(openRecovery)->Name("open Recovery/lapsa")->Apply(settings);
BENCHMARK(openPeer)->Name("open Recovery/list of plain items")->Apply(settings);

} // namespace

} // namespace lapsa::bench
