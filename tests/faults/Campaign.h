// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "EngineLanes.h"
#include "Injection.h"
#include "Scenario.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <optional>

namespace lapsa::test {

class FaultWorld;

/// What came of the injections into one scenario.
struct Figures
{
    int calls = 0;
    int kills = 0;
    int faults = 0;
    /// How often the program was ended in the middle.
    int ends = 0;
    /// Points after which a second whole copy or name of a file stood beside the first.
    int doubled = 0;
    /// Points after which it still stood there when the next start had ended.
    int doubledLater = 0;
    /// Points after which something lay in Recovery without a record when the next start had ended.
    int unrecorded = 0;
    int failed = 0;
    /// Of the promises above, how many lines were shown.
    int shown = 0;

    /// All but the calls, which are those of one run.
    Figures& operator+=(const Figures& other);
};

/// Which of all points are run.
struct Selection
{
    /// Each `every`-th kill and fault; 0 for none.
    int everyKill = 1;
    int everyFault = 1;
    /// 0 for none: without threads nothing can be ended in the middle.
    int everyEnd = 0;
    /// Of `jobs` workers, this is number `worker`.
    int jobs = 1;
    int worker = 0;
};

/// One scenario, run again and again, each time with another fault, with its promise checked after it and after another
/// start.
class Campaign final
{
public:
    explicit Campaign(const FaultWorld& world, const Scenario& scenario,
                      EngineLanes::Threads threads = EngineLanes::Threads::No);

    /// Shows what is broken as it goes.
    Figures run(const Selection& selection);
    /// Runs one point; with `listCalls` all its calls are shown.
    Figures runOnly(const Injection& injection, bool listCalls);
    /// Another thing done to the scenario, beside an injection or in place of one: `before` and `after` it, in the
    /// calling process. `name` is how it is called where something is broken.
    Figures runUnder(const QByteArray& name, const Injection& injection, const std::function<void()>& before,
                     const std::function<void()>& after);

private:
    struct Point
    {
        Injection injection = {};
        bool listCalls = false;
        QByteArray name = {};
        std::function<void()> before = {};
        std::function<void()> after = {};
    };

    RunEnd runPoint(const Point& point);
    [[nodiscard]] int prepare() const;
    [[nodiscard]] int act() const;
    [[nodiscard]] int startAgain() const;
    void count(const Point& point, const RunEnd& end, const QList<QByteArray>& findings);

    const FaultWorld& m_world;
    const Scenario& m_scenario;
    EngineLanes::Threads m_threads;
    Figures m_figures;
};

} // namespace lapsa::test
