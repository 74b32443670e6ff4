// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LatestLook.h"

#include "LaneJob.h"

#include <algorithm>
#include <utility>

namespace lapsa {

LatestLook::LatestLook(Lanes& lanes)
    : m_lanes(lanes)
    , m_self(std::make_shared<LatestLook*>(this))
{}

LatestLook::~LatestLook()
{
    drop();
    *m_self = nullptr;
}

void LatestLook::ask(Question question)
{
    drop();
    if (isUnderWay(question.folder)) {
        m_waiting = std::move(question);
    } else {
        submit(std::move(question));
    }
}

void LatestLook::drop()
{
    m_waiting.reset();
    const std::shared_ptr<Asked> latest = std::exchange(m_latest, nullptr);
    if (latest && latest->job) {
        latest->job->stop();
        if (latest->job->state() == LaneJob::State::Waiting) {
            m_underWay.remove(latest); // it never begins
        }
    }
}

void LatestLook::submit(Question question)
{
    const auto asked = std::make_shared<Asked>(Asked{.folder = std::move(question.folder), .job = {}});
    m_underWay.push_back(asked);
    m_latest = asked;
    // With lanes that run at once, this object may be gone when look() returns.
    asked->job = m_lanes.look(question.path,
                              [self = m_self, asked, work = std::move(question.work)](LaneJob& job) -> Lanes::Report {
                                  return [self, asked, report = work(job)] {
                                      if (*self != nullptr) {
                                          (*self)->answered(asked, report);
                                      }
                                  };
                              });
}

void LatestLook::answered(const std::shared_ptr<Asked>& asked, const Lanes::Report& report)
{
    m_underWay.remove(asked);
    if (m_waiting && !isUnderWay(m_waiting->folder)) {
        const Question next = *std::exchange(m_waiting, std::nullopt);
        submit(next);
        return;
    }
    if (asked == m_latest) {
        m_latest.reset();
        report();
    }
}

bool LatestLook::isUnderWay(const QString& folder) const
{
    return std::ranges::any_of(m_underWay, [&folder](const auto& asked) { return asked->folder == folder; });
}

} // namespace lapsa
