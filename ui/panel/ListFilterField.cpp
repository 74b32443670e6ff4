// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ListFilterField.h"

#include "FileListView.h"
#include "Localized.h"
#include "RowIconButton.h"
#include "TextLabel.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

constexpr int spacing = 10;

} // namespace

ListFilterField::ListFilterField(FileListView& list, QWidget* parent)
    : QWidget(parent)
    , m_list(list)
    , m_field(new QLineEdit(this))
    , m_result(new TextLabel({}, captionText, ColorRole::Secondary, this))
{
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins({});
    row->setSpacing(spacing);
    const QString name = Localized::text(u"Filter by name"_s, u"Filtra per nome"_s);
    m_field->setPlaceholderText(name);
    m_field->setAccessibleName(name);
    m_result->setTabular();
    auto* const closing = new RowIconButton(u"xmark"_s, false, this);
    closing->setHelp(Localized::text(u"Close filter"_s, u"Chiudi filtro"_s));
    row->addWidget(m_field, 1);
    row->addWidget(m_result);
    row->addWidget(closing);
    hide();
    parent->installEventFilter(this);
    connect(m_field, &QLineEdit::textChanged, this, [this](const QString& text) {
        m_list.setFilter(text);
        emit filtered(m_result->text());
    });
    connect(&m_list, &FileListView::listed, this, &ListFilterField::showResult);
    connect(closing, &RowIconButton::clicked, this, &ListFilterField::close);
}

void ListFilterField::open(const QString& typed)
{
    m_field->setFont(fontFor(bodyText));
    show();
    m_field->setFocus(Qt::ShortcutFocusReason);
    if (typed.isEmpty()) {
        m_field->selectAll();
    } else {
        m_field->end(false);
        m_field->insert(typed);
    }
}

bool ListFilterField::close()
{
    if (isHidden()) {
        return false;
    }
    const bool focused = isAncestorOf(window()->focusWidget());
    m_field->clear();
    if (focused) {
        m_list.focusRow({});
    }
    hide();
    return true;
}

void ListFilterField::keyPressEvent(QKeyEvent* event)
{
    const bool toList = event->key() == Qt::Key_Down || event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (event->key() == Qt::Key_Escape) {
        close();
    } else if (toList) {
        m_list.focusRow({});
    } else {
        QWidget::keyPressEvent(event);
    }
}

bool ListFilterField::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == parent() && event->type() == QEvent::KeyPress) {
        return take(*static_cast<QKeyEvent*>(event));
    }
    if (watched == parent() && event->type() == QEvent::Hide && !event->spontaneous()) {
        close();
    }
    return QWidget::eventFilter(watched, event);
}

bool ListFilterField::take(const QKeyEvent& event)
{
    const QString typed = event.text();
    const bool plain = !(event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
    if (event.key() == Qt::Key_Escape) {
        return close();
    }
    if (event.matches(QKeySequence::Find)) {
        open({});
        return true;
    }
    if (plain && !typed.isEmpty() && typed.front().isPrint() && !typed.front().isSpace()) {
        open(typed);
        return true;
    }
    return false;
}

void ListFilterField::showResult(const QString& filter, qsizetype count, qsizetype total)
{
    m_result->setText(
        Localized::text(u"%1 of %2"_s, u"%1 di %2"_s).arg(Localized::number(count), Localized::number(total)));
    if (filter.isEmpty() && !m_field->text().isEmpty()) {
        close(); // the list shows all of them for another reason
    }
}

} // namespace lapsa
