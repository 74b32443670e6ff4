// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QElapsedTimer>
#include <QTimer>

#include <chrono>
#include <cstddef>
#include <functional>
#include <vector>

namespace lapsa::bench {

/// The times between turns of the main loop, in milliseconds.
struct Turns
{
    std::size_t count = 0;
    /// Of a thousand, one takes longer.
    double p999 = 0;
    double longest = 0;
    /// From the begin of the work to its end.
    double whole = 0;
};

/// Measures how long the main loop takes from turn to turn, with a timer that asks for one every 4 ms: whatever holds
/// up the main thread delays it.
class TurnProbe final
{
public:
    /// Begins the work on a turn of the loop, and runs the loop until `isOver`, which is asked on each turn, and a
    /// second longer: the saves follow. Ends the program after `patience`.
    [[nodiscard]] Turns measure(const std::function<void()>& begin, const std::function<bool()>& isOver,
                                std::chrono::seconds patience);

private:
    void note();

    QTimer m_timer;
    QElapsedTimer m_sinceTurn;
    std::vector<double> m_turns;
};

} // namespace lapsa::bench
