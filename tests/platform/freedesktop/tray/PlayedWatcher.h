// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "SessionBus.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantList>

namespace lapsa::test {

inline const QString watcherName = QStringLiteral("org.kde.StatusNotifierWatcher");

/// A watcher as a tray host has it, over a connection of its own.
class PlayedWatcher final : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hasHost SCRIPTABLE true)

public:
    explicit PlayedWatcher(const SessionBus& bus, bool host = true,
                           const QString& connection = QStringLiteral("tray host"));
    PlayedWatcher(const PlayedWatcher&) = delete;
    PlayedWatcher& operator=(const PlayedWatcher&) = delete;
    ~PlayedWatcher() override;

    [[nodiscard]] bool hasHost() const { return m_hasHost; }

    void bringHost();

    [[nodiscard]] QDBusMessage ask(const QString& path, const QString& interface, const QString& method,
                                   const QVariantList& arguments) const;

    /// The click of a tray host that calls for the press and again for the double click, without waiting.
    void activateTwice(int x, int y) const;

    QStringList items;

public slots: // NOLINT(readability-redundant-access-specifiers): these are the methods on the bus

    Q_SCRIPTABLE void RegisterStatusNotifierItem(const QString& item) { items.push_back(item); } // NOLINT

signals:
    Q_SCRIPTABLE void StatusNotifierHostRegistered(); // NOLINT

private:
    bool m_hasHost;
    QDBusConnection m_bus;
};

/// A watcher that never tells whether it has a tray host.
class SilentWatcher final : public QDBusVirtualObject
{
    Q_OBJECT

public:
    explicit SilentWatcher(const SessionBus& bus);
    SilentWatcher(const SilentWatcher&) = delete;
    SilentWatcher& operator=(const SilentWatcher&) = delete;
    ~SilentWatcher() override;

    [[nodiscard]] QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

    bool wasAsked = false;

private:
    QDBusConnection m_bus;
};

} // namespace lapsa::test
