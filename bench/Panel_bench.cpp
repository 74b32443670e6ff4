// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DesktopFacilities.h"
#include "FileIconProvider.h"
#include "FileListView.h"
#include "FileRowView.h"
#include "JSONEncoder.h"
#include "LapsaStyle.h"
#include "Measured.h"
#include "PanelController.h"
#include "PointerMonitor.h"
#include "RecordingDesktop.h"
#include "StoreWorld.h"
#include "ThemePalette.h"
#include "WindowSystem.h"

#include <QApplication>
#include <QLabel>
#include <QListWidget>
#include <QScrollBar>
#include <QSet>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <functional>
#include <optional>

namespace lapsa::bench {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Only a limit for a machine under load; reached when something is broken.
constexpr auto patience = 30s;
constexpr QSize panelSize(430, 560);
constexpr int peerLabels = 30;

/// Notes which widgets were painted.
class PaintNotes final : public QObject
{
public:
    void watch(QWidget& widget) { widget.installEventFilter(this); }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Paint) {
            painted.insert(watched);
        }
        return false;
    }

    QSet<QObject*> painted;
};

/// Handles events, asleep in between, until something holds.
void waitUntil(const std::function<bool()>& condition)
{
    QTimer limit;
    QObject::connect(&limit, &QTimer::timeout, [] { qFatal("The benchmark waits for something that does not come."); });
    limit.start(patience);
    while (!condition()) {
        QApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }
}

/// Until something of the noted was painted and the X server has drawn it.
void waitForFrame(const PaintNotes& notes)
{
    waitUntil([&] { return !notes.painted.isEmpty(); });
    QGuiApplication::sync();
}

void waitUntilActive(const QWidget& window)
{
    waitUntil([&] { return window.isActiveWindow(); });
    QGuiApplication::sync();
}

/// What the user works in before and after. Once it has the focus, the window manager is done with what was closed.
class OtherWindow final : public QWidget
{
public:
    OtherWindow()
    {
        show();
        takeFocus();
    }

    void takeFocus()
    {
        activateWindow();
        waitUntilActive(*this);
    }
};

QString nameOf(std::int64_t index)
{
    const std::array endings = {u".pdf"_s, u".zip"_s, u".txt"_s, u".png"_s, u""_s};
    return u"report %1"_s.arg(index) + endings[static_cast<std::size_t>(index) % endings.size()];
}

/// The real panel over a store with that many items. Their files need not exist: the panel never looks at them.
class Panel final
{
public:
    explicit Panel(std::int64_t count)
    {
        QList<LapsaItem> items;
        for (std::int64_t index = 0; index < count; ++index) {
            items.push_back({.id = u"item-%1"_s.arg(index),
                             .path = u"/nowhere/"_s + nameOf(index),
                             .displayName = nameOf(index),
                             .addedAt = m_world.time.now(),
                             .expiresAt = m_world.time.now() + 240h + 30s});
        }
        m_world.home.writeDataFile(u"state.json"_s, JSONEncoder::lapsa().encode(items));
        m_world.start();
        m_world.changeSettings([](LapsaSettings& settings) { settings.keepPanelOpen = true; });
        makeAnew();
    }

    /// As after a start of the program.
    void makeAnew()
    {
        controller.emplace(
            PanelController::Environment{{m_world.store(), m_world.time, m_world.time, FileIconProvider::shared()},
                                         m_folderPicker,
                                         *m_windowSystem,
                                         *m_pointer});
    }

    void open()
    {
        PaintNotes notes;
        controller->show(&m_button);
        notes.watch(controller->popover()->content());
        waitForFrame(notes);
    }

    /// Open and left alone by the window manager.
    void settle()
    {
        waitUntilActive(*controller->popover());
        QApplication::processEvents();
    }

    void close() { controller->close(); }

    [[nodiscard]] FileListView& list() const { return *controller->popover()->findChild<FileListView*>(); }

    [[nodiscard]] test::ManualTime& time() { return m_world.time; }

    std::optional<PanelController> controller;

private:
    test::StoreWorld m_world{false};
    test::RecordingStatusButton m_button;
    test::RecordingFolderPicker m_folderPicker;
    std::unique_ptr<WindowSystem> m_windowSystem = makeWindowSystem();
    std::unique_ptr<PointerMonitor> m_pointer = makePointerMonitor();
};

/// Counts the rows of a list that are painted.
class RowNotes final
{
public:
    explicit RowNotes(const FileListView& list)
    {
        for (FileRowView* const row : list.findChildren<FileRowView*>()) {
            notes.watch(*row);
            for (QWidget* const child : row->findChildren<QWidget*>()) {
                notes.watch(*child);
            }
        }
    }

    [[nodiscard]] qsizetype rows() const
    {
        QSet<QObject*> rows;
        for (QObject* const painted : notes.painted) {
            rows.insert(qobject_cast<FileRowView*>(painted) != nullptr ? painted : painted->parent());
        }
        return rows.size();
    }

    PaintNotes notes;
};

void noteRows(benchmark::State& state, const RowNotes& repainted, const FileListView& list)
{
    const auto rows = double(repainted.rows());
    const auto visible = double(list.visibleRows().size());
    state.counters["rows_visible"] = visible;
    state.counters["rows_repainted"] = std::max(rows, state.counters["rows_repainted"].value);
}

/// A bare window of the panel's size and kind, with labels in a list.
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
    Panel panel(state.range(0));
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
    Panel panel(state.range(0));
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

/// One second that takes a minute from every item.
void tickWithAllChanging(benchmark::State& state)
{
    Panel panel(state.range(0));
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

/// One second in which every item keeps its minute.
void tickWithNoneChanging(benchmark::State& state)
{
    Panel panel(state.range(0));
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

/// A bare window with one label for each row that the panel shows.
class PeerLabels final : public QWidget
{
public:
    PeerLabels()
    {
        Panel panel(10);
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
    Panel panel(state.range(0));
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

/// The toolkit's own list: plain items, as high as the panel's rows, in a window as large as the panel's list.
void scrollPeer(benchmark::State& state)
{
    QSize size;
    {
        Panel panel(10);
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
