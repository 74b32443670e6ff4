// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "CallArguments.h"

#include "FileSystem.h"
#include "FileUri.h"
#include "LapsaSettings.h"

#include <QSet>

namespace lapsa {

namespace {

constexpr qsizetype mostEntries = 10'000;
/// Longer than the longest path, with every byte of it escaped.
constexpr qsizetype longestUri = 16'384;

bool isCountInBounds(const QStringList& texts)
{
    return !texts.isEmpty() && texts.size() <= mostEntries;
}

} // namespace

std::optional<QStringList> pathsOfUris(const QStringList& uris)
{
    if (!isCountInBounds(uris)) {
        return std::nullopt;
    }
    QStringList paths;
    paths.reserve(uris.size());
    for (const QString& uri : uris) {
        if (uri.size() > longestUri) {
            return std::nullopt;
        }
        const std::optional<QString> named = pathOfFileUri(uri.toUtf8());
        const std::optional<QString> path = named ? fileSystem::standardizedPath(*named) : std::nullopt;
        if (!path) {
            return std::nullopt;
        }
        paths.push_back(*path);
    }
    return paths;
}

bool areMinutes(int minutes)
{
    return minutes >= 0 && minutes <= maxLifespanMinutes;
}

std::optional<QList<QUuid>> recordIds(const QStringList& texts)
{
    if (!isCountInBounds(texts)) {
        return std::nullopt;
    }
    QList<QUuid> ids;
    QSet<QUuid> seen;
    ids.reserve(texts.size());
    for (const QString& text : texts) {
        const auto id = QUuid::fromString(text);
        if (id.isNull() || seen.contains(id)) {
            return std::nullopt;
        }
        seen.insert(id);
        ids.push_back(id);
    }
    return ids;
}

} // namespace lapsa
