// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "DBusMenuTypes.h"
#include "StatusItem.h"

#include <QList>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

namespace lapsa {

/// A flat menu shown by the taskbar: `com.canonical.dbusmenu`, version 3. Entry ids start at 1; 0 is the menu itself.
class DBusMenu final : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.dbusmenu")
    Q_PROPERTY(uint Version READ version SCRIPTABLE true)
    Q_PROPERTY(QString TextDirection READ textDirection SCRIPTABLE true)
    Q_PROPERTY(QString Status READ status SCRIPTABLE true)
    Q_PROPERTY(QStringList IconThemePath READ iconThemePath SCRIPTABLE true)

public:
    DBusMenu();

    void setEntries(QList<StatusMenuEntry> entries);

    [[nodiscard]] uint version() const { return 3; }

    [[nodiscard]] QString textDirection() const;
    [[nodiscard]] QString status() const;

    [[nodiscard]] QStringList iconThemePath() const { return {}; }

public slots: // NOLINT(readability-redundant-access-specifiers): these are the methods on the bus

    // NOLINTBEGIN(readability-identifier-naming): their names are given by the interface
    Q_SCRIPTABLE uint GetLayout(int parentId, int depth, const QStringList& names, lapsa::DBusMenuLayout& layout) const;
    Q_SCRIPTABLE QList<lapsa::DBusMenuProperties> GetGroupProperties(const QList<int>& ids,
                                                                     const QStringList& names) const;
    Q_SCRIPTABLE QDBusVariant GetProperty(int id, const QString& name) const;
    Q_SCRIPTABLE void Event(int id, const QString& name, const QDBusVariant& data, uint timestamp);
    Q_SCRIPTABLE QList<int> EventGroup(const QList<lapsa::DBusMenuEvent>& events);
    Q_SCRIPTABLE bool AboutToShow(int id);
    Q_SCRIPTABLE QList<int> AboutToShowGroup(const QList<int>& ids, QList<int>& idErrors);

signals:
    Q_SCRIPTABLE void LayoutUpdated(uint revision, int parentId);
    // NOLINTEND(readability-identifier-naming)

    /// A taskbar shows the menu, or is about to.
    void opened();
    /// Not every taskbar reports this.
    void closed();

private:
    [[nodiscard]] bool knows(int id) const;
    [[nodiscard]] QVariantMap propertiesOf(int id, const QStringList& names) const;
    void trigger(int id);

    QList<StatusMenuEntry> m_entries;
    uint m_revision = 1;
};

} // namespace lapsa
