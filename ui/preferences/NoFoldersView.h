// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QUrl>
#include <QWidget>

namespace lapsa {

class PushButton;

/// What the folders' tab shows while no folder is watched: what watching does, and the folder of downloads to begin
/// with.
class NoFoldersView final : public QWidget
{
    Q_OBJECT

public:
    explicit NoFoldersView(QWidget* parent = nullptr);

signals:
    /// The user wants that folder to be watched.
    void chosen(const QUrl& folder);

protected:
    void showEvent(QShowEvent* event) override;

private:
    /// Offers the folder of downloads as it is now.
    void offer();

    QUrl m_offered;
    PushButton* m_button;
};

} // namespace lapsa
