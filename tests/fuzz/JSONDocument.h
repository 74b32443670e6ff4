// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FuzzTarget.h"
#include "JSONDecoder.h"
#include "JSONEncoder.h"

#include <QByteArray>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>
#include <QStringList>

#include <optional>

namespace lapsa::fuzz {

/// Whether every object of the array has all of the keys.
inline bool haveKeys(const QJsonArray& objects, const QStringList& keys)
{
    return std::ranges::all_of(objects, [&keys](const QJsonValue& value) {
        const QJsonObject object = value.toObject();
        return std::ranges::all_of(keys, [&object](const QString& key) { return object.contains(key); });
    });
}

/// The same document as another reader sees it; nothing where it has a limit of its own.
inline std::optional<QJsonDocument> readOtherwise(const QByteArray& bytes)
{
    QJsonParseError error;
    QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    if (error.error == QJsonParseError::DeepNesting) {
        return std::nullopt;
    }
    demand(error.error == QJsonParseError::NoError, "what is accepted is JSON to another reader too");
    return document;
}

/// What holds for each of the three files, whatever is in it. Returns what was read.
template <typename Read>
auto checkDocument(const QByteArray& bytes, Read read) -> decltype(read(bytes))
{
    auto value = read(bytes);
    if (!value) {
        return value;
    }
    const QByteArray written = JSONEncoder::lapsa().encode(*value);
    const auto again = read(written);
    demand(again.has_value(), "what was written can be read");
    demand(*again == *value, "what was written is read as it was");
    demand(JSONEncoder::lapsa().encode(*again) == written, "what was read is written as it was");
    const bool replacedBefore = bytes.contains("\xEF\xBF\xBD") || bytes.toLower().contains("\\ufffd");
    demand(replacedBefore || !written.contains("\xEF\xBF\xBD"), "no character is replaced by a mark");
    demand(!read(bytes.trimmed().chopped(1)), "a document without its last bracket is refused");
    demand(!read(bytes + ']'), "a document with one more bracket is refused");
    return value;
}

} // namespace lapsa::fuzz
