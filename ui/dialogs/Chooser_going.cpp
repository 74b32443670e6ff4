// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Chooser.h"
#include "ChooserModel.h"
#include "ChooserPlaces.h"
#include "ElidedLabel.h"
#include "Localized.h"
#include "PushButton.h"
#include "SymbolButton.h"

#include <QDir>
#include <QFileInfo>
#include <QLineEdit>
#include <QTreeView>

#include <algorithm>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

/// A folder's path for display: relative to the home folder if it is inside it.
QString wayTo(const QString& folder)
{
    const QString home = QDir::homePath();
    if (folder != home && !folder.startsWith(home + u'/')) {
        return folder;
    }
    QStringList parts = folder.sliced(home.size()).split(u'/', Qt::SkipEmptyParts);
    parts.push_front(Localized::text(u"Home"_s, u"Cartella home"_s));
    return parts.join(u" \u203A "_s);
}

} // namespace

void Chooser::showFolder(const QString& folder, bool byUser)
{
    const QString left = m_folder;
    m_folder = folder;
    m_cameByUser = byUser;
    m_names->setRootIndex(m_model->setRootPath(folder));
    m_names->clearSelection();
    m_names->scrollToTop();
    // After going up, the keyboard continues at the folder left, which is not selected.
    const QModelIndex before = m_model->index(left);
    if (before.isValid() && before.parent() == m_names->rootIndex()) {
        m_names->selectionModel()->setCurrentIndex(before, QItemSelectionModel::NoUpdate);
    }
    m_path->setText(wayTo(folder));
    m_places->showPlace(folder);
    fillField();
}

void Chooser::goTo(const QString& folder)
{
    const QString path = QDir::cleanPath(folder);
    if (!QFileInfo(path).isDir()) {
        return;
    }
    if (path != m_folder) {
        m_back.push_back(m_folder);
        m_forward.clear();
    }
    showFolder(path, true);
}

void Chooser::goUp()
{
    goTo(QFileInfo(m_folder).path());
}

void Chooser::goBack()
{
    if (!m_back.isEmpty()) {
        m_forward.push_back(m_folder);
        showFolder(m_back.takeLast(), true);
    }
}

void Chooser::goForward()
{
    if (!m_forward.isEmpty()) {
        m_back.push_back(m_folder);
        showFolder(m_forward.takeLast(), true);
    }
}

void Chooser::enterSelected()
{
    QStringList paths = selectedPaths();
    if (paths.isEmpty() && m_names->currentIndex().isValid()) {
        paths = {m_model->filePath(m_names->currentIndex())};
    }
    if (paths.size() == 1 && QFileInfo(paths.constFirst()).isDir()) {
        goTo(paths.constFirst());
    } else if (!m_oneFolder) {
        add();
    }
}

void Chooser::openTyped()
{
    const QString path = typedPath();
    if (QFileInfo(path).isDir()) {
        goTo(path);
    } else if (!m_oneFolder) {
        add();
    }
}

void Chooser::add()
{
    for (const QString& path : choice()) {
        m_chosen.push_back(QUrl::fromLocalFile(path));
    }
    if (!m_chosen.isEmpty()) {
        accept();
    }
}

/// Shows the selection in the field. Without a selection, a folder chooser offers the folder that the user navigated
/// to.
void Chooser::fillField()
{
    const QStringList selected = selectedPaths();
    if (selected.isEmpty() && m_field->hasFocus() && !m_field->text().isEmpty() && m_field->isModified()) {
        return; // keep the text that is being typed
    }
    const bool several = selected.size() > 1;
    m_field->setPlaceholderText(several ? Localized::text(u"%1 selected"_s, u"%1 selezionati"_s).arg(selected.size())
                                        : QString());
    if (selected.size() == 1) {
        m_field->setText(QFileInfo(selected.constFirst()).fileName());
    } else {
        m_field->setText(m_oneFolder && m_cameByUser ? m_folder : QString());
    }
    refreshButtons();
}

void Chooser::refreshButtons()
{
    m_add->setEnabled(!choice().isEmpty());
    m_backButton->setEnabled(!m_back.isEmpty());
    m_forwardButton->setEnabled(!m_forward.isEmpty());
    m_upButton->setEnabled(m_folder != QDir::rootPath());
}

QStringList Chooser::choice() const
{
    // The selected entries, not their names in the field: a file name need not be valid text.
    const QStringList selected = selectedPaths();
    if (!selected.isEmpty()) {
        return selected;
    }
    const QString typed = typedPath();
    return typed.isEmpty() || (m_oneFolder && !QFileInfo(typed).isDir()) ? QStringList() : QStringList{typed};
}

QStringList Chooser::selectedPaths() const
{
    QModelIndexList rows = m_names->selectionModel()->selectedRows();
    std::ranges::sort(rows, {}, &QModelIndex::row);
    QStringList paths;
    for (const QModelIndex& row : rows) {
        paths.push_back(m_model->filePath(row));
    }
    return paths;
}

QString Chooser::typedPath() const
{
    const QString text = m_field->text();
    if (text.isEmpty()) {
        return {};
    }
    QString path = QDir::cleanPath(QDir(m_folder).absoluteFilePath(text));
    if (!QFileInfo::exists(path) && (text == "~"_L1 || text.startsWith("~/"_L1))) {
        path = QDir::cleanPath(QDir::homePath() + text.sliced(1));
    }
    return QFileInfo::exists(path) ? path : QString();
}

} // namespace lapsa
