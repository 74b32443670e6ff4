// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QUuid>

#include <optional>

namespace lapsa {

// What callers may pass. The bounds are those that the description of the interface names; anything else gives nothing.

/// The absolute, standardised paths of file URIs that mean this machine, in the same order.
[[nodiscard]] std::optional<QStringList> pathsOfUris(const QStringList& uris);

/// Whether these minutes are a lifespan, or 0.
[[nodiscard]] bool areMinutes(int minutes);

/// The ids of records. Nothing if one is named twice.
[[nodiscard]] std::optional<QList<QUuid>> recordIds(const QStringList& texts);

} // namespace lapsa
