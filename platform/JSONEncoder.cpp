// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "JSONEncoder.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <utility>

namespace lapsa {

namespace {

constexpr qsizetype indentWidth = 2;

/// What stands behind the backslash for a byte that must be escaped in a string; 'u' for a numeric escape; 0 for a byte
/// that stands for itself. Forward slashes are escaped on purpose: the users' files have always looked so.
constexpr std::array<char, 256> escapes = [] {
    std::array<char, 256> table{};
    for (std::size_t control = 0; control < 0x20; ++control) {
        table[control] = 'u';
    }
    table['\b'] = 'b';
    table['\t'] = 't';
    table['\n'] = 'n';
    table['\f'] = 'f';
    table['\r'] = 'r';
    table['"'] = '"';
    table['\\'] = '\\';
    table['/'] = '/';
    return table;
}();

char escapeOf(char byte)
{
    return escapes[static_cast<unsigned char>(byte)];
}

/// The longest that one byte can become.
constexpr qsizetype longestEscape = 6;

/// Writes a byte as it stands in a string; returns the end of what was written.
inline char* writeEscaped(char* out, char byte)
{
    const char escape = escapeOf(byte);
    if (escape == 0) {
        *out = byte;
        return out + 1;
    }
    *out++ = '\\';
    *out++ = escape;
    if (escape == 'u') {
        constexpr char hexDigits[] = "0123456789abcdef";
        *out++ = '0';
        *out++ = '0';
        *out++ = hexDigits[static_cast<unsigned char>(byte) >> 4U];
        *out++ = hexDigits[static_cast<unsigned char>(byte) & 0xFU];
    }
    return out;
}

} // namespace

void JSONEncoder::beginObject()
{
    open('{');
}

void JSONEncoder::endObject()
{
    close('}');
}

void JSONEncoder::beginArray()
{
    open('[');
}

void JSONEncoder::endArray()
{
    close(']');
}

void JSONEncoder::field(std::string_view key, const QString& value)
{
    beginField(key);
    text(value);
}

void JSONEncoder::field(std::string_view key, std::int64_t number)
{
    beginField(key);
    constexpr qsizetype mostDigits = 24;
    char* const begin = room(mostDigits);
    tookUpTo(std::to_chars(begin, begin + mostDigits, number).ptr);
}

void JSONEncoder::field(std::string_view key, TimePoint time)
{
    beginField(key);
    char* const out = room(iso8601Length + 2);
    *out = '"';
    writeIso8601(time, out + 1);
    out[iso8601Length + 1] = '"';
    tookUpTo(out + iso8601Length + 2);
}

void JSONEncoder::field(std::string_view key, const QUuid& uuid)
{
    beginField(key);
    const QByteArray text = uuid.toByteArray(QUuid::WithoutBraces).toUpper();
    put('"');
    put({text.constData(), static_cast<std::size_t>(text.size())});
    put('"');
}

void JSONEncoder::boolean(std::string_view key, bool value)
{
    beginField(key);
    put(value ? std::string_view("true") : std::string_view("false"));
}

void JSONEncoder::beginElement()
{
    Level& level = m_levels.back();
    if (!std::exchange(level.empty, false)) {
        put(',');
    }
    newLine();
}

void JSONEncoder::beginField(std::string_view key)
{
    Level& level = m_levels.back();
    if (key <= level.lastKey) {
        qFatal("The JSON key %.*s does not follow %.*s", static_cast<int>(key.size()), key.data(),
               static_cast<int>(level.lastKey.size()), level.lastKey.data());
    }
    level.lastKey = key;
    beginElement();
    put('"');
    put(key);
    put("\" : ");
}

void JSONEncoder::open(char bracket)
{
    put(bracket);
    m_levels.emplace_back();
}

void JSONEncoder::close(char bracket)
{
    const bool empty = m_levels.back().empty;
    m_levels.pop_back();
    if (!empty) {
        newLine();
    }
    put(bracket);
}

void JSONEncoder::newLine()
{
    const auto indent = static_cast<std::size_t>(indentWidth) * m_levels.size();
    char* const out = room(static_cast<qsizetype>(indent) + 1);
    *out = '\n';
    std::memset(out + 1, ' ', indent);
    tookUpTo(out + 1 + indent);
}

void JSONEncoder::text(const QString& value)
{
    char* out = room(longestEscape * value.size() + 2);
    *out++ = '"';
    const QChar* unit = value.cbegin();
    const QChar* const end = value.cend();
    for (; unit != end && unit->unicode() < 0x80; ++unit) {
        out = writeEscaped(out, unit->toLatin1());
    }
    if (unit != end) {
        tookUpTo(out);
        const QByteArray rest = QStringView(unit, end).toUtf8();
        out = room(longestEscape * rest.size() + 1);
        for (const char byte : rest) {
            out = writeEscaped(out, byte);
        }
    }
    *out++ = '"';
    tookUpTo(out);
}

void JSONEncoder::put(char byte)
{
    char* const out = room(1);
    *out = byte;
    tookUpTo(out + 1);
}

void JSONEncoder::put(std::string_view bytes)
{
    char* const out = room(static_cast<qsizetype>(bytes.size()));
    std::memcpy(out, bytes.data(), bytes.size());
    tookUpTo(out + bytes.size());
}

/// Where the next `length` bytes may be written.
char* JSONEncoder::room(qsizetype length)
{
    constexpr qsizetype least = 4096;
    if (m_bytes.size() - m_length < length) {
        m_bytes.resize(std::max({least, 2 * m_bytes.size(), m_length + length}));
    }
    return m_bytes.data() + m_length;
}

QByteArray JSONEncoder::takeDocument()
{
    put('\n');
    m_bytes.truncate(std::exchange(m_length, 0));
    return std::exchange(m_bytes, {});
}

} // namespace lapsa
