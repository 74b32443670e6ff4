// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "PaintedFrames.h"
#include "PanelController.h"
#include "RecordingDesktop.h"
#include "RecordingStatusBar.h"
#include "StoreWorld.h"

#include <memory>
#include <optional>

namespace lapsa {

class FileListView;
class PointerMonitor;
class WindowSystem;

} // namespace lapsa

namespace lapsa::bench {

/// A file name, with one of several extensions.
[[nodiscard]] QString nameOf(std::int64_t index);

/// The real panel on a store with that many items. Their files need not exist: the panel never accesses them.
class ShownPanel final
{
public:
    explicit ShownPanel(std::int64_t count);
    ShownPanel(const ShownPanel&) = delete;
    ShownPanel& operator=(const ShownPanel&) = delete;
    ~ShownPanel();

    /// Puts the panel in the state after a program start.
    void makeAnew();
    /// Opens the panel and waits for its first frame.
    void open();
    /// Waits until the open panel is no longer changed by the window manager.
    void settle();
    void close();

    [[nodiscard]] FileListView& list() const;

    [[nodiscard]] test::ManualTime& time() { return m_world.time; }

private:
    test::StoreWorld m_world{false};
    test::RecordingStatusButton m_button;
    test::RecordingFolderPicker m_folderPicker;
    std::unique_ptr<WindowSystem> m_windowSystem;
    std::unique_ptr<PointerMonitor> m_pointer;
    std::optional<PanelController> m_controller;
};

/// Counts the painted rows of a list.
class RowNotes final
{
public:
    explicit RowNotes(const FileListView& list);

    [[nodiscard]] qsizetype rows() const;

    PaintNotes notes;
};

} // namespace lapsa::bench
