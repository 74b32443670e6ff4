// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileChooser.h"

#include "Localized.h"

namespace lapsa {

using namespace Qt::StringLiterals;

FileChooser::FileChooser(const ChooserEnvironment& environment, const QString& startFolder, QWidget* parent)
    : Chooser(environment,
              {.title = Localized::text(u"Choose files or folders"_s, u"Scegli file o cartelle"_s),
               .fieldLabel = Localized::text(u"Name:"_s, u"Nome:"_s)},
              startFolder, parent)
{}

} // namespace lapsa
