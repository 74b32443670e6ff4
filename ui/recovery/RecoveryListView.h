// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "RecoveryRowLayout.h"

#include <QList>
#include <QListView>
#include <QSet>
#include <QString>
#include <QUuid>

#include <optional>

namespace lapsa {

class RecoveryDelegate;
class RecoveryModel;
class ScrollFade;

/// The list of the Recovery window. Keeps what is selected, and where it is scrolled to, when its rows change.
class RecoveryListView final : public QListView
{
    Q_OBJECT

public:
    /// The model must outlive the view.
    explicit RecoveryListView(RecoveryModel& model, QWidget* parent = nullptr);

    /// The rows that are selected, from top to bottom.
    [[nodiscard]] QList<int> selectedRows() const;
    /// Repaints the visible rows if one of them reads differently than before.
    void showTime();

    /// The room beside the rows, in which the scroll bar is.
    static constexpr int margin = 20;

signals:
    /// A button of a row, or a key for the selected ones.
    void pressed(RecoveryRowLayout::Button button, const QList<int>& rows);
    void menuRequested(const QPoint& place);
    /// The user types: the filter gets the text.
    void typed(const QString& text);
    void selectionWasChanged();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;

private:
    struct Kept
    {
        QSet<QUuid> selected;
        QUuid current;
        int currentRow = -1;
        int scroll = 0;
    };

    void makeRoom();
    void showFades();
    void keep();
    void restore();
    void selectKept(const Kept& kept);
    void showRing(bool shown);
    void touch(const QPoint& point);
    void untouch();
    [[nodiscard]] RecoveryRowLayout layoutAt(const QModelIndex& index) const;
    [[nodiscard]] QString helpAt(const QPoint& point) const;
    [[nodiscard]] QStringList visibleTexts() const;

    RecoveryModel& m_model;
    RecoveryDelegate* m_delegate;
    ScrollFade* m_topFade;
    ScrollFade* m_bottomFade;
    std::optional<Kept> m_kept;
    QStringList m_shownTexts;
};

} // namespace lapsa
