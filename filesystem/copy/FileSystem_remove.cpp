// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileSystem.h"
#include "FolderListing.h"
#include "InterruptedCopies.h"
#include "Place.h"

#include <fcntl.h>

#include <vector>

namespace lapsa::fileSystem {

void removeInterruptedCopies(const QString& folder)
{
    const Result<QByteArray> path = pathBytes(folder);
    if (!path) {
        return;
    }
    Place place{.folder = FileDescriptor(
                    retrying([&] { return ::open(path.value().constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); })),
                .name = {}};
    std::vector<QByteArray> copies;
    // What cannot be listed or removed now is tried again at the next start.
    std::ignore = forEachRawEntry(place.folder.get(), [&](const dirent& entry) {
        if (isInterruptedCopy(place.folder.get(), entry.d_name)) {
            copies.emplace_back(entry.d_name);
        }
        return true;
    });
    for (const QByteArray& name : copies) {
        place.name = name;
        removeCopy(place);
    }
}

} // namespace lapsa::fileSystem
