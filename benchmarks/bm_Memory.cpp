#include "benchmarks/support/Samples.h"
#include "benchmarks/support/Table.h"
#include "tlv/ZelFile.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QProcess>

#include <string>

/// The peak of resident memory of a process that saves or opens one package, less that of the same
/// program doing nothing, against the image and its compressed block.

namespace {

using samples::ImageKind;
using table::MeasureRound;

constexpr int kImageSize = 16 * samples::kMebibyte;

/// The largest peak that is in order: body, block and image.
constexpr double kImages = 2.1;
constexpr double kBlocks = 1.1;

double peakOf(const QStringList &arguments)
{
    QProcess process;
    process.start(QStringLiteral(ZEL_MEMORY_PROBE), arguments);
    process.waitForFinished(-1);
    bool isNumber = false;
    const double bytes = process.readAllStandardOutput().simplified().toDouble(&isNumber);
    if (!isNumber) {
        qFatal("The memory probe failed.");
    }
    return bytes;
}

struct Files
{
    QString imagePath;
    QString packagePath;
};

Files filesOf(ImageKind kind)
{
    Files files;
    files.imagePath =
        samples::writeFile(QStringLiteral("image.bin"), samples::image(kind, kImageSize));
    files.packagePath =
        samples::savePackage(samples::packageOf(files.imagePath), QStringLiteral("package.zel"));
    return files;
}

double blockSize(ImageKind kind)
{
    return static_cast<double>(QFileInfo(filesOf(kind).packagePath).size());
}

void addRow(const std::string &what, ImageKind kind, const QString &operation,
            QString Files::*argument)
{
    const double block = blockSize(kind);
    const double floor = kImageSize + block;
    const double goal = (kImages * kImageSize + kBlocks * block) / floor;
    table::addRow(what, table::kMebibytes, table::atMost(goal), [=]() -> MeasureRound {
        const QString path = filesOf(kind).*argument;
        return [floor, operation, path] {
            return table::Round{peakOf({operation, path}) - peakOf({QStringLiteral("idle")}),
                                floor};
        };
    });
}

} // namespace

int main(int argc, char *argv[])
{
    samples::scratchFolder();
    const QCoreApplication application(argc, argv);
    struct Kind
    {
        const char *name;
        ImageKind kind;
    };
    for (const Kind &kind : {Kind{"16 MiB of firmware", ImageKind::Firmware},
                             Kind{"16 MiB random", ImageKind::Random}}) {
        addRow(std::string("peak memory, save ") + kind.name, kind.kind, QStringLiteral("save"),
               &Files::imagePath);
        addRow(std::string("peak memory, open ") + kind.name, kind.kind, QStringLiteral("open"),
               &Files::packagePath);
    }
    return table::run(argc, argv);
}
