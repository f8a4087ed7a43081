#include "benchmarks/support/ProcessStatus.h"
#include "benchmarks/support/Samples.h"
#include "tlv/ZelFile.h"

#include <QCoreApplication>

#include <cstdio>

/// Prints the most memory, in bytes, that was ever resident in a process that saves the package of
/// an image, opens a package, or does neither.
///
///     memory_probe save IMAGE.bin | open PACKAGE.zel | idle

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
    std::printf("%.0f\n", bytesInProcessStatus("VmHWM"));
    return EXIT_SUCCESS;
}
