#include "benchmarks/support/Samples.h"
#include "benchmarks/support/Table.h"
#include "common/FileIo.h"
#include "tlv/ZelFile.h"

#include <QCoreApplication>
#include <QFile>
#include <QtEndian>

#include <memory>
#include <string>
#include <vector>

/// Saving and opening packages, against the calls that nobody can do without: compressing,
/// checksums, and writing what comes of it.

namespace {

using samples::ImageKind;
using table::MeasureRound;

constexpr int kCompressionLevel = 9;
constexpr int kBlockOffset = 8; // Behind the magic and the count.
constexpr int kChecksumLength = 2;

struct Subject
{
    std::string name;
    ImageKind kind;
    int size;
    int times; ///< Repetitions in a round, so that a short work can be measured.
    int rounds;
};

std::vector<Subject> subjects()
{
    using samples::kMebibyte;
    return {
        {"1 MiB of firmware", ImageKind::Firmware, kMebibyte, 2, 31},
        {"1 MiB random", ImageKind::Random, kMebibyte, 4, 31},
        {"16 MiB of firmware", ImageKind::Firmware, 16 * kMebibyte, 1, table::kFewestRounds},
        {"16 MiB random", ImageKind::Random, 16 * kMebibyte, 1, table::kFewestRounds},
        {"64 MiB of firmware", ImageKind::Firmware, 64 * kMebibyte, 1, table::kFewestRounds},
        {"64 MiB random", ImageKind::Random, 64 * kMebibyte, 1, table::kFewestRounds},
    };
}

QByteArray blockIn(const QString &packagePath)
{
    QFile file(packagePath);
    if (!file.open(QIODevice::ReadOnly)) {
        qFatal("%s cannot be read.", qPrintable(packagePath));
    }
    const QByteArray package = file.readAll();
    return package.mid(kBlockOffset, package.size() - kBlockOffset - kChecksumLength);
}

void write(const QString &path, const QByteArray &bytes)
{
    if (!writeBytesToFile(path, bytes)) {
        qFatal("%s cannot be written.", qPrintable(path));
    }
}

quint16 checksum(const QByteArray &block)
{
    return qChecksum(block.constData(), static_cast<uint>(block.size()));
}

/// The window's whole save, from reading the firmware file on.
MeasureRound saving(const Subject &subject)
{
    const QString imagePath =
        samples::writeFile(QStringLiteral("image.bin"), samples::image(subject.kind, subject.size));
    const QString packagePath =
        samples::savePackage(samples::packageOf(imagePath), QStringLiteral("saved.zel"));
    const QByteArray body = qUncompress(blockIn(packagePath));
    const QString floorPath = samples::scratchFolder() + QStringLiteral("/floor.zel");

    const auto ours = [imagePath] {
        samples::savePackage(samples::packageOf(imagePath), QStringLiteral("saved.zel"));
    };
    const auto floor = [body, floorPath] {
        QByteArray package("\0ZEL\0\0\0\0", kBlockOffset);
        const QByteArray block = qCompress(body, kCompressionLevel);
        const quint16 sum = qToBigEndian(checksum(block));
        QFile file(floorPath);
        if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
            qFatal("%s cannot be written.", qPrintable(floorPath));
        }
        file.write(package);
        file.write(block);
        file.write(reinterpret_cast<const char *>(&sum), kChecksumLength);
    };
    return table::inTurn(ours, floor, subject.times);
}

/// The whole open up to the record, with the image written to the temporary folder.
MeasureRound opening(const Subject &subject)
{
    const QByteArray image = samples::image(subject.kind, subject.size);
    const QString imagePath = samples::writeFile(QStringLiteral("image.bin"), image);
    const QString packagePath =
        samples::savePackage(samples::packageOf(imagePath), QStringLiteral("opened.zel"));
    const QByteArray block = blockIn(packagePath);
    const QString floorPath = samples::scratchFolder() + QStringLiteral("/floor.bin");

    const auto ours = [packagePath] {
        const tlv::ZelFile package = samples::loadPackage(packagePath);
        QFile::remove(QString::fromUtf8(package.extractedFirmwarePath()));
    };
    const auto floor = [image, block, floorPath] {
        if (checksum(block) == 0 || qUncompress(block).isEmpty()) {
            qFatal("The block is damaged.");
        }
        write(floorPath, image);
        QFile::remove(floorPath);
    };
    return table::inTurn(ours, floor, subject.times);
}

} // namespace

int main(int argc, char *argv[])
{
    samples::scratchFolder();
    const QCoreApplication application(argc, argv);
    for (const Subject &subject : subjects()) {
        table::addRow(
            "save " + subject.name, table::kMilliseconds, table::atMost(1.03),
            [subject] { return saving(subject); }, subject.rounds);
    }
    for (const Subject &subject : subjects()) {
        table::addRow(
            "open " + subject.name, table::kMilliseconds, table::atMost(1.05),
            [subject] { return opening(subject); }, subject.rounds);
    }
    return table::run(argc, argv);
}
