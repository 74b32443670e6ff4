// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AutoCleanFolderView.h"
#include "FolderChooser.h"
#include "LapsaStore.h"
#include "ListSection.h"
#include "Localized.h"
#include "PreferencesView.h"
#include "PushButton.h"
#include "RuleColumn.h"

namespace lapsa {

using namespace Qt::StringLiterals;

void PreferencesView::makeFoldersTab()
{
    QVBoxLayout* const sections = makePage(Localized::autoCleanFolders());
    m_addFolder = new PushButton(Localized::text(u"Add folder"_s, u"Aggiungi cartella"_s), PushButton::Kind::Plain);
    m_addFolder->setSymbol(u"folder.badge.plus"_s);
    auto* const section = new ListSection(Localized::autoCleanFolders(), m_addFolder);
    m_folderColumn = &section->column();
    sections->addWidget(section);
    sections->addStretch();
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
    m_folderChooser = new FolderChooser(m_lastFolder, window());
    m_folderChooser->setAttribute(Qt::WA_DeleteOnClose);
    connect(m_folderChooser, &QDialog::finished, this, [this] { m_lastFolder = m_folderChooser->folder(); });
    connect(m_folderChooser, &QDialog::accepted, this, &PreferencesView::addChosenFolder);
    m_folderChooser->open();
}

void PreferencesView::addChosenFolder()
{
    const qsizetype before = m_folders.size();
    for (const QUrl& folder : m_folderChooser->chosen()) {
        m_store.addAutoCleanFolder(folder);
    }
    refreshFolders();
    if (m_folders.size() > before) {
        revealNewest(*m_folders.constLast());
    }
}

} // namespace lapsa
