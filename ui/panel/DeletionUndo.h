// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "LapsaStore.h"

#include <QList>
#include <QObject>
#include <QString>

namespace lapsa {

/// What the user has deleted with "Delete now" and can still take back, as long as the panel's message says so: until
/// the next add, the next message of another kind or the closing of the panel. Nothing is offered for what was deleted
/// for good.
class DeletionUndo final : public QObject
{
    Q_OBJECT

public:
    /// `store` must outlive this object.
    explicit DeletionUndo(LapsaStore& store, QObject* parent = nullptr);

    /// Names it in the store's message, beside those that are still offered.
    void offer(const LapsaStore::Deletion& deletion);

    [[nodiscard]] bool isOffered() const;

    /// Puts everything that is offered back, as ordinary files. The store's message says where they are, if not where
    /// they were, or that they could not be put back.
    void undo();

private:
    struct Outcome;

    [[nodiscard]] QString offerText() const;
    void putBack(const QList<LapsaStore::Deletion>& deletions);

    LapsaStore& m_store;
    QList<LapsaStore::Deletion> m_deletions;
    /// The message that offers them.
    QString m_text;
};

} // namespace lapsa
