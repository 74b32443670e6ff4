// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "LapsaItem.h"

#include <QList>
#include <QString>

namespace lapsa {

class LapsaStore;

/// What the list shows: the store's items in the store's order, or those whose names contain a text.
class ListFilter final
{
public:
    /// The store must outlive the filter.
    explicit ListFilter(const LapsaStore& store);

    /// Shows the items whose names contain the text, in upper or lower case; all of them if it is empty.
    void setText(const QString& text);

    [[nodiscard]] const QString& text() const { return m_text; }

    /// Looks through the store's items again. Until then, a filtered list is as it was.
    void refresh();

    [[nodiscard]] const QList<LapsaItem>& items() const;

    /// The index of an item in items(), or -1. The search starts at `hint`.
    [[nodiscard]] qsizetype indexOf(const QString& id, qsizetype hint) const;

private:
    const LapsaStore& m_store;
    QString m_text;
    QList<LapsaItem> m_hits;
};

} // namespace lapsa
