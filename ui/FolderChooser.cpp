// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FolderChooser.h"

#include "Localized.h"

#include <QDir>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

constexpr QSize startSize(600, 440);

} // namespace

FolderChooser::FolderChooser(QWidget* parent)
    : QFileDialog(parent)
{
    // The dialog drawn here looks the same everywhere, and follows the theme chosen in this very window.
    setOption(QFileDialog::DontUseNativeDialog);
    setFileMode(QFileDialog::Directory);
    setOption(QFileDialog::ShowDirsOnly);
    setAcceptMode(QFileDialog::AcceptOpen);
    setDirectory(QDir::home());
    setWindowTitle(Localized::text(u"Add folder"_s, u"Aggiungi cartella"_s));
    setLabelText(QFileDialog::LookIn, Localized::text(u"Look in:"_s, u"Cerca in:"_s));
    setLabelText(QFileDialog::FileName, Localized::text(u"Folder:"_s, u"Cartella:"_s));
    setLabelText(QFileDialog::Accept, Localized::text(u"Choose"_s, u"Scegli"_s));
    setLabelText(QFileDialog::Reject, Localized::text(u"Cancel"_s, u"Annulla"_s));
    // There are only folders to choose from: their names are enough.
    setViewMode(QFileDialog::List);
    for (const QString& name : {u"fileTypeLabel"_s, u"fileTypeCombo"_s}) {
        if (auto* const widget = findChild<QWidget*>(name)) {
            widget->hide();
        }
    }
    resize(startSize);
}

} // namespace lapsa
