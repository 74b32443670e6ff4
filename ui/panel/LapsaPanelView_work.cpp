// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Announcer.h"
#include "Clock.h"
#include "FileListView.h"
#include "FileRowView.h"
#include "ItemWorkSource.h"
#include "LapsaPanelView.h"
#include "MainQueue.h"

#include <QAccessible>

namespace lapsa {

using namespace std::chrono_literals;

namespace {

/// Often enough for a bar that seems to move steadily.
constexpr auto workInterval = 250ms;

} // namespace

/// There is a timer only while there is something to see.
void LapsaPanelView::followWork()
{
    if (!isVisible() || !m_environment.work.isWorking()) {
        m_workClock.reset();
    } else if (!m_workClock) {
        m_workClock = m_environment.mainQueue.repeatEvery(workInterval, [this] { showWork(); });
    }
}

void LapsaPanelView::showWork()
{
    m_list->setNow(m_environment.clock.now());
    if (!QAccessible::isActive()) {
        return;
    }
    QList<WorkAnnouncements::Worked> works;
    for (const FileRowView* const row : m_list->visibleRows()) {
        if (row->work()) {
            works.push_back({.id = row->item().id, .displayName = row->item().displayName, .work = *row->work()});
        }
    }
    if (const std::optional<QString> text = m_workAnnouncements.next(works, m_environment.clock.now())) {
        m_announcer->announce(*text);
    }
}

} // namespace lapsa
