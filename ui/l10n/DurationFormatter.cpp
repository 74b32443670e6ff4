// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DurationFormatter.h"

#include "Localized.h"

#include <QStringList>

#include <algorithm>

namespace lapsa {

namespace {

constexpr std::int64_t minutesPerHour = 60;
constexpr std::int64_t minutesPerDay = 24 * minutesPerHour;

} // namespace

QString DurationFormatter::compact(std::int64_t minutes)
{
    // Never "0min", on purpose: an item on the list still has time left, or is about to be handled.
    const std::int64_t shown = std::max<std::int64_t>(minutes, 1);
    const std::int64_t days = shown / minutesPerDay;
    const std::int64_t hours = shown % minutesPerDay / minutesPerHour;
    const std::int64_t rest = shown % minutesPerHour;

    QStringList parts;
    if (days > 0) {
        parts += QString::number(days) + Localized::daysShort();
    }
    if (hours > 0) {
        parts += QString::number(hours) + Localized::hoursShort();
    }
    if (rest > 0 || parts.isEmpty()) {
        parts += QString::number(rest) + Localized::minutesShort();
    }
    return parts.join(u' ');
}

} // namespace lapsa
