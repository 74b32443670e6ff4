// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ScrollPage.h"

namespace lapsa {

class ListSection;
class PushButton;

/// The base of tabs with a list of cards: a heading, a button that adds a card, and the cards below.
class ListTab : public ScrollPage
{
    Q_OBJECT

protected:
    /// Takes ownership of the button. The heading is also the page's accessible name.
    ListTab(const QString& heading, PushButton* addButton, QWidget* parent);

    [[nodiscard]] PushButton& addButton() const { return *m_addButton; }

    /// The layout for the cards.
    [[nodiscard]] QVBoxLayout& column() const;
    /// Aligns the heading with those of the other tabs, at the current text size.
    void alignHeading();
    /// Scrolls to a new card if this tab is visible.
    void reveal(QWidget& card);

private:
    PushButton* m_addButton;
    ListSection* m_section;
};

} // namespace lapsa
