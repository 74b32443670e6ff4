// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "KnownPathsLook.h"

#include "KnownPathsCheck.h"

#include <cerrno>
#include <utility>

namespace lapsa::fileSystem {

namespace {

/// The steps of the way that others may replace.
PathSteps exchangeableSteps(const std::vector<WalkedStep>& walked)
{
    PathSteps steps;
    for (const WalkedStep& step : walked) {
        if (step.exchangeable) {
            steps.push_back(step.step);
        }
    }
    return steps;
}

/// Steps that no walk ever meets, for a path that led through somebody else's link when it was named.
PathSteps neverMet()
{
    return {PathStep{}};
}

/// The steps to remember for the place of `held`; nothing if others cannot change anything there.
std::optional<PathSteps> stepsAt(const ParentCache& held, std::optional<PathSteps> way)
{
    const WalkedFolder& folder = held.walked();
    if (!way || way->isEmpty()) {
        if (!othersMayWrite(held.place().folder.get(), folder.status)) {
            return way;
        }
        way = PathSteps();
    }
    if (const std::optional<WalkedStep> entry = folderAt(held); entry && entry->exchangeable) {
        way->push_back(entry->step);
    }
    return way;
}

} // namespace

KnownPathsLook::KnownPathsLook(KnownPaths known)
    : m_known(std::move(known))
{}

std::optional<PathSteps> KnownPathsLook::at(const QString& path)
{
    // Most paths are in the same folder as the one before, which belongs to the user.
    const QStringView folder = QStringView(path).left(path.lastIndexOf(u'/'));
    if (!m_privateFolder.isEmpty() && folder == m_privateFolder) {
        return std::nullopt;
    }
    m_privateFolder.clear();
    int error = m_held.goTo(path);
    if (error == 0 && m_held.walked().plain && !othersMayWrite(m_held.place().folder.get(), m_held.walked().status)) {
        m_privateFolder = folder.toString();
        return std::nullopt;
    }
    error = error == 0 ? m_held.goTo(path, WalkDetail::Steps) : error;
    if (error != 0) {
        return error == EACCES ? std::optional(neverMet()) : std::nullopt;
    }
    std::optional<PathSteps> way = m_known.stepsInto(folder.toString());
    if (!way) {
        way = exchangeableSteps(m_held.walked().steps);
    }
    return stepsAt(m_held, way->isEmpty() ? std::nullopt : way);
}

std::optional<PathSteps> stepsTowards(const QString& folder)
{
    const Result<QByteArray> path = pathBytes(folder);
    const Result<WalkedFolder> walked = path ? walkTo(path.value(), WalkDetail::Steps) : path.error();
    PathSteps steps;
    if (walked) {
        steps = exchangeableSteps(walked.value().steps);
    } else if (walked.error().code == EACCES) {
        steps = neverMet();
    }
    return steps.isEmpty() ? std::nullopt : std::optional(steps);
}

} // namespace lapsa::fileSystem
