// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FuzzTarget.h"
#include "Time.h"

#include <QDateTime>
#include <QString>

#include <algorithm>
#include <cstring>

namespace lapsa::fuzz {

namespace {

void checkText(QByteArrayView text)
{
    const std::optional<TimePoint> time = timePointFromIso8601(text);
    if (!time) {
        return;
    }
    demand(*time >= distantPast && *time <= distantFuture, "a time that is read can be written");
    demand(timePointFromIso8601(iso8601Text(*time)) == time, "what is written is read back");
    demand(!timePointFromIso8601(text.chopped(1)), "a text that lacks its end is refused");
    demand(!timePointFromIso8601(text.toByteArray() + '0'), "a text with something after it is refused");
    if (const auto other = QDateTime::fromString(QString::fromLatin1(text), Qt::ISODate); other.isValid()) {
        const TimePoint same{std::chrono::seconds{other.toSecsSinceEpoch()}};
        demand(std::clamp(same, distantPast, distantFuture) == *time, "another reader sees the same time");
    }
}

void checkNumber(QByteArrayView bytes)
{
    std::int64_t microseconds = 0;
    std::memcpy(&microseconds, bytes.data(), sizeof microseconds);
    const TimePoint time{std::chrono::microseconds{microseconds}};
    const TimePoint expected = std::chrono::floor<std::chrono::seconds>(std::clamp(time, distantPast, distantFuture));
    demand(timePointFromIso8601(iso8601Text(time)) == expected, "every time is read back to its second");
}

} // namespace

void run(QByteArrayView input)
{
    checkText(input);
    if (input.size() >= qsizetype{sizeof(std::int64_t)}) {
        checkNumber(input);
    }
}

} // namespace lapsa::fuzz
