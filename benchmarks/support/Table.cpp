#include "benchmarks/support/Table.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <ctime>
#include <ostream>
#include <utility>
#include <vector>

namespace table {

namespace {

struct Row
{
    std::string what;
    Unit unit;
    Goal goal;
    std::function<MeasureRound()> prepare;
    int rounds;
};

double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

Medians mediansOf(const std::vector<Round> &rounds)
{
    std::vector<double> ours;
    std::vector<double> floor;
    std::vector<double> ratio;
    for (const Round &round : rounds) {
        ours.push_back(round.ours);
        floor.push_back(round.floor);
        ratio.push_back(round.ours / round.floor);
    }
    return {median(ours), median(floor), median(ratio)};
}

std::string amount(double value, const Unit &unit)
{
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%.4g%s%s", value / unit.size,
                  *unit.name == '\0' ? "" : " ", unit.name);
    return text.data();
}

std::string ratioText(double ratio)
{
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%.3f", ratio);
    return text.data();
}

std::string outcome(const Goal &goal, const Medians &medians)
{
    if (!goal.isMet) {
        return "given";
    }
    return goal.isMet(medians) ? "met" : "above";
}

std::string rowText(const Row &row, const Medians &medians)
{
    return row.what + " | " + amount(medians.ours, row.unit) + " | "
           + amount(medians.floor, row.unit) + " | " + ratioText(medians.ratio) + " | "
           + row.goal.text + " | " + outcome(row.goal, medians);
}

void measure(benchmark::State &state, const Row &row)
{
    const MeasureRound measureRound = row.prepare();
    measureRound();

    std::vector<Round> rounds;
    for ([[maybe_unused]] const auto iteration : state) {
        rounds.push_back(measureRound());
        state.SetIterationTime(rounds.back().ours);
    }
    const Medians medians = mediansOf(rounds);
    state.counters["ours"] = medians.ours;
    state.counters["floor"] = medians.floor;
    state.counters["ratio"] = medians.ratio;
    state.SetLabel(rowText(row, medians));
}

/// Prints the rows and nothing else.
class RowReporter final : public benchmark::BenchmarkReporter
{
public:
    bool ReportContext(const Context & /*context*/) override { return true; }

    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &run : runs) {
            GetOutputStream() << (run.error_occurred ? run.error_message : run.report_label)
                              << std::endl;
        }
    }
};

} // namespace

Goal atMost(double ratio)
{
    return {ratioText(ratio), [ratio](const Medians &medians) { return medians.ratio <= ratio; }};
}

Goal atMostAbove(double excess, std::string text)
{
    return {std::move(text),
            [excess](const Medians &medians) { return medians.ours - medians.floor <= excess; }};
}

Goal atMostUnlessTheFloor(double limit, std::string text)
{
    return {std::move(text), [limit](const Medians &medians) {
                return medians.ours <= std::max(limit, medians.floor);
            }};
}

Goal noGoal()
{
    return {"-", nullptr};
}

void addRow(const std::string &what, const Unit &unit, Goal goal,
            std::function<MeasureRound()> prepare, int rounds)
{
    const Row row = {what, unit, std::move(goal), std::move(prepare),
                     std::max(rounds, kFewestRounds)};
    benchmark::RegisterBenchmark(what.c_str(), measure, row)
        ->Iterations(row.rounds)
        ->UseManualTime();
}

double cpuTime(const Work &work)
{
    const auto now = [] {
        timespec time{};
        clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
        return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
    };
    const double start = now();
    work();
    return now() - start;
}

MeasureRound inTurn(Work ours, Work floor, int times)
{
    const auto repeated = [times](Work work) -> Work {
        return [times, work = std::move(work)] {
            for (int time = 0; time < times; ++time) {
                work();
            }
        };
    };
    return [ours = repeated(std::move(ours)), floor = repeated(std::move(floor)), times,
            oursFirst = false]() mutable {
        Round round;
        oursFirst = !oursFirst;
        if (oursFirst) {
            round.ours = cpuTime(ours) / times;
        }
        round.floor = cpuTime(floor) / times;
        if (!oursFirst) {
            round.ours = cpuTime(ours) / times;
        }
        return round;
    };
}

int run(int argc, char *argv[])
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return EXIT_FAILURE;
    }
    RowReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return EXIT_SUCCESS;
}

} // namespace table
