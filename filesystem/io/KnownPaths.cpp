// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "KnownPaths.h"

#include "KnownPathsCheck.h"
#include "ParentCache.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>

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

void KnownPaths::remember(const QStringList& paths)
{
    ParentCache held;
    // Most paths are in the same folder as the one before, which belongs to the user.
    QStringView privateFolder;
    for (const QString& path : paths) {
        const QStringView folder = QStringView(path).left(path.lastIndexOf(u'/'));
        if (!privateFolder.isEmpty() && folder == privateFolder) {
            set(path, std::nullopt);
            continue;
        }
        privateFolder = {};
        int error = held.goTo(path);
        if (error == 0 && held.walked().plain && !othersMayWrite(held.place().folder.get(), held.walked().status)) {
            set(path, std::nullopt);
            privateFolder = folder;
            continue;
        }
        error = error == 0 ? held.goTo(path, WalkDetail::Steps) : error;
        if (error != 0) {
            set(path, error == EACCES ? std::optional(neverMet()) : std::nullopt);
            continue;
        }
        std::optional<PathSteps> way = stepsInto(path.left(path.lastIndexOf(u'/')));
        if (!way) {
            way = exchangeableSteps(held.walked().steps);
        }
        set(path, stepsAt(held, way->isEmpty() ? std::nullopt : way));
    }
}

void KnownPaths::rememberFolder(const QString& folder)
{
    const Result<QByteArray> path = pathBytes(folder);
    const Result<WalkedFolder> walked = path ? walkTo(path.value(), WalkDetail::Steps) : path.error();
    PathSteps steps;
    if (walked) {
        steps = exchangeableSteps(walked.value().steps);
    } else if (walked.error().code == EACCES) {
        steps = neverMet();
    }
    set(folder + u'/', steps.isEmpty() ? std::nullopt : std::optional(steps));
}

void KnownPaths::adopt(const KnownPaths& changed, const QStringList& paths)
{
    for (const QString& path : paths) {
        set(path, changed.stepsTo(path));
    }
}

void KnownPaths::adoptFolder(const KnownPaths& changed, const QString& folder)
{
    set(folder + u'/', changed.stepsInto(folder));
}

void KnownPaths::keepOnly(const QSet<QString>& paths, const QSet<QString>& folders)
{
    const auto removed = m_steps.removeIf([&](const auto& entry) {
        const QString& key = entry.key();
        return key.endsWith(u'/') ? !folders.contains(key.chopped(1)) : !paths.contains(key);
    });
    m_changed = m_changed || removed > 0;
}

std::optional<PathSteps> KnownPaths::stepsTo(const QString& path) const
{
    const auto found = m_steps.constFind(path);
    return found == m_steps.cend() ? std::nullopt : std::optional(*found);
}

std::optional<PathSteps> KnownPaths::stepsInto(const QString& folder) const
{
    return m_steps.isEmpty() ? std::nullopt : stepsTo(folder + u'/');
}

void KnownPaths::set(const QString& key, const std::optional<PathSteps>& steps)
{
    if (!steps) {
        m_changed = (!m_steps.isEmpty() && m_steps.remove(key)) || m_changed;
        return;
    }
    PathSteps& known = m_steps[key];
    if (known != *steps || known.isEmpty()) {
        known = *steps;
        m_changed = true;
    }
}

} // namespace lapsa::fileSystem
