// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "InterruptedCopies.h"

#include "FolderListing.h"
#include "FolderRemoval.h"

#include <QRandomGenerator>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <tuple>
#include <vector>

namespace lapsa {

namespace {

constexpr QByteArrayView prefix = ".lapsa-copy-";
constexpr int digits = 16;

} // namespace

QByteArray interruptedName()
{
    const QByteArray number = QByteArray::number(QRandomGenerator::system()->generate64(), 16);
    return prefix.toByteArray() + number.rightJustified(digits, '0');
}

bool isInterruptedCopy(int folder, const char* name)
{
    const QByteArrayView text(name);
    const auto isDigit = [](char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f'); };
    if (text.size() != prefix.size() + digits || !text.startsWith(prefix) ||
        !std::ranges::all_of(text.sliced(prefix.size()), isDigit)) {
        return false;
    }
    const Result<struct statx> found = statAt(folder, name, STATX_TYPE | STATX_MODE | STATX_UID);
    if (!found) {
        return false;
    }
    const struct statx& status = found.value();
    return (S_ISDIR(status.stx_mode) || S_ISREG(status.stx_mode)) && (status.stx_mode & 07777) == interruptedMode &&
           status.stx_uid == ::geteuid();
}

void removeCopy(const AtPath& copy, fileSystem::WorkObserver* observer)
{
    const Result<struct statx> status = statAt(copy.folder.get(), copy.name.constData(), STATX_TYPE | STATX_INO);
    if (!status) {
        return;
    }
    if (isFolder(status.value())) {
        std::ignore = FolderRemoval({}, observer).run(copy, identityOf(status.value()));
    } else {
        ::unlinkat(copy.folder.get(), copy.name.constData(), 0);
    }
}

void fileSystem::removeInterruptedCopies(const QString& folder)
{
    const Result<QByteArray> path = pathBytes(folder);
    if (!path) {
        return;
    }
    AtPath place{.folder = SharedDescriptor(FileDescriptor(
                     retrying([&] { return ::open(path.value().constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }))),
                 .name = {}};
    std::vector<QByteArray> copies;
    // The next start retries what cannot be listed or removed now.
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

} // namespace lapsa
