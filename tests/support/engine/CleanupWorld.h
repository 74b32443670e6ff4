// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "CleanupService.h"
#include "Recorders.h"
#include "StoreWorld.h"

#include <QList>
#include <QString>

#include <cstdint>
#include <optional>
#include <utility>

namespace lapsa::test {

/// The identifiers of the items warned about, each with the minutes it was told.
using Warnings = QList<std::pair<QString, std::int64_t>>;

/// The store with the service that drives it.
struct CleanupWorld final : StoreWorld
{
    RecordingWarnings warnings;
    std::optional<CleanupService> service;

    CleanupWorld()
    {
        service.emplace(store(), warnings, CleanupService::Environment{.clock = time, .mainQueue = time});
    }
};

} // namespace lapsa::test
