// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "HeldFolder.h"

#include <QString>

#include <optional>
#include <unordered_map>

namespace lapsa {

/// Finds folder entries by their identity on disk, even under another spelling or through another path.
class EntryIndex final
{
public:
    void add(const fileSystem::EntryInfo& entry, const QString& name);

    [[nodiscard]] bool contains(const fileSystem::EntryInfo& entry, const QString& name) const;

private:
    struct Name
    {
        std::optional<FileIdentity> folder;
        QString folded;
    };

    std::unordered_multimap<FileIdentity, Name, FileIdentityHash> m_names;
};

} // namespace lapsa
