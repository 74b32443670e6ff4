// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileListView.h"

#include "FileRowView.h"
#include "FocusRing.h"
#include "ItemWorkSource.h"
#include "LapsaStore.h"
#include "Localized.h"
#include "ScrollFade.h"
#include "Spotlight.h"
#include "TextLabel.h"

#include <QApplication>
#include <QKeyEvent>
#include <QStyle>

#include <algorithm>

namespace lapsa {

namespace {

constexpr int rowSpacing = 10;
constexpr int emptyPadding = 56;
constexpr int ringRadius = 16;
/// Gap between the rows and the scroll bar, which is in the margin.
constexpr int barGap = 7;
/// One wheel notch is three lines: about one row.
constexpr int linesPerRow = 3;

} // namespace

FileListView::FileListView(const RowEnvironment& environment, QWidget* parent)
    : QWidget(parent)
    , m_store(environment.store)
    , m_rowEnvironment(environment)
    , m_spotlight(new Spotlight(this))
    , m_empty(new TextLabel(Localized::nothingHere(), captionText, ColorRole::Secondary, this))
    , m_bar(new QScrollBar(Qt::Vertical, parent))
    , m_topFade(new ScrollFade(Qt::TopEdge, this))
    , m_bottomFade(new ScrollFade(Qt::BottomEdge, this))
{
    m_empty->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    m_bar->setFocusPolicy(Qt::NoFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setFocusRadius(*this, ringRadius);
    connect(m_bar, &QScrollBar::valueChanged, this, &FileListView::bindRows);
    connect(m_spotlight, &Spotlight::changed, this, &FileListView::showLight);
}

void FileListView::refresh()
{
    m_empty->setText(Localized::nothingHere());
    m_empty->setVisible(count() == 0);
    keepAnchor();
    bindRows();
}

void FileListView::setNow(TimePoint now)
{
    m_now = now;
    for (const Row& row : m_rows) {
        row.view->setWork(m_rowEnvironment.work.workOn(row.view->item().id));
        row.view->setNow(now);
    }
}

QList<FileRowView*> FileListView::visibleRows() const
{
    QList<FileRowView*> rows;
    for (const Row& row : m_rows) {
        if (row.view->geometry().intersects(rect())) {
            rows.push_back(row.view);
        }
    }
    std::ranges::sort(rows, {}, [](const FileRowView* row) { return row->y(); });
    return rows;
}

void FileListView::focusRow(const QString& id)
{
    const auto row = std::ranges::find(m_rows, id, [](const Row& bound) { return bound.view->item().id; });
    FileRowView* const view = row != m_rows.end() ? row->view : currentRow();
    QWidget* const target = view != nullptr ? static_cast<QWidget*>(view) : this;
    target->setFocus(Qt::OtherFocusReason);
}

void FileListView::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    const int width = this->width() - 2 * emptyPadding;
    m_empty->setGeometry(emptyPadding, emptyPadding, width, m_empty->heightForWidth(width));
    placeBar();
    updateRange();
    bindRows();
}

void FileListView::moveEvent(QMoveEvent* event)
{
    QWidget::moveEvent(event);
    placeBar();
}

void FileListView::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    refresh();
}

void FileListView::wheelEvent(QWheelEvent* event)
{
    QApplication::sendEvent(m_bar, event);
}

void FileListView::keyPressEvent(QKeyEvent* event)
{
    const Row* const focused = focusedRow();
    const auto moveBy = [this, focused](qsizetype rows) {
        const FileRowView* const current = currentRow();
        if (focused != nullptr) {
            moveCurrent(focused->index + rows, Qt::TabFocusReason);
        } else if (current != nullptr) {
            moveCurrent(std::ranges::find(m_rows, current, &Row::view)->index, Qt::TabFocusReason);
        }
    };
    const qsizetype page = std::max(1, height() / pitch());
    switch (event->key()) {
    case Qt::Key_Up:
        moveBy(-1);
        return;
    case Qt::Key_Down:
        moveBy(1);
        return;
    case Qt::Key_PageUp:
        moveBy(-page);
        return;
    case Qt::Key_PageDown:
        moveBy(page);
        return;
    case Qt::Key_Home:
        moveCurrent(0, Qt::TabFocusReason);
        return;
    case Qt::Key_End:
        moveCurrent(count() - 1, Qt::TabFocusReason);
        return;
    default:
        QWidget::keyPressEvent(event);
    }
}

