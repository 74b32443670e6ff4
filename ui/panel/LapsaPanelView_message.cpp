// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Announcer.h"
#include "DeletionUndo.h"
#include "FileListView.h"
#include "LapsaPanelView.h"
#include "LapsaStore.h"
#include "LinkButton.h"
#include "Localized.h"
#include "TextLabel.h"

#include <QHBoxLayout>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

constexpr int messageLines = 2;

} // namespace

QWidget* LapsaPanelView::makeMessage()
{
    m_messageRow = new QWidget(this);
    auto* const row = new QHBoxLayout(m_messageRow);
    row->setContentsMargins({});
    m_message = new TextLabel({}, captionText, ColorRole::Notice, m_messageRow);
    m_message->setMaximumLines(messageLines);
    m_undoLink = new LinkButton(Localized::text(u"Put back"_s, u"Ripristina"_s), m_messageRow);
    row->addWidget(m_message, 1);
    row->addWidget(m_undoLink, 0, Qt::AlignTop);
    m_messageRow->hide();
    return m_messageRow;
}

/// The link is there while the message offers it; a screen reader hears of both.
void LapsaPanelView::showUndo()
{
    const bool offered = m_undo->isOffered();
    const QString help = offered ? m_environment.store.lastMessage().value_or(QString()) : QString();
    if (!offered && m_undoLink->hasFocus()) {
        m_list->setFocus(Qt::OtherFocusReason);
    }
    m_undoLink->setVisible(offered);
    if (m_undoLink->accessibleDescription() == help) {
        return;
    }
    m_undoLink->setAccessibleDescription(help);
    if (offered) {
        m_announcer->announce(help + u' ' + Localized::text(u"Control+Z puts it back."_s, u"Control+Z ripristina."_s));
    }
}

} // namespace lapsa
