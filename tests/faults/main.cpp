// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FaultWorld.h"
#include "Options.h"
#include "PowerCuts.h"
#include "Races.h"
#include "RealFaults.h"
#include "Tally.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

using namespace lapsa::test;

namespace {

/// Of all faults of all calls, every so many: about forty thousand runs.
constexpr int usualFaults = 7;
/// The short form's selection. Both are prime to what happens in turns, so that over the calls everything has its turn.
constexpr int briefKills = 11;
constexpr int briefFaults = 101;
constexpr int usualCuts = 7;
constexpr int briefCuts = 97;
/// The one in which most can go wrong has every kill and more faults than the others.
constexpr const char* criticalScenario = "recovery-file@volume";
constexpr int criticalFaults = 13;

constexpr const char* otherRows[] = {"full-disk", "other-mounts", "no-rights", "races", "power-cuts"};

std::vector<QByteArray> rowNames()
{
    std::vector<QByteArray> names;
    for (const Scenario& scenario : scenarios()) {
        names.push_back(scenario.name);
    }
    names.insert(names.end(), std::begin(otherRows), std::end(otherRows));
    return names;
}

Selection selectionFor(const Scenario& scenario, const Options& options, int worker)
{
    Selection selection{.everyKill = 1, .everyFault = usualFaults, .jobs = options.jobs, .worker = worker};
    if (options.briefly) {
        const bool critical = scenario.name == criticalScenario;
        selection.everyKill = critical ? 1 : briefKills;
        selection.everyFault = critical ? criticalFaults : briefFaults;
    }
    selection.everyKill *= options.thin;
    selection.everyEnd = options.threads ? selection.everyKill : 0;
    selection.everyFault = options.every > 0 ? options.every : selection.everyFault * options.thin;
    return selection;
}

/// The part of one worker.
class Worker final
{
public:
    Worker(const Options& options, int number)
        : m_options(options)
        , m_number(number)
        , m_world(options.folder)
    {}

    void run()
    {
        std::size_t row = 0;
        for (const Scenario& scenario : scenarios()) {
            if (wanted(scenario.name) && canRun(scenario)) {
                Tally::shared().add(
                    row,
                    Campaign(m_world, scenario, m_options.lanes()).run(selectionFor(scenario, m_options, m_number)));
            }
            ++row;
        }
        if (!m_options.threads) {
            runOthers(row);
        }
    }

private:
    [[nodiscard]] bool wanted(const QByteArray& name) const
    {
        return m_options.scenario.isEmpty() || (m_options.scenario == name && !onlyItsCuts());
    }

    [[nodiscard]] bool onlyItsCuts() const
    {
        return m_options.cuts > 0 &&
               std::ranges::find(scenarios(), m_options.scenario, &Scenario::name) != scenarios().end();
    }

    [[nodiscard]] bool canRun(const Scenario& scenario) const { return m_world.mounted() || !scenario.onVolume; }

    /// The rows are shared out between the first two workers, by the time they take.
    void runOthers(std::size_t row) const
    {
        const bool first = m_number == 0;
        const bool last = m_number == std::min(1, m_options.jobs - 1);
        if (first && m_world.mounted() && wanted("full-disk")) {
            Tally::shared().add(row, runOnFullDisks(m_world, m_options.briefly ? 4 : 1));
        }
        if (last && m_world.mounted() && wanted("other-mounts")) {
            Tally::shared().add(row + 1, runOnOtherMounts(m_world));
        }
        if (last && ::geteuid() == 0 && m_world.mounted() && wanted("no-rights")) {
            const RunEnd end = runApart([&] {
                m_world.becomeOrdinaryUser();
                Tally::shared().add(row + 2, runWithoutRights(m_world));
                return EXIT_SUCCESS;
            });
            if (end.how != RunEnd::How::Finished) {
                Tally::shared().add(row + 2, {.failed = 1});
            }
        }
        if (last && m_world.mounted() && wanted("races")) {
            Tally::shared().add(row + 3, runRaces(m_world, (m_options.briefly ? 10 : 200) / m_options.thin));
        }
        if (wanted("power-cuts") || onlyItsCuts()) {
            const int usual = (m_options.briefly ? briefCuts : usualCuts) * m_options.thin;
            Tally::shared().add(row + 4,
                                runPowerCuts(m_world, {.scenario = onlyItsCuts() ? m_options.scenario : QByteArray(),
                                                       .every = m_options.cuts > 0 ? m_options.cuts : usual,
                                                       .jobs = m_options.jobs,
                                                       .worker = m_number}));
        }
    }

