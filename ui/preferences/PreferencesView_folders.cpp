// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AutoCleanFolderView.h"
#include "FolderChooser.h"
#include "LapsaStore.h"
#include "ListSection.h"
#include "Localized.h"
#include "NoFoldersView.h"
#include "PreferencesView.h"
#include "PushButton.h"
#include "RuleColumn.h"

#include <QDir>
#include <QFileInfo>

namespace lapsa {

using namespace Qt::StringLiterals;

void PreferencesView::makeFoldersTab()
{
    m_addFolder = new PushButton(Localized::text(u"Add folder"_s, u"Aggiungi cartella"_s), PushButton::Kind::Plain);
    m_addFolder->setSymbol(u"folder.badge.plus"_s);
    m_folderColumn = &makeListTab(Localized::autoCleanFolders(), m_addFolder)->column();
    auto* const empty = new NoFoldersView;
    m_folderColumn->addWidget(empty);
    m_refreshers.push_back([this, empty] { empty->setVisible(m_store.settings().autoCleanFolders.isEmpty()); });
    connect(empty, &NoFoldersView::chosen, this, &PreferencesView::addFolder);
    connect(m_addFolder, &PushButton::clicked, this, &PreferencesView::showFolderPicker);
}

void PreferencesView::refreshFolders()
{
    ruleColumn::bringInLine(m_folders, m_store.settings().autoCleanFolders, *m_folderColumn, *m_addFolder,
                            [this](const QUuid& id) { return new AutoCleanFolderView(m_store, id, this); });
}

void PreferencesView::showFolderPicker()
{
    if (m_folderChooser != nullptr) {
        m_folderChooser->raise();
        m_folderChooser->activateWindow();
        return;
    }
    // A dialog of the desktop that is open already may lie behind other windows: it gives way to a new one.
    m_folderQuestion.reset();
    m_folderQuestion = m_folderPicker.ask({.title = Localized::text(u"Add folder"_s, u"Aggiungi cartella"_s),
                                           .acceptLabel = Localized::text(u"Add"_s, u"Aggiungi"_s),
                                           .startFolder = m_lastFolder.isEmpty() ? QDir::homePath() : m_lastFolder,
                                           .window = window()->winId()},
                                          [this](const FolderPicker::Answer& answer) { folderPicked(answer); });
}

void PreferencesView::folderPicked(const FolderPicker::Answer& answer)
{
    m_folderQuestion.reset();
    if (const auto* const folder = std::get_if<QUrl>(&answer)) {
        m_lastFolder = QFileInfo(folder->toLocalFile()).path();
        addFolder(*folder);
    } else if (std::holds_alternative<FolderPicker::Unavailable>(answer) && isVisible()) {
        showFolderChooser();
    }
}

void PreferencesView::showFolderChooser()
{
    m_folderChooser = new FolderChooser(m_lastFolder, window());
    m_folderChooser->setAttribute(Qt::WA_DeleteOnClose);
    connect(m_folderChooser, &QDialog::finished, this, [this] { m_lastFolder = m_folderChooser->folder(); });
    connect(m_folderChooser, &QDialog::accepted, this, [this] {
        for (const QUrl& folder : m_folderChooser->chosen()) {
            addFolder(folder);
        }
    });
    m_folderChooser->open();
}

void PreferencesView::addFolder(const QUrl& folder)
{
    const qsizetype before = m_folders.size();
    m_store.addAutoCleanFolder(folder);
    refreshFolders();
    if (m_folders.size() > before) {
        revealNewest(*m_folders.constLast());
    }
}

} // namespace lapsa
