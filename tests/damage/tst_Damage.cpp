#include "fuzz/Forge.h"
#include "tests/damage/SamplePackage.h"
#include "tests/support/ZelTest.h"
#include "tests/tlv/Wire.h"
#include "tlv/PackageBody_p.h"
#include "tlv/PackageRecord.h"
#include "tlv/ZelFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <algorithm>

namespace {

/// Offsets in a package file.
constexpr int kCountOffset = 4;
constexpr int kClaimOffset = 8;
constexpr int kStreamOffset = 12;
constexpr int kChecksumLength = 2;
/// The most that a deflated byte can become.
constexpr quint64 kLargestExpansion = 1032;

enum class Verdict { Refused, Unsafe, Accepted };

/// What came of opening a package.
struct Opening
{
    Verdict verdict;
    QByteArray body; ///< What the writer makes of the content.
};

/// The content as the writer would put it, all sections in their usual order.
QByteArray canonicalBody(const tlv::ZelFile &file)
{
    tlv::PackageRecord record;
    record.sections = {0xF0000002, 0xF0000011, 0xF0000014};
    record.maskRules = file.maskRules();
    record.tokenRules = file.tokenRules();
    record.softwareOptions = file.softwareOptions();
    record.layoutVersion = file.layoutVersion();
    record.minimumHardwareVersion = file.minimumHardwareVersion();
    record.maximumHardwareVersion = file.maximumHardwareVersion();
    record.hardwareType = file.hardwareType();
    record.firmwareAddress = file.firmwareAddress();
    record.firmwareImage = file.firmwareImage();
    record.firmwareSize = file.firmwareSize();
    record.firmwareFileName = file.firmwareFileName();
    record.firmwareFilePath = file.firmwareFilePath();
    return tlv::serializeBody(record);
}

/// Opens @p package from the disk, as a user does.
Opening open(const QByteArray &package)
{
    const QString path = TestSandbox::path() + QStringLiteral("/damaged.zel");
    QFile stored(path);
    if (!stored.open(QIODevice::WriteOnly) || stored.write(package) != package.size()) {
        qFatal("the sandbox takes no file");
    }
    stored.close();

    tlv::ZelFile file;
    QString message;
    if (file.load(path, message)) {
        const QString image = QString::fromUtf8(file.extractedFirmwarePath());
        QFile extracted(image);
        const bool isRight =
            extracted.open(QIODevice::ReadOnly) && extracted.readAll() == file.firmwareImage();
        extracted.remove();
        return isRight ? Opening{Verdict::Accepted, canonicalBody(file)} : Opening{};
    }
    if (message == QLatin1String("Failed to save firmware to a temporary folder.")) {
        return {Verdict::Unsafe, canonicalBody(file)};
    }
    const bool isWhole =
        message
            == QLatin1String("Cannot open the provided file, because it is not a valid ZEL file.")
        && canonicalBody(file) == canonicalBody({});
    return isWhole ? Opening{Verdict::Refused, {}} : Opening{Verdict::Unsafe, {}};
}

/// Opens a package around @p body, whose envelope is right.
Opening openBody(const QByteArray &body)
{
    return open(fuzz::quickSeal(body));
}

/// @p package with the checksum that its block calls for.
QByteArray withChecksum(const QByteArray &package)
{
    return wire::envelope(
        package.mid(kClaimOffset, package.size() - kClaimOffset - kChecksumLength));
}

/// The part that the byte at @p offset of the sample's body belongs to.
sample::Part partAt(int offset)
{
    int end = 0;
    const auto piece = std::find_if(sample::pieces().begin(), sample::pieces().end(),
                                    [&end, offset](const sample::Piece &p) {
                                        end += p.bytes.size();
                                        return offset < end;
                                    });
    return piece->part;
}

/// What the writer makes of the sample's body with one byte changed.
QByteArray expectedBody(const sample::Change &change)
{
    QByteArray body = change.bytes;
    switch (partAt(change.offset)) {
    case sample::Part::PassedOver:
        return sample::body();
    case sample::Part::Bool:
        body[change.offset] = body.at(change.offset) == '\0' ? '\0' : '\1';
        return body;
    default:
        return body;
    }
}

} // namespace

/// Every small damage to one package: nothing is accepted that the format calls wrong, and nothing
/// that it allows is refused or read as something else.
class tst_Damage final : public ZelTest
{
    Q_OBJECT

private slots:
    void theSampleIsWhatTheWriterWrites()
    {
        const Opening opening = open(sample::package());
        QCOMPARE(opening.verdict, Verdict::Accepted);
        QCOMPARE(opening.body.toHex(), sample::body().toHex());
    }

    void everyTruncatedFileIsRefused()
    {
        const QByteArray package = sample::package();
        for (int length = 0; length < package.size(); ++length) {
            QVERIFY2(open(package.left(length)).verdict == Verdict::Refused,
                     qPrintable(at(length)));
        }
    }

    void everyChangedByteOfTheFileIsRefused()
    {
        for (const sample::Change &change : sample::byteChanges(sample::package())) {
            // Deliberately, the first byte is not looked at.
            const Verdict expected = change.offset == 0 ? Verdict::Accepted : Verdict::Refused;
            QVERIFY2(open(change.bytes).verdict == expected, qPrintable(at(change.offset)));
        }
    }

