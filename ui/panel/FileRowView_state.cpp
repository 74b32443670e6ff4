// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DurationFormatter.h"
#include "ElidedLabel.h"
#include "FileIconView.h"
#include "FileRowView.h"
#include "LapsaStore.h"
#include "Localized.h"
#include "RowLook.h"
#include "WorkBar.h"
#include "WorkTexts.h"

#include <algorithm>
#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

std::optional<ItemWork::Kind> kindOf(const std::optional<ItemWork>& work)
{
    return work ? std::optional(work->kind) : std::nullopt;
}

} // namespace

void FileRowView::setNow(TimePoint now)
{
    m_now = now;
    refreshRemaining();
}

void FileRowView::setWork(const std::optional<ItemWork>& work)
{
    if (work == m_work) {
        return;
    }
    const bool another = kindOf(std::exchange(m_work, work)) != kindOf(work);
    m_workTold = m_workTold && !another;
    refreshWork();
    refreshRemaining();
    if (another) {
        update();
    }
}

QString FileRowView::stateText() const
{
    if (m_work) {
        return workTexts::textFor(*m_work);
    }
    const bool waits = !m_item.locked && m_item.isExpired(m_now) && m_environment.store.isInUse(m_item.id);
    return waits ? Localized::text(u"In use"_s, u"In uso"_s) : remainingText(m_item, m_now);
}

QString FileRowView::remainingText(const LapsaItem& item, TimePoint now)
{
    if (item.locked) {
        return Localized::text(u"locked"_s, u"bloccato"_s);
    }
    const double exact = secondsBetween(now, item.expiresAt);
    const auto seconds = std::max<std::int64_t>(static_cast<std::int64_t>(exact), 0);
    const std::int64_t minutes = (seconds + secondsPerMinute - 1) / secondsPerMinute;
    return DurationFormatter::compact(std::max<std::int64_t>(minutes, 1)) + u' ' +
           Localized::text(u"left"_s, u"rimanenti"_s);
}

void FileRowView::refreshRemaining()
{
    const QString text = stateText();
    m_remaining->setRole(m_item.locked && !isWorkedOn() ? ColorRole::Notice : ColorRole::Secondary);
    m_remaining->setText(text);
    // Screen readers ask RowAccessible for the text. They are told of a change here, but not of every per cent.
    if (!m_workTold && text != accessibleDescription()) {
        setAccessibleDescription(text);
    }
    m_workTold = m_work.has_value();
}

void FileRowView::refreshWork()
{
    m_workBar->setProgress(m_work ? workTexts::progressOf(*m_work) : std::nullopt);
    m_workBar->setVisible(isWorkedOn() && !waitsForDisk());
    m_icon->setOpacity(waitsForDisk() ? rowLook::waitingOpacity : 1);
    // As faint as text may be.
    m_name->setRole(waitsForDisk() ? ColorRole::Secondary : ColorRole::Primary);
}

bool FileRowView::isWorkedOn() const
{
    return m_work && m_work->kind != ItemWork::Kind::Stopped;
}

bool FileRowView::waitsForDisk() const
{
    return m_work && m_work->kind == ItemWork::Kind::WaitingForDisk;
}

} // namespace lapsa
