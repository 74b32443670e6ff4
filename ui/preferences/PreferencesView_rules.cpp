// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileTypeRuleView.h"
#include "LapsaStore.h"
#include "ListSection.h"
#include "Localized.h"
#include "PreferencesView.h"
#include "PushButton.h"
#include "RuleColumn.h"

namespace lapsa {

using namespace Qt::StringLiterals;

void PreferencesView::makeRulesTab()
{
    m_addRule = new PushButton(Localized::text(u"Add rule"_s, u"Aggiungi regola"_s), PushButton::Kind::Plain);
    m_addRule->setSymbol(u"plus"_s);
    m_ruleColumn = &makeListTab(Localized::fileTypeRules(), m_addRule)->column();
    connect(m_addRule, &PushButton::clicked, this, &PreferencesView::addRule);
}

void PreferencesView::refreshRules()
{
    ruleColumn::bringInLine(m_rules, m_store.settings().fileTypeRules, *m_ruleColumn, *m_addRule,
                            [this](const QUuid& id) { return new FileTypeRuleView(m_store, id, this); });
}

void PreferencesView::addRule()
{
    m_store.addFileTypeRule();
    refreshRules();
    revealNewest(*m_rules.constLast());
    m_rules.constLast()->focusExtensions();
}

} // namespace lapsa
