// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ListTab.h"

#include <QList>

namespace lapsa {

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
    void addRule();

    LapsaStore& m_store;
    QList<FileTypeRuleView*> m_cards;
};

} // namespace lapsa
