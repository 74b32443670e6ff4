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

/// The name of a file, with one of several endings.
[[nodiscard]] QString nameOf(std::int64_t index);

/// The real panel over a store with that many items. Their files need not exist: the panel never looks at them.
class ShownPanel final
{
public:
    explicit ShownPanel(std::int64_t count);
    ShownPanel(const ShownPanel&) = delete;
    ShownPanel& operator=(const ShownPanel&) = delete;
    ~ShownPanel();

    /// As after a start of the program.
    void makeAnew();
    /// Opens the panel and waits for its first frame.
    void open();
    /// Open and left alone by the window manager.
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

/// Counts the rows of a list that are painted.
class RowNotes final
{
public:
    explicit RowNotes(const FileListView& list);

    [[nodiscard]] qsizetype rows() const;

    PaintNotes notes;
};

} // namespace lapsa::bench
