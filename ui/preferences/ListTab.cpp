// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ListTab.h"

#include "ListSection.h"
#include "PushButton.h"

#include <QTimer>
#include <QVBoxLayout>

namespace lapsa {

ListTab::ListTab(const QString& heading, PushButton* addButton, QWidget* parent)
    : ScrollPage(heading, parent)
    , m_addButton(addButton)
    , m_section(new ListSection(heading, addButton))
{
    sections().addWidget(m_section);
    sections().addStretch();
}

QVBoxLayout& ListTab::column() const
{
    return m_section->column();
}

void ListTab::alignHeading()
{
    setOverhang(m_section->overhang());
}

void ListTab::reveal(QWidget& card)
{
    if (!isVisibleTo(window())) {
        return;
    }
    // Wait until the page knows its new height.
    QTimer::singleShot(0, &card, [this, &card] {
        widget()->layout()->activate();
        widget()->adjustSize();
        ensureWidgetVisible(&card, 0, margin);
    });
}

} // namespace lapsa
