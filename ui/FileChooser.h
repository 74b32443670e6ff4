// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QFileDialog>
#include <QList>
#include <QUrl>

namespace lapsa {

/// The dialog that takes files and folders together, several at a time. The desktop's own dialogs take either the one
/// or the other.
class FileChooser final : public QFileDialog
{
    Q_OBJECT

public:
    explicit FileChooser(QWidget* parent);

    void accept() override;
    bool eventFilter(QObject* watched, QEvent* event) override;

    /// What was chosen, in the order in which it is shown.
    [[nodiscard]] QList<QUrl> chosen() const;

private:
    void layOut();
    void nameAcceptButton();
    [[nodiscard]] QStringList selectedRows() const;

    QStringList m_chosen;
};

} // namespace lapsa