    void exchangedCountsOfTheFileAreRefused()
    {
        const QByteArray package = sample::package();
        const QByteArray changed = sample::exchanged(package, kCountOffset, kClaimOffset);
        QVERIFY(changed != package);
        QCOMPARE(open(changed).verdict, Verdict::Refused);
        QCOMPARE(open(withChecksum(changed)).verdict, Verdict::Accepted);
    }

    /// A claim that is wrong is let pass unless no block of this size could hold so much.
    void everyChangedClaimIsJudgedByTheBytesBehindIt()
    {
        const QByteArray package = sample::package();
        const auto deflated =
            static_cast<quint64>(package.size() - kStreamOffset - kChecksumLength);
        for (const sample::Change &change : sample::byteChanges(package)) {
            if (change.offset < kClaimOffset || change.offset >= kStreamOffset) {
                continue;
            }
            const auto claim = qFromBigEndian<quint32>(change.bytes.constData() + kClaimOffset);
            const Opening opening = open(withChecksum(change.bytes));
            const bool isPossible = claim <= deflated * kLargestExpansion;
            QVERIFY2(opening.verdict == (isPossible ? Verdict::Accepted : Verdict::Refused),
                     qPrintable(at(change.offset)));
            QVERIFY2(!isPossible || opening.body == sample::body(), qPrintable(at(change.offset)));
        }
    }

    /// A stream has a checksum of its own.
    void everyChangedByteOfTheStreamIsRefusedOrMeansTheSame()
    {
        int refused = 0;
        const QByteArray package = sample::package();
        for (const sample::Change &change : sample::byteChanges(package)) {
            if (change.offset < kStreamOffset
                || change.offset >= package.size() - kChecksumLength) {
                continue;
            }
            const Opening opening = open(withChecksum(change.bytes));
            refused += opening.verdict == Verdict::Refused ? 1 : 0;
            QVERIFY2(opening.verdict == Verdict::Refused || opening.body == sample::body(),
                     qPrintable(at(change.offset)));
        }
        QVERIFY(refused > 0);
    }

    void everyTruncatedStreamIsRefused()
    {
        const QByteArray block = qCompress(sample::body(), 9);
        for (int length = 0; length < block.size(); ++length) {
            QVERIFY2(open(wire::envelope(block.left(length))).verdict == Verdict::Refused,
                     qPrintable(at(length)));
        }
    }

    void everyTruncatedBodyIsRefused()
    {
        const QByteArray body = sample::body();
        for (int length = 0; length < body.size(); ++length) {
            QVERIFY2(openBody(body.left(length)).verdict == Verdict::Refused,
                     qPrintable(at(length)));
        }
    }

    /// With a root that is as long as the body, only what ends with a whole section is a package.
    void everyTruncatedBodyWithItsLengthIsRefusedInsideOfASection()
    {
        const QByteArray body = sample::body();
        const std::vector<int> ends = sample::sectionEnds();
        for (int length = 8; length <= body.size(); ++length) {
            const QByteArray cut = wire::entry(0xF0000001, body.mid(8, length - 8));
            const bool isWhole = std::find(ends.begin(), ends.end(), length) != ends.end();
            QVERIFY2(openBody(cut).verdict == (isWhole ? Verdict::Accepted : Verdict::Refused),
                     qPrintable(at(length)));
        }
    }

    void everyChangedByteOfTheBodyHasItsEffect()
    {
        for (const sample::Change &change : sample::byteChanges(sample::body())) {
            const Opening opening = openBody(change.bytes);
            if (partAt(change.offset) == sample::Part::Checked) {
                QVERIFY2(opening.verdict == Verdict::Refused, qPrintable(at(change.offset)));
            } else {
                QVERIFY2(opening.verdict != Verdict::Refused, qPrintable(at(change.offset)));
                QVERIFY2(opening.body == expectedBody(change), qPrintable(at(change.offset)));
            }
        }
    }

    void everyExchangeOfTwoLengthsOfTheBodyHasItsEffect()
    {
        const QByteArray body = sample::body();
        const std::vector<sample::LengthField> fields = sample::lengthFields();
        QCOMPARE(int(fields.size()), 35);
        for (const sample::LengthField &left : fields) {
            for (const sample::LengthField &right : fields) {
                const QByteArray changed = sample::exchanged(body, left.offset, right.offset);
                const Opening opening = openBody(changed);
                const bool isHarmless = changed == body
                                        || (left.part == sample::Part::PassedOver
                                            && right.part == sample::Part::PassedOver);
                const QString where = at(left.offset) + at(right.offset);
                QVERIFY2(opening.verdict == (isHarmless ? Verdict::Accepted : Verdict::Refused),
                         qPrintable(where));
                QVERIFY2(!isHarmless || opening.body == body, qPrintable(where));
            }
        }
    }

private:
    static QString at(int offset) { return QStringLiteral(" at %1").arg(offset); }
};

ZEL_CORE_TEST_MAIN(tst_Damage)

#include "tst_Damage.moc"
