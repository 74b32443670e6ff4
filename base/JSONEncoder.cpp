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

/// The character after the backslash for a byte that must be escaped in a string; 'u' for a numeric escape; 0 for a
/// byte that needs none. Forward slashes are escaped on purpose: users' files have always looked like this.
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

/// The longest escape of one byte.
constexpr qsizetype longestEscape = 6;

/// Writes one byte of a string, escaped if needed; returns the end of the written text.
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
    m_end = std::to_chars(begin, begin + mostDigits, number).ptr;
}

void JSONEncoder::field(std::string_view key, TimePoint time)
{
    beginField(key);
    char* const out = room(iso8601Length + 2);
    *out = '"';
    writeIso8601(time, out + 1);
    out[iso8601Length + 1] = '"';
    m_end = out + iso8601Length + 2;
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
    char* out = room(longestNewLine());
    if (!std::exchange(level.empty, false)) {
        *out++ = ',';
    }
    m_end = writeNewLine(out);
}

void JSONEncoder::beginField(std::string_view key)
{
    constexpr std::string_view separator = "\" : ";
    Level& level = m_levels.back();
    if (key <= level.lastKey) {
        qFatal("The JSON key %.*s does not follow %.*s", static_cast<int>(key.size()), key.data(),
               static_cast<int>(level.lastKey.size()), level.lastKey.data());
    }
    level.lastKey = key;
    char* out = room(longestNewLine() + static_cast<qsizetype>(1 + key.size() + separator.size()));
    if (!std::exchange(level.empty, false)) {
        *out++ = ',';
    }
    out = writeNewLine(out);
    *out++ = '"';
    out = std::ranges::copy(key, out).out;
    m_end = std::ranges::copy(separator, out).out;
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
        m_end = writeNewLine(room(longestNewLine()));
    }
    put(bracket);
}

/// Including a comma in front.
qsizetype JSONEncoder::longestNewLine() const
{
    return 2 + indentWidth * static_cast<qsizetype>(m_levels.size());
}

char* JSONEncoder::writeNewLine(char* out) const
{
    *out++ = '\n';
    return std::fill_n(out, indentWidth * static_cast<qsizetype>(m_levels.size()), ' ');
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
        m_end = out;
        const QByteArray rest = QStringView(unit, end).toUtf8();
        out = room(longestEscape * rest.size() + 1);
        for (const char byte : rest) {
            out = writeEscaped(out, byte);
        }
    }
    *out++ = '"';
    m_end = out;
}

void JSONEncoder::put(char byte)
{
    char* const out = room(1);
    *out = byte;
    m_end = out + 1;
}

void JSONEncoder::put(std::string_view bytes)
{
    char* const out = room(static_cast<qsizetype>(bytes.size()));
    std::memcpy(out, bytes.data(), bytes.size());
    m_end = out + bytes.size();
}

void JSONEncoder::grow(qsizetype length)
{
    constexpr qsizetype least = 4096;
    const qsizetype written = m_bytes.isEmpty() ? 0 : m_end - m_bytes.constData();
    m_bytes.resize(std::max({least, 2 * m_bytes.size(), written + length}));
    m_end = m_bytes.data() + written;
    m_limit = m_bytes.data() + m_bytes.size();
}

QByteArray JSONEncoder::takeDocument()
{
    put('\n');
    m_bytes.truncate(std::exchange(m_end, nullptr) - m_bytes.constData());
    m_limit = nullptr;
    return std::exchange(m_bytes, {});
}

} // namespace lapsa
