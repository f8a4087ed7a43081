#include "benchmarks/support/Samples.h"
#include "tlv/ZelFile.h"

#include <QCoreApplication>
#include <QFile>

#include <cstdio>

/// Prints the most memory, in bytes, that was ever resident in a process that saves the package of
/// an image, opens a package, or does neither.
///
///     memory_probe save IMAGE.bin | open PACKAGE.zel | idle

namespace {

double mostResidentBytes()
{
    QFile status(QStringLiteral("/proc/self/status"));
    status.open(QIODevice::ReadOnly);
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("VmHWM:")) {
            constexpr double kKibibyte = 1024;
            return kKibibyte * line.simplified().split(' ').at(1).toDouble();
        }
    }
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    samples::scratchFolder();
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QString path = arguments.value(2);
    if (arguments.value(1) == QLatin1String("save")) {
        samples::savePackage(samples::packageOf(path), QStringLiteral("saved.zel"));
    } else if (arguments.value(1) == QLatin1String("open")) {
        const tlv::ZelFile package = samples::loadPackage(path);
    }
    std::printf("%.0f\n", mostResidentBytes());
    return EXIT_SUCCESS;
}
