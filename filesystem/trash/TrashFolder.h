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

/// One trash folder as the freedesktop Trash rules 1.0 describe it: `files` holds what was thrown away, `info` says of
/// each where it came from.
class TrashFolder final
{
public:
    /// The trash in the user's data home, made where it is missing.
    [[nodiscard]] static Result<TrashFolder> home();

    /// The user's trash on the volume that holds `place`, made where it is missing.
    [[nodiscard]] static Result<TrashFolder> ofVolume(const AtPath& place);

    /// Whether an entry that looked so (with STATX_MNT_ID) is on the mount that `files` is on. The device number tells
    /// that of ordinary file systems only: on an overlay it is the one of the layer below.
    [[nodiscard]] bool isOnMountOf(const struct statx& status) const;

    /// Whether the entry is this trash folder itself, lies above it, or is one of its records. `folder` is the real
    /// path of the folder that holds it, here and below.
    [[nodiscard]] bool contains(const QByteArray& folder, const AtPath& place, const struct statx& status) const;

    /// Makes the records of entries that take() will be asked for in this order, as far as they stand on this file
    /// system: the disk is then waited for once and not once for each. What is not taken loses its record with this
    /// object.
    void prepare(std::span<const QString> paths);

    /// Puts the entry of this identity into the trash under a free name. Returns an `errno` value; after a failure the
    /// entry is where it was and nothing is in the trash.
    [[nodiscard]] int take(const QByteArray& folder, const AtPath& place, const FileIdentity& identity);

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

    /// `files`, with the name that an entry gets there.
    AtPath m_inFiles;
    struct statx m_filesStatus = {};
    FileDescriptor m_info;
    FileIdentity m_infoIdentity;
    /// The real paths of both, with a trailing slash.
    QByteArray m_filesPath;
    QByteArray m_infoPath;
    /// The real path of the volume's top folder, which recorded paths start from; empty for the home trash.
    QByteArray m_top;
    /// The date of a record made now, and the second since 1970 that it was made for.
    QByteArray m_date;
    qint64 m_dateSecond = -1;

    struct Prepared
    {
        QByteArray path;
        TrashRecord record;
    };

    /// In the order in which they are expected. Their records are in `info`, and go before it is closed.
    std::deque<Prepared> m_prepared;
};

} // namespace lapsa
