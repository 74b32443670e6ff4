// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FolderPicker.h"
#include "LapsaSettings.h"

#include <QPointer>
#include <QWidget>

#include <functional>
#include <memory>
#include <optional>

class QStackedWidget;
class QVBoxLayout;

namespace lapsa {

class AutoCleanFolderView;
class Card;
class FileTypeRuleView;
class FolderChooser;
class FormSection;
class LapsaStore;
class ListSection;
class PushButton;
class ScrollPage;
class SymbolTabBar;

/// Edits the settings: every control writes its field at once, and shows at once what was changed elsewhere. It holds
/// no copy of them. The content of the preferences window.
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

    /// Store and picker outlive the view.
    PreferencesView(LapsaStore& store, FolderPicker& folderPicker, QWidget* parent = nullptr);

    void showTab(Tab tab);
    /// Whether a folder is being chosen, in the desktop's dialog or in the one of our own.
    [[nodiscard]] bool showingFolderPicker() const;

    static constexpr QSize extent{620, 620};

protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    /// A scrolling page with sections from top to bottom.
    [[nodiscard]] ScrollPage* makePage(const QString& name);
    /// A page with one list of cards. Takes the button.
    [[nodiscard]] ListSection* makeListTab(const QString& heading, PushButton* button);
    void makeShortcuts();
    void noteChange();
    void refresh();
    void applyTheme();
    /// Scrolls to a card that was just added.
    void revealNewest(QWidget& view);

    // ---- General tab: PreferencesView_general.cpp

    void makeGeneralTab();
    [[nodiscard]] FormSection* makeGeneralSection(QWidget* page);
    [[nodiscard]] FormSection* makeNotificationsSection(QWidget* page);
    [[nodiscard]] FormSection* makeRecoverySection(QWidget* page);
    void addToggle(Card& card, const QString& text, bool LapsaSettings::*field);
    [[nodiscard]] QWidget* makeThemePicker();
    [[nodiscard]] QWidget* makeRecoveryToggle();
    [[nodiscard]] QWidget* makeRetention();

    // ---- File type rules: PreferencesView_rules.cpp

    void makeRulesTab();
    void refreshRules();
    void addRule();

    // ---- Watched folders: PreferencesView_folders.cpp

    void makeFoldersTab();
    void refreshFolders();
    void showFolderPicker();
    void folderPicked(const FolderPicker::Answer& answer);
    /// The dialog of our own, where the desktop has none.
    void showFolderChooser();
    void addFolder(const QUrl& folder);

    LapsaStore& m_store;
    FolderPicker& m_folderPicker;
    bool m_changeNoted = false;
    std::optional<LapsaTheme> m_appliedTheme;
    SymbolTabBar* m_tabs = nullptr;
    QStackedWidget* m_pages = nullptr;
    /// What brings the controls of the general tab, and the pages, up to date.
    QList<std::function<void()>> m_refreshers;
    PushButton* m_addRule = nullptr;
    QVBoxLayout* m_ruleColumn = nullptr;
    QList<FileTypeRuleView*> m_rules;
    PushButton* m_addFolder = nullptr;
    QVBoxLayout* m_folderColumn = nullptr;
    QList<AutoCleanFolderView*> m_folders;
    std::unique_ptr<FolderQuestion> m_folderQuestion;
    QPointer<FolderChooser> m_folderChooser;
    /// Where the chooser was left; empty until then.
    QString m_lastFolder;
};

} // namespace lapsa
