// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ListFilter.h"
#include "ListSelection.h"
#include "RowEnvironment.h"
#include "ScrolledList.h"
#include "Time.h"

#include <QList>

#include <vector>

class QAccessibleInterface;
class QMenu;

namespace lapsa {

class FileRowView;
class Spotlight;
class TextLabel;

/// The scrolling list of items. Only the rows on screen exist. A row moves with the item to which it is bound, and so
/// do hover and focus. One row is current: Tab stops at it and its buttons, the arrow keys make another row current.
/// The list itself can have the focus, but is not a Tab stop: from there the arrow keys move to its rows.
class FileListView final : public ScrolledList
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

    /// Shows only the items whose names contain the text; all if it is empty. Hidden items are no longer selected.
    void setFilter(const QString& text);
    void clearSelection();
    [[nodiscard]] const QSet<QString>& selectedIds() const;
    /// Fills `menu` with what can be done with all selected items.
    void fillSelectionMenu(QMenu& menu);

    /// Gives the focus back to the row of an item that was covered. If the item is gone, the row now in its place gets
    /// it, or the list if it is empty.
    void focusRow(const QString& id);
    /// Scrolls to items that the user has just added and highlights them once. Call it after refresh().
    void reveal(const QStringList& ids);

    /// What a screen reader sees: every item, not only those with a row. The caller owns it.
    [[nodiscard]] QAccessibleInterface* makeAccessible();

signals:
    void timeSheetRequested(const QList<lapsa::LapsaItem>& items);
    void selectionChanged(qsizetype count);
    /// Whenever the list may show others: how many of all items the filter lets through.
    void listed(const QString& filter, qsizetype count, qsizetype total);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
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
    class Selecting;

    [[nodiscard]] qsizetype count() const;
    [[nodiscard]] int pitch() const;
    /// The row that has the focus or contains the focused button.
    [[nodiscard]] const Row* focusedRow() const;
    /// The row where Tab stops: the current one while it is bound, else the first visible one, if any.
    [[nodiscard]] FileRowView* currentRow() const;

    void keepAnchor();
    void updateRange();
    void bindRows();
    [[nodiscard]] std::vector<qsizetype> wantedIndexes() const;
    void assignRows(const std::vector<qsizetype>& wanted, std::vector<Row>& from);
    [[nodiscard]] FileRowView* spareRow(std::vector<Row>& from);
    void place(const Row& row);
    void replaceCurrent(const std::vector<Row>& unbound);
    void updateTabStops();
    void moveCurrent(qsizetype index, Qt::FocusReason reason);
    void scrollTo(qsizetype index);
    void scrollToBlock(qsizetype first, qsizetype last);
    void showLight();
    [[nodiscard]] QString stateOf(const LapsaItem& item) const;
    void showSelection();
    void addNextAction(QMenu& menu);

    RowEnvironment m_rowEnvironment;
    ListFilter m_filter;
    ListSelection m_selection;
    TimePoint m_now;
    std::vector<Row> m_rows;
    std::vector<Row> m_spare;
    /// The item at the upper edge and its row's index, so that it stays in place.
    QString m_anchorId;
    qsizetype m_anchorIndex = 0;
    QString m_currentId;
    Spotlight* m_spotlight;
    TextLabel* m_empty;
};

} // namespace lapsa
