// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Time.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QUuid>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>

namespace lapsa {

class JSONDecoder;

/// One object of a document being decoded. Every requested field must exist and have exactly the requested type;
/// otherwise the whole document fails and the field reads as an empty value. Other keys are ignored.
class JSONObject final
{
public:
    [[nodiscard]] QString text(std::string_view key) const;
    [[nodiscard]] bool boolean(std::string_view key) const;
    /// A JSON integer that fits into 64 bits; 1.0 and 1e3 are not integers.
    [[nodiscard]] std::int64_t integer(std::string_view key) const;
    /// ISO 8601 with whole seconds and a zone designator.
    [[nodiscard]] TimePoint timestamp(std::string_view key) const;
    /// The canonical text of 36 characters, in upper or lower case.
    [[nodiscard]] QUuid uuid(std::string_view key) const;
    /// A JSON array of records.
    template <typename T>
    [[nodiscard]] QList<T> list(std::string_view key) const;

    /// Makes the whole document fail, for a value of the right type that makes no sense.
    void fail() const;

private:
    friend class JSONDecoder;

    /// A place in the parsed document. Opaque, to keep the parser's headers out of this one.
    struct Place
    {
        const void* document = nullptr;
        std::size_t index = 0;
    };

    JSONObject(JSONDecoder& decoder, Place place, Place firstField)
        : m_decoder(&decoder)
        , m_place(place)
        , m_next(firstField)
    {}

    template <typename T>
    [[nodiscard]] T value(std::string_view key) const;

    JSONDecoder* m_decoder;
    Place m_place;
    /// The field after the last requested one, as long as fields are requested in document order.
    mutable Place m_next;
};

/// Reads JSON strictly: valid UTF-8, one document and nothing after it, every field of the records present with its
/// exact type. Salvages nothing: one bad field makes it refuse the whole document.
///
/// To be decoded, a record needs a function `void read(const JSONObject&, Record&)` beside it.
class JSONDecoder final
{
public:
    /// A new decoder in the only configuration.
    [[nodiscard]] static JSONDecoder lapsa() { return JSONDecoder{}; }

    JSONDecoder(const JSONDecoder&) = delete;
    JSONDecoder& operator=(const JSONDecoder&) = delete;
    ~JSONDecoder();

    /// Decodes a document that is one record.
    template <typename T>
    [[nodiscard]] std::optional<T> decode(const QByteArray& bytes)
    {
        if (!parse(bytes)) {
            return std::nullopt;
        }
        T value;
        if (const std::optional<JSONObject> root = rootObject()) {
            read(*root, value);
        }
        return m_failed ? std::nullopt : std::optional<T>(std::move(value));
    }

    /// Decodes a document that is one array of records.
    template <typename T>
    [[nodiscard]] std::optional<QList<T>> decodeList(const QByteArray& bytes)
    {
        if (!parse(bytes)) {
            return std::nullopt;
        }
        QList<T> values = records<T>(rootArray());
        return m_failed ? std::nullopt : std::optional<QList<T>>(std::move(values));
    }

private:
    friend class JSONObject;
    struct Parser;

    /// Iterates over the objects of an array.
    class Objects
    {
    public:
        /// The next object; nothing at the end or after the document failed.
        [[nodiscard]] std::optional<JSONObject> next();

        [[nodiscard]] qsizetype count() const { return m_count; }

    private:
        friend class JSONDecoder;
        JSONDecoder* m_decoder = nullptr;
        JSONObject::Place m_next;
        JSONObject::Place m_end;
        qsizetype m_count = 0;
    };

    JSONDecoder();

    [[nodiscard]] bool parse(const QByteArray& bytes);
    [[nodiscard]] std::optional<JSONObject> rootObject();
    [[nodiscard]] Objects rootArray();
    [[nodiscard]] Objects arrayOf(const JSONObject& object, std::string_view key);

    template <typename T>
    [[nodiscard]] static QList<T> records(Objects objects)
    {
        QList<T> values;
        values.reserve(objects.count());
        while (const std::optional<JSONObject> object = objects.next()) {
            read(*object, values.emplaceBack());
        }
        return values;
    }

    std::unique_ptr<Parser> m_parser;
    bool m_failed = false;
};

template <typename T>
QList<T> JSONObject::list(std::string_view key) const
{
    return JSONDecoder::records<T>(m_decoder->arrayOf(*this, key));
}

} // namespace lapsa
