// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

#include <chrono>
#include <cstdint>
#include <optional>

namespace lapsa {

/// A point in absolute time (UTC). Microseconds cover far more than the years 1 to 9999.
using TimePoint = std::chrono::sys_time<std::chrono::microseconds>;

/// The start of year 1 (proleptic Gregorian calendar): earlier than the date of any real file.
inline constexpr TimePoint distantPast{std::chrono::sys_days{std::chrono::year{1} / std::chrono::January / 1}};

/// The last whole second of year 9999, the last year that ISO 8601 writes with four digits.
inline constexpr TimePoint distantFuture{std::chrono::sys_days{std::chrono::year{10000} / std::chrono::January / 1} -
                                         std::chrono::seconds{1}};

/// `start` plus `minutes` x 60 seconds. The multiplication must fit into 64 bits: an overflow is a programming error
/// and ends the process. A sum outside the range of TimePoint becomes the nearest end of that range.
[[nodiscard]] TimePoint addingMinutes(TimePoint start, std::int64_t minutes);

/// The same for `hours` x 3600 seconds.
[[nodiscard]] TimePoint addingHours(TimePoint start, std::int64_t hours);

inline constexpr std::int64_t secondsPerMinute = 60;

/// Seconds from `from` to `to`, negative if `to` is before `from`.
[[nodiscard]] double secondsBetween(TimePoint from, TimePoint to);

/// ISO 8601 internet date-time in UTC with whole seconds, for example "2026-03-01T14:05:09Z". Fractions are rounded
/// towards the past. A time outside years 1 to 9999 is written as the nearest time inside, so that everything written
/// can be read.
[[nodiscard]] QByteArray iso8601Text(TimePoint time);

/// The length of such a text.
inline constexpr int iso8601Length = 20;

/// Writes this text to `out`, which must have room for `iso8601Length` bytes.
void writeIso8601(TimePoint time, char* out);

/// The time of such a text: whole seconds and a zone designator ("Z" or an offset like "+01:00"), nothing else. If the
/// offset moves it outside years 1 to 9999, it becomes the nearest time inside, as in writing.
[[nodiscard]] std::optional<TimePoint> timePointFromIso8601(QByteArrayView text);

} // namespace lapsa
