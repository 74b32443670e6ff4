// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ScrollPage.h"

namespace lapsa {

class ListSection;
class PushButton;

/// What the tabs with a list of cards have in common: a heading, a button that adds a card, and the cards below.
class ListTab : public ScrollPage
{
    Q_OBJECT

protected:
    /// Takes the button. A screen reader calls the page by its heading.
    ListTab(const QString& heading, PushButton* addButton, QWidget* parent);

    [[nodiscard]] PushButton& addButton() const { return *m_addButton; }

    /// Where the cards go.
    [[nodiscard]] QVBoxLayout& column() const;
    /// Aligns the heading with those of the other tabs, at the text size of now.
    void alignHeading();
    /// Scrolls to a card that was just added, if this tab is the one that is shown.
    void reveal(QWidget& card);

private:
    PushButton* m_addButton;
    ListSection* m_section;
};

} // namespace lapsa
