// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "AtPath.h"
#include "PathWalk.h"

#include <optional>

namespace lapsa {

/// Finds the place of one entry after another. The folder of neighbours stays open for a few of them, because opening
/// it for each costs as much as the work there. Only for a few: somebody may rename the folder meanwhile and put
/// another in its place.
class ParentCache final
{
public:
    /// How many entries share one opening of their folder.
    static constexpr int mostSharing = 32;

    /// Goes to the entry at `path`, as walkTo() does; it need not exist. Returns an `errno` value: EINVAL as for
    /// pathBytes() and for a path that ends in "." or "..", EPERM for "/". After a failure there is no valid place.
    [[nodiscard]] int goTo(const QString& path, WalkDetail detail = WalkDetail::Folder);

    /// The place of the entry, after success.
    [[nodiscard]] const AtPath& place() const { return m_place; }

    /// How the walk there went; its folder is that of the place.
    [[nodiscard]] const WalkedFolder& walked() const { return m_walked; }

    /// The real path of an open folder, cached for the folder of the current place.
    [[nodiscard]] Result<QByteArray> realPathOf(const SharedDescriptor& folder);

    /// Whether the folder, or the one above it, was opened for an earlier entry.
    [[nodiscard]] bool isShared() const { return m_sharing > 1 || m_above.sharing > 1; }

    /// Makes the next entry open its folder again.
    void letGo()
    {
        m_sharing = mostSharing;
        m_above = {};
        m_folderPath.reset();
    }

private:
    /// The folder above that of the entry, because each entry may have a folder of its own.
    struct Above
    {
        /// With a trailing slash.
        QByteArray asked;
        WalkedFolder walked;
        int sharing = 0;
    };

    [[nodiscard]] Result<WalkedFolder> walkedTo(const QByteArray& folder, WalkDetail detail);
    [[nodiscard]] bool knowsAbove(const QByteArray& above);

    /// As requested, with a trailing slash.
    QByteArray m_asked;
    WalkDetail m_detail = WalkDetail::Folder;
    AtPath m_place;
    WalkedFolder m_walked;
    int m_sharing = 0;
    Above m_above;
    std::optional<QByteArray> m_folderPath;
};

} // namespace lapsa
