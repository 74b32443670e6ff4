// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Campaign.h"

#include "FaultProgram.h"
#include "FaultWorld.h"
#include "Promise.h"
#include "TracedCalls.h"
#include "VersionLog.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace lapsa::test {

using namespace std::chrono_literals;

namespace {

constexpr int mostShown = 12;

std::vector<Injection> killsAt(int call)
{
    return {{.kind = Injection::Kind::KillBefore, .call = call}, {.kind = Injection::Kind::KillAfter, .call = call}};
}

std::vector<Injection> faultsAt(int call)
{
    using enum Injection::Reach;
    constexpr std::array errors = {EIO, ENOSPC, EACCES, EROFS, EMFILE, EDQUOT, ENOENT, EXDEV, EINTR};
    std::vector<Injection> faults = {
        {.kind = Injection::Kind::Short, .call = call, .reach = Once},
        {.kind = Injection::Kind::Short, .call = call, .reach = Later},
        {.kind = Injection::Kind::FailAfter, .call = call, .error = EIO, .reach = Once},
        {.kind = Injection::Kind::FailAfter, .call = call, .error = ENOENT, .reach = Once},
    };
    for (const int error : errors) {
        for (const Injection::Reach reach : {Once, Later, Same}) {
            faults.push_back({.kind = Injection::Kind::Fail, .call = call, .error = error, .reach = reach});
        }
    }
    return faults;
}

QByteArray described(const RunEnd& end)
{
    switch (end.how) {
    case RunEnd::How::Finished:
        return end.code == 0 ? QByteArray() : "ended with " + QByteArray::number(end.code);
    case RunEnd::How::Killed:
        return {};
    case RunEnd::How::Crashed:
        return "crashed by signal " + QByteArray::number(end.code);
    case RunEnd::How::Hung:
        return "hung";
    }
    return {};
}

} // namespace

Figures& Figures::operator+=(const Figures& other)
{
    kills += other.kills;
    faults += other.faults;
    ends += other.ends;
    doubled += other.doubled;
    doubledLater += other.doubledLater;
    unrecorded += other.unrecorded;
    failed += other.failed;
    return *this;
}

Campaign::Campaign(const FaultWorld& world, const Scenario& scenario, EngineLanes::Threads threads)
    : m_world(world)
    , m_scenario(scenario)
    , m_threads(threads)
{}

Figures Campaign::run(const Selection& selection)
{
    m_figures = {};
    m_figures.calls = runPoint({}).calls;
    int kill = 0;
    int fault = 0;
    int end = 0;
    int taken = 0;
    const auto runSelected = [&](const std::vector<Injection>& injections, int& number, int every) {
        for (const Injection& injection : injections) {
            const bool selected = every > 0 && number++ % every == 0;
            if (selected && taken++ % selection.jobs == selection.worker) {
                runPoint({.injection = injection});
            }
        }
    };
    for (int call = 1; call <= m_figures.calls; ++call) {
        runSelected(killsAt(call), kill, selection.everyKill);
        runSelected(faultsAt(call), fault, selection.everyFault);
        runSelected({{.kind = Injection::Kind::End, .call = call}}, end, selection.everyEnd);
    }
    return m_figures;
}

Figures Campaign::runOnly(const Injection& injection, bool listCalls)
{
    m_figures = {};
    const RunEnd end = runPoint({.injection = injection, .listCalls = listCalls});
    m_figures.calls = end.calls;
    int number = 0;
    for (const QByteArray& call : end.listed) {
        std::printf("%5d  %s\n", ++number, call.constData());
    }
    return m_figures;
}

Figures Campaign::runUnder(const QByteArray& name, const Injection& injection, const std::function<void()>& before,
                           const std::function<void()>& after)
{
    m_figures = {};
    m_figures.calls = runPoint({.injection = injection, .name = name, .before = before, .after = after}).calls;
    return m_figures;
}

RunEnd Campaign::runPoint(const Point& point)
{
    m_world.clear();
    VersionLog::shared().clear();
    if (!m_scenario.firstStart && described(runApart([this] { return prepare(); })) != "") {
        qFatal("%s could not be prepared", m_scenario.name.constData());
    }
    Promise promise(m_world, m_scenario);
    if (point.before) {
        point.before();
    }
    RunEnd end = runTraced([this] { return act(); }, point.injection, m_scenario.abilities, point.listCalls);
    if (point.after) {
        point.after();
    }
    QList<QByteArray> findings = {described(end)};
    findings += promise.broken(end.how == RunEnd::How::Killed ? Promise::After::Kill : Promise::After::Fault);
    m_figures.doubled += promise.doubled() > 0 ? 1 : 0;
    const QByteArray again = described(runApart([this] { return startAgain(); }));
    findings.push_back(again.isEmpty() ? again : "the next start " + again);
    const QList<QByteArray> later = promise.broken(Promise::After::Restart);
    for (const QByteArray& finding : later) {
        findings.push_back("after the next start: " + finding);
    }
    m_figures.doubledLater += promise.doubled() > 0 ? 1 : 0;
    m_figures.unrecorded += promise.unrecorded() > 0 ? 1 : 0;
    findings.removeIf([](const QByteArray& finding) { return finding.isEmpty(); });
    count(point, end, findings);
    return end;
}

int Campaign::prepare() const
{
    FaultProgram program;
    m_scenario.prepare(program, m_scenario.desk(m_world));
    return EXIT_SUCCESS;
}

int Campaign::act() const
{
    FaultProgram program(m_scenario.later, m_threads);
    if (!m_scenario.startsInside) {
        program.load();
    }
    if (!stopAtTracedCalls()) {
        return EXIT_FAILURE;
    }
    m_scenario.act(program, m_scenario.desk(m_world));
    return EXIT_SUCCESS;
}

int Campaign::startAgain() const
{
    FaultProgram program(m_scenario.later + 10min);
    program.start();
    program.quit();
    return EXIT_SUCCESS;
}

void Campaign::count(const Point& point, const RunEnd& end, const QList<QByteArray>& findings)
{
    const bool injects = point.injection.kind != Injection::Kind::Nothing;
    if (end.injected && point.injection.kind == Injection::Kind::End) {
        ++m_figures.ends;
    } else if (end.injected) {
        ++(point.injection.kills() ? m_figures.kills : m_figures.faults);
    } else if (point.before) {
        ++m_figures.faults;
    }
    if (findings.isEmpty()) {
        return;
    }
    ++m_figures.failed;
    if (++m_figures.shown > mostShown) {
        return;
    }
    QByteArray how = "--only '" + point.injection.text() + '\'';
    if (!point.name.isEmpty()) {
        how = '(' + point.name + (injects ? ", " + point.injection.text() : "") + ')';
    }
    std::printf("BROKEN  tools/faults%s --scenario %s %s   (%s)\n",
                m_threads == EngineLanes::Threads::Yes ? " --threads" : "", m_scenario.name.constData(),
                how.constData(), end.where.toPercentEncoding(" /:.-_").constData());
    for (const QByteArray& finding : findings) {
        std::printf("        %s\n", finding.toPercentEncoding(" /:.,-_").constData());
    }
    std::fflush(stdout);
}

} // namespace lapsa::test
