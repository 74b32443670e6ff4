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

/// An entry with the requested properties: `(ia{sv})`.
struct DBusMenuProperties
{
    int id = 0;
    QVariantMap properties;
};

/// An entry with its children: `(ia{sv}av)`.
struct DBusMenuLayout
{
    int id = 0;
    QVariantMap properties;
    QList<DBusMenuLayout> children;
};

/// An event of an entry: `(isvu)`.
struct DBusMenuEvent
{
    int id = 0;
    QString name;
    QDBusVariant data;
    uint timestamp = 0;
};

/// A key sequence; each list is a key with its modifiers: `aas`.
using DBusMenuShortcut = QList<QStringList>;

/// Registers these types with the toolkit's bus module. May be called again.
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
