// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QFileSystemModel>
#include <QHash>
#include <QIcon>

namespace lapsa {

/// The folders and files that a chooser shows. Read-only: nothing can be renamed, moved, created or removed with it.
class ChooserModel final : public QFileSystemModel
{
    Q_OBJECT

public:
    enum Column
    {
        Name,
        Size,
        Type,
        Changed,
    };

    ChooserModel(bool foldersOnly, QObject* parent);

    void setHiddenShown(bool shown);

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    [[nodiscard]] QVariant shownText(const QModelIndex& index) const;
    [[nodiscard]] QIcon iconOf(const QModelIndex& index) const;

    /// Keyed by file type.
    mutable QHash<QString, QIcon> m_icons;
};

} // namespace lapsa
