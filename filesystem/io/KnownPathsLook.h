// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "KnownPaths.h"
#include "ParentCache.h"

#include <QString>

#include <optional>

namespace lapsa::fileSystem {

/// Finds what there is to remember about one path after another; see KnownPaths::remember(). May be used on another
/// thread than the known paths themselves.
class KnownPathsLook final
{
public:
    /// For an entry directly in a folder that `known` remembers, the place remembered for that folder applies.
    explicit KnownPathsLook(KnownPaths known);

    /// Nothing if nobody else can change where the path leads.
    [[nodiscard]] std::optional<PathSteps> at(const QString& path);

private:
    KnownPaths m_known;
    ParentCache m_held;
    /// The folder of the last path, if only the user can change it.
    QString m_privateFolder;
};

/// The same for a folder and its entries; see KnownPaths::rememberFolder().
[[nodiscard]] std::optional<PathSteps> stepsTowards(const QString& folder);

} // namespace lapsa::fileSystem
