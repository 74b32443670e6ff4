// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "LapsaItem.h"
#include "RowEnvironment.h"
#include "Time.h"

#include <QList>
#include <QScrollBar>
#include <QWidget>

#include <vector>

class QAccessibleInterface;

namespace lapsa {

class FileRowView;
class ScrollFade;
class Spotlight;
class TextLabel;

/// The scrolling list of items. Only the rows on screen exist. A row moves with the item to which it is bound, and so
/// do hover and focus. The cost does not depend on the number of items.
///
/// One row is current: Tab stops at it and its buttons, the arrow keys make another row current. The list itself can
/// have the focus, but is not a Tab stop: from there the arrow keys move to its rows.
class FileListView final : public QWidget
{
    Q_OBJECT

public:
    FileListView(const RowEnvironment& environment, QWidget* parent);

    /// Reads the store's items again; visible rows stay in place when something changes above them.
    void refresh();
    /// Shows the remaining times at this time, and what the lanes are doing now.
    void setNow(TimePoint now);
    /// The rows on screen, from top to bottom.
    [[nodiscard]] QList<FileRowView*> visibleRows() const;

    /// The scroll bar, which lies beside the list in the parent's margin, not over the rows.
    [[nodiscard]] QScrollBar& scrollBar() { return *m_bar; }

    /// Gives the focus back to the row of an item that was covered. If the item is gone, the row now in its place gets
    /// it, or the list if it is empty.
    void focusRow(const QString& id);
    /// Scrolls to items that the user has just added and highlights them once. Call it after refresh().
    void reveal(const QStringList& ids);

    /// What a screen reader sees: every item, not only those with a row. The caller owns it.
    [[nodiscard]] QAccessibleInterface* makeAccessible();

signals:
    void timeSheetRequested(const lapsa::LapsaItem& item);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Row
    {
        FileRowView* view = nullptr;
        qsizetype index = 0;
    };

    class Accessible;
    class AccessibleItem;

    [[nodiscard]] qsizetype count() const;
    [[nodiscard]] int pitch() const;
    [[nodiscard]] qsizetype indexOf(const QString& id, qsizetype hint) const;
    /// The row that has the focus or contains the focused button.
    [[nodiscard]] const Row* focusedRow() const;
    /// The row where Tab stops: the current one while it is bound, else the first visible one, if any.
    [[nodiscard]] FileRowView* currentRow() const;

    void keepAnchor();
    void updateRange();
    void bindRows();
    [[nodiscard]] std::vector<qsizetype> wantedIndexes() const;
    void assignRows(const std::vector<qsizetype>& wanted, std::vector<Row>& from);
    [[nodiscard]] FileRowView* takeRow(std::vector<Row>& from, const QString& id) const;
    [[nodiscard]] FileRowView* spareRow(std::vector<Row>& from);
    void place(const Row& row);
    void replaceCurrent(const std::vector<Row>& unbound);
    void updateTabStops();
    void moveCurrent(qsizetype index, Qt::FocusReason reason);
    void scrollTo(qsizetype index);
    void scrollToBlock(qsizetype first, qsizetype last);
    void showLight();
    [[nodiscard]] QString stateOf(const LapsaItem& item) const;
    void placeBar();
    void updateFades();

    LapsaStore& m_store;
    RowEnvironment m_rowEnvironment;
    TimePoint m_now;
    std::vector<Row> m_rows;
    std::vector<Row> m_spare;
    /// The item at the upper edge and its row's index, so that it stays in place.
    QString m_anchorId;
    qsizetype m_anchorIndex = 0;
    QString m_currentId;
    Spotlight* m_spotlight;
    TextLabel* m_empty;
    QScrollBar* m_bar;
    ScrollFade* m_topFade;
    ScrollFade* m_bottomFade;
};

} // namespace lapsa
