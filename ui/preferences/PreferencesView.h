// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "LapsaTheme.h"

#include <QWidget>

#include <optional>

class QStackedWidget;

namespace lapsa {

class FolderPicker;
class FoldersTab;
class GeneralTab;
class LapsaStore;
class MainQueue;
class RulesTab;
class SymbolTabBar;

/// The content of the preferences window. Every control writes its setting at once and shows changes made elsewhere at
/// once. Holds no copy of the settings.
class PreferencesView final : public QWidget
{
    Q_OBJECT

public:
    enum class Tab
    {
        General,
        Rules,
        Folders,
    };

    /// Store and picker must outlive the view.
    PreferencesView(LapsaStore& store, FolderPicker& folderPicker, MainQueue& mainQueue, QWidget* parent = nullptr);

    void showTab(Tab tab);
    /// Whether a folder is being chosen, in the desktop's dialog or in our own.
    [[nodiscard]] bool showingFolderPicker() const;

    static constexpr QSize extent{620, 620};

signals:
    /// The user wants to see what is in Recovery.
    void recoveryRequested();

protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    [[nodiscard]] QLayout* makeTabs();
    void makeShortcuts();
    void noteChange();
    void refresh();
    void applyTheme();

    LapsaStore& m_store;
    bool m_changeNoted = false;
    std::optional<LapsaTheme> m_appliedTheme;
    SymbolTabBar* m_tabs;
    QStackedWidget* m_pages;
    GeneralTab* m_general;
    RulesTab* m_rules;
    FoldersTab* m_folders;
};

} // namespace lapsa
