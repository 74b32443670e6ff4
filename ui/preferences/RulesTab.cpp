// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "RulesTab.h"

#include "Announcer.h"
#include "FileTypeRuleView.h"
#include "LapsaStore.h"
#include "Localized.h"
#include "PushButton.h"
#include "RuleColumn.h"
#include "RuleTexts.h"

#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;

RulesTab::RulesTab(LapsaStore& store, QWidget* parent)
    : ListTab(Localized::fileTypeRules(),
              new PushButton(Localized::text(u"Add rule"_s, u"Aggiungi regola"_s), PushButton::Kind::Plain), parent)
    , m_store(store)
    , m_announcer(new Announcer(this))
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
                            [this](const QUuid& id) { return makeCard(id); });
}

FileTypeRuleView* RulesTab::makeCard(const QUuid& id)
{
    auto* const card = new FileTypeRuleView(m_store, id, this);
    connect(card, &FileTypeRuleView::stepped, this,
            [this, card](int places) { move(*card, m_cards.indexOf(card) + places); });
    connect(card, &FileTypeRuleView::applied, m_announcer,
            [this](qsizetype count) { m_announcer->announce(ruleTexts::applied(count)); });
    connect(card, &FileTypeRuleView::dragStarted, this, [this, card] { m_dragStart = m_cards.indexOf(card); });
    connect(card, &FileTypeRuleView::dragCancelled, this, [this, card] { move(*card, m_dragStart); });
    connect(card, &FileTypeRuleView::dragged, this, [this, card](int height) { drag(*card, height); });
    return card;
}

void RulesTab::move(FileTypeRuleView& card, qsizetype position)
{
    if (position < 0 || position >= m_cards.size()) {
        return;
    }
    m_store.moveFileTypeRule(card.id(), position);
    refreshCards();
    bringOrderInLine();
    reveal(card);
    m_announcer->announce(ruleTexts::position(position, m_cards.size()));
}

/// The card takes the place of its neighbour as soon as the pointer has passed the middle of that one.
void RulesTab::drag(FileTypeRuleView& card, int height)
{
    const qsizetype position = m_cards.indexOf(&card);
    const auto middleOf = [this](qsizetype index) {
        const QWidget& other = *m_cards.at(index);
        return other.mapToGlobal(other.rect().center()).y();
    };
    if (position > 0 && height < middleOf(position - 1)) {
        move(card, position - 1);
    } else if (position + 1 < m_cards.size() && height > middleOf(position + 1)) {
        move(card, position + 1);
    }
}

/// From card to card, as they stand: the Tab key, and what a screen reader lists, which follows the stacking order.
void RulesTab::bringOrderInLine()
{
    QWidget* last = &addButton();
    for (FileTypeRuleView* const card : std::as_const(m_cards)) {
        card->raise();
        QList<QWidget*> controls;
        for (QWidget* next = card->nextInFocusChain(); next != card; next = next->nextInFocusChain()) {
            if (card->isAncestorOf(next) && (next->focusPolicy() & Qt::TabFocus) != 0) {
                controls.push_back(next);
            }
        }
        for (QWidget* const control : std::as_const(controls)) {
            setTabOrder(last, control);
            last = control;
        }
    }
}

void RulesTab::addRule()
{
    m_store.addFileTypeRule();
    refreshCards();
    reveal(*m_cards.constLast());
    m_cards.constLast()->focusExtensions();
}

} // namespace lapsa
