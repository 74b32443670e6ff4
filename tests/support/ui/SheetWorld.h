// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "PanelWorld.h"

#include <chrono>
#include <cstdint>

namespace lapsa {

class ItemTimeView;

} // namespace lapsa

namespace lapsa::test {

/// The panel with one item, whose sheet can be opened.
class SheetWorld final : public PanelWorld
{
public:
    explicit SheetWorld(std::int64_t minutes = 90);

    void open();
    /// The sheet that is seen, if any: one that was dismissed is deleted later.
    [[nodiscard]] ItemTimeView* sheet() const;
    /// Clicks the sheet's button with that text.
    void press(const QString& button) const;
    /// The duration that the sheet shows.
    [[nodiscard]] QString choice() const;
    /// The time that the item has left in the store.
    [[nodiscard]] std::chrono::microseconds remaining() const;

    LapsaItem item;
};

} // namespace lapsa::test
