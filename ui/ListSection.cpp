// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ListSection.h"

#include "TextLabel.h"

#include <QVBoxLayout>

namespace lapsa {

namespace {

constexpr int headingInset = 4;
constexpr int headingSpacing = 16;
constexpr int cardSpacing = 16;

} // namespace

ListSection::ListSection(const QString& heading, QWidget* button, QWidget* parent)
    : QWidget(parent)
    , m_column(new QVBoxLayout)
{
    auto* const rows = new QVBoxLayout(this);
    rows->setContentsMargins({});
    rows->setSpacing(cardSpacing);
    auto* const head = new QHBoxLayout;
    head->setContentsMargins(headingInset, 0, 0, 0);
    head->setSpacing(headingSpacing);
    head->addWidget(new TextLabel(heading, headlineText, ColorRole::Primary, this), 1, Qt::AlignVCenter);
    head->addWidget(button, 0, Qt::AlignVCenter);
    rows->addLayout(head);
    m_column->setContentsMargins({});
    m_column->setSpacing(cardSpacing);
    rows->addLayout(m_column);
}

} // namespace lapsa
