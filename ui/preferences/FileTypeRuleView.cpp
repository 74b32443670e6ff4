// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileTypeRuleView.h"

#include "Card.h"
#include "DurationEditor.h"
#include "EditorLine.h"
#include "FileName.h"
#include "LifespanRules.h"
#include "Localized.h"
#include "PushButton.h"
#include "RuleTexts.h"
#include "TextLabel.h"
#include "Toggle.h"

#include <QApplication>
#include <QHideEvent>
#include <QKeyEvent>
#include <QKeySequence>
#include <QLineEdit>
#include <QMouseEvent>
#include <QShortcut>
#include <QVBoxLayout>

#include <algorithm>
#include <chrono>
#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

constexpr int stackSpacing = 8;
constexpr DurationEditor::Bounds lifespanBounds{.minTotalMinutes = minLifespanMinutes,
                                                .maxTotalMinutes = maxLifespanMinutes};

template <typename T>
Binding<T> fileRuleBinding(LapsaStore& store, const QUuid& id, T LapsaFileTypeRule::*field, const T& defaultValue)
{
    return ruleBinding(store, &LapsaSettings::fileTypeRules, id, field, defaultValue);
}

} // namespace

FileTypeRuleView::FileTypeRuleView(LapsaStore& store, const QUuid& id, QWidget* parent)
    : QWidget(parent)
    , m_store(store)
    , m_id(id)
    , m_enabled(fileRuleBinding(store, id, &LapsaFileTypeRule::enabled, true))
    , m_extensionsCSV(fileRuleBinding(store, id, &LapsaFileTypeRule::extensionsCSV, QString()))
    , m_minutes(fileRuleBinding(store, id, &LapsaFileTypeRule::lifespanMinutes, LapsaFileTypeRule().lifespanMinutes))
{
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins({});
    auto* const card = new Card(this);
    auto* const stack = new QWidget(card);
    makeControls(stack);
    card->addRow(stack);
    column->addWidget(card);
    // Large texts wrap, so the height depends on the width.
    card->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    refresh();

    connect(m_toggle, &Toggle::switched, this, m_enabled.write);
    connect(m_extensions, &QLineEdit::textEdited, this, m_extensionsCSV.write);
    connect(m_remove, &PushButton::clicked, this, [this] { m_store.removeFileTypeRule(m_id); });
    makeShortcut(Qt::Key_Up, -1);
    makeShortcut(Qt::Key_Down, 1);
}

void FileTypeRuleView::refresh()
{
    const QString extensions = m_extensionsCSV.read();
    m_toggle->setLabel(extensions.isEmpty() ? Localized::text(u"New rule"_s, u"Nuova regola"_s) : extensions);
    m_lifespan->setAccessibleName(m_toggle->accessibleName());
    m_toggle->showChecked(m_enabled.read());
    m_extensions->setFont(fontFor(bodyText));
    if (m_extensions->text() != extensions) {
        const int cursor = m_extensions->cursorPosition();
        m_extensions->setText(extensions);
        m_extensions->setCursorPosition(std::min(cursor, static_cast<int>(m_extensions->text().size())));
    }
    refreshTaken();
    refreshOffer();
    m_lifespan->refresh();
}

/// An extension that an earlier rule has never reaches this one.
void FileTypeRuleView::refreshTaken()
{
    const QString text = ruleTexts::takenExtensions(m_store.settings().fileTypeRules, m_id);
    m_taken->setText(text);
    setShown(*m_taken, !text.isEmpty());
    m_extensions->setAccessibleDescription(text);
}

void FileTypeRuleView::focusExtensions()
{
    m_extensions->setFocus(Qt::OtherFocusReason);
}

void FileTypeRuleView::setShown(QWidget& line, bool shown)
{
    if (line.isHidden() != shown) {
        return;
    }
    line.setVisible(shown);
    // From the inside out, at once: otherwise the column asks the card for its height before the card knows it anew,
    // and remembers the old one.
    for (QWidget* part = line.parentWidget(); part != parentWidget(); part = part->parentWidget()) {
        part->layout()->invalidate();
        part->layout()->activate();
        part->updateGeometry();
    }
}

void FileTypeRuleView::makeShortcut(Qt::Key key, int places)
{
    auto* const shortcut = new QShortcut(QKeySequence(Qt::ALT | key), this);
    shortcut->setContext(Qt::WidgetWithChildrenShortcut);
    connect(shortcut, &QShortcut::activated, this, [this, places] { emit stepped(places); });
}

/// Only on the card's ground: its controls keep their clicks.
void FileTypeRuleView::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton) {
        m_pressed = event->globalPosition().toPoint();
    }
}

