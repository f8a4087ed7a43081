#include "benchmarks/support/Samples.h"

#include "tlv/ZelFile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <random>
#include <utility>

namespace samples {

namespace {

QByteArray readFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        qFatal("%s cannot be read.", qPrintable(path));
    }
    return file.readAll();
}

QByteArray randomBytes(int size)
{
    std::mt19937 generator; // Not seeded: the same bytes each time.
    QByteArray bytes(size, Qt::Uninitialized);
    std::generate(bytes.begin(), bytes.end(),
                  [&generator] { return static_cast<char>(generator()); });
    return bytes;
}

} // namespace

QByteArray image(ImageKind kind, int size)
{
    if (kind == ImageKind::Random) {
        return randomBytes(size);
    }
    const QByteArray firmware = readFile(QStringLiteral(ZEL_OPENSBI_IMAGE));
    return firmware.repeated(size / firmware.size() + 1).left(size);
}

QList<MaskValidationRule> maskRules(int count)
{
    std::mt19937 generator;
    QList<MaskValidationRule> rules;
    rules.reserve(count);
    for (int number = 0; number < count; ++number) {
        rules.append({static_cast<quint16>(generator()), static_cast<quint16>(number),
                      QByteArray("A2**-") + QByteArray::number(static_cast<uint>(generator()))});
    }
    return rules;
}

QList<TokenValidationRule> tokenRules(int count)
{
    std::mt19937 generator;
    QList<TokenValidationRule> rules;
    rules.reserve(count);
    for (int number = 0; number < count; ++number) {
        rules.append({QByteArray("TOKEN") + QByteArray::number(static_cast<uint>(generator())),
                      QByteArray::number(number)});
    }
    return rules;
}

QString scratchFolder()
{
    static const QTemporaryDir folder;
    static const bool isAnnounced = [] {
        if (!folder.isValid()) {
            qFatal("No temporary folder could be made.");
        }
        const QByteArray path = folder.path().toLocal8Bit();
        for (const char *name : {"TEMP", "TMP", "TMPDIR", "XDG_CONFIG_HOME"}) {
            qputenv(name, path);
        }
        return true;
    }();
    Q_UNUSED(isAnnounced)
    return folder.path();
}

QString writeFile(const QString &name, const QByteArray &bytes)
{
    const QString path = scratchFolder() + QLatin1Char('/') + name;
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        qFatal("%s cannot be written.", qPrintable(path));
    }
    return path;
}

tlv::ZelFile packageOf(const QString &imagePath, const QList<MaskValidationRule> &rules)
{
    tlv::ZelFile package;
    package.setMaskRules(rules);
    package.setTokenRules(tokenRules(3));
    package.setSoftwareOptions({true, {1, 4}, {5, 99}, true, {0, 0}, {99, 99}});
    package.setHardware(2, 7, 2, 1);
    package.setFirmwareFile(imagePath, 0x80000000U);
    return package;
}

QString savePackage(tlv::ZelFile package, const QString &name)
{
    QString path = scratchFolder() + QLatin1Char('/') + name;
    QString message;
    if (!package.save(path, message)) {
        qFatal("%s", qPrintable(message));
    }
    return path;
}

tlv::ZelFile loadPackage(const QString &path)
{
    tlv::ZelFile package;
    QString message;
    if (!package.load(path, message)) {
        qFatal("%s", qPrintable(message));
    }
    return package;
}

} // namespace samples
