// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "AtPath.h"
#include "PathWalk.h"

#include <optional>

namespace lapsa {

/// The place of one entry after the other. The folder of neighbours stays open for a few of them: to open it for each
/// costs as much as what is done there. For a few only: somebody may give the folder another name meanwhile, and put
/// another one into its place.
class ParentCache final
{
public:
    /// How many entries share one opening of their folder.
    static constexpr int mostSharing = 32;

    /// Goes to the entry at `path`, as walkTo() does; it need not exist. Returns an `errno` value: EINVAL as for
    /// pathBytes() and for a path that ends in "." or "..", EPERM for "/". After a failure there is no place.
    [[nodiscard]] int goTo(const QString& path, WalkDetail detail = WalkDetail::Folder);

    /// Where the entry stands, after a success.
    [[nodiscard]] const AtPath& place() const { return m_place; }

    /// How the way there was walked; its folder is that of the place.
    [[nodiscard]] const WalkedFolder& walked() const { return m_walked; }

    /// The real path of an open folder, remembered for the one that was gone to last.
    [[nodiscard]] Result<QByteArray> realPathOf(const SharedDescriptor& folder);

    /// Whether the folder, or the one above it, was opened for an entry before.
    [[nodiscard]] bool isShared() const { return m_sharing > 1 || m_above.sharing > 1; }

    /// The folder will be opened anew for the next entry.
    void letGo()
    {
        m_sharing = mostSharing;
        m_above = {};
        m_folderPath.reset();
    }

private:
    /// The folder above the one of the entry: entries may lie in one folder each.
    struct Above
    {
        /// With its trailing slash.
        QByteArray asked;
        WalkedFolder walked;
        int sharing = 0;
    };

    [[nodiscard]] Result<WalkedFolder> walkedTo(const QByteArray& folder, WalkDetail detail);
    [[nodiscard]] bool knowsAbove(const QByteArray& above);

    /// As it was asked for, with its trailing slash.
    QByteArray m_asked;
    WalkDetail m_detail = WalkDetail::Folder;
    AtPath m_place;
    WalkedFolder m_walked;
    int m_sharing = 0;
    Above m_above;
    std::optional<QByteArray> m_folderPath;
};

} // namespace lapsa
