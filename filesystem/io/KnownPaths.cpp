// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "KnownPaths.h"

#include "KnownPathsLook.h"

namespace lapsa::fileSystem {

void KnownPaths::remember(const QStringList& paths)
{
    KnownPathsLook look(*this);
    for (const QString& path : paths) {
        set(path, look.at(path));
    }
}

void KnownPaths::rememberFolder(const QString& folder)
{
    noteFolder(folder, stepsTowards(folder));
}

void KnownPaths::note(const QString& path, const std::optional<PathSteps>& steps)
{
    set(path, steps);
}

void KnownPaths::adopt(const KnownPaths& changed, const QStringList& paths)
{
    for (const QString& path : paths) {
        note(path, changed.stepsTo(path));
    }
}

void KnownPaths::noteFolder(const QString& folder, const std::optional<PathSteps>& steps)
{
    set(folder + u'/', steps);
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
