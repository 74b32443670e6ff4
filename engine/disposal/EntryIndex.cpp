// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "EntryIndex.h"

#include "Spelling.h"

#include <algorithm>

namespace lapsa {

void EntryIndex::add(const fileSystem::EntryInfo& entry, const QString& name)
{
    m_names.emplace(entry.identity, Name{.folder = entry.folderOfName,
                                         .folded = entry.folderOfName ? foldedSpelling(name) : QString()});
}

bool EntryIndex::contains(const fileSystem::EntryInfo& entry, const QString& name) const
{
    const auto [begin, end] = m_names.equal_range(entry.identity);
    if (begin == end || !entry.folderOfName) {
        return begin != end;
    }
    // Each name of a hard-linked file is an entry of its own. Names that differ only in spelling may be the same entry;
    // they count as one, since taking too little can be corrected later.
    const QString wanted = foldedSpelling(name);
    return std::any_of(begin, end, [&](const auto& known) {
        return known.second.folder == entry.folderOfName && known.second.folded == wanted;
    });
}

} // namespace lapsa
