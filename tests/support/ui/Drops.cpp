// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Drops.h"

#include "DropZone.h"
#include "PanelWorld.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QUrl>

namespace lapsa::test {

bool drop(DropZone& target, const QMimeData& data)
{
    QDragEnterEvent enter({20, 20}, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&target, &enter);
    QDropEvent event({20, 20}, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&target, &event);
    return enter.isAccepted() && event.isAccepted() && event.dropAction() == Qt::CopyAction;
}

void dropFiles(DropZone& target, const QStringList& paths)
{
    QList<QUrl> urls;
    for (const QString& path : paths) {
        urls.push_back(QUrl::fromLocalFile(path));
    }
    QMimeData data;
    data.setUrls(urls);
    drop(target, data);
    PanelWorld::settle();
}

} // namespace lapsa::test
