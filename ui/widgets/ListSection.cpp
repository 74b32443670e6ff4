// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ListSection.h"

#include "TextLabel.h"

#include <QVBoxLayout>

#include <algorithm>

namespace lapsa {

namespace {

constexpr int headingInset = 4;
constexpr int headingSpacing = 16;
constexpr int cardSpacing = 16;
/// Wide enough for any heading on one line.
constexpr int wide = 1 << 12;

} // namespace

ListSection::ListSection(const QString& heading, QWidget* button, QWidget* parent)
    : QWidget(parent)
    , m_heading(new TextLabel(heading, headlineText, ColorRole::Primary, this))
    , m_button(button)
    , m_column(new QVBoxLayout)
{
    auto* const rows = new QVBoxLayout(this);
    rows->setContentsMargins({});
    rows->setSpacing(cardSpacing);
    auto* const head = new QHBoxLayout;
    head->setContentsMargins(headingInset, 0, 0, 0);
    head->setSpacing(headingSpacing);
    head->addWidget(m_heading, 1, Qt::AlignVCenter);
    head->addWidget(button, 0, Qt::AlignVCenter);
    rows->addLayout(head);
    m_column->setContentsMargins({});
    m_column->setSpacing(cardSpacing);
    rows->addLayout(m_column);
}

int ListSection::overhang() const
{
    return std::max(0, (m_button->sizeHint().height() - m_heading->heightForWidth(wide)) / 2);
}

} // namespace lapsa
