// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Time.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QUuid>

#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace lapsa {

/// Writes JSON in the format of all of Lapsa's files: indented by two spaces, the keys of each object in ascending byte
/// order, forward slashes escaped, dates as ISO 8601 in UTC with whole seconds, UUIDs in upper case.
///
/// To be encoded, a record needs a function `void write(JSONEncoder&, const Record&)` beside it, which opens an object,
/// writes its fields in ascending order of their keys (any other order is a programming error and ends the process) and
/// closes it.
class JSONEncoder final
{
public:
    /// A new encoder in the only configuration.
    [[nodiscard]] static JSONEncoder lapsa() { return JSONEncoder{}; }

    JSONEncoder(const JSONEncoder&) = delete;
    JSONEncoder& operator=(const JSONEncoder&) = delete;
    ~JSONEncoder() = default;

    /// The whole document of one record, or of a list of records.
    template <typename T>
    [[nodiscard]] QByteArray encode(const T& value)
    {
        element(value);
        return takeDocument();
    }

    void beginObject();
    void endObject();

    void field(std::string_view key, const QString& text);

    void field(std::string_view key, std::same_as<bool> auto value) { boolean(key, value); }

    void field(std::string_view key, std::int64_t number);
    void field(std::string_view key, TimePoint time);
    void field(std::string_view key, const QUuid& uuid);

    template <typename T>
    void field(std::string_view key, const QList<T>& list)
    {
        beginField(key);
        element(list);
    }

private:
    JSONEncoder() = default;

    struct Level
    {
        /// The last key written, to check the order of the next one. Empty in arrays.
        std::string_view lastKey;
        bool empty = true;
    };

    template <typename T>
    void element(const T& value)
    {
        write(*this, value);
    }

    template <typename T>
    void element(const QList<T>& list)
    {
        open('[');
        for (const T& value : list) {
            beginElement();
            element(value);
        }
        close(']');
    }

    void boolean(std::string_view key, bool value);
    void beginElement();
    void beginField(std::string_view key);
    void open(char bracket);
    void close(char bracket);
    void text(const QString& text);
    void put(char byte);
    void put(std::string_view bytes);

    /// Where to write the next `length` bytes; makes room for them.
    [[nodiscard]] char* room(qsizetype length)
    {
        if (m_limit - m_end < length) {
            grow(length);
        }
        return m_end;
    }

    void grow(qsizetype length);
    [[nodiscard]] qsizetype longestNewLine() const;
    [[nodiscard]] char* writeNewLine(char* out) const;
    [[nodiscard]] QByteArray takeDocument();

    QByteArray m_bytes;
    char* m_end = nullptr;   ///< end of the document so far
    char* m_limit = nullptr; ///< end of the allocated room
    std::vector<Level> m_levels;
};

} // namespace lapsa
