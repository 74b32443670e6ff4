// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Time.h"

#include <QtGlobal>

#include <algorithm>
#include <charconv>
#include <limits>
#include <string_view>

namespace lapsa {

namespace {

using namespace std::chrono;

// The only place where an amount of time may overflow: 64-bit seconds must fit, microseconds need not.
TimePoint adding(TimePoint start, std::int64_t amount, std::int64_t secondsEach)
{
    std::int64_t wholeSeconds = 0;
    if (__builtin_mul_overflow(amount, secondsEach, &wholeSeconds)) {
        qFatal("A duration does not fit into 64 bits of seconds");
    }
    constexpr std::int64_t microsecondsEach = 1'000'000;
    std::int64_t microsecondCount = 0;
    std::int64_t sum = 0;
    if (__builtin_mul_overflow(wholeSeconds, microsecondsEach, &microsecondCount) ||
        __builtin_add_overflow(start.time_since_epoch().count(), microsecondCount, &sum)) {
        sum = amount < 0 ? std::numeric_limits<std::int64_t>::min() : std::numeric_limits<std::int64_t>::max();
    }
    return TimePoint{microseconds{sum}};
}

void appendDigits(char*& end, unsigned value, int width)
{
    for (int index = width - 1; index >= 0; --index) {
        end[index] = static_cast<char>('0' + value % 10);
        value /= 10;
    }
    end += width;
}

/// Takes fields off the front of a text; failed() tells whether one was not as expected.
class Scanner
{
public:
    explicit Scanner(QByteArrayView text)
        : m_rest(text)
    {}

    int digits(int width)
    {
        int value = 0;
        const char* const begin = m_rest.data();
        const bool enough = m_rest.size() >= width && std::all_of(begin, begin + width, isDigit);
        if (!enough) {
            m_failed = true;
            return 0;
        }
        std::from_chars(begin, begin + width, value);
        m_rest = m_rest.sliced(width);
        return value;
    }

    void literal(char expected)
    {
        if (!take(expected)) {
            m_failed = true;
        }
    }

    bool take(char expected)
    {
        if (m_rest.isEmpty() || m_rest.front() != expected) {
            return false;
        }
        m_rest = m_rest.sliced(1);
        return true;
    }

    [[nodiscard]] bool failed() const { return m_failed; }

    [[nodiscard]] bool atEnd() const { return m_rest.isEmpty(); }

private:
    static bool isDigit(char character) { return character >= '0' && character <= '9'; }

    QByteArrayView m_rest;
    bool m_failed = false;
};

/// The offset from UTC: "Z", or a sign with hours and minutes.
std::optional<minutes> zoneOffset(Scanner& scanner)
{
    if (scanner.take('Z')) {
        return minutes{0};
    }
    const bool behind = scanner.take('-');
    if (!behind) {
        scanner.literal('+');
    }
    const int hour = scanner.digits(2);
    scanner.literal(':');
    const int minute = scanner.digits(2);
    if (scanner.failed() || hour > 23 || minute > 59) {
        return std::nullopt;
    }
    const auto offset = hours{hour} + minutes{minute};
    return behind ? -offset : offset;
}

} // namespace

TimePoint addingMinutes(TimePoint start, std::int64_t minutes)
{
    return adding(start, minutes, 60);
}

TimePoint addingHours(TimePoint start, std::int64_t hours)
{
    return adding(start, hours, 3600);
}

double secondsBetween(TimePoint from, TimePoint to)
{
    // Subtracted as floating point: the difference of two distant times may not fit into 64 bits.
    constexpr double microsecondsEach = 1e6;
    return (static_cast<double>(to.time_since_epoch().count()) - static_cast<double>(from.time_since_epoch().count())) /
           microsecondsEach;
}

QByteArray iso8601Text(TimePoint time)
{
    QByteArray text(iso8601Length, Qt::Uninitialized);
    writeIso8601(time, text.data());
    return text;
}

void writeIso8601(TimePoint time, char* out)
{
    const auto wholeSecond = floor<seconds>(std::clamp(time, distantPast, distantFuture));
    const auto day = floor<days>(wholeSecond);
    const year_month_day date{day};
    const hh_mm_ss clock{wholeSecond - day};

    constexpr std::string_view form = "0000-00-00T00:00:00Z";
    static_assert(form.size() == iso8601Length);
    std::ranges::copy(form, out);
    char* end = out;
    appendDigits(end, static_cast<unsigned>(static_cast<int>(date.year())), 4);
    appendDigits(++end, static_cast<unsigned>(date.month()), 2);
    appendDigits(++end, static_cast<unsigned>(date.day()), 2);
    appendDigits(++end, static_cast<unsigned>(clock.hours().count()), 2);
    appendDigits(++end, static_cast<unsigned>(clock.minutes().count()), 2);
    appendDigits(++end, static_cast<unsigned>(clock.seconds().count()), 2);
}

std::optional<TimePoint> timePointFromIso8601(QByteArrayView text)
{
    Scanner scanner(text);
    const int yearNumber = scanner.digits(4);
    scanner.literal('-');
    const int monthNumber = scanner.digits(2);
    scanner.literal('-');
    const int dayNumber = scanner.digits(2);
    scanner.literal('T');
    const int hour = scanner.digits(2);
    scanner.literal(':');
    const int minute = scanner.digits(2);
    scanner.literal(':');
    const int second = scanner.digits(2);
    const std::optional<minutes> offset = zoneOffset(scanner);
    if (scanner.failed() || !offset || !scanner.atEnd()) {
        return std::nullopt;
    }

    const year_month_day date{year{yearNumber}, month{static_cast<unsigned>(monthNumber)},
                              day{static_cast<unsigned>(dayNumber)}};
    if (yearNumber < 1 || !date.ok() || hour > 23 || minute > 59 || second > 59) {
        return std::nullopt;
    }
    const TimePoint time = sys_days{date} + hours{hour} + minutes{minute} + seconds{second} - *offset;
    return std::clamp(time, distantPast, distantFuture);
}

} // namespace lapsa
