// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Mutations.h"

#include <array>
#include <utility>

namespace lapsa::fuzz {

namespace {

/// Pieces that have a meaning to one reader or another.
constexpr std::array<const char*, 28> pieces{"\"",
                                             "\\",
                                             "\\u0000",
                                             "\\udc00",
                                             "\\ud800\\udc00",
                                             "{",
                                             "}",
                                             "[",
                                             "]",
                                             "null",
                                             "true",
                                             "1e9",
                                             "-0",
                                             "9223372036854775807",
                                             "-9223372036854775808",
                                             "9223372036854775808",
                                             "\xEF\xBB\xBF",
                                             "\xED\xA0\x80",
                                             "\xF0\x9F\x97\x82",
                                             "\xFF",
                                             "..",
                                             "/",
                                             "%2F",
                                             "%00",
                                             "%",
                                             "+23:59",
                                             "0001",
                                             "\r\n"};

} // namespace

Mutations::Mutations(QList<QByteArray> seeds)
    : m_seeds(std::move(seeds))
{}

QByteArray Mutations::next()
{
    QByteArray bytes = seed();
    for (qsizetype left = 1 + below(4); left > 0; --left) {
        damage(bytes);
    }
    return bytes;
}

QByteArray Mutations::nextLong()
{
    constexpr qsizetype length = 256 * 1024;
    QByteArray bytes = seed();
    const qsizetype start = below(bytes.size() + 1);
    const QByteArray piece = bytes.mid(start, 1 + below(16));
    if (!piece.isEmpty()) {
        bytes.insert(start, piece.repeated(length / piece.size()));
    }
    return bytes;
}

/// The generator of Knuth's MMIX: its upper half is good enough here, and it is the same with every library.
qsizetype Mutations::below(qsizetype bound)
{
    constexpr std::uint64_t factor = 6364136223846793005U;
    constexpr std::uint64_t increment = 1442695040888963407U;
    m_state = m_state * factor + increment;
    return static_cast<qsizetype>((m_state >> 33U) % static_cast<std::uint64_t>(bound));
}

QByteArray Mutations::seed()
{
    return m_seeds.at(below(m_seeds.size()));
}

void Mutations::damage(QByteArray& bytes)
{
    constexpr qsizetype kinds = 6;
    constexpr qsizetype longestPiece = 16;
    const qsizetype position = below(bytes.size() + 1);
    const qsizetype length = below(longestPiece);
    switch (below(kinds)) {
    case 0:
        bytes.truncate(position);
        break;
    case 1:
        bytes.remove(position, length);
        break;
    case 2:
        bytes.insert(position, bytes.mid(below(bytes.size() + 1), length));
        break;
    case 3:
        bytes.insert(position, pieces.at(static_cast<std::size_t>(below(pieces.size()))));
        break;
    case 4: {
        const QByteArray other = seed();
        bytes.replace(position, length, other.mid(below(other.size() + 1), length));
        break;
    }
    default:
        if (position < bytes.size()) {
            bytes[position] = static_cast<char>(below(256));
        }
    }
}

} // namespace lapsa::fuzz
