#include "benchmarks/support/Samples.h"
#include "benchmarks/support/Table.h"

#include <QCoreApplication>
#include <QProcess>

#include <ctime>

/// From the start of the process to the first paint: the program itself, its main() and all,
/// against a bare window.

namespace {

using table::MeasureRound;

struct Start
{
    double cpuTime = 0;
    double time = 0;
    double residentBytes = 0;
};

Start startOf(const QString &program)
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    const double started =
        static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
    qputenv("ZEL_STARTED", QByteArray::number(started, 'f', 9));

    QProcess process;
    process.start(program, QStringList());
    process.waitForFinished(-1);
    const QByteArrayList figures = process.readAllStandardOutput().simplified().split(' ');
    if (figures.size() != 3) {
        qFatal("%s did not paint.", qPrintable(program));
    }
    return {figures.at(0).toDouble(), figures.at(1).toDouble(), figures.at(2).toDouble()};
}

MeasureRound measureOf(double Start::*figure)
{
    return [figure] {
        return table::Round{startOf(QStringLiteral(ZEL_STARTED_PROGRAM)).*figure,
                            startOf(QStringLiteral(ZEL_BARE_WINDOW)).*figure};
    };
}

void addRow(const char *what, const table::Unit &unit, double goal, double Start::*figure)
{
    constexpr int kRounds = 21;
    table::addRow(
        what, unit, table::atMost(goal), [figure] { return measureOf(figure); }, kRounds);
}

} // namespace

int main(int argc, char *argv[])
{
    samples::scratchFolder();
    const QCoreApplication application(argc, argv);
    addRow("start to first paint, CPU time", table::kMilliseconds, 1.25, &Start::cpuTime);
    addRow("start to first paint, elapsed time", table::kMilliseconds, 1.25, &Start::time);
    addRow("resident memory at the first paint", table::kMebibytes, 1.2, &Start::residentBytes);
    return table::run(argc, argv);
}
