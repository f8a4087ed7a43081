// Writes packages, and what the program's reader makes of each, for a reader written by itself to
// compare: the small damages of the sample, then random packages, as many as the argument says.

#include "fuzz/Forge.h"
#include "fuzz/PackageRules.h"
#include "tests/damage/RandomPackages.h"
#include "tests/damage/SamplePackage.h"
#include "tests/tlv/Wire.h"
#include "tlv/PackageRecord.h"

#include <QByteArray>

#include <cstdio>
#include <cstdlib>

#ifdef Q_OS_WIN
#include <fcntl.h>
#include <io.h>
#endif

namespace {

constexpr quint32 kSeed = 20190417;

/// The content in lines of a name and values: numbers in decimal, bytes in hexadecimal.
class Account final
{
public:
    explicit Account(const tlv::PackageRecord &record)
    {
        for (const MaskValidationRule &rule : record.maskRules) {
            name("mask").number(rule.parameter).number(rule.index).bytes(rule.mask);
        }
        for (const TokenValidationRule &rule : record.tokenRules) {
            name("token").bytes(rule.token).bytes(rule.value);
        }
        const tlv::SoftwareOptions &options = record.softwareOptions;
        name("optionA").number(options.optionAEnabled ? 1 : 0);
        version(options.optionAMinimum).version(options.optionAMaximum);
        name("optionB").number(options.optionBEnabled ? 1 : 0);
        version(options.optionBMinimum).version(options.optionBMaximum);
        name("hardware").number(record.layoutVersion).number(record.minimumHardwareVersion);
        number(record.maximumHardwareVersion).number(record.hardwareType);
        name("firmware").number(record.firmwareAddress).bytes(record.firmwareImage);
        name("file").number(record.firmwareSize);
        bytes(record.firmwareFileName).bytes(record.firmwareFilePath);
    }

    [[nodiscard]] QByteArray text() const { return m_text; }

private:
    Account &name(const char *word)
    {
        m_text += m_text.isEmpty() ? "" : "\n";
        m_text += word;
        return *this;
    }
    Account &number(quint32 value)
    {
        m_text += ' ' + QByteArray::number(value);
        return *this;
    }
    Account &version(tlv::SoftwareVersion value) { return number(value.major).number(value.minor); }
    Account &bytes(const QByteArray &value)
    {
        m_text += ' ' + value.toHex();
        return *this;
    }

    QByteArray m_text;
};

/// Two byte arrays, each behind its 32-bit count: the package, and the account of its content,
/// which is empty for one that is refused.
void writeCase(const QByteArray &package)
{
    const auto record = fuzz::readPackage(package);
    const QByteArray account = record.has_value() ? Account(*record).text() : QByteArray();
    const QByteArray bytes = wire::u32(static_cast<quint32>(package.size())) + package
                             + wire::u32(static_cast<quint32>(account.size())) + account;
    if (std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stdout)
        != static_cast<std::size_t>(bytes.size())) {
        std::exit(EXIT_FAILURE);
    }
}

void writeFileCases()
{
    const QByteArray package = sample::package();
    for (int length = 0; length <= package.size(); ++length) {
        writeCase(package.left(length));
    }
    for (const sample::Change &change : sample::byteChanges(package)) {
        writeCase(change.bytes);
        // Once more with the checksum of what is now between the counts.
        writeCase(fuzz::envelope(change.bytes.mid(8).chopped(2)));
    }
}

void writeBodyCases()
{
    const QByteArray body = sample::body();
    for (int length = 0; length <= body.size(); ++length) {
        writeCase(fuzz::quickSeal(body.left(length)));
        writeCase(fuzz::quickSeal(wire::entry(0xF0000001, body.left(length).mid(8))));
    }
    for (const sample::Change &change : sample::byteChanges(body)) {
        writeCase(fuzz::quickSeal(change.bytes));
    }
    const std::vector<sample::LengthField> fields = sample::lengthFields();
    for (const sample::LengthField &left : fields) {
        for (const sample::LengthField &right : fields) {
            writeCase(fuzz::quickSeal(sample::exchanged(body, left.offset, right.offset)));
        }
    }
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: damage_cases COUNT\n");
        return EXIT_FAILURE;
    }
#ifdef Q_OS_WIN
    _setmode(_fileno(stdout), _O_BINARY);
#endif
    writeFileCases();
    writeBodyCases();
    RandomPackages packages(kSeed);
    for (long count = std::atol(argv[1]); count > 0; --count) {
        writeCase(packages.next());
    }
    return std::fflush(stdout) == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
