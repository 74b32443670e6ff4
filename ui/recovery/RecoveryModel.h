// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ItemWork.h"
#include "LapsaRecoveryItem.h"
#include "RecoveryContent.h"

#include <QAbstractListModel>
#include <QHash>
#include <QIcon>
#include <QList>
#include <QString>
#include <QUuid>

#include <functional>
#include <optional>

namespace lapsa {

class Clock;
class LapsaStore;
class RecoveryOverview;

/// The rows of the Recovery window: what lies in Recovery and has the filter in its name, newest first. Holds its own
/// list, which reload() replaces as a whole; a row keeps no text that a clock would change.
class RecoveryModel final : public QAbstractListModel
{
    Q_OBJECT

public:
    /// The icon of a file with this name, or of a folder, to be drawn at 24 x 24.
    using Icons = std::function<QIcon(const QString& name, bool isFolder)>;

    /// What the rows are made of. All of it outlives the model.
    struct Environment
    {
        LapsaStore& store;
        const RecoveryOverview& overview;
        const Clock& clock;
        Icons icons;
    };

    explicit RecoveryModel(Environment environment, QObject* parent = nullptr);

    /// Reads the overview again.
    void reload();
    /// Shows only rows with this text in their names, in upper or lower case; all if it is empty.
    void setFilter(const QString& text);

    /// How many rows there would be without a filter.
    [[nodiscard]] qsizetype unfilteredCount() const { return m_entries.size(); }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    /// Names, and what a screen reader is told.
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

    [[nodiscard]] const LapsaRecoveryItem& recordAt(int row) const { return m_entries[m_shown[row]]; }

    [[nodiscard]] std::optional<RecoveryCopy> copyAt(int row) const;
    [[nodiscard]] QIcon iconAt(int row) const;
    [[nodiscard]] bool isUnderWay(int row) const;
    [[nodiscard]] std::optional<ItemWork> workAt(int row) const;
    [[nodiscard]] QString originAt(int row) const;
    /// What the row says of its state now: the time left, or what is being done with it.
    [[nodiscard]] QString stateAt(int row) const;
    /// Empty while it is not known.
    [[nodiscard]] QString sizeAt(int row) const;

private:
    void show();

    Environment m_environment;
    QString m_filter;
    QList<LapsaRecoveryItem> m_entries;
    /// Places in the entries.
    QList<qsizetype> m_shown;
    /// By type of file.
    mutable QHash<QString, QIcon> m_icons;
};

} // namespace lapsa
