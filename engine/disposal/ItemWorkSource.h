// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ItemWork.h"

#include <QString>

#include <optional>

namespace lapsa {

/// Tells what the lanes are doing with the files of items.
class ItemWorkSource
{
public:
    ItemWorkSource() = default;
    ItemWorkSource(const ItemWorkSource&) = delete;
    ItemWorkSource& operator=(const ItemWorkSource&) = delete;
    virtual ~ItemWorkSource() = default;

    /// What a lane has been doing with the file of the item with this id for more than half a second, or what it left
    /// when it was stopped.
    [[nodiscard]] virtual std::optional<ItemWork> workOn(const QString& id) const = 0;

    /// Whether what workOn() tells may change by itself.
    [[nodiscard]] virtual bool isWorking() const = 0;
};

} // namespace lapsa
