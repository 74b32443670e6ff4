// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDBusArgument>
#include <QDBusVariant>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariantMap>

namespace lapsa {

/// An entry with what is asked of it: `(ia{sv})`.
struct DBusMenuProperties
{
    int id = 0;
    QVariantMap properties;
};

/// An entry with those below it: `(ia{sv}av)`.
struct DBusMenuLayout
{
    int id = 0;
    QVariantMap properties;
    QList<DBusMenuLayout> children;
};

/// What happened to an entry: `(isvu)`.
struct DBusMenuEvent
{
    int id = 0;
    QString name;
    QDBusVariant data;
    uint timestamp = 0;
};

/// A key with its modifiers, each sequence as one list: `aas`.
using DBusMenuShortcut = QList<QStringList>;

/// Makes them known to the bus. It may be called again.
void registerDBusMenuTypes();

QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenuProperties& value);
const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenuProperties& value);

QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenuLayout& value);
const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenuLayout& value);

QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenuEvent& value);
const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenuEvent& value);

} // namespace lapsa

Q_DECLARE_METATYPE(lapsa::DBusMenuProperties)
Q_DECLARE_METATYPE(lapsa::DBusMenuLayout)
Q_DECLARE_METATYPE(lapsa::DBusMenuEvent)
