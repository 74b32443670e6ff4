// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Refusal.h"

#include "ProtectionCheck.h"

namespace lapsa {

std::optional<fileSystem::Refusal> fileSystem::refusalOf(const QString& path, const Protection& protection)
{
    const Result<QByteArray> bytes = pathBytes(path);
    if (bytes && bytes.value() == "/") {
        return Refusal::Root;
    }
    const Result<AtPath> place = openParentOf(path);
    if (!place) {
        return std::nullopt;
    }
    const Result<struct statx> status =
        statAt(place.value().folder.get(), place.value().name.constData(), STATX_BASIC_STATS);
    if (!status) {
        return std::nullopt;
    }
    const Result<std::optional<Refusal>> refusal = refusalAt(place.value(), status.value(), protection);
    // If this cannot be determined now, the move or removal checks again.
    return refusal ? refusal.value() : std::nullopt;
}

} // namespace lapsa
