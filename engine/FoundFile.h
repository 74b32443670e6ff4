// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "AddResult.h"
#include "KnownPaths.h"
#include "LapsaStore.h"

#include <QString>

#include <optional>

namespace lapsa {

/// What a lane found at a path that is to be put on countdown.
struct LapsaStore::FoundFile
{
    /// Its position among the paths that were named.
    qsizetype request = 0;
    /// Standardised.
    QString path;
    bool isDirectory = false;
    /// What there is to remember about the path.
    std::optional<fileSystem::PathSteps> steps = std::nullopt;
    /// Why it may never be taken.
    std::optional<fileSystem::Refusal> refusal = std::nullopt;
};

} // namespace lapsa
