// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "PanelWorld.h"

#include <chrono>
#include <functional>
#include <memory>

namespace lapsa::test {

/// The shown panel over a store that starts with many items on record; their files do not exist.
class ManyItems final
{
public:
    /// `lifespanOf` is how long the item with an index has left; 90 minutes without it.
    explicit ManyItems(int count, const std::function<std::chrono::seconds(int)>& lifespanOf = {});

    /// The display name of the item that was at this index at the start.
    [[nodiscard]] static QString nameOf(int index);

    [[nodiscard]] FileListView& list() const;
    [[nodiscard]] FileRowView& row(qsizetype index) const;
    /// The display names in the rows on screen.
    [[nodiscard]] QStringList shown() const;
    /// How many rows exist, on screen or not.
    [[nodiscard]] qsizetype rowWidgets() const;

    /// Takes the item that was at this index at the start off the list.
    void remove(int index);

    StoreWorld world{false};
    RecordingIcons icons;
    std::unique_ptr<LapsaPanelView> panel;
};

} // namespace lapsa::test
