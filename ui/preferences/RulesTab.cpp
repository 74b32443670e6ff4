// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "RulesTab.h"

#include "FileTypeRuleView.h"
#include "LapsaStore.h"
#include "Localized.h"
#include "PushButton.h"
#include "RuleColumn.h"

namespace lapsa {

using namespace Qt::StringLiterals;

RulesTab::RulesTab(LapsaStore& store, QWidget* parent)
    : ListTab(Localized::fileTypeRules(),
              new PushButton(Localized::text(u"Add rule"_s, u"Aggiungi regola"_s), PushButton::Kind::Plain), parent)
    , m_store(store)
{
    addButton().setSymbol(u"plus"_s);
    connect(&addButton(), &PushButton::clicked, this, &RulesTab::addRule);
}

void RulesTab::refresh()
{
    alignHeading();
    refreshCards();
}

void RulesTab::refreshCards()
{
    ruleColumn::bringInLine(m_cards, m_store.settings().fileTypeRules, column(), addButton(),
                            [this](const QUuid& id) { return new FileTypeRuleView(m_store, id, this); });
}

void RulesTab::addRule()
{
    m_store.addFileTypeRule();
    refreshCards();
    reveal(*m_cards.constLast());
    m_cards.constLast()->focusExtensions();
}

} // namespace lapsa
