// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ChooserPathRow.h"

#include "ChooserWay.h"
#include "ElidedLabel.h"
#include "Localized.h"
#include "SymbolButton.h"

#include <QDir>
#include <QHBoxLayout>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

constexpr int spacing = 6;
constexpr int buttonExtent = 30;
constexpr double symbolSize = 13;

/// A folder's path for display: relative to the home folder if it is inside it.
QString wayTo(const QString& folder)
{
    const QString home = QDir::homePath();
    if (folder != home && !folder.startsWith(home + u'/')) {
        return folder;
    }
    QStringList parts = folder.sliced(home.size()).split(u'/', Qt::SkipEmptyParts);
    parts.push_front(Localized::text(u"Home"_s, u"Cartella home"_s));
    return parts.join(u" \u203A "_s);
}

} // namespace

ChooserPathRow::ChooserPathRow(QWidget* parent)
    : QWidget(parent)
    , m_back(makeButton(u"chevron.left"_s, Localized::text(u"Back"_s, u"Indietro"_s), &ChooserPathRow::back))
    , m_forward(makeButton(u"chevron.right"_s, Localized::text(u"Forward"_s, u"Avanti"_s), &ChooserPathRow::forward))
    , m_up(makeButton(u"arrow.up"_s, Localized::text(u"Enclosing folder"_s, u"Cartella superiore"_s),
                      &ChooserPathRow::up))
    , m_path(new ElidedLabel(headlineText, ColorRole::Primary, this))
{
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins({});
    row->setSpacing(spacing);
    row->addWidget(m_back);
    row->addWidget(m_forward);
    row->addWidget(m_up);
    row->addSpacing(spacing);
    row->addWidget(m_path, 1);
}

void ChooserPathRow::showWay(const ChooserWay& way)
{
    m_path->setText(wayTo(way.folder));
    m_back->setEnabled(!way.back.isEmpty());
    m_forward->setEnabled(!way.forward.isEmpty());
    m_up->setEnabled(way.folder != QDir::rootPath());
}

SymbolButton* ChooserPathRow::makeButton(const QString& symbol, const QString& help, void (ChooserPathRow::*asked)())
{
    auto* const button = new SymbolButton(
        {.symbol = symbol, .size = symbolSize, .weight = SymbolWeight::Semibold, .extent = buttonExtent}, help, this);
    connect(button, &SymbolButton::clicked, this, asked);
    return button;
}

} // namespace lapsa
