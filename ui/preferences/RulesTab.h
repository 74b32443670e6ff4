// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ListTab.h"

#include <QList>

namespace lapsa {

class Announcer;
class FileTypeRuleView;
class LapsaStore;

/// The file type rules, one card each.
class RulesTab final : public ListTab
{
    Q_OBJECT

public:
    /// The store must outlive the tab.
    explicit RulesTab(LapsaStore& store, QWidget* parent = nullptr);

    /// Shows the current rules.
    void refresh();

private:
    void refreshCards();
    [[nodiscard]] FileTypeRuleView* makeCard(const QUuid& id);
    void addRule();
    void move(FileTypeRuleView& card, qsizetype position);
    void drag(FileTypeRuleView& card, int height);
    void bringOrderInLine();

    LapsaStore& m_store;
    Announcer* m_announcer;
    QList<FileTypeRuleView*> m_cards;
    /// Where the card that is dragged stood before.
    qsizetype m_dragStart = 0;
};

} // namespace lapsa
