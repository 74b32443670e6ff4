// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "TypedPath.h"

#include "LaneJob.h"

#include <QFileInfo>

namespace lapsa {

TypedPath::TypedPath(Lanes& lanes, QObject* parent)
    : QObject(parent)
    , m_look(lanes)
{}

void TypedPath::lookAt(const QString& path)
{
    m_found.clear();
    m_isFolder = false;
    if (path.isEmpty()) {
        m_look.drop();
        emit answered();
        return;
    }
    m_look.ask({.folder = path.section(u'/', 0, -2), .path = path, .work = [this, path](LaneJob&) -> Lanes::Report {
                    const QFileInfo info(path);
                    return [this, found = info.exists() ? path : QString(), isFolder = info.isDir()] {
                        note(found, isFolder);
                    };
                }});
}

void TypedPath::note(const QString& found, bool isFolder)
{
    m_found = found;
    m_isFolder = isFolder;
    emit answered();
}

} // namespace lapsa
