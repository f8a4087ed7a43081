#include "tlv/ZelFile.h"

#include <QCoreApplication>
#include <QString>
#include <QStringList>

#include <cstdio>

#include <sys/resource.h>

namespace {

/// Lets this process have @p bytes of memory, all told.
void limitMemory(rlim_t bytes)
{
    const rlimit limit{bytes, bytes};
    setrlimit(RLIMIT_AS, &limit);
}

bool load(const QString &path, QString &message)
{
    tlv::ZelFile package;
    return package.load(path, message);
}

bool save(const QString &firmware, QString path, QString &message)
{
    tlv::ZelFile package;
    package.setMaskRules({});
    package.setTokenRules({});
    package.setSoftwareOptions({});
    package.setHardware(0, 0, 1, 1);
    package.setFirmwareFile(firmware, 0);
    return package.save(path, message);
}

} // namespace

/// Opens or saves a package with little memory, and prints what comes of it:
///
///   PackageTool MEBIBYTES open PACKAGE
///   PackageTool MEBIBYTES save FIRMWARE PACKAGE
///
/// With 0 mebibytes, memory is as large as it is.
int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const rlim_t mebibytes = arguments.value(1).toUInt();
    if (mebibytes > 0) {
        limitMemory(mebibytes << 20U);
    }
    QString message = QStringLiteral("done");
    const bool isDone = arguments.value(2) == QLatin1String("open")
                            ? load(arguments.value(3), message)
                            : save(arguments.value(3), arguments.value(4), message);
    std::puts(qPrintable(message));
    return isDone ? 0 : 1;
}
