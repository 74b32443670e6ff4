// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "RecoveryListView.h"

#include "FocusRing.h"
#include "Localized.h"
#include "RecoveryDelegate.h"
#include "RecoveryModel.h"
#include "ScrollFade.h"

#include <QEvent>
#include <QScrollBar>

#include <algorithm>
#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;

RecoveryListView::RecoveryListView(RecoveryModel& model, QWidget* parent)
    : QListView(parent)
    , m_model(model)
    , m_delegate(new RecoveryDelegate(this))
    , m_topFade(new ScrollFade(Qt::TopEdge, this))
    , m_bottomFade(new ScrollFade(Qt::BottomEdge, this))
{
    setAccessibleName(Localized::recovery());
    setItemDelegate(m_delegate);
    setUniformItemSizes(true);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setDragDropMode(QAbstractItemView::NoDragDrop);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setResizeMode(QListView::Adjust);
    setFrameShape(QFrame::NoFrame);
    setMouseTracking(true);
    viewport()->setAutoFillBackground(false);
    verticalScrollBar()->setSingleStep(RecoveryRowLayout::itemHeight() / 2);
    drawFocusByItself(*this);
    setModel(&m_model);
    connect(&m_model, &QAbstractItemModel::modelAboutToBeReset, this, &RecoveryListView::keep);
    connect(&m_model, &QAbstractItemModel::modelReset, this, &RecoveryListView::restore);
    connect(verticalScrollBar(), &QScrollBar::rangeChanged, this, &RecoveryListView::makeRoom);
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, &RecoveryListView::showFades);
    makeRoom();
}

/// The rows have the same place with a scroll bar and without one. Their height does not depend on their width.
void RecoveryListView::makeRoom()
{
    const int side = margin - RecoveryRowLayout::around;
    const int bar = verticalScrollBar()->maximum() > 0 ? verticalScrollBar()->sizeHint().width() : 0;
    const QMargins room = layoutDirection() == Qt::RightToLeft ? QMargins(std::max(side - bar, 0), 0, side, 0)
                                                               : QMargins(side, 0, std::max(side - bar, 0), 0);
    if (room != viewportMargins()) {
        setViewportMargins(room);
    }
    showFades();
}

void RecoveryListView::showFades()
{
    const QScrollBar& bar = *verticalScrollBar();
    const QRect rows = viewport()->geometry();
    m_topFade->setGeometry(rows.left(), rows.top(), rows.width(), ScrollFade::extent);
    m_bottomFade->setGeometry(rows.left(), rows.bottom() + 1 - ScrollFade::extent, rows.width(), ScrollFade::extent);
    m_topFade->setVisible(bar.value() > 0);
    m_bottomFade->setVisible(bar.value() < bar.maximum());
    m_topFade->raise();
    m_bottomFade->raise();
}

void RecoveryListView::resizeEvent(QResizeEvent* event)
{
    QListView::resizeEvent(event);
    makeRoom();
}

QList<int> RecoveryListView::selectedRows() const
{
    QList<int> rows;
    for (const QItemSelectionRange& range : selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row) {
            rows.push_back(row);
        }
    }
    std::ranges::sort(rows);
    return rows;
}

// ---- Rows that come and go

void RecoveryListView::keep()
{
    Kept kept{
        .selected = {}, .current = {}, .currentRow = currentIndex().row(), .scroll = verticalScrollBar()->value()};
    for (const int row : selectedRows()) {
        kept.selected.insert(m_model.recordAt(row).id);
    }
    if (kept.currentRow >= 0) {
        kept.current = m_model.recordAt(kept.currentRow).id;
    }
    m_kept = kept;
}

/// After the toolkit has forgotten the selection.
void RecoveryListView::restore()
{
    m_delegate->setTouched({});
    if (const std::optional<Kept> kept = std::exchange(m_kept, std::nullopt)) {
        selectKept(*kept);
    }
}

void RecoveryListView::selectKept(const Kept& kept)
{
    QItemSelection selection;
    int current = -1;
    for (int row = 0; row < m_model.rowCount(); ++row) {
        const QUuid& id = m_model.recordAt(row).id;
        current = id == kept.current ? row : current;
        if (!kept.selected.contains(id)) {
            continue;
        }
        if (!selection.isEmpty() && selection.constLast().bottom() == row - 1) {
            selection.last() = QItemSelectionRange(selection.constLast().topLeft(), m_model.index(row));
        } else {
            selection.push_back(QItemSelectionRange(m_model.index(row)));
        }
    }
    const bool stepped = current < 0 && kept.currentRow >= 0;
    if (stepped) {
        current = std::min(kept.currentRow, m_model.rowCount() - 1);
    }
    // Where the selected rows were, the next one is: the keyboard goes on from there.
    if (selection.isEmpty() && stepped && current >= 0 && !kept.selected.isEmpty()) {
        selection.push_back(QItemSelectionRange(m_model.index(current)));
    }
    executeDelayedItemsLayout();
    selectionModel()->setCurrentIndex(m_model.index(current), QItemSelectionModel::NoUpdate);
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    verticalScrollBar()->setValue(kept.scroll);
}

void RecoveryListView::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected)
{
    QListView::selectionChanged(selected, deselected);
    emit selectionWasChanged();
}

QStringList RecoveryListView::visibleTexts() const
{
    QStringList texts;
    const QModelIndex first = indexAt({width() / 2, RecoveryRowLayout::around});
    for (int row = std::max(first.row(), 0); row < m_model.rowCount(); ++row) {
        if (visualRect(m_model.index(row)).top() > viewport()->height()) {
            break;
        }
        const std::optional<ItemWork> work = m_model.workAt(row);
        texts.push_back(m_model.stateAt(row) + m_model.sizeAt(row));
        texts.push_back(work ? QString::number(work->done) : QString());
    }
    return texts;
}

void RecoveryListView::showTime()
{
    if (QStringList texts = visibleTexts(); texts != m_shownTexts) {
        m_shownTexts = std::move(texts);
        viewport()->update();
    }
}

bool RecoveryListView::event(QEvent* event)
{
    // The toolkit passes this one to event() only.
    if (event->type() == QEvent::ApplicationFontChange) {
        verticalScrollBar()->setSingleStep(RecoveryRowLayout::itemHeight() / 2);
        scheduleDelayedItemsLayout();
    }
    return QListView::event(event);
}

} // namespace lapsa
