// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QFileDialog>

namespace lapsa {

/// The dialog that takes one folder.
class FolderChooser final : public QFileDialog
{
    Q_OBJECT

public:
    explicit FolderChooser(QWidget* parent);
};

} // namespace lapsa
