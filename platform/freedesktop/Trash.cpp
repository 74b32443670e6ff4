// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Trash.h"

#include "Place.h"
#include "ProtectionCheck.h"
#include "TrashFolder.h"

#include <cerrno>

namespace lapsa {

namespace {

int takenBy(const TrashFolder& trash, const Place& place, const struct statx& status)
{
    return trash.contains(place, status) ? EPERM : trash.take(place, identityOf(status));
}

} // namespace

Result<void> moveToTrash(const QString& path, const fileSystem::Protection& protection)
{
    const Result<Place> place = openPlace(path);
    if (!place) {
        return place.error();
    }
    const Result<struct statx> status = lookAtUnprotected(place.value(), protection);
    if (!status) {
        return status.error();
    }
    const Result<TrashFolder> home = TrashFolder::home();
    int error = home ? EXDEV : home.error().code;
    if (home && home.value().isOnDevice(identityOf(status.value()).device)) {
        error = takenBy(home.value(), place.value(), status.value());
    }
    if (error == EXDEV) {
        // Another volume, or another mount of the same one: it has a trash of its own.
        const Result<TrashFolder> trash = TrashFolder::ofVolume(place.value());
        error = trash ? takenBy(trash.value(), place.value(), status.value()) : trash.error().code;
    }
    return error == 0 ? Result<void>() : FileError::fromErrno(error);
}

} // namespace lapsa
