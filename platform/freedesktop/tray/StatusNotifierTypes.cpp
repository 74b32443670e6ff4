// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "StatusNotifierTypes.h"

#include <QDBusMetaType>
#include <QImage>
#include <QtEndian>

namespace lapsa {

StatusNotifierPixmap statusNotifierPixmap(const QImage& image)
{
    const QImage straight = image.convertToFormat(QImage::Format_ARGB32);
    StatusNotifierPixmap pixmap{.width = straight.width(), .height = straight.height(), .bytes = {}};
    pixmap.bytes.resize(straight.sizeInBytes());
    qToBigEndian<quint32>(straight.constBits(), straight.sizeInBytes() / qsizetype(sizeof(quint32)),
                          pixmap.bytes.data());
    return pixmap;
}

void registerStatusNotifierTypes()
{
    qDBusRegisterMetaType<StatusNotifierPixmap>();
    qDBusRegisterMetaType<StatusNotifierPixmaps>();
    qDBusRegisterMetaType<StatusNotifierToolTip>();
}

QDBusArgument& operator<<(QDBusArgument& argument, const StatusNotifierPixmap& value)
{
    argument.beginStructure();
    argument << value.width << value.height << value.bytes;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, StatusNotifierPixmap& value)
{
    argument.beginStructure();
    argument >> value.width >> value.height >> value.bytes;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const StatusNotifierToolTip& value)
{
    argument.beginStructure();
    argument << value.iconName << value.pixmaps << value.title << value.text;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, StatusNotifierToolTip& value)
{
    argument.beginStructure();
    argument >> value.iconName >> value.pixmaps >> value.title >> value.text;
    argument.endStructure();
    return argument;
}

} // namespace lapsa
