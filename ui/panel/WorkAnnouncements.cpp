// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "WorkAnnouncements.h"

#include "WorkTexts.h"

#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

constexpr double secondsOfSilence = 10;
constexpr int quarters = 4;

} // namespace

std::optional<QString> WorkAnnouncements::next(const QList<Worked>& works, TimePoint now)
{
    QHash<QString, Said> said;
    for (const Worked& worked : works) {
        if (const auto before = m_said.constFind(worked.id); before != m_said.cend()) {
            said.insert(worked.id, *before);
        }
    }
    m_said = std::exchange(said, {});
    // The clock may have been set back.
    const double silence = m_lastTime ? secondsBetween(*m_lastTime, now) : secondsOfSilence;
    if (silence >= 0 && silence < secondsOfSilence) {
        return std::nullopt;
    }
    for (const Worked& worked : works) {
        const Said saying = saidOf(worked.work);
        const auto before = m_said.constFind(worked.id);
        if (before == m_said.cend() || *before != saying) {
            m_said.insert(worked.id, saying);
            m_lastTime = now;
            return u"“%1”: %2"_s.arg(worked.displayName, workTexts::textFor(worked.work));
        }
    }
    return std::nullopt;
}

WorkAnnouncements::Said WorkAnnouncements::saidOf(const ItemWork& work)
{
    if (const std::optional<double> progress = workTexts::progressOf(work)) {
        return {.kind = work.kind, .quarter = static_cast<int>(*progress * quarters)};
    }
    return {.kind = work.kind, .quarter = {}, .done = work.kind == ItemWork::Kind::Removing ? work.done : 0};
}

} // namespace lapsa
