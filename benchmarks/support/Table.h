#pragma once

#include <functional>
#include <string>

/// The table of measurements: each row sets what the program does against the least that could do
/// the same work.
namespace table {

/// What one round of a row measured: seconds, bytes or whatever the row counts.
struct Round
{
    double ours = 0;
    double floor = 0;
};

/// The medians over all rounds of a row. The ratio is the median of the rounds' ratios: what slows
/// the machine down for a while slows down both halves of a round.
struct Medians
{
    double ours = 0;
    double floor = 0;
    double ratio = 0;
};

/// A unit: its name and how many of what a round measures make one.
struct Unit
{
    const char *name;
    double size;
};

constexpr Unit kMilliseconds = {"ms", 1e-3};
constexpr Unit kMebibytes = {"MiB", 1024.0 * 1024.0};
constexpr Unit kCount = {"", 1};

/// What a row has to reach.
struct Goal
{
    std::string text;
    std::function<bool(const Medians &)> isMet; ///< Empty for a row that is only given.
};

/// A ratio of at most @p ratio.
[[nodiscard]] Goal atMost(double ratio);
/// At most @p excess more than the floor; @p text says how that reads.
[[nodiscard]] Goal atMostAbove(double excess, std::string text);
/// At most @p limit, unless the floor takes as long; @p text says how that reads.
[[nodiscard]] Goal atMostUnlessTheFloor(double limit, std::string text);
/// No goal: the row is there for the others to be understood.
[[nodiscard]] Goal noGoal();

/// The fewest rounds that a row is the median of.
constexpr int kFewestRounds = 15;

using MeasureRound = std::function<Round()>;

/// Adds a row. @p prepare is called when its turn comes and returns what measures a round; one
/// round goes before those that count.
void addRow(const std::string &what, const Unit &unit, Goal goal,
            std::function<MeasureRound()> prepare, int rounds = kFewestRounds);

using Work = std::function<void()>;

/// The CPU time that @p work takes this process, in seconds.
[[nodiscard]] double cpuTime(const Work &work);

/// A round that does both works @p times over, each in its turn and in changing order, and measures
/// the CPU time of doing each once.
[[nodiscard]] MeasureRound inTurn(Work ours, Work floor, int times = 1);

/// Measures all rows, or those that the command line selects (--benchmark_filter), and prints them.
int run(int argc, char *argv[]);

} // namespace table
