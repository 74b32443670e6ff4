// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Chooser.h"

namespace lapsa {

/// The dialog that takes files and folders together, several at a time. The desktop's own dialogs take either the one
/// or the other.
class FileChooser final : public Chooser
{
    Q_OBJECT

public:
    FileChooser(const QString& startFolder, QWidget* parent);
};

} // namespace lapsa
