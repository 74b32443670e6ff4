// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Announcer.h"
#include "Clock.h"
#include "LapsaPanelView.h"
#include "LapsaStore.h"
#include "Localized.h"

#include <QAccessible>
#include <QSet>

#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;

void LapsaPanelView::announceLocked(const QStringList& ids)
{
    // A warning may cover thousands of items.
    const QSet<QString> meant(ids.begin(), ids.end());
    QStringList names;
    for (const LapsaItem& item : m_environment.store.items()) {
        if (item.locked && meant.contains(item.id)) {
            names.push_back(item.displayName);
        }
    }
    if (!names.isEmpty()) {
        m_announcer->announce(
            names.size() == 1
                ? Localized::text(u"“%1” is locked"_s, u"“%1” è bloccato"_s).arg(names.first())
                : Localized::text(u"%1 items are locked"_s, u"%1 elementi sono bloccati"_s).arg(names.size()));
    }
}

/// Only for screen readers: an item that is due now and gone after the change was removed automatically.
void LapsaPanelView::noteDueItems()
{
    if (!isVisible() || !QAccessible::isActive()) {
        return;
    }
    const TimePoint now = m_environment.clock.now();
    for (const LapsaItem& item : m_environment.store.items()) {
        if (!item.locked && item.isExpired(now)) {
            m_due.insert(item.id, item.displayName);
        }
    }
}

void LapsaPanelView::announceGoneItems()
{
    QHash<QString, QString> gone = std::exchange(m_due, {});
    if (gone.isEmpty()) {
        return;
    }
    for (const LapsaItem& item : m_environment.store.items()) {
        gone.remove(item.id);
    }
    if (gone.size() == 1) {
        m_announcer->announce(
            Localized::text(u"“%1” has left the list"_s, u"“%1” non è più nella lista"_s).arg(*gone.cbegin()));
    } else if (!gone.isEmpty()) {
        m_announcer->announce(
            Localized::text(u"%1 items have left the list"_s, u"%1 elementi non sono più nella lista"_s)
                .arg(gone.size()));
    }
}

} // namespace lapsa
