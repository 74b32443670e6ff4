// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDialog>

namespace lapsa {

/// A message with one button. Application-modal; Return and Escape dismiss it.
class AlertDialog final : public QDialog
{
    Q_OBJECT

public:
    AlertDialog(const QString& message, const QString& information, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] QWidget* makePicture();
};

} // namespace lapsa
