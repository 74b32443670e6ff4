// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "JSONDecoder.h"

#include <simdjson.h>

#include <algorithm>
#include <bit>

namespace lapsa {

namespace dom = simdjson::dom;

struct JSONDecoder::Parser
{
    dom::parser parser;
    dom::element root;
};

namespace {

// The parser's handles are a pointer and an index, which is what a Place holds.
template <typename Handle, typename Place>
Handle handleOf(const Place& place)
{
    static_assert(sizeof(Handle) == sizeof(Place));
    return std::bit_cast<Handle>(place);
}

template <typename Place, typename Handle>
Place placeOf(const Handle& handle)
{
    static_assert(sizeof(Handle) == sizeof(Place));
    return std::bit_cast<Place>(handle);
}

constexpr QByteArrayView byteOrderMark = "\xEF\xBB\xBF";

bool isHexDigit(char character)
{
    return (character >= '0' && character <= '9') || (character >= 'a' && character <= 'f') ||
           (character >= 'A' && character <= 'F');
}

/// QUuid's parser also accepts other forms than the canonical one.
bool isCanonicalUuid(std::string_view text)
{
    constexpr std::string_view form = "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";
    return std::ranges::equal(text, form, [](char character, char expected) {
        return expected == '-' ? character == '-' : isHexDigit(character);
    });
}

QByteArrayView viewOf(std::string_view text)
{
    return {text.data(), static_cast<qsizetype>(text.size())};
}

} // namespace

/// The value of a key, which must have exactly this type; otherwise returns an empty value and the whole document
/// fails. If several fields have the name, the first applies.
template <typename T>
T JSONObject::value(std::string_view key) const
{
    const auto object = handleOf<dom::object>(m_place);
    auto next = handleOf<dom::object::iterator>(m_next);
    T value{};
    simdjson::error_code error = simdjson::NO_SUCH_FIELD;
    if (next != object.end() && next.key_equals(key)) {
        // Requested in document order: the fields before this one have other names, so this is the first of its name.
        error = next.value().get(value);
        m_next = placeOf<Place>(++next);
    } else {
        error = object[key].get(value);
        m_next = placeOf<Place>(object.end());
    }
    if (error != simdjson::SUCCESS) {
        m_decoder->m_failed = true;
        return T{};
    }
    return value;
}

JSONDecoder::JSONDecoder() = default;

JSONDecoder::~JSONDecoder() = default;

bool JSONDecoder::parse(const QByteArray& bytes)
{
    m_parser = std::make_unique<Parser>();
    // The parser reads ahead. Bytes with enough spare capacity need no copy for that.
    const bool copied = bytes.capacity() - bytes.size() < qsizetype{simdjson::SIMDJSON_PADDING};
    m_failed =
        m_parser->parser.parse(bytes.constData(), static_cast<std::size_t>(bytes.size()), copied).get(m_parser->root) !=
        simdjson::SUCCESS;
    return !m_failed;
}

std::optional<JSONObject> JSONDecoder::rootObject()
{
    dom::object object;
    if (m_parser->root.get(object) != simdjson::SUCCESS) {
        m_failed = true;
        return std::nullopt;
    }
    return JSONObject(*this, placeOf<JSONObject::Place>(object), placeOf<JSONObject::Place>(object.begin()));
}

JSONDecoder::Objects JSONDecoder::rootArray()
{
    Objects objects;
    dom::array array;
    if (m_parser->root.get(array) != simdjson::SUCCESS) {
        m_failed = true;
        return objects;
    }
    objects.m_decoder = this;
    objects.m_next = placeOf<JSONObject::Place>(array.begin());
    objects.m_end = placeOf<JSONObject::Place>(array.end());
    objects.m_count = static_cast<qsizetype>(array.size());
    return objects;
}

JSONDecoder::Objects JSONDecoder::arrayOf(const JSONObject& object, std::string_view key)
{
    Objects objects;
    const auto array = object.value<dom::array>(key);
    if (m_failed) {
        return objects;
    }
    objects.m_decoder = this;
    objects.m_next = placeOf<JSONObject::Place>(array.begin());
    objects.m_end = placeOf<JSONObject::Place>(array.end());
    objects.m_count = static_cast<qsizetype>(array.size());
    return objects;
}

std::optional<JSONObject> JSONDecoder::Objects::next()
{
    if (m_decoder == nullptr || m_decoder->m_failed) {
        return std::nullopt;
    }
    auto position = handleOf<dom::array::iterator>(m_next);
    if (position == handleOf<dom::array::iterator>(m_end)) {
        return std::nullopt;
    }
    dom::object object;
    if ((*position).get(object) != simdjson::SUCCESS) {
        m_decoder->m_failed = true;
        return std::nullopt;
    }
    m_next = placeOf<JSONObject::Place>(++position);
    return JSONObject(*m_decoder, placeOf<JSONObject::Place>(object), placeOf<JSONObject::Place>(object.begin()));
}

QString JSONObject::text(std::string_view key) const
{
    const auto bytes = viewOf(value<std::string_view>(key));
    QString text = QString::fromUtf8(bytes);
    if (bytes.startsWith(byteOrderMark)) {
        // fromUtf8() drops it as an encoding mark; in a name it is an ordinary character.
        text.prepend(QChar(QChar::ByteOrderMark));
    }
    return text;
}

bool JSONObject::boolean(std::string_view key) const
{
    return value<bool>(key);
}

std::int64_t JSONObject::integer(std::string_view key) const
{
    return value<std::int64_t>(key);
}

TimePoint JSONObject::timestamp(std::string_view key) const
{
    const auto text = value<std::string_view>(key);
    const std::optional<TimePoint> time = timePointFromIso8601(viewOf(text));
    if (!time) {
        fail();
    }
    return time.value_or(TimePoint{});
}

QUuid JSONObject::uuid(std::string_view key) const
{
    const auto text = value<std::string_view>(key);
    if (!isCanonicalUuid(text)) {
        fail();
        return {};
    }
    return QUuid::fromString(QLatin1StringView(text.data(), static_cast<qsizetype>(text.size())));
}

void JSONObject::fail() const
{
    m_decoder->m_failed = true;
}

} // namespace lapsa
