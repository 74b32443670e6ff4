// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "NoFoldersView.h"

#include "Card.h"
#include "Lanes.h"
#include "Localized.h"
#include "PushButton.h"
#include "TextLabel.h"
#include "UserFolders.h"

#include <QDir>
#include <QPointer>
#include <QVBoxLayout>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

constexpr int stackSpacing = 12;

} // namespace

NoFoldersView::NoFoldersView(Lanes& lanes, QWidget* parent)
    : QWidget(parent)
    , m_lanes(lanes)
    , m_button(new PushButton({}, PushButton::Kind::Plain))
{
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins({});
    auto* const card = new Card(this);
    // Texts wrap, so the height depends on the width.
    card->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    column->addWidget(card);
    auto* const stack = new QWidget(card);
    auto* const lines = new QVBoxLayout(stack);
    lines->setContentsMargins({});
    lines->setSpacing(stackSpacing);
    lines->addWidget(new TextLabel(
        Localized::text(u"Every new file in a folder that you add here starts a countdown by itself. Files that are "
                        u"already there are left alone until you include them."_s,
                        u"Ogni nuovo file in una cartella aggiunta qui avvia da solo un conto alla rovescia. I file "
                        u"già presenti restano esclusi finché non li includi."_s),
        bodyText, ColorRole::Secondary, stack));
    m_button->setSymbol(u"folder.badge.plus"_s);
    lines->addWidget(m_button, 0, Qt::AlignLeading);
    card->addRow(stack);
    m_button->hide();
    connect(m_button, &PushButton::clicked, this, [this] { emit chosen(m_offered); });
}

void NoFoldersView::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    lookForDownloads();
}

void NoFoldersView::lookForDownloads()
{
    m_lanes.run(QDir::homePath(), [view = QPointer(this)](LaneJob&) -> Lanes::Report {
        return [view, folder = userFolders::downloads()] {
            if (view) {
                view->offer(folder);
            }
        };
    });
}

void NoFoldersView::offer(const QString& folder)
{
    m_offered = QUrl::fromLocalFile(folder);
    m_button->setVisible(!folder.isEmpty());
    m_button->setText(singleLine(Localized::text(u"Add “%1”"_s, u"Aggiungi “%1”"_s).arg(m_offered.fileName())));
    m_button->updateGeometry();
}

} // namespace lapsa
