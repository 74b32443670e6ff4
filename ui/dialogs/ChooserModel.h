// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FolderReading.h"
#include "LatestLook.h"

#include <QAbstractTableModel>
#include <QHash>
#include <QIcon>

#include <cstdint>
#include <memory>
#include <optional>

namespace lapsa {

/// The folders and files in a folder, for a chooser. Lanes read them: this object accesses no disk. Read-only: nothing
/// can be renamed, moved, created or removed with it.
class ChooserModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column
    {
        Name,
        Size,
        Changed,
    };

    /// The absolute path of the entry.
    static constexpr int pathRole = Qt::UserRole;

    /// `lanes` must outlive the model.
    ChooserModel(Lanes& lanes, bool foldersOnly, QObject* parent);

    /// Shows a folder, given by its absolute path: nothing at first, then what is read.
    void showFolder(const QString& folder);
    /// Reads the shown folder again if it has changed.
    void refresh();
    /// Reads the shown folder again: a file can change without its folder.
    void readAgain();
    void setHiddenShown(bool shown);

    /// The absolute path of the shown folder; empty before the first.
    [[nodiscard]] const QString& folder() const { return m_folder; }

    /// Whether the shown folder was read to its end once.
    [[nodiscard]] bool isRead() const { return m_isRead; }

    [[nodiscard]] QString path(const QModelIndex& index) const;
    [[nodiscard]] bool isFolder(const QModelIndex& index) const;
    /// Invalid if no such entry is shown.
    [[nodiscard]] QModelIndex indexOf(const QString& name) const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
    /// Sorts later, on a lane.
    void sort(int column, Qt::SortOrder order) override;

signals:
    /// More of the shown folder is known, possibly all of it.
    void grew();
    /// There is no folder with the shown path.
    void noFolder();

private:
    void begin();
    void readOn();
    void noteRead(const std::shared_ptr<FolderReading>& reading, const ListOrder& order, const ListedEntries& entries);
    void takeOver(const ListedEntries& entries);
    [[nodiscard]] ListedEntries shownOf(const ListedEntries& entries) const;
    void update(const ListedEntries& next);
    void append(const ListedEntries& added);
    /// The entries in their new rows, then those that are gone.
    void arrange(const ListedEntries& next, const QHash<QString, int>& places);
    void removeFrom(int row);

    [[nodiscard]] const ListedEntry& entryAt(const QModelIndex& index) const;
    [[nodiscard]] QVariant shownText(const QModelIndex& index) const;
    [[nodiscard]] QIcon iconOf(const ListedEntry& entry) const;

    Lanes& m_lanes;
    bool m_foldersOnly;
    bool m_hiddenShown = false;
    bool m_isRead = false;
    bool m_isSettled = false;
    QString m_folder;
    ListOrder m_order;
    /// All that is known, hidden entries included.
    ListedEntries m_all;
    /// Changes with m_all, so that sorted entries that come too late are noticed.
    int m_version = 0;
    ListedEntries m_rows;
    std::optional<std::int64_t> m_change;
    /// Null while nothing is read.
    std::shared_ptr<FolderReading> m_reading;
    /// Keyed by file type.
    mutable QHash<QString, QIcon> m_icons;
    LatestLook m_look;
};

} // namespace lapsa
