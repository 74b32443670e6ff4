// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QElapsedTimer>

namespace lapsa {

/// Tells when work on many entries is to go on in the next turn of the main loop: after two milliseconds, so that a
/// slow or busy machine does less in a turn, and after many entries on any. What a timer of the toolkit asks for can
/// wait for three turns, and the lanes report in them as well.
class ShortTurn final
{
public:
    struct Bounds
    {
        /// So many are done in any case: whoever hands over a few may count on it that they are done at once.
        qsizetype atLeast = 1000;
        qsizetype atMost = 4000;
    };

    explicit ShortTurn(const Bounds& bounds)
        : m_bounds(bounds)
    {
        m_begin.start();
    }

    /// Call before each entry.
    [[nodiscard]] bool isOver()
    {
        constexpr qsizetype betweenLooks = 64; // the clock is not free
        constexpr qint64 milliseconds = 2;
        const qsizetype done = m_entries++;
        return done >= m_bounds.atMost ||
               (done >= m_bounds.atLeast && done % betweenLooks == 0 && m_begin.hasExpired(milliseconds));
    }

private:
    Bounds m_bounds;
    QElapsedTimer m_begin;
    qsizetype m_entries = 0;
};

} // namespace lapsa
