// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DBusMenu.h"

#include <QDBusVariant>
#include <QGuiApplication>
#include <QKeySequence>

#include <algorithm>
#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

constexpr int rootId = 0;

/// Whether the taskbar of this desktop knows keys by the names of its toolkit, and cannot read "comma".
bool readsKeysOfQt()
{
    const QList<QByteArray> desktops = qgetenv("XDG_CURRENT_DESKTOP").split(':');
    return desktops.contains("KDE") || desktops.contains("LXQt");
}

/// The interface has its own names for the modifiers; the key itself has its X11 name.
DBusMenuShortcut shortcutOf(const QString& portableText)
{
    QStringList keys = portableText.split(u'+');
    for (QString& key : keys) {
        if (key == "Ctrl"_L1) {
            key = u"Control"_s;
        } else if (key == "Meta"_L1) {
            key = u"Super"_s;
        } else if (key == ","_L1 && !readsKeysOfQt()) {
            key = u"comma"_s;
        } else if (key.size() == 1) {
            key = key.toLower();
        }
    }
    return {keys};
}

QVariantMap allPropertiesOf(const StatusMenuEntry& entry)
{
    if (entry.title.isEmpty()) {
        return {{u"type"_s, u"separator"_s}};
    }
    QVariantMap properties{{u"label"_s, QString(entry.title).replace(u'_', "__"_L1)}};
    if (!entry.shortcut.isEmpty()) {
        properties.insert(u"shortcut"_s, QVariant::fromValue(shortcutOf(entry.shortcut)));
    }
    return properties;
}

} // namespace

DBusMenu::DBusMenu()
{
    registerDBusMenuTypes();
}

void DBusMenu::setEntries(QList<StatusMenuEntry> entries)
{
    m_entries = std::move(entries);
    emit LayoutUpdated(++m_revision, rootId);
}

QString DBusMenu::textDirection() const
{
    return QGuiApplication::isRightToLeft() ? u"rtl"_s : u"ltr"_s;
}

QString DBusMenu::status() const
{
    return u"normal"_s;
}

uint DBusMenu::GetLayout(int parentId, int depth, const QStringList& names, DBusMenuLayout& layout) const
{
    layout = {.id = parentId, .properties = propertiesOf(parentId, names), .children = {}};
    if (parentId == rootId && depth != 0) {
        for (int id = 1; id <= m_entries.size(); ++id) {
            layout.children.push_back({.id = id, .properties = propertiesOf(id, names), .children = {}});
        }
    }
    return m_revision;
}

QList<DBusMenuProperties> DBusMenu::GetGroupProperties(const QList<int>& ids, const QStringList& names) const
{
    QList<DBusMenuProperties> group;
    const auto add = [&](int id) { group.push_back({.id = id, .properties = propertiesOf(id, names)}); };
    if (ids.isEmpty()) { // asks for all entries
        for (int id = rootId; id <= m_entries.size(); ++id) {
            add(id);
        }
    }
    for (const int id : ids) {
        if (knows(id)) {
            add(id);
        }
    }
    return group;
}

QDBusVariant DBusMenu::GetProperty(int id, const QString& name) const
{
    const QVariant value = propertiesOf(id, {name}).value(name);
    return QDBusVariant(value.isValid() ? value : QVariant(QString()));
}

void DBusMenu::Event(int id, const QString& name, const QDBusVariant& /*data*/, uint /*timestamp*/)
{
    if (name == "clicked"_L1) {
        emit closed();
        trigger(id);
    } else if (name == "closed"_L1 && id == rootId) {
        emit closed();
    }
}

QList<int> DBusMenu::EventGroup(const QList<DBusMenuEvent>& events)
{
    QList<int> unknown;
    for (const DBusMenuEvent& event : events) {
        if (knows(event.id)) {
            Event(event.id, event.name, event.data, event.timestamp);
        } else {
            unknown.push_back(event.id);
        }
    }
    return unknown;
}

bool DBusMenu::AboutToShow(int id)
{
    if (id == rootId) {
        emit opened();
    }
    return false; // nothing has changed since the last time
}

QList<int> DBusMenu::AboutToShowGroup(const QList<int>& ids, QList<int>& idErrors)
{
    if (ids.contains(rootId)) {
        emit opened();
    }
    std::ranges::copy_if(ids, std::back_inserter(idErrors), [this](int id) { return !knows(id); });
    return {};
}

bool DBusMenu::knows(int id) const
{
    return id >= rootId && id <= m_entries.size();
}

/// The properties in `names`, or all if no name is given.
QVariantMap DBusMenu::propertiesOf(int id, const QStringList& names) const
{
    if (!knows(id)) {
        return {};
    }
    const QVariantMap all =
        id == rootId ? QVariantMap{{u"children-display"_s, u"submenu"_s}} : allPropertiesOf(m_entries[id - 1]);
    if (names.isEmpty()) {
        return all;
    }
    QVariantMap asked;
    for (const QString& name : names) {
        if (const auto found = all.constFind(name); found != all.cend()) {
            asked.insert(name, *found);
        }
    }
    return asked;
}

/// On a later turn of the event loop: the taskbar waits for its answer, and an entry may end the program.
void DBusMenu::trigger(int id)
{
    if (!knows(id) || id == rootId || !m_entries[id - 1].action) {
        return;
    }
    QMetaObject::invokeMethod(this, m_entries[id - 1].action, Qt::QueuedConnection);
}

} // namespace lapsa
