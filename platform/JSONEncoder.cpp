// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "JSONEncoder.h"

#include <algorithm>
#include <array>
#include <charconv>
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

void appendEscaped(QByteArray& out, char byte)
{
    const char escape = escapeOf(byte);
    out += '\\';
    out += escape;
    if (escape == 'u') {
        constexpr char hexDigits[] = "0123456789abcdef";
        out += "00";
        out += hexDigits[static_cast<unsigned char>(byte) >> 4U];
        out += hexDigits[static_cast<unsigned char>(byte) & 0xFU];
    }
}

QByteArrayView viewOf(std::string_view text)
{
    return {text.data(), static_cast<qsizetype>(text.size())};
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
    std::array<char, 24> digits{};
    const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    m_bytes.append(digits.data(), end - digits.data());
}

void JSONEncoder::field(std::string_view key, TimePoint time)
{
    beginField(key);
    m_bytes += '"';
    m_bytes += iso8601Text(time);
    m_bytes += '"';
}

void JSONEncoder::field(std::string_view key, const QUuid& uuid)
{
    beginField(key);
    m_bytes += '"';
    m_bytes += uuid.toByteArray(QUuid::WithoutBraces).toUpper();
    m_bytes += '"';
}

void JSONEncoder::boolean(std::string_view key, bool value)
{
    beginField(key);
    m_bytes += value ? "true" : "false";
}

void JSONEncoder::beginElement()
{
    Level& level = m_levels.back();
    if (!std::exchange(level.empty, false)) {
        m_bytes += ',';
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
    m_bytes += '"';
    m_bytes += viewOf(key);
    m_bytes += "\" : ";
}

void JSONEncoder::open(char bracket)
{
    m_bytes += bracket;
    m_levels.emplace_back();
}

void JSONEncoder::close(char bracket)
{
    const bool empty = m_levels.back().empty;
    m_levels.pop_back();
    if (!empty) {
        newLine();
    }
    m_bytes += bracket;
}

void JSONEncoder::newLine()
{
    m_bytes += '\n';
    m_bytes.append(indentWidth * static_cast<qsizetype>(m_levels.size()), ' ');
}

void JSONEncoder::text(const QString& value)
{
    const QByteArray utf8 = value.toUtf8();
    m_bytes += '"';
    auto plain = utf8.cbegin();
    while (plain != utf8.cend()) {
        const auto special = std::find_if(plain, utf8.cend(), [](char byte) { return escapeOf(byte) != 0; });
        m_bytes.append(plain, special - plain);
        if (special == utf8.cend()) {
            break;
        }
        appendEscaped(m_bytes, *special);
        plain = special + 1;
    }
    m_bytes += '"';
}

QByteArray JSONEncoder::takeDocument()
{
    m_bytes += '\n';
    return std::exchange(m_bytes, {});
}

} // namespace lapsa
