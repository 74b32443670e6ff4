// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileTypeRuleView.h"

#include "Card.h"
#include "DurationEditor.h"
#include "EditorLine.h"
#include "Localized.h"
#include "PushButton.h"
#include "Toggle.h"

#include <QLineEdit>
#include <QVBoxLayout>

#include <algorithm>

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
    m_lifespan->refresh();
}

void FileTypeRuleView::focusExtensions()
{
    m_extensions->setFocus(Qt::OtherFocusReason);
}

void FileTypeRuleView::makeControls(QWidget* stack)
{
    const auto lifespan =
        fileRuleBinding(m_store, m_id, &LapsaFileTypeRule::lifespanMinutes, LapsaFileTypeRule().lifespanMinutes);
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
    m_lifespan = new DurationEditor(lifespan, lifespanBounds, stack);
    m_remove =
        new PushButton(Localized::text(u"Remove rule"_s, u"Rimuovi regola"_s), PushButton::Kind::Destructive, stack);
    column->addWidget(m_toggle);
    column->addWidget(m_extensions);
    column->addLayout(new EditorLine(m_lifespan, m_remove));
}

} // namespace lapsa