    const Options& m_options;
    int m_number;
    FaultWorld m_world;
};

/// What the programs under test complain about is no part of the answer.
void silenceComplaints()
{
    if (const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC); nowhere >= 0) {
        ::dup2(nowhere, STDERR_FILENO);
        ::close(nowhere);
    }
}

/// Whether every worker came to its end.
bool runWorkers(const Options& options)
{
    std::vector<pid_t> workers;
    std::fflush(nullptr);
    for (int number = 0; number < options.jobs; ++number) {
        const pid_t process = ::fork();
        if (process == 0) {
            silenceComplaints();
            Worker(options, number).run();
            std::fflush(nullptr);
            ::_exit(EXIT_SUCCESS);
        }
        workers.push_back(process);
    }
    bool whole = true;
    for (const pid_t worker : workers) {
        int status = 0;
        whole = ::waitpid(worker, &status, 0) == worker && WIFEXITED(status) && WEXITSTATUS(status) == 0 && whole;
    }
    return whole;
}

void show(const char* name, const Figures& figures)
{
    std::printf("%-28s %6d %7d %7d %7d %8d %8d %8d %7d\n", name, figures.calls, figures.kills, figures.faults,
                figures.ends, figures.doubled, figures.doubledLater, figures.unrecorded, figures.failed);
}

/// The table; the answer is how many points broke the promise.
int showFigures(const std::vector<QByteArray>& names)
{
    Figures sum;
    std::printf("\n%-28s %6s %7s %7s %7s %8s %8s %8s %7s\n", "", "", "", "", "", "", "after the", "next start", "");
    std::printf("%-28s %6s %7s %7s %7s %8s %8s %8s %7s\n", "", "calls", "kills", "faults", "ends", "doubled", "doubled",
                "unlisted", "broken");
    for (std::size_t row = 0; row < names.size(); ++row) {
        const Figures& figures = Tally::shared().row(row);
        if (figures.kills + figures.faults + figures.ends + figures.failed == 0) {
            continue;
        }
        show(names.at(row).constData(), figures);
        sum += figures;
    }
    show("together", sum);
    return sum.failed;
}

int runOnly(const Options& options)
{
    const auto found = std::ranges::find(scenarios(), options.scenario, &Scenario::name);
    if (found == scenarios().end()) {
        std::fprintf(stderr, "no such scenario: %s\n", options.scenario.constData());
        return EXIT_FAILURE;
    }
    const FaultWorld world(options.folder);
    silenceComplaints();
    const Injection injection = Injection::ofText(options.only).value_or(Injection{});
    const Figures figures = Campaign(world, *found, options.lanes()).runOnly(injection, options.calls);
    std::printf("%s\n", figures.failed == 0 ? "The promise holds." : "The promise is broken.");
    return figures.failed == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

int runAll(const Options& options, bool mounts)
{
    const std::vector<QByteArray> names = rowNames();
    if (!options.scenario.isEmpty() && std::ranges::find(names, options.scenario) == names.end()) {
        std::fprintf(stderr, "no such scenario: %s\n", options.scenario.constData());
        return EXIT_FAILURE;
    }
    if (!mounts) {
        std::printf("Left out, for want of the right to mount: everything with a second volume, full-disk, "
                    "other-mounts, races\n");
    }
    if (::geteuid() != 0) {
        std::printf("Left out, for want of root: no-rights\n");
    }
    std::ignore = Tally::shared();
    const bool whole = runWorkers(options);
    const int broken = showFigures(names);
    if (!whole) {
        std::printf("A worker did not come to its end.\n");
    }
    return whole && broken == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace

int main(int argc, char* argv[])
{
    const auto options = Options::of(argc, argv);
    if (!options) {
        std::fprintf(stderr, "usage: tools/faults [--short] [--thin N | --every N] [--cuts N] [--threads] [--jobs N] "
                             "[--in FOLDER] [--list]\n"
                             "                    [--scenario NAME [--only INJECTION] [--calls]]\n");
        return EXIT_FAILURE;
    }
    if (options->list) {
        for (const QByteArray& name : rowNames()) {
            std::printf("%s\n", name.constData());
        }
        return EXIT_SUCCESS;
    }
    const bool mounts = enterPrivateMounts();
    return options->only.isEmpty() && !options->calls ? runAll(*options, mounts) : runOnly(*options);
}
