// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FolderChooser.h"

#include "Localized.h"

namespace lapsa {

using namespace Qt::StringLiterals;

FolderChooser::FolderChooser(const ChooserEnvironment& environment, const QString& startFolder, QWidget* parent)
    : Chooser(environment,
              {.title = Localized::text(u"Add folder"_s, u"Aggiungi cartella"_s),
               .fieldLabel = Localized::text(u"Folder:"_s, u"Cartella:"_s),
               .oneFolder = true},
              startFolder, parent)
{}

} // namespace lapsa
