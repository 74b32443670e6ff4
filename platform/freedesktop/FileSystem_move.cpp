// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "CrossDeviceMove.h"
#include "FileSystem.h"
#include "Place.h"
#include "ProtectionCheck.h"

#include <cerrno>

namespace lapsa::fileSystem {

Result<void> move(const QString& from, const QString& to, const Protection& protection)
{
    const Result<Place> source = openPlace(from);
    if (!source) {
        return source.error();
    }
    const Result<Place> destination = openPlace(to);
    if (!destination) {
        return destination.error();
    }
    const Result<struct statx> status = lookAtUnprotected(source.value(), protection);
    if (!status) {
        return status.error();
    }
    int error = renameWithoutReplacing(source.value(), destination.value());
    if (error == EXDEV) {
        error = moveAcross(source.value(), status.value(), destination.value());
    } else if (error != 0 && hasArrived(source.value(), identityOf(status.value()), destination.value())) {
        error = 0;
    }
    return error == 0 ? Result<void>() : FileError::fromErrno(error);
}

} // namespace lapsa::fileSystem