bool FileListView::event(QEvent* event)
{
    const bool done = QWidget::event(event);
    // The toolkit passes a new font of the application to event() only, not to changeEvent().
    if (event->type() == QEvent::ApplicationFontChange || event->type() == QEvent::LayoutDirectionChange) {
        placeBar();
        updateRange();
        bindRows();
    }
    return done;
}

bool FileListView::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::FocusIn) {
        if (const Row* const focused = focusedRow()) {
            m_currentId = focused->view->item().id;
            scrollTo(focused->index);
            updateTabStops();
        }
    } else if (event->type() == QEvent::MouseButtonPress) {
        // Focus the row, not its button, so that the next key press does not remove a file. An immediate second click,
        // which the buttons ignore, is ignored here too.
        auto* view = qobject_cast<FileRowView*>(watched);
        view = view != nullptr ? view : qobject_cast<FileRowView*>(watched->parent());
        view->setFocus(Qt::MouseFocusReason);
    }
    return QWidget::eventFilter(watched, event);
}

qsizetype FileListView::count() const
{
    return m_store.items().size();
}

int FileListView::pitch() const
{
    return FileRowView::rowHeight() + rowSpacing;
}

qsizetype FileListView::indexOf(const QString& id, qsizetype hint) const
{
    const QList<LapsaItem>& items = m_store.items();
    if (hint < items.size() && items[hint].id == id) {
        return hint;
    }
    const auto found = std::ranges::find(items, id, &LapsaItem::id);
    return found != items.end() ? found - items.begin() : -1;
}

const FileListView::Row* FileListView::focusedRow() const
{
    const QWidget* const focus = QApplication::focusWidget();
    const auto row = std::ranges::find_if(m_rows, [focus](const Row& bound) {
        return focus != nullptr && (bound.view == focus || bound.view->isAncestorOf(focus));
    });
    return row != m_rows.end() ? &*row : nullptr;
}

FileRowView* FileListView::currentRow() const
{
    const auto row = std::ranges::find(m_rows, m_currentId, [](const Row& bound) { return bound.view->item().id; });
    if (row != m_rows.end()) {
        return row->view;
    }
    const QList<FileRowView*> visible = visibleRows();
    return visible.isEmpty() ? nullptr : visible.first();
}

/// Scrolls by as much as the item at the upper edge has moved. At the very top the list stays at the top.
void FileListView::keepAnchor()
{
    const int offset = m_bar->value();
    const qsizetype index = offset > 0 && !m_anchorId.isEmpty() ? indexOf(m_anchorId, m_anchorIndex) : -1;
    updateRange();
    if (index >= 0 && index != m_anchorIndex) {
        m_bar->setValue(offset + static_cast<int>(index - m_anchorIndex) * pitch());
    }
}

void FileListView::updateRange()
{
    const int length = static_cast<int>(count()) * pitch() - rowSpacing;
    m_bar->setSingleStep(pitch() / linesPerRow);
    m_bar->setPageStep(std::max(1, height()));
    m_bar->setRange(0, std::max(0, length - height()));
    m_bar->setVisible(m_bar->maximum() > 0);
    updateFades();
}

void FileListView::updateFades()
{
    m_topFade->setGeometry(0, 0, width(), ScrollFade::extent);
    m_bottomFade->setGeometry(0, height() - ScrollFade::extent, width(), ScrollFade::extent);
    m_topFade->setVisible(m_bar->value() > 0);
    m_bottomFade->setVisible(m_bar->value() < m_bar->maximum());
    m_topFade->raise();
    m_bottomFade->raise();
}

void FileListView::placeBar()
{
    const int extent = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, m_bar);
    const int left = isRightToLeft() ? x() - barGap - extent : x() + width() + barGap;
    m_bar->setGeometry(left, y(), extent, height());
    m_bar->raise();
}

} // namespace lapsa
