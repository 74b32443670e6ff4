// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileListView.h"
#include "FileRowView.h"
#include "LapsaStyle.h"
#include "Measured.h"
#include "PaintedFrames.h"
#include "ShownPanel.h"
#include "ThemePalette.h"

#include <QApplication>
#include <QLabel>
#include <QListWidget>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>
#include <cstdlib>
#include <optional>

namespace lapsa::bench {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr QSize panelSize(430, 560);
constexpr int peerLabels = 30;

void noteRows(benchmark::State& state, const RowNotes& repainted, const FileListView& list)
{
    const auto rows = double(repainted.rows());
    const auto visible = double(list.visibleRows().size());
    state.counters["rows_visible"] = visible;
    state.counters["rows_repainted"] = std::max(rows, state.counters["rows_repainted"].value);
}

/// A plain window of the panel's size and kind, with labels in a list.
class PeerWindow final : public QWidget
{
public:
    PeerWindow()
        : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint)
    {
        setFixedSize(panelSize);
        auto* const column = new QVBoxLayout(this);
        auto* const list = new QListWidget(this);
        column->addWidget(list);
        for (int index = 0; index < peerLabels; ++index) {
            list->setItemWidget(new QListWidgetItem(list), new QLabel(nameOf(index)));
        }
    }

    void open()
    {
        PaintNotes notes;
        notes.watch(*this);
        show();
        raise();
        activateWindow();
        waitForFrame(notes);
    }
};

void openPanelFirst(benchmark::State& state)
{
    ShownPanel panel(state.range(0));
    OtherWindow other;
    for ([[maybe_unused]] auto iteration : state) {
        panel.makeAnew();
        measure(state, [&] { panel.open(); });
        panel.settle();
        panel.close();
        other.takeFocus();
    }
}

void openPeerFirst(benchmark::State& state)
{
    OtherWindow other;
    for ([[maybe_unused]] auto iteration : state) {
        std::optional<PeerWindow> window;
        measure(state, [&] {
            window.emplace();
            window->open();
        });
        waitUntilActive(*window);
        window->hide();
        other.takeFocus();
    }
}

void openPanelAgain(benchmark::State& state)
{
    ShownPanel panel(state.range(0));
    OtherWindow other;
    panel.open();
    for ([[maybe_unused]] auto iteration : state) {
        panel.settle();
        panel.close();
        other.takeFocus();
        measure(state, [&] { panel.open(); });
    }
}

void openPeerAgain(benchmark::State& state)
{
    PeerWindow window;
    OtherWindow other;
    window.open();
    for ([[maybe_unused]] auto iteration : state) {
        waitUntilActive(window);
        window.hide();
        other.takeFocus();
        measure(state, [&] { window.open(); });
    }
}

/// One second in which the minutes shown change for every item.
void tickWithAllChanging(benchmark::State& state)
{
    ShownPanel panel(state.range(0));
    panel.open();
    panel.settle();
    for ([[maybe_unused]] auto iteration : state) {
        panel.time().setClock(panel.time().now() + 59s);
        const RowNotes repainted(panel.list());
        measure(state, [&] {
            panel.time().advance(1s);
            waitForFrame(repainted.notes);
        });
        noteRows(state, repainted, panel.list());
    }
}

/// One second in which no item's minutes change.
void tickWithNoneChanging(benchmark::State& state)
{
    ShownPanel panel(state.range(0));
    panel.open();
    panel.settle();
    const TimePoint start = panel.time().now();
    for ([[maybe_unused]] auto iteration : state) {
        panel.time().setClock(start);
        const RowNotes repainted(panel.list());
        measure(state, [&] {
            panel.time().advance(1s);
            QApplication::processEvents();
            QGuiApplication::sync();
        });
        noteRows(state, repainted, panel.list());
    }
}

/// A plain window with one label for each row that the panel shows.
class PeerLabels final : public QWidget
{
public:
    PeerLabels()
    {
        ShownPanel panel(10);
        panel.open();
        auto* const column = new QVBoxLayout(this);
        for (qsizetype row = 0; row < panel.list().visibleRows().size(); ++row) {
            auto* const label = new QLabel(u"10d left"_s, this);
            column->addWidget(label);
            labels.push_back(label);
        }
        resize(panelSize);
        PaintNotes notes;
        notes.watch(*this);
        show();
        waitForFrame(notes);
        waitUntilActive(*this);
    }

