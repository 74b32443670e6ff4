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

/// One object of a document that is being decoded. Every field that is asked for must be there with its exact type; one
/// that is not makes the whole document fail (and reads as an empty value until then). Other keys are ignored.
class JSONObject final
{
public:
    [[nodiscard]] QString text(std::string_view key) const;
    [[nodiscard]] bool boolean(std::string_view key) const;
    /// A JSON integer that fits into 64 bits; 1.0 and 1e3 are none.
    [[nodiscard]] std::int64_t integer(std::string_view key) const;
    /// ISO 8601 with whole seconds and a zone designator.
    [[nodiscard]] TimePoint timestamp(std::string_view key) const;
    /// The canonical text of 36 characters, in either case.
    [[nodiscard]] QUuid uuid(std::string_view key) const;
    /// A JSON array of records.
    template <typename T>
    [[nodiscard]] QList<T> list(std::string_view key) const;

    /// For a value that reads well but means nothing: the whole document fails.
    void fail() const;

private:
    friend class JSONDecoder;

    /// A place in the parsed document, opaque here so that the parser stays out of everyone's headers.
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
    /// The field behind the one that was asked for last, while they are asked for in the order in which they stand.
    mutable Place m_next;
};

/// Reads JSON strictly: valid UTF-8, one document and nothing after it, every field of the records present with its
/// exact type. It salvages nothing: one bad field and the whole document is refused.
///
/// A record takes part by a function `void read(const JSONObject&, Record&)` beside it.
class JSONDecoder final
{
public:
    /// A fresh decoder with the one configuration there is.
    [[nodiscard]] static JSONDecoder lapsa() { return JSONDecoder{}; }

    JSONDecoder(const JSONDecoder&) = delete;
    JSONDecoder& operator=(const JSONDecoder&) = delete;
    ~JSONDecoder();

    /// The one record that the document holds.
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

    /// The records of a document that is one array.
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

    /// Walks over the objects of an array.
    class Objects
    {
    public:
        /// The next object; nothing at the end, or when the document failed.
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
