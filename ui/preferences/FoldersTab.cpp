// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FoldersTab.h"

#include "AutoCleanFolderView.h"
#include "FolderChooser.h"
#include "LapsaStore.h"
#include "Localized.h"
#include "NoFoldersView.h"
#include "PushButton.h"
#include "RuleColumn.h"

#include <QDir>
#include <QFileInfo>

namespace lapsa {

using namespace Qt::StringLiterals;

FoldersTab::FoldersTab(LapsaStore& store, FolderPicker& folderPicker, MainQueue& mainQueue, QWidget* parent)
    : ListTab(Localized::autoCleanFolders(),
              new PushButton(Localized::text(u"Add folder"_s, u"Aggiungi cartella"_s), PushButton::Kind::Plain), parent)
    , m_store(store)
    , m_folderPicker(folderPicker)
    , m_mainQueue(mainQueue)
    , m_empty(new NoFoldersView(store.lanes()))
{
    addButton().setSymbol(u"folder.badge.plus"_s);
    column().addWidget(m_empty);
    connect(m_empty, &NoFoldersView::chosen, this, &FoldersTab::addFolder);
    connect(&addButton(), &PushButton::clicked, this, &FoldersTab::showFolderPicker);
}

void FoldersTab::refresh()
{
    alignHeading();
    m_empty->setVisible(m_store.settings().autoCleanFolders.isEmpty());
    refreshCards();
}

bool FoldersTab::showingFolderPicker() const
{
    return m_folderQuestion != nullptr || m_folderChooser != nullptr;
}

void FoldersTab::refreshCards()
{
    ruleColumn::bringInLine(m_cards, m_store.settings().autoCleanFolders, column(), addButton(),
                            [this](const QUuid& id) { return new AutoCleanFolderView(m_store, id, this); });
}

void FoldersTab::showFolderPicker()
{
    if (m_folderChooser != nullptr) {
        m_folderChooser->raise();
        m_folderChooser->activateWindow();
        return;
    }
    // A desktop dialog that is already open may be behind other windows: a new one replaces it.
    m_folderQuestion.reset();
    m_folderQuestion = m_folderPicker.ask({.title = Localized::text(u"Add folder"_s, u"Aggiungi cartella"_s),
                                           .acceptLabel = Localized::text(u"Add"_s, u"Aggiungi"_s),
                                           .startFolder = m_lastFolder.isEmpty() ? QDir::homePath() : m_lastFolder,
                                           .window = window()->winId()},
                                          [this](const FolderPicker::Answer& answer) { folderPicked(answer); });
}

void FoldersTab::folderPicked(const FolderPicker::Answer& answer)
{
    m_folderQuestion.reset();
    if (const auto* const folder = std::get_if<QUrl>(&answer)) {
        m_lastFolder = QFileInfo(folder->toLocalFile()).path();
        addFolder(*folder);
    } else if (std::holds_alternative<FolderPicker::Unavailable>(answer) && window()->isVisible()) {
        showFolderChooser();
    }
}

void FoldersTab::showFolderChooser()
{
    m_folderChooser = new FolderChooser({m_store.lanes(), m_mainQueue}, m_lastFolder, window());
    m_folderChooser->setAttribute(Qt::WA_DeleteOnClose);
    connect(m_folderChooser, &QDialog::finished, this, [this] { m_lastFolder = m_folderChooser->folder(); });
    connect(m_folderChooser, &QDialog::accepted, this, [this] {
        for (const QUrl& folder : m_folderChooser->chosen()) {
            addFolder(folder);
        }
    });
    m_folderChooser->open();
}

void FoldersTab::addFolder(const QUrl& folder)
{
    const qsizetype before = m_cards.size();
    m_store.addAutoCleanFolder(folder);
    refreshCards();
    if (m_cards.size() > before) {
        reveal(*m_cards.constLast());
    }
}

} // namespace lapsa
