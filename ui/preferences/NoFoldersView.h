// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QUrl>
#include <QWidget>

namespace lapsa {

class PushButton;

/// What the folders tab shows while no folder is watched: what watching does, and a button that adds the downloads
/// folder.
class NoFoldersView final : public QWidget
{
    Q_OBJECT

public:
    explicit NoFoldersView(QWidget* parent = nullptr);

signals:
    /// The user asked to watch that folder.
    void chosen(const QUrl& folder);

protected:
    void showEvent(QShowEvent* event) override;

private:
    /// Offers the current downloads folder.
    void offer();

    QUrl m_offered;
    PushButton* m_button;
};

} // namespace lapsa
