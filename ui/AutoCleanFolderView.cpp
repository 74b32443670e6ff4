// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AutoCleanFolderView.h"

#include "Card.h"
#include "DurationEditor.h"
#include "EditorLine.h"
#include "Localized.h"
#include "PushButton.h"
#include "Toggle.h"

#include <QVBoxLayout>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

constexpr int stackSpacing = 8;
constexpr DurationEditor::Bounds lifespanBounds{.minTotalMinutes = 1, .maxTotalMinutes = maxLifespanMinutes};

template <typename T>
SettingBinding<T> folderBinding(LapsaStore& store, const QUuid& id, T LapsaAutoCleanFolderRule::*field)
{
    return ruleBinding(store, &LapsaSettings::autoCleanFolders, id, field, LapsaAutoCleanFolderRule().*field);
}

} // namespace

AutoCleanFolderView::AutoCleanFolderView(LapsaStore& store, const QUuid& id, QWidget* parent)
    : QWidget(parent)
    , m_store(store)
    , m_id(id)
{
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins({});
    auto* const card = new Card(this);
    auto* const stack = new QWidget(card);
    makeControls(stack);
    card->addRow(stack);
    column->addWidget(card);
    // Texts wrap when they are large: the height depends on the width.
    card->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    refresh();
}

void AutoCleanFolderView::refresh()
{
    const QString path = folderBinding(m_store, m_id, &LapsaAutoCleanFolderRule::folderPath).read();
    m_enabled->setLabel(path.isEmpty() ? Localized::text(u"Folder not set"_s, u"Cartella non impostata"_s) : path);
    m_enabled->setToolTip(plainToolTip(path));
    m_lifespan->setAccessibleName(m_enabled->accessibleName());
    for (const BoundToggle& bound : m_toggles) {
        bound.toggle->showChecked(bound.setting.read());
    }
    m_lifespan->refresh();
}

void AutoCleanFolderView::makeControls(QWidget* stack)
{
    auto* const column = new QVBoxLayout(stack);
    column->setContentsMargins({});
    column->setSpacing(stackSpacing);
    m_enabled = makeToggle({}, &LapsaAutoCleanFolderRule::enabled, stack);
    m_enabled->setTextStyle(headlineText);
    m_enabled->setElideMode(Qt::ElideMiddle);
    column->addWidget(m_enabled);
    column->addWidget(makeToggle(Localized::text(u"Include existing files"_s, u"Includi file già presenti"_s),
                                 &LapsaAutoCleanFolderRule::includeExistingFiles, stack));
    column->addWidget(makeToggle(Localized::text(u"Apply file type rules"_s, u"Applica regole per tipo file"_s),
                                 &LapsaAutoCleanFolderRule::applyFileTypeRules, stack));
    const auto lifespan = folderBinding(m_store, m_id, &LapsaAutoCleanFolderRule::lifespanMinutes);
    m_lifespan = new DurationEditor({lifespan.read, lifespan.write}, lifespanBounds, stack);
    auto* const remove = new PushButton(Localized::text(u"Remove folder"_s, u"Rimuovi cartella"_s),
                                        PushButton::Kind::Destructive, stack);
    column->addLayout(new EditorLine(m_lifespan, remove));
    connect(remove, &PushButton::clicked, this, [this] { m_store.removeAutoCleanFolder(m_id); });
}

Toggle* AutoCleanFolderView::makeToggle(const QString& text, bool LapsaAutoCleanFolderRule::*field, QWidget* stack)
{
    auto* const toggle = new Toggle(text, stack);
    m_toggles.push_back({toggle, folderBinding(m_store, m_id, field)});
    connect(toggle, &Toggle::switched, this, m_toggles.constLast().setting.write);
    return toggle;
}

} // namespace lapsa
