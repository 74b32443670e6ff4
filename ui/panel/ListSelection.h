// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "LapsaItem.h"

#include <QList>
#include <QSet>
#include <QString>

namespace lapsa {

/// Which items of a list are selected, by id, and from where a range extends.
class ListSelection final
{
public:
    [[nodiscard]] const QSet<QString>& ids() const { return m_ids; }

    void clear() { m_ids.clear(); }

    /// A range extends from this item.
    void setAnchor(const QString& id) { m_anchor = id; }

    /// Selects the item, or no longer.
    void toggle(const QString& id);
    /// Selects the items from the anchor to an index, and no others. Without an anchor, the range is that item.
    void extendTo(const QList<LapsaItem>& items, qsizetype index);
    void selectAll(const QList<LapsaItem>& items);
    /// Only what is seen can be selected: drops the other items.
    void keepOnly(const QList<LapsaItem>& items);

    /// The selected items, in the order of the list.
    [[nodiscard]] QList<LapsaItem> of(const QList<LapsaItem>& items) const;

private:
    QSet<QString> m_ids;
    QString m_anchor;
};

} // namespace lapsa