    QList<QLabel*> labels;
};

void updateChangingLabels(benchmark::State& state)
{
    const PeerLabels window;
    int minutes = 0;
    for ([[maybe_unused]] auto iteration : state) {
        PaintNotes notes;
        for (QLabel* const label : window.labels) {
            notes.watch(*label);
        }
        const QString text = u"9d 23h %1min left"_s.arg(++minutes);
        measure(state, [&] {
            for (QLabel* const label : window.labels) {
                label->setText(text);
            }
            waitForFrame(notes);
        });
    }
}

void updateEqualLabels(benchmark::State& state)
{
    const PeerLabels window;
    for ([[maybe_unused]] auto iteration : state) {
        measure(state, [&] {
            for (QLabel* const label : window.labels) {
                label->setText(u"10d left"_s);
            }
            QApplication::processEvents();
            QGuiApplication::sync();
        });
    }
}

void scrollPanel(benchmark::State& state)
{
    ShownPanel panel(state.range(0));
    panel.open();
    panel.settle();
    QScrollBar& bar = panel.list().scrollBar();
    for ([[maybe_unused]] auto iteration : state) {
        bar.setValue(bar.maximum() / 2);
        QApplication::processEvents();
        const RowNotes repainted(panel.list());
        measure(state, [&] {
            bar.setValue(bar.value() + bar.pageStep());
            waitForFrame(repainted.notes);
        });
        noteRows(state, repainted, panel.list());
    }
}

/// The toolkit's own list: plain items as high as the panel's rows, in a window as large as the panel's list.
void scrollPeer(benchmark::State& state)
{
    QSize size;
    {
        ShownPanel panel(10);
        panel.open();
        size = panel.list().size();
    }
    QListWidget list;
    list.setFixedSize(size);
    list.setUniformItemSizes(true);
    list.setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    for (std::int64_t index = 0; index < state.range(0); ++index) {
        auto* const item = new QListWidgetItem(nameOf(index), &list);
        item->setSizeHint({0, FileRowView::rowHeight()});
    }
    list.show();
    waitUntilActive(list);
    QScrollBar& bar = *list.verticalScrollBar();
    for ([[maybe_unused]] auto iteration : state) {
        bar.setValue(bar.maximum() / 2);
        QApplication::processEvents();
        PaintNotes notes;
        notes.watch(*list.viewport());
        measure(state, [&] {
            bar.setValue(bar.value() + bar.pageStep());
            waitForFrame(notes);
        });
    }
}

void settings(benchmark::internal::Benchmark* added)
{
    added->Arg(10)->Arg(100000)->Iterations(20)->Apply(inMilliseconds);
}

BENCHMARK(openPanelFirst)->Name("open, first time/lapsa")->Apply(settings);
BENCHMARK(openPeerFirst)->Name("open, first time/bare window with 30 labels")->Apply(settings);
BENCHMARK(openPanelAgain)->Name("open again/lapsa")->Apply(settings);
BENCHMARK(openPeerAgain)->Name("open again/bare window with 30 labels")->Apply(settings);
BENCHMARK(tickWithAllChanging)->Name("tick that changes every row/lapsa")->Apply(settings);
BENCHMARK(updateChangingLabels)->Name("tick that changes every row/one label a row")->Apply(settings);
BENCHMARK(tickWithNoneChanging)->Name("tick that changes nothing/lapsa")->Apply(settings);
BENCHMARK(updateEqualLabels)->Name("tick that changes nothing/one label a row")->Apply(settings);
BENCHMARK(scrollPanel)->Name("scroll a page/lapsa")->Apply(settings);
BENCHMARK(scrollPeer)->Name("scroll a page/list of plain items")->Apply(settings);

} // namespace

} // namespace lapsa::bench

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return EXIT_FAILURE;
    }
    QApplication::setStyle(new lapsa::LapsaStyle);
    const QApplication application(argc, argv);
    QApplication::setPalette(lapsa::themePalette(lapsa::ColorScheme::Light));
    QApplication::setQuitOnLastWindowClosed(false);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return EXIT_SUCCESS;
}
