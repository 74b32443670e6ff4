// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FolderPicker.h"
#include "ListTab.h"

#include <QList>
#include <QPointer>

#include <memory>

namespace lapsa {

class AutoCleanFolderView;
class FolderChooser;
class LapsaStore;
class MainQueue;
class NoFoldersView;

/// The watched folders, one card each, and the dialog for choosing one.
class FoldersTab final : public ListTab
{
    Q_OBJECT

public:
    /// Store, picker and queue must outlive the tab.
    FoldersTab(LapsaStore& store, FolderPicker& folderPicker, MainQueue& mainQueue, QWidget* parent = nullptr);

    /// Shows the current folder rules.
    void refresh();
    /// Whether a folder is being chosen, in the desktop's dialog or in our own.
    [[nodiscard]] bool showingFolderPicker() const;

private:
    void refreshCards();
    void showFolderPicker();
    void folderPicked(const FolderPicker::Answer& answer);
    /// Our own dialog, for desktops without one.
    void showFolderChooser();
    void addFolder(const QUrl& folder);

    LapsaStore& m_store;
    FolderPicker& m_folderPicker;
    MainQueue& m_mainQueue;
    NoFoldersView* m_empty;
    QList<AutoCleanFolderView*> m_cards;
    std::unique_ptr<FolderQuestion> m_folderQuestion;
    QPointer<FolderChooser> m_folderChooser;
    /// The folder last shown in the chooser; empty until then.
    QString m_lastFolder;
};

} // namespace lapsa
