// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileRowView.h"

#include "ElidedLabel.h"
#include "FileIconSource.h"
#include "FileIconView.h"
#include "FocusRing.h"
#include "ItemKinds.h"
#include "LapsaStore.h"
#include "Localized.h"
#include "RowIconButton.h"
#include "RowLook.h"
#include "WorkBar.h"

#include <QAccessible>
#include <QContextMenuEvent>
#include <QIcon>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;

using rowLook::buttonSpacing;
using rowLook::cornerRadius;
using rowLook::lineSpacing;
using rowLook::padding;
using rowLook::spacing;
using rowLook::stacked;

namespace {

/// Keeps the bar off the row's hairline.
constexpr int barInset = 1;

} // namespace

FileRowView::FileRowView(const RowEnvironment& environment, QWidget* parent)
    : QWidget(parent)
    , m_environment(environment)
    , m_icon(new FileIconView(this))
    , m_name(new ElidedLabel(headlineText, ColorRole::Primary, this))
    , m_remaining(new ElidedLabel(calloutText, ColorRole::Secondary, this))
    , m_workBar(new WorkBar(this))
{
    m_remaining->setTabular(true);
    m_remaining->setElideMode(Qt::ElideRight);
    makeButtons();
    arrange();
    setFocusRadius(*this, cornerRadius);
    setTabStop(false);
    connect(&m_environment.kinds, &ItemKinds::found, this, &FileRowView::showKind);
}

void FileRowView::setItem(const LapsaItem& item)
{
    if (item == m_item) {
        return;
    }
    const bool another = item.path != m_item.path;
    if (item.id != m_item.id) {
        setWork(std::nullopt);
    }
    m_item = item;
    if (another) {
        m_environment.kinds.lookUpOnce(item.path);
        showKind();
    }
    refresh();
}

int FileRowView::rowHeight()
{
    return rowLook::height();
}

void FileRowView::fillContextMenu(QMenu& menu)
{
    const bool folder = m_environment.kinds.kindOf(m_item.path) == ItemKind::Folder;
    const auto add = [this, &menu](const QString& text, void (LapsaStore::*operation)(const LapsaItem&)) {
        connect(menu.addAction(text), &QAction::triggered, &m_environment.store,
                [&store = m_environment.store, item = m_item, operation] { (store.*operation)(item); });
    };
    add(folder ? Localized::text(u"Open folder"_s, u"Apri cartella"_s)
               : Localized::text(u"Open file"_s, u"Apri file"_s),
        &LapsaStore::open);
    add(Localized::text(u"Reveal in Finder"_s, u"Mostra nel Finder"_s), &LapsaStore::reveal);
    menu.addSeparator();
    add(folder ? Localized::text(u"Copy folder path"_s, u"Copia percorso cartella"_s)
               : Localized::text(u"Copy file path"_s, u"Copia percorso file"_s),
        &LapsaStore::copyFilePath);
    if (!folder) {
        add(Localized::text(u"Copy containing folder path"_s, u"Copia cartella del file"_s),
            &LapsaStore::copyFolderPath);
    }
}

void FileRowView::setTabStop(bool stop)
{
    for (QWidget* const widget : m_focusOrder) {
        widget->setFocusPolicy(stop ? Qt::TabFocus : Qt::NoFocus);
    }
}

void FileRowView::setLight(double strength)
{
    if (std::exchange(m_light, strength) != strength) {
        update();
    }
}

void FileRowView::setSelected(bool selected)
{
    if (std::exchange(m_selected, selected) == selected) {
        return;
    }
    update();
    QAccessible::State changed;
    changed.selected = true;
    QAccessibleStateChangeEvent event(this, changed);
    QAccessible::updateAccessibility(&event);
}

void FileRowView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setOpacity(waitsForDisk() ? rowLook::waitingOpacity : 1);
    rowLook::paintGround(painter, rect(), palette(), m_light);
    if (m_selected) {
        rowLook::paintSelection(painter, rect(), palette());
    }
}

void FileRowView::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    m_workBar->setGeometry(cornerRadius, height() - WorkBar::thickness - barInset, width() - 2 * cornerRadius,
                           WorkBar::thickness);
}

void FileRowView::contextMenuEvent(QContextMenuEvent* event)
{
    auto* const menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->setFont(fontFor(bodyText));
    fillContextMenu(*menu);
    emit menuFilled(*menu);
    // What is at the path may have changed since the row was made.
    connect(&m_environment.kinds, &ItemKinds::found, menu, [this, menu] {
        menu->clear();
        fillContextMenu(*menu);
        emit menuFilled(*menu);
    });
    m_environment.kinds.lookUp(m_item.path);
    const bool byKeyboard = event->reason() == QContextMenuEvent::Keyboard;
    menu->popup(byKeyboard ? mapToGlobal(QPoint(padding, height() - padding)) : event->globalPos());
}

