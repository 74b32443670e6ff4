// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QUrl>
#include <QWidget>

namespace lapsa {

class Lanes;
class PushButton;

/// What the folders tab shows while no folder is watched: what watching does, and a button that adds the downloads
/// folder.
class NoFoldersView final : public QWidget
{
    Q_OBJECT

public:
    /// `lanes` must outlive the view.
    explicit NoFoldersView(Lanes& lanes, QWidget* parent = nullptr);

signals:
    /// The user asked to watch that folder.
    void chosen(const QUrl& folder);

protected:
    void showEvent(QShowEvent* event) override;

private:
    /// Looks on a lane for the current downloads folder, and offers it.
    void lookForDownloads();
    /// Empty if there is none.
    void offer(const QString& folder);

    Lanes& m_lanes;
    QUrl m_offered;
    PushButton* m_button;
};

} // namespace lapsa
