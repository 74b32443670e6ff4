// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDialog>
#include <QString>

class QVBoxLayout;

namespace lapsa {

/// A message with one button, or a question before something is removed. Application-modal; Escape dismisses it, and so
/// does Return, which never says yes to a question by itself.
class AlertDialog final : public QDialog
{
    Q_OBJECT

public:
    struct Question
    {
        QString message;
        QString information;
        /// The button that removes; it accepts the dialog.
        QString action;
        QString cancel;
    };

    AlertDialog(const QString& message, const QString& information, QWidget* parent = nullptr);
    explicit AlertDialog(const Question& question, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] QVBoxLayout* makeTexts(const QString& message, const QString& information);
    void finish();
    [[nodiscard]] QWidget* makePicture();
};

} // namespace lapsa
