// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Chooser.h"
#include "ChooserModel.h"
#include "ChooserPathRow.h"
#include "ChooserPlaces.h"
#include "Localized.h"
#include "PushButton.h"
#include "TypedPath.h"
#include "WaitingLine.h"

#include <QDir>
#include <QLineEdit>
#include <QTreeView>

#include <algorithm>
#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

/// By the text alone.
QString parentOf(const QString& folder)
{
    return QDir::cleanPath(u'/' + folder.section(u'/', 0, -2));
}

} // namespace

void Chooser::showWay(const ChooserWay& way)
{
    const QString left = m_way.folder;
    m_way = way;
    const bool goesUp = !left.isEmpty() && left != way.folder && parentOf(left) == way.folder;
    m_nameLeft = goesUp ? left.section(u'/', -1) : QString();
    m_names->scrollToTop();
    m_path->showWay(way);
    m_places->showPlace(way.folder);
    m_wish = Wish::None;
    m_waiting->begin();
    m_names->clearSelection();
    m_model->showFolder(way.folder);
    fillField();
}

void Chooser::go(const ChooserWay& way)
{
    m_wayBefore = m_way;
    showWay(way);
}

void Chooser::goTo(const QString& folder)
{
    go(m_way.to(QDir::cleanPath(folder)));
}

void Chooser::goUp()
{
    goTo(parentOf(m_way.folder));
}

void Chooser::goBack()
{
    if (!m_way.back.isEmpty()) {
        go(m_way.backward());
    }
}

void Chooser::goForward()
{
    if (!m_way.forward.isEmpty()) {
        go(m_way.onward());
    }
}

void Chooser::leaveMissingFolder()
{
    if (m_wayBefore) {
        showWay(*std::exchange(m_wayBefore, std::nullopt));
    } else if (m_way.folder != QDir::homePath()) {
        showWay({.folder = QDir::homePath()});
    } else {
        m_waiting->end();
    }
}

void Chooser::noteGrowth()
{
    const QModelIndex left = m_nameLeft.isEmpty() ? QModelIndex() : m_model->indexOf(m_nameLeft);
    if (left.isValid()) {
        // After going up, the keyboard continues at the folder left, which is not selected.
        m_nameLeft.clear();
        if (!m_names->currentIndex().isValid()) {
            m_names->selectionModel()->setCurrentIndex(left, QItemSelectionModel::NoUpdate);
        }
    }
    if (!m_model->isRead()) {
        return;
    }
    m_readFolder = m_model->folder();
    if (m_wish == Wish::None) {
        m_waiting->end();
    }
}

void Chooser::enterSelected()
{
    QModelIndexList rows = m_names->selectionModel()->selectedRows();
    if (rows.isEmpty() && m_names->currentIndex().isValid()) {
        rows = {m_names->currentIndex()};
    }
    if (rows.size() == 1 && m_model->isFolder(rows.constFirst())) {
        goTo(m_model->path(rows.constFirst()));
    } else if (!m_oneFolder) {
        add();
    }
}

void Chooser::openTyped()
{
    m_wish = Wish::Open;
    m_waiting->begin();
    m_typed->lookAt(typedPath());
}

void Chooser::addAsked()
{
    if (!selectedPaths().isEmpty()) {
        add();
        return;
    }
    m_wish = Wish::Add;
    m_waiting->begin();
    m_typed->lookAt(typedPath());
}

void Chooser::textChanged()
{
    m_wish = Wish::None;
    if (m_model->isRead()) {
        m_waiting->end();
    }
    lookAtTyped();
    refreshButtons();
}

/// What is selected is known.
void Chooser::lookAtTyped()
{
    if (m_wish == Wish::None) {
        m_typed->lookAt(selectedPaths().isEmpty() ? typedPath() : QString());
    }
}

void Chooser::noteTyped()
{
    const Wish wish = std::exchange(m_wish, Wish::None);
    if (wish != Wish::None && m_model->isRead()) {
        m_waiting->end();
    }
    if (wish == Wish::Open && m_typed->isFolder()) {
        goTo(m_typed->found());
    } else if (wish == Wish::Add || (wish == Wish::Open && !m_oneFolder)) {
        add();
    } else {
        refreshButtons();
    }
}

void Chooser::add()
{
    for (const QString& path : choice()) {
        m_chosen.push_back(QUrl::fromLocalFile(path));
    }
    if (m_chosen.isEmpty()) {
        refreshButtons();
    } else {
        accept();
    }
}

/// Shows the selection in the field. Without a selection, a folder chooser offers the folder that the user navigated
/// to.
void Chooser::fillField()
{
    const QStringList selected = selectedPaths();
    if (selected.isEmpty() && m_field->hasFocus() && !m_field->text().isEmpty() && m_field->isModified()) {
        lookAtTyped();
        return; // keep the text that is being typed
    }
    const bool several = selected.size() > 1;
    m_field->setPlaceholderText(several ? Localized::text(u"%1 selected"_s, u"%1 selezionati"_s).arg(selected.size())
                                        : QString());
    if (selected.size() == 1) {
        m_field->setText(selected.constFirst().section(u'/', -1));
    } else {
        m_field->setText(m_oneFolder && m_way.byUser ? m_way.folder : QString());
    }
    lookAtTyped();
    refreshButtons();
}

void Chooser::refreshButtons()
{
    m_add->setEnabled(!choice().isEmpty());
}

QStringList Chooser::choice() const
{
    // The selected entries, not their names in the field: a file name need not be valid text.
    const QStringList selected = selectedPaths();
    if (!selected.isEmpty()) {
        return selected;
    }
    const QString& typed = m_typed->found();
    return typed.isEmpty() || (m_oneFolder && !m_typed->isFolder()) ? QStringList() : QStringList{typed};
}

QStringList Chooser::selectedPaths() const
{
    QModelIndexList rows = m_names->selectionModel()->selectedRows();
    std::ranges::sort(rows, {}, &QModelIndex::row);
    QStringList paths;
    for (const QModelIndex& row : rows) {
        paths.push_back(m_model->path(row));
    }
    return paths;
}

QString Chooser::typedPath() const
{
    const QString text = m_field->text();
    if (text.isEmpty()) {
        return {};
    }
    const bool startsAtHome = text == "~"_L1 || text.startsWith("~/"_L1);
    if (startsAtHome && !m_model->indexOf(u"~"_s).isValid()) {
        return QDir::cleanPath(QDir::homePath() + text.sliced(1));
    }
    return QDir::cleanPath(text.startsWith(u'/') ? text : m_way.folder + u'/' + text);
}

} // namespace lapsa
