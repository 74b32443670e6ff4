// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "RandomUuid.h"

#include <QRandomGenerator>

#include <cstdint>

namespace lapsa {

QUuid randomUuid()
{
    // Seeded once with system randomness: asking the system for each record would be the slowest part of making it.
    thread_local QRandomGenerator generator = QRandomGenerator::securelySeeded();
    const std::uint64_t high = generator.generate64();
    const std::uint64_t low = generator.generate64();
    constexpr unsigned version = 4;
    constexpr auto byte = [](std::uint64_t from, unsigned number) { return static_cast<uchar>(from >> (8U * number)); };
    return {static_cast<uint>(high >> 32U),
            static_cast<ushort>(high >> 16U),
            static_cast<ushort>((high & 0x0FFFU) | version << 12U),
            static_cast<uchar>((byte(low, 7) & 0x3FU) | 0x80U), // the variant of RFC 4122
            byte(low, 6),
            byte(low, 5),
            byte(low, 4),
            byte(low, 3),
            byte(low, 2),
            byte(low, 1),
            byte(low, 0)};
}

QString upperCaseText(const QUuid& uuid)
{
    constexpr char form[] = "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";
    constexpr char16_t digits[] = u"0123456789ABCDEF";
    std::uint64_t low = 0;
    for (const uchar byte : uuid.data4) {
        low = low << 8U | byte;
    }
    const std::uint64_t high = std::uint64_t{uuid.data1} << 32U | std::uint64_t{uuid.data2} << 16U | uuid.data3;
    QString text(qsizetype(sizeof form) - 1, Qt::Uninitialized);
    QChar* out = text.data();
    unsigned number = 0;
    for (const char* place = form; *place != '\0'; ++place) {
        if (*place == '-') {
            *out++ = u'-';
            continue;
        }
        constexpr unsigned digitsEach = 16;
        const std::uint64_t half = number < digitsEach ? high : low;
        *out++ = QChar(digits[half >> (4U * (digitsEach - 1 - number % digitsEach)) & 0xFU]);
        ++number;
    }
    return text;
}

} // namespace lapsa
