// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileListView.h"

#include "FileListView_selection.h"
#include "FileRowView.h"
#include "FocusRing.h"
#include "ItemWorkSource.h"
#include "LapsaStore.h"
#include "Localized.h"
#include "Spotlight.h"
#include "TextLabel.h"

#include <QApplication>
#include <QKeyEvent>

#include <algorithm>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

constexpr int rowSpacing = 10;
constexpr int emptyPadding = 56;
constexpr int ringRadius = 16;
/// One wheel notch is three lines: about one row.
constexpr int linesPerRow = 3;

} // namespace

FileListView::FileListView(const RowEnvironment& environment, QWidget* parent)
    : ScrolledList(parent)
    , m_rowEnvironment(environment)
    , m_filter(environment.store)
    , m_spotlight(new Spotlight(this))
    , m_empty(new TextLabel(Localized::nothingHere(), captionText, ColorRole::Secondary, this))
{
    m_empty->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setFocusRadius(*this, ringRadius);
    connect(m_bar, &QScrollBar::valueChanged, this, &FileListView::bindRows);
    connect(m_spotlight, &Spotlight::changed, this, &FileListView::showLight);
}

void FileListView::refresh()
{
    m_filter.refresh();
    m_empty->setText(m_filter.text().isEmpty()
                         ? Localized::nothingHere()
                         : Localized::text(u"No name contains this text."_s, u"Nessun nome contiene questo testo."_s));
    m_empty->setVisible(count() == 0);
    keepAnchor();
    bindRows();
    const qsizetype selected = m_selection.ids().size();
    m_selection.keepOnly(m_filter.items());
    if (m_selection.ids().size() != selected) {
        showSelection();
    }
    emit listed(m_filter.text(), count(), m_rowEnvironment.store.items().size());
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
    ScrolledList::resizeEvent(event);
    const int width = this->width() - 2 * emptyPadding;
    m_empty->setGeometry(emptyPadding, emptyPadding, width, m_empty->heightForWidth(width));
    updateRange();
    bindRows();
}

void FileListView::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    refresh();
}

void FileListView::keyPressEvent(QKeyEvent* event)
{
    const Row* const focused = focusedRow();
    const auto moveBy = [this, focused, event](qsizetype rows) {
        const FileRowView* const current = currentRow();
        if (focused != nullptr) {
            Selecting::goTo(*this, focused->index + rows, event->modifiers());
        } else if (current != nullptr) {
            Selecting::goTo(*this, std::ranges::find(m_rows, current, &Row::view)->index, event->modifiers());
        }
    };
    if (Selecting::byKey(*this, *event)) {
        return;
    }
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
        Selecting::goTo(*this, 0, event->modifiers());
        return;
    case Qt::Key_End:
        Selecting::goTo(*this, count() - 1, event->modifiers());
        return;
    default:
        QWidget::keyPressEvent(event);
    }
}

bool FileListView::event(QEvent* event)
{
    const bool done = ScrolledList::event(event);
    // The toolkit passes a new font of the application to event() only, not to changeEvent().
    if (event->type() == QEvent::ApplicationFontChange || event->type() == QEvent::LayoutDirectionChange) {
        updateRange();
        bindRows();
    } else if (event->type() == QEvent::Hide && !event->spontaneous()) {
        clearSelection();
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
        auto* const row = qobject_cast<FileRowView*>(watched);
        auto* const view = row != nullptr ? row : qobject_cast<FileRowView*>(watched->parent());
        if (row != nullptr) {
            Selecting::press(*this, *row, *static_cast<QMouseEvent*>(event));
        }
        view->setFocus(Qt::MouseFocusReason);
    } else if (event->type() == QEvent::MouseButtonDblClick) {
        // Selecting is undone by the same click, however soon it comes.
        const auto* const row = qobject_cast<FileRowView*>(watched);
        const auto& click = *static_cast<QMouseEvent*>(event);
        if (row != nullptr && click.modifiers().testFlag(Qt::ControlModifier)) {
            Selecting::press(*this, *row, click);
        }
    } else if (event->type() == QEvent::ContextMenu) {
        const auto* const row = qobject_cast<FileRowView*>(watched);
        if (row != nullptr && m_selection.ids().size() > 1 && m_selection.ids().contains(row->item().id)) {
            Selecting::openMenu(*this, *static_cast<QContextMenuEvent*>(event));
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

qsizetype FileListView::count() const
{
    return m_filter.items().size();
}

int FileListView::pitch() const
{
    return FileRowView::rowHeight() + rowSpacing;
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
    const qsizetype index = offset > 0 && !m_anchorId.isEmpty() ? m_filter.indexOf(m_anchorId, m_anchorIndex) : -1;
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

} // namespace lapsa
