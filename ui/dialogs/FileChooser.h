// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Chooser.h"

namespace lapsa {

/// The dialog for choosing files and folders together, several at a time. The desktops' own dialogs offer either files
/// or folders.
class FileChooser final : public Chooser
{
    Q_OBJECT

public:
    FileChooser(const ChooserEnvironment& environment, const QString& startFolder, QWidget* parent);
};

} // namespace lapsa
