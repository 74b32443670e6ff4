// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileChooser.h"

#include "Localized.h"

#include <QAbstractItemView>
#include <QDialogButtonBox>
#include <QEvent>
#include <QFileSystemModel>
#include <QHeaderView>
#include <QTreeView>

#include <algorithm>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

constexpr QSize startSize(720, 480);

} // namespace

FileChooser::FileChooser(QWidget* parent)
    : QFileDialog(parent)
{
    setOption(QFileDialog::DontUseNativeDialog);
    setFileMode(QFileDialog::ExistingFiles);
    setAcceptMode(QFileDialog::AcceptOpen);
    setWindowTitle(Localized::text(u"Choose files or folders"_s, u"Scegli file o cartelle"_s));
    setLabelText(QFileDialog::LookIn, Localized::text(u"Look in:"_s, u"Cerca in:"_s));
    setLabelText(QFileDialog::FileName, Localized::text(u"Name:"_s, u"Nome:"_s));
    setLabelText(QFileDialog::FileType, Localized::text(u"Kind:"_s, u"Tipo:"_s));
    nameAcceptButton();
    setLabelText(QFileDialog::Reject, Localized::text(u"Cancel"_s, u"Annulla"_s));
    layOut();
    if (auto* const buttons = findChild<QDialogButtonBox*>()) {
        buttons->installEventFilter(this);
    }
}

bool FileChooser::eventFilter(QObject* watched, QEvent* event)
{
    // The dialog names its button anew, and in English, whenever a folder is selected. Another name wants another size.
    if (event->type() == QEvent::LayoutRequest) {
        nameAcceptButton();
    }
    return QFileDialog::eventFilter(watched, event);
}

void FileChooser::accept()
{
    // Without this the dialog enters a selected folder instead of taking it.
    m_chosen = selectedRows();
    if (m_chosen.isEmpty()) {
        QFileDialog::accept();
    } else {
        // Past the file dialog, which would look for the selection itself.
        QDialog::done(QDialog::Accepted); // NOLINT(bugprone-parent-virtual-call)
    }
}

QList<QUrl> FileChooser::chosen() const
{
    if (m_chosen.isEmpty()) {
        return selectedUrls();
    }
    QList<QUrl> urls;
    for (const QString& path : m_chosen) {
        urls.push_back(QUrl::fromLocalFile(path));
    }
    return urls;
}

void FileChooser::nameAcceptButton()
{
    setLabelText(QFileDialog::Accept, Localized::text(u"Add"_s, u"Aggiungi"_s));
}

/// Leaves out what there is nothing to choose from, and gives the names all the room that there is.
void FileChooser::layOut()
{
    resize(startSize);
    for (const QString& name : {u"fileTypeLabel"_s, u"fileTypeCombo"_s}) {
        if (auto* const widget = findChild<QWidget*>(name)) {
            widget->hide();
        }
    }
    if (auto* const tree = findChild<QTreeView*>(u"treeView"_s)) {
        tree->header()->setStretchLastSection(false);
        tree->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
        tree->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    }
}

QStringList FileChooser::selectedRows() const
{
    for (const QString& name : {u"listView"_s, u"treeView"_s}) {
        const auto* const view = findChild<QAbstractItemView*>(name);
        if (view == nullptr || !view->isVisible() || view->selectionModel() == nullptr) {
            continue;
        }
        QModelIndexList rows = view->selectionModel()->selectedRows();
        std::ranges::sort(rows, {}, &QModelIndex::row);
        QStringList paths;
        for (const QModelIndex& row : rows) {
            paths.push_back(row.data(QFileSystemModel::FilePathRole).toString());
        }
        return paths;
    }
    return {};
}

} // namespace lapsa
