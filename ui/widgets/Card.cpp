// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Card.h"

#include "Material.h"
#include "TextLabel.h"
#include "ThemePalette.h"

#include <QPainter>
#include <QVBoxLayout>

namespace lapsa {

namespace {

constexpr int rowPadding = 16;
/// Above and below each row; hairlines lie between two such gaps.
constexpr int rowGap = 10;
constexpr int headingSpacing = 8;
constexpr int headingInset = 4;
constexpr int controlSpacing = 16;

} // namespace

Card::Card(QWidget* parent)
    : QWidget(parent)
    , m_rows(new QVBoxLayout(this))
{
    m_rows->setContentsMargins(rowPadding, rowGap + 2, rowPadding, rowGap + 2);
    m_rows->setSpacing(2 * rowGap + 1);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
}

void Card::addRow(QWidget* row)
{
    m_rows->addWidget(row);
}

void Card::addRow(const QString& label, QWidget* control)
{
    auto* const row = new QWidget(this);
    auto* const line = new QHBoxLayout(row);
    line->setContentsMargins({});
    line->setSpacing(controlSpacing);
    line->addWidget(new TextLabel(label, bodyText, ColorRole::Primary, row), 1, Qt::AlignVCenter);
    line->addWidget(control, 0, Qt::AlignVCenter);
    addRow(row);
}

void Card::insertRow(int index, QWidget* row)
{
    m_rows->insertWidget(index, row);
}

void Card::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    material::paintSurface(painter, rect(), material::cardRadius, palette());
    bool first = true;
    for (int index = 0; index < m_rows->count(); ++index) {
        const QWidget* const row = m_rows->itemAt(index)->widget();
        if (row == nullptr || row->isHidden()) {
            continue;
        }
        if (!first) {
            painter.fillRect(QRect(rowPadding, row->y() - rowGap - 1, width() - 2 * rowPadding, 1),
                             themeColor(ColorRole::Separator, palette()));
        }
        first = false;
    }
}

FormSection::FormSection(const QString& heading, QWidget* parent)
    : QWidget(parent)
    , m_card(new Card(this))
{
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(headingSpacing);
    auto* const title = new TextLabel(heading, headlineText, ColorRole::Primary, this);
    title->setContentsMargins(headingInset, 0, headingInset, 0);
    column->addWidget(title);
    column->addWidget(m_card);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
}

} // namespace lapsa
