// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileListView.h"

namespace lapsa {

/// What the mouse and the keyboard do to a list's selection.
class FileListView::Selecting final
{
public:
    static void press(FileListView& list, const FileRowView& row, const QMouseEvent& event);
    /// Whether the key selects.
    static bool byKey(FileListView& list, const QKeyEvent& event);
    static void goTo(FileListView& list, qsizetype index, Qt::KeyboardModifiers modifiers);
    static void openMenu(FileListView& list, const QContextMenuEvent& event);
};

} // namespace lapsa
