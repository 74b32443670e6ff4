// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "AtPath.h"
#include "TrashRecord.h"

#include <QByteArray>
#include <QString>

#include <deque>
#include <optional>
#include <span>

namespace lapsa {

/// One trash folder as the freedesktop Trash rules 1.0 describe it: `files` holds the trashed entries, `info` records
/// where each came from.
class TrashFolder final
{
public:
    /// The trash in the user's data home; created if missing.
    [[nodiscard]] static Result<TrashFolder> home();

    /// The user's trash on the volume that holds `place`; created if missing.
    [[nodiscard]] static Result<TrashFolder> ofVolume(const AtPath& place);

    /// Whether an entry with this status (with STATX_MNT_ID) is on the same mount as `files`. The device number shows
    /// this on ordinary file systems only: on an overlay it is that of the lower layer.
    [[nodiscard]] bool isOnMountOf(const struct statx& status) const;

    /// Whether the entry is this trash folder itself, is above it, or is one of its records. Here and below, `folder`
    /// is the real path of the entry's folder.
    [[nodiscard]] bool contains(const QByteArray& folder, const AtPath& place, const struct statx& status) const;

    /// Creates the records of entries that take() will take in this order, as far as they are on this mount, so that
    /// they wait for the disk once instead of once each. Unused records are removed with this object.
    void prepare(std::span<const QString> paths);

    /// Puts the entry of this identity into the trash under a free name. Returns an `errno` value; after a failure the
    /// entry is where it was and the trash is unchanged, but after moveUnfinished a file is in both places.
    [[nodiscard]] int take(const QByteArray& folder, const AtPath& place, const FileIdentity& identity);

    /// The same for a file that has several names: if one of them is in the trash since an earlier take() from this
    /// path could not remove the one here, removes that. ENOENT if none is.
    [[nodiscard]] int finishTaking(const QByteArray& folder, const AtPath& place, const FileIdentity& identity);

    /// The real paths of what the last successful take() made.
    [[nodiscard]] QByteArray lastTaken() const { return m_filesPath + m_lastName; }

    [[nodiscard]] QByteArray recordOfLastTaken() const { return m_infoPath + m_lastName + ".trashinfo"; }

private:
    TrashFolder() = default;

    [[nodiscard]] static Result<TrashFolder> opened(const FileDescriptor& folder);
    [[nodiscard]] QByteArray textOf(const QByteArray& folder, const AtPath& place);
    [[nodiscard]] const QByteArray& deletionDate();
    [[nodiscard]] Result<TrashRecord> freeRecord(const QByteArray& folder, const AtPath& place);
    [[nodiscard]] std::optional<TrashRecord> preparedRecord(const QByteArray& path);
    [[nodiscard]] int takeAs(const AtPath& place, const FileIdentity& identity, const QByteArray& name,
                             const QByteArray& text);
    [[nodiscard]] int takeAs(const AtPath& place, const FileIdentity& identity, TrashRecord& record);

    /// `files`, with the name of an entry in it.
    AtPath m_inFiles;
    struct statx m_filesStatus = {};
    FileDescriptor m_info;
    FileIdentity m_infoIdentity;
    /// The real paths of both, with a trailing slash.
    QByteArray m_filesPath;
    QByteArray m_infoPath;
    QByteArray m_lastName;
    /// The real path of the volume's top folder, which recorded paths start from; empty for the home trash.
    QByteArray m_top;
    /// The date for a record made now, and the second since 1970 that it is for.
    QByteArray m_date;
    qint64 m_dateSecond = -1;

    struct Prepared
    {
        QByteArray path;
        TrashRecord record;
    };

    /// In the expected order. Declared last: the records use `m_info` and must be destroyed before it is closed.
    std::deque<Prepared> m_prepared;
};

} // namespace lapsa
