// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ItemKinds.h"

#include "FileName.h"
#include "FileSystem.h"
#include "LaneJob.h"
#include "Lanes.h"

#include <QPointer>

#include <utility>

namespace lapsa {

namespace {

/// Many more than fit on a screen.
constexpr qsizetype mostKnown = 4096;

QHash<QString, ItemKind> kindsOf(const QStringList& paths, LaneJob& job)
{
    QHash<QString, ItemKind> kinds;
    for (const QString& path : paths) {
        kinds.insert(path, fileSystem::isDirectory(path) ? ItemKind::Folder : ItemKind::File);
        job.alive();
    }
    return kinds;
}

} // namespace

ItemKinds::ItemKinds(Lanes& lanes)
    : m_lanes(lanes)
    , m_known(mostKnown)
{}

ItemKind ItemKinds::kindOf(const QString& path) const
{
    const ItemKind* const kind = m_known.object(path);
    return kind != nullptr ? *kind : ItemKind::Unknown;
}

void ItemKinds::lookUp(const QString& path)
{
    const QString parent = parentPath(path);
    Folder& folder = m_folders[parent];
    if (folder.underWay.contains(path) || folder.waiting.contains(path)) {
        return;
    }
    folder.waiting.push_back(path);
    if (folder.underWay.isEmpty()) {
        look(parent);
    }
}

void ItemKinds::lookUpOnce(const QString& path)
{
    if (kindOf(path) == ItemKind::Unknown) {
        lookUp(path);
    }
}

void ItemKinds::look(const QString& folder)
{
    const QStringList paths = std::exchange(m_folders[folder].waiting, {});
    m_folders[folder].underWay = {paths.begin(), paths.end()};
    m_lanes.look(folder, [self = QPointer(this), folder, paths](LaneJob& job) -> Lanes::Report {
        return [self, folder, kinds = kindsOf(paths, job)] {
            if (self) {
                self->note(folder, kinds);
            }
        };
    });
}

void ItemKinds::note(const QString& folder, const QHash<QString, ItemKind>& kinds)
{
    const bool more = !m_folders[folder].waiting.isEmpty();
    m_folders[folder].underWay.clear();
    if (more) {
        look(folder);
    } else {
        m_folders.remove(folder);
    }
    for (auto [path, kind] : kinds.asKeyValueRange()) {
        if (kindOf(path) != kind) {
            m_known.insert(path, new ItemKind(kind));
            emit found(path);
        }
    }
}

} // namespace lapsa
