// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QDBusArgument>
#include <QList>
#include <QString>

class QImage;

namespace lapsa {

/// One size of an icon, as ARGB in network byte order: `(iiay)`.
struct StatusNotifierPixmap
{
    int width = 0;
    int height = 0;
    QByteArray bytes;
};

using StatusNotifierPixmaps = QList<StatusNotifierPixmap>;

/// `(sa(iiay)ss)`.
struct StatusNotifierToolTip
{
    QString iconName;
    StatusNotifierPixmaps pixmaps;
    QString title;
    QString text;
};

[[nodiscard]] StatusNotifierPixmap statusNotifierPixmap(const QImage& image);

/// Registers these types with the toolkit's bus module. May be called again.
void registerStatusNotifierTypes();

QDBusArgument& operator<<(QDBusArgument& argument, const StatusNotifierPixmap& value);
const QDBusArgument& operator>>(const QDBusArgument& argument, StatusNotifierPixmap& value);

QDBusArgument& operator<<(QDBusArgument& argument, const StatusNotifierToolTip& value);
const QDBusArgument& operator>>(const QDBusArgument& argument, StatusNotifierToolTip& value);

} // namespace lapsa

Q_DECLARE_METATYPE(lapsa::StatusNotifierPixmap)
Q_DECLARE_METATYPE(lapsa::StatusNotifierToolTip)
