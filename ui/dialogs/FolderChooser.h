// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Chooser.h"

namespace lapsa {

/// The dialog for choosing one folder, for desktops without one of their own.
class FolderChooser final : public Chooser
{
    Q_OBJECT

public:
    FolderChooser(const ChooserEnvironment& environment, const QString& startFolder, QWidget* parent);
};

} // namespace lapsa