void FileTypeRuleView::mouseMoveEvent(QMouseEvent* event)
{
    const QPoint place = event->globalPosition().toPoint();
    if (!m_dragging && m_pressed && (place - *m_pressed).manhattanLength() >= QApplication::startDragDistance()) {
        startDrag();
    }
    if (m_dragging) {
        emit dragged(place.y());
    }
}

void FileTypeRuleView::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton) {
        endDrag();
    }
}

void FileTypeRuleView::startDrag()
{
    m_dragging = true;
    setCursor(Qt::ClosedHandCursor);
    grabKeyboard(); // for Escape
    emit dragStarted();
}

void FileTypeRuleView::endDrag()
{
    if (std::exchange(m_dragging, false)) {
        releaseKeyboard();
        unsetCursor();
    }
    m_pressed.reset();
}

/// Escape ends a drag. Otherwise it would close the window.
bool FileTypeRuleView::event(QEvent* event)
{
    const bool isKey = event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress;
    if (!m_dragging || !isKey) {
        return QWidget::event(event);
    }
    event->accept(); // what is typed meanwhile is for nobody
    if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
        endDrag();
        emit dragCancelled();
    }
    return true;
}

void FileTypeRuleView::makeControls(QWidget* stack)
{
    const Binding<std::int64_t> lifespan{.read = m_minutes.read, .write = [this](std::int64_t minutes) {
                                             m_formerMinutes = m_formerMinutes.value_or(m_minutes.read());
                                             m_minutes.write(minutes);
                                             refreshOffer();
                                         }};
    auto* const column = new QVBoxLayout(stack);
    column->setContentsMargins({});
    column->setSpacing(stackSpacing);
    m_toggle = new Toggle({}, stack);
    m_toggle->setTextStyle(headlineText);
    m_toggle->setElideMode(Qt::ElideRight);
    const QString placeholder = Localized::text(u"Extensions, e.g. .pdf,.png"_s, u"Estensioni, esempio .pdf,.png"_s);
    m_extensions = new QLineEdit(stack);
    m_extensions->setPlaceholderText(placeholder);
    m_extensions->setAccessibleName(placeholder);
    m_taken = new TextLabel({}, captionText, ColorRole::Secondary, stack);
    m_taken->hide();
    m_lifespan = new DurationEditor(lifespan, lifespanBounds, stack);
    m_remove =
        new PushButton(Localized::text(u"Remove rule"_s, u"Rimuovi regola"_s), PushButton::Kind::Destructive, stack);
    column->addWidget(m_toggle);
    column->addWidget(m_extensions);
    column->addWidget(m_taken);
    column->addLayout(new EditorLine(m_lifespan, m_remove));
    makeOffer(stack);
    column->addWidget(m_offer, 0, Qt::AlignLeft);
}

void FileTypeRuleView::makeOffer(QWidget* stack)
{
    m_offer = new PushButton({}, PushButton::Kind::Plain, stack);
    m_offer->hide();
    connect(m_offer, &PushButton::clicked, this, &FileTypeRuleView::apply);
}

void FileTypeRuleView::refreshOffer()
{
    const qsizetype count = listedItems().size();
    m_offer->setText(ruleTexts::apply(count));
    setShown(*m_offer, count > 0);
}

void FileTypeRuleView::apply()
{
    const QSet<QString> items = listedItems();
    m_formerMinutes.reset();
    m_extensions->setFocus(Qt::OtherFocusReason); // the offer is about to go
    m_store.updateExpirations(items, m_minutes.read());
    refreshOffer();
    emit applied(items.size());
}

/// Those that have the rule's former time: a time that the user has given to an item by hand stays, as a lock does.
QSet<QString> FileTypeRuleView::listedItems() const
{
    if (!m_formerMinutes || *m_formerMinutes == m_minutes.read()) {
        return {};
    }
    const LifespanRules rules(m_store.settings());
    const auto hasFormerTime = [this](const LapsaItem& item) {
        // The list keeps times in whole seconds.
        return std::chrono::abs(addingMinutes(item.addedAt, *m_formerMinutes) - item.expiresAt) <=
               std::chrono::seconds(1);
    };
    QSet<QString> ids;
    for (const LapsaItem& item : m_store.items()) {
        if (!item.locked && hasFormerTime(item) && rules.ruleFor(lastPathComponent(item.path)) == m_id) {
            ids.insert(item.id);
        }
    }
    return ids;
}

void FileTypeRuleView::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    if (!event->spontaneous()) {
        endDrag();
        m_formerMinutes.reset();
        refreshOffer();
    }
}

} // namespace lapsa
