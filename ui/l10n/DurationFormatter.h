// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <cstdint>

namespace lapsa {

/// Writes durations as short texts.
class DurationFormatter final
{
public:
    /// "2d 3h 5min" (Italian "2g 3h 5min"); omits parts that are zero. Shows at least one minute.
    [[nodiscard]] static QString compact(std::int64_t minutes);
};

} // namespace lapsa
