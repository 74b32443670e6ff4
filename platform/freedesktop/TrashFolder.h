// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Place.h"

#include <QByteArray>

namespace lapsa {

/// One trash folder as the freedesktop Trash rules 1.0 describe it: `files` holds what was thrown away, `info` says of
/// each where it came from.
class TrashFolder final
{
public:
    /// The trash in the user's data home, made where it is missing.
    [[nodiscard]] static Result<TrashFolder> home();

    /// The user's trash on the volume that holds `place`, made where it is missing.
    [[nodiscard]] static Result<TrashFolder> ofVolume(const Place& place);

    /// Whether `files` is on the file system with this device number.
    [[nodiscard]] bool isOnDevice(std::uint64_t device) const;

    /// Whether the entry is this trash folder itself, lies above it, or is one of its records.
    [[nodiscard]] bool contains(const Place& place, const struct statx& status) const;

    /// Puts the entry of this identity into the trash under a free name. Returns an `errno` value; after a failure the
    /// entry is where it was and nothing is in the trash.
    [[nodiscard]] int take(const Place& place, const FileIdentity& identity) const;

private:
    TrashFolder() = default;

    [[nodiscard]] static Result<TrashFolder> opened(FileDescriptor folder);
    [[nodiscard]] Result<QByteArray> recordOf(const Place& place) const;
    [[nodiscard]] int takeAs(const Place& place, const FileIdentity& identity, const QByteArray& name,
                             const QByteArray& record) const;

    FileDescriptor m_folder;
    FileDescriptor m_files;
    FileDescriptor m_info;
    /// The real path of the volume's top folder, which recorded paths start from; empty for the home trash.
    QByteArray m_top;
};

} // namespace lapsa
