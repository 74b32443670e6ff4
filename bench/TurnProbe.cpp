// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "TurnProbe.h"

#include "BenchFiles.h"

#include <QEventLoop>

#include <algorithm>

namespace lapsa::bench {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds interval = 4ms;
constexpr std::chrono::milliseconds afterwards = 1s;

double milliseconds(const QElapsedTimer& since)
{
    return double(since.nsecsElapsed()) / 1e6;
}

} // namespace

void TurnProbe::note()
{
    m_turns.push_back(milliseconds(m_sinceTurn));
    m_sinceTurn.restart();
}

Turns TurnProbe::measure(const std::function<void()>& begin, const std::function<bool()>& isOver,
                         std::chrono::seconds patience)
{
    QEventLoop loop;
    QElapsedTimer sinceBegin;
    QElapsedTimer sinceEnd;
    Turns turns;
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.callOnTimeout(&loop, [&] {
        note();
        if (!sinceBegin.isValid()) {
            sinceBegin.start();
            begin();
        } else if (!sinceEnd.isValid() && isOver()) {
            turns.whole = milliseconds(sinceBegin);
            sinceEnd.start();
        } else if (sinceEnd.isValid() && sinceEnd.hasExpired(afterwards.count())) {
            loop.quit();
        }
        require(sinceBegin.elapsed() < std::chrono::milliseconds(patience).count(), "ending in time");
    });
    m_turns.clear();
    m_sinceTurn.start();
    m_timer.start(interval);
    loop.exec();
    m_timer.stop();

    std::ranges::sort(m_turns);
    turns.count = m_turns.size();
    turns.p999 = m_turns[m_turns.size() - 1 - m_turns.size() / 1000];
    turns.longest = m_turns.back();
    return turns;
}

} // namespace lapsa::bench
