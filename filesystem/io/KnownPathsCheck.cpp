// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "KnownPathsCheck.h"

#include <fcntl.h>

#include <algorithm>

namespace lapsa {

namespace {

bool wasMet(const fileSystem::PathStep& known, const WalkedFolder& walked)
{
    return std::ranges::any_of(walked.steps, [&](const WalkedStep& met) { return isSameStep(known, met.step); });
}

} // namespace

std::optional<WalkedStep> folderAt(const ParentCache& held)
{
    const AtPath& place = held.place();
    const FileDescriptor entry(retrying([&] {
        return ::openat(place.folder.get(), place.name.constData(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    }));
    const Result<struct statx> status =
        entry ? statAt(entry.get(), "", STATX_BASIC_STATS | STATX_BTIME) : FileError::fromErrno(ENOENT);
    if (!status) {
        return {};
    }
    return WalkedStep{.step = pathStep(held.walked().path + '/' + place.name, entry.get(), status.value()),
                      .exchangeable = othersMayExchange(place.folder.get(), held.walked().status, status.value())};
}

bool isKnownWay(const fileSystem::PathSteps& known, const WalkedFolder& walked)
{
    return std::ranges::all_of(known, [&](const auto& step) { return wasMet(step, walked); });
}

bool isKnownPlace(const fileSystem::PathSteps& known, const ParentCache& held)
{
    const QByteArray path = held.walked().path + '/' + held.place().name;
    const auto ofEntry = std::ranges::find(known, path, &fileSystem::PathStep::path);
    const bool wayKnown = std::ranges::all_of(
        known, [&](const fileSystem::PathStep& step) { return step.path == path || wasMet(step, held.walked()); });
    const std::optional<WalkedStep> folder = folderAt(held);
    if (!folder) {
        return wayKnown;
    }
    return wayKnown && (ofEntry == known.end() ? !folder->exchangeable : isSameStep(*ofEntry, folder->step));
}

} // namespace lapsa
