// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Picture.h"

#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

namespace lapsa {

QPixmap svgPicture(const QString& file, const QSize& size, double devicePixelRatio)
{
    if (!QFile::exists(file)) {
        return {};
    }
    QSvgRenderer drawing(file);
    if (!drawing.isValid()) {
        return {};
    }
    QPixmap pixmap((QSizeF(size) * devicePixelRatio).toSize());
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    drawing.setAspectRatioMode(Qt::KeepAspectRatio);
    drawing.render(&painter);
    painter.end();
    pixmap.setDevicePixelRatio(devicePixelRatio);
    return pixmap;
}

} // namespace lapsa
