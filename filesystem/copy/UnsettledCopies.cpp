// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "UnsettledCopies.h"

#include "CopyMark.h"
#include "SystemCalls.h"

#include <algorithm>
#include <utility>

namespace lapsa {

namespace {

/// Each group keeps two folders open.
constexpr std::size_t mostGroups = 32;
/// So many copies the next start has to look at after a kill.
constexpr std::size_t mostCopies = 1000;

FileIdentity identityOfFolder(const SharedDescriptor& folder)
{
    const Result<struct statx> status = statAt(folder.get(), "", STATX_INO);
    return status ? identityOf(status.value()) : FileIdentity();
}

} // namespace

void UnsettledCopies::add(const AtPath& copy, const AtPath& original)
{
    const Result<struct statx> status = statAt(copy.folder.get(), copy.name.constData(), STATX_INO);
    if (!status) {
        return; // somebody has taken it already
    }
    groupOf(copy, original).copies.push_back({.name = copy.name, .inode = status.value().stx_ino});
    if (++m_count >= mostCopies || m_groups.size() > mostGroups) {
        settle();
    }
}

UnsettledCopies::Group& UnsettledCopies::groupOf(const AtPath& copy, const AtPath& original)
{
    const FileIdentity from = identityOfFolder(original.folder);
    const FileIdentity to = identityOfFolder(copy.folder);
    const auto known = std::ranges::find_if(
        m_groups, [&](const Group& group) { return group.fromIdentity == from && group.toIdentity == to; });
    if (known != m_groups.end()) {
        return *known;
    }
    return m_groups.emplace_back(
        Group{.from = original.folder, .to = copy.folder, .fromIdentity = from, .toIdentity = to, .copies = {}});
}

void UnsettledCopies::settle()
{
    m_count = 0;
    for (const Group& group : std::exchange(m_groups, {})) {
        if (syncNames(group.from.get()) != 0) {
            continue;
        }
        for (const Copy& copy : group.copies) {
            const AtPath place{.folder = group.to, .name = copy.name};
            const Result<struct statx> now = statAt(place.folder.get(), place.name.constData(), STATX_INO);
            // Another copy can have the name by now, with a mark that it still needs.
            if (now && now.value().stx_ino == copy.inode) {
                unmarkCopy(place);
            }
        }
    }
}

} // namespace lapsa
