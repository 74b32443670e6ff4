// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Chooser.h"

namespace lapsa {

/// The dialog that takes one folder, where the desktop has none of its own.
class FolderChooser final : public Chooser
{
    Q_OBJECT

public:
    FolderChooser(const QString& startFolder, QWidget* parent);
};

} // namespace lapsa