void FileRowView::keyPressEvent(QKeyEvent* event)
{
    const bool opens = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter || event->key() == Qt::Key_Space;
    const bool selects = event->modifiers().testFlag(Qt::ControlModifier);
    if (opens && !selects && hasFocus() && !event->isAutoRepeat()) {
        emit timeSheetRequested();
        return;
    }
    const int forward = isRightToLeft() ? Qt::Key_Left : Qt::Key_Right;
    const int backward = isRightToLeft() ? Qt::Key_Right : Qt::Key_Left;
    const int step = event->key() == forward ? 1 : event->key() == backward ? -1 : 0;
    if (step != 0 && moveFocusAlong(step)) {
        return;
    }
    QWidget::keyPressEvent(event);
}

bool FileRowView::event(QEvent* event)
{
    // The toolkit passes this one to event() only, not to changeEvent().
    if (event->type() == QEvent::ApplicationFontChange) {
        arrange();
    }
    return QWidget::event(event);
}

void FileRowView::makeButtons()
{
    m_timerButton = new RowIconButton(u"timer"_s, false, this);
    m_lockButton = new RowIconButton(u"lock.open"_s, false, this);
    m_removeButton = new RowIconButton(u"xmark"_s, false, this);
    m_deleteButton = new RowIconButton(u"trash"_s, true, this);
    m_timerButton->setHelp(Localized::text(u"Change timer"_s, u"Cambia scadenza"_s));
    m_removeButton->setHelp(Localized::text(u"Remove from list"_s, u"Rimuovi dalla lista"_s));
    m_deleteButton->setHelp(Localized::text(u"Delete now"_s, u"Elimina ora"_s));
    m_focusOrder = {this, m_timerButton, m_lockButton, m_removeButton, m_deleteButton};

    connect(m_timerButton, &RowIconButton::clicked, this, &FileRowView::timeSheetRequested);
    connect(m_lockButton, &RowIconButton::clicked, this, [this] { m_environment.store.toggleLock(m_item); });
    connect(m_removeButton, &RowIconButton::clicked, this, [this] { m_environment.store.removeFromList(m_item); });
    connect(m_deleteButton, &RowIconButton::clicked, this, &FileRowView::deleteNow);
}

void FileRowView::arrange()
{
    delete layout();
    auto* const rows = new QVBoxLayout(this);
    rows->setContentsMargins(padding, padding, padding, padding);
    rows->setSpacing(spacing);
    auto* const line = new QHBoxLayout;
    line->setSpacing(spacing);
    rows->addLayout(line, 1);

    auto* const text = new QVBoxLayout;
    text->setSpacing(lineSpacing);
    text->addStretch();
    text->addWidget(m_name);
    text->addWidget(m_remaining);
    text->addStretch();
    line->addWidget(m_icon, 0, Qt::AlignVCenter);
    line->addLayout(text, 1);

    auto* const buttons = new QHBoxLayout;
    buttons->setSpacing(buttonSpacing);
    if (stacked()) {
        buttons->addStretch();
        rows->addLayout(buttons);
    } else {
        line->addLayout(buttons);
    }
    for (RowIconButton* const button : {m_timerButton, m_lockButton, m_removeButton, m_deleteButton}) {
        buttons->addWidget(button, 0, Qt::AlignVCenter);
    }
}

/// Any answer may decide on the icon, which all paths with the same extension share.
void FileRowView::showKind()
{
    m_icon->setIcon(m_environment.icons.icon(m_item.url(), m_environment.kinds.kindOf(m_item.path)));
}

void FileRowView::refresh()
{
    m_name->setText(m_item.displayName);
    m_lockButton->setSystemName(m_item.locked ? u"lock.fill"_s : u"lock.open"_s);
    m_lockButton->setHelp(m_item.locked ? Localized::text(u"Unlock"_s, u"Sblocca"_s)
                                        : Localized::text(u"Lock"_s, u"Blocca"_s));
    setAccessibleName(m_item.displayName);
    refreshRemaining();
}

bool FileRowView::moveFocusAlong(int step)
{
    const auto current = std::ranges::find_if(m_focusOrder, [](const QWidget* widget) { return widget->hasFocus(); });
    const auto index = current - m_focusOrder.begin() + step;
    if (current == m_focusOrder.end() || index < 0 || index >= std::ssize(m_focusOrder)) {
        return false;
    }
    m_focusOrder[static_cast<std::size_t>(index)]->setFocus(Qt::TabFocusReason);
    return true;
}

} // namespace lapsa
