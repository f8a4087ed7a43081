#include "fuzz/Forge.h"
#include "tests/damage/HeapWatch.h"
#include "tests/damage/SamplePackage.h"
#include "tests/support/ZelTest.h"
#include "tests/tlv/Wire.h"
#include "tlv/PackageEnvelope_p.h"
#include "tlv/ZelFile.h"

#include <QCoreApplication>
#include <QFile>

#include <algorithm>
#include <ctime>

namespace {

constexpr int kMebibyte = 1024 * 1024;
/// What opening any file takes besides: the file's buffer, the state of zlib, texts.
constexpr std::size_t kOverhead = 256 * std::size_t{1024};
/// The most that a deflated byte can become.
constexpr int kLargestExpansion = 1032;
/// Generous enough for the slowest build: the checksum has to be computed over the whole block.
constexpr double kSecondsForRefusal = 0.25;

/// Byte count of a body that is nothing but zeros.
constexpr int kZeros = 8 * kMebibyte;

constexpr quint32 kSizes[] = {0x7FFFFFF0, 0x7FFFFFFF, 0x80000000, 0xFFFFFFF0, 0xFFFFFFFE};

/// What opening a package took.
struct Opening
{
    bool isAccepted;
    std::size_t heap;
    double seconds; ///< Of the processor, which other programs do not share.
};

Opening open(const QByteArray &package)
{
    const QString path = TestSandbox::path() + QStringLiteral("/hostile.zel");
    QFile stored(path);
    if (!stored.open(QIODevice::WriteOnly) || stored.write(package) != package.size()) {
        qFatal("the sandbox takes no file");
    }
    stored.close();

    tlv::ZelFile file;
    QString message;
    heapWatch::restart();
    const std::clock_t start = std::clock();
    const bool isAccepted = file.load(path, message);
    const double seconds = double(std::clock() - start) / CLOCKS_PER_SEC;
    const Opening opening{isAccepted, heapWatch::peak(), seconds};
    QFile::remove(path);
    if (isAccepted) {
        QFile::remove(QString::fromUtf8(file.extractedFirmwarePath()));
    }
    return opening;
}

/// The sample's body with @p value in the place of one of its lengths.
QByteArray bodyWithLength(const sample::LengthField &field, quint32 value)
{
    return sample::body().replace(field.offset, 4, wire::u32(value));
}

/// A package of @p size bytes whose block is all noise but for the size that it claims.
QByteArray noisePackage(int size, quint32 claim)
{
    constexpr int kAround = 14;
    return fuzz::envelope(wire::u32(claim) + QByteArray(size - kAround, '\x5A'));
}

QByteArray zeroStream()
{
    static const QByteArray stream = qCompress(QByteArray(kZeros, '\0'), 9).mid(4);
    return stream;
}

/// A sound package of @p count equal token rules, the smallest there are: no other content takes so
/// much memory for so few bytes.
QByteArray packageOfRules(int count)
{
    const QByteArray rule =
        wire::entry(0xF0000008, wire::entry(0xF0000009, "A") + wire::entry(0xF000000A, "1"));
    const QByteArray option = wire::entry(0xF0000010, wire::hex("00"))
                              + wire::entry(0xF000000E, wire::u32(0))
                              + wire::entry(0xF000000F, wire::u32(0));
    const QByteArray options =
        wire::entry(0xF000000B, wire::entry(0xF000000C, option) + wire::entry(0xF000000D, option));
    return tlv::seal(wire::entry(
        0xF0000001,
        wire::entry(0xF0000002, wire::entry(0xF0000003, {})
                                    + wire::entry(0xF0000007, rule.repeated(count)) + options)));
}

} // namespace

/// Sizes that a package declares without having them cost neither memory nor time.
class tst_LyingSizes final : public ZelTest
{
    Q_OBJECT

private slots:
    void theWatchSeesWhatIsNotTouched()
    {
        if (!heapWatch::isAvailable()) {
            QSKIP("The heap cannot be watched on this platform or under a sanitizer: what it gives "
                  "counts as nothing below.");
        }
        heapWatch::restart();
        {
            const QByteArray untouched(kMebibyte, Qt::Uninitialized);
            QVERIFY(!untouched.isNull());
        }
        QVERIFY(heapWatch::peak() >= std::size_t{kMebibyte});
        QVERIFY(heapWatch::peak() < 2 * std::size_t{kMebibyte});
    }

    /// The block of 1 MiB has to be read for its checksum; nothing is set aside for its claim.
    void impossibleClaim_data() { addSizes(); }
    void impossibleClaim()
    {
        QFETCH(quint32, size);
        const Opening opening = open(noisePackage(kMebibyte, size));
        QVERIFY(!opening.isAccepted);
        QVERIFY2(opening.heap < kMebibyte + kOverhead, qPrintable(tell(opening)));
        QVERIFY2(opening.seconds < kSecondsForRefusal, qPrintable(tell(opening)));
    }

    void claimOneAboveThePossible()
    {
        const auto stream = quint32(kMebibyte - 14);
        const Opening possible = open(noisePackage(kMebibyte, stream * kLargestExpansion));
        const Opening impossible = open(noisePackage(kMebibyte, stream * kLargestExpansion + 1));
        QVERIFY(!possible.isAccepted);
        QVERIFY(!impossible.isAccepted);
        QVERIFY2(impossible.heap < kMebibyte + kOverhead, qPrintable(tell(impossible)));
        // What is possible may be set aside, as it is for an honest file, but takes no time.
        QVERIFY2(possible.heap <= std::size_t{stream} * kLargestExpansion + kMebibyte + kOverhead,
                 qPrintable(tell(possible)));
        QVERIFY2(possible.seconds < kSecondsForRefusal, qPrintable(tell(possible)));
    }

    void countOfABlockThatIsNotThere_data() { addSizes(); }
    void countOfABlockThatIsNotThere()
    {
        QFETCH(quint32, size);
        QByteArray package = noisePackage(kMebibyte, 1);
        package.replace(4, 4, wire::u32(size));
        const Opening opening = open(package);
        QVERIFY(!opening.isAccepted);
        QVERIFY2(opening.heap < kOverhead, qPrintable(tell(opening)));
        QVERIFY2(opening.seconds < kSecondsForRefusal, qPrintable(tell(opening)));
    }

    /// Each length and count of a body, declared as large as can be.
    void lengthsOfABody_data() { addSizes(); }
    void lengthsOfABody()
    {
        QFETCH(quint32, size);
        for (const sample::LengthField &field : sample::lengthFields()) {
            const Opening opening = open(fuzz::quickSeal(bodyWithLength(field, size)));
            QCOMPARE(opening.isAccepted, field.part == sample::Part::PassedOver);
            QVERIFY2(opening.heap < kOverhead, qPrintable(tell(opening)));
            QVERIFY2(opening.seconds < kSecondsForRefusal, qPrintable(tell(opening)));
        }
    }

    /// The stream holds what it claims, or more, or less: whatever is claimed, no more is set aside
    /// than is claimed or than twice what is there, and a sound package of that size needs more.
    void claimsBesideTheTruth_data()
    {
        QTest::addColumn<quint32>("claim");
        QTest::newRow("true") << quint32{kZeros};
        QTest::newRow("nothing") << quint32{0};
        QTest::newRow("one") << quint32{1};
        QTest::newRow("half") << quint32{kZeros / 2 + 1};
        QTest::newRow("one less") << quint32{kZeros - 1};
        QTest::newRow("one more") << quint32{kZeros + 1};
        QTest::newRow("most") << quint32(zeroStream().size() * kLargestExpansion);
    }
    void claimsBesideTheTruth()
    {
        QFETCH(quint32, claim);
        const QByteArray hostile = fuzz::envelope(wire::u32(claim) + zeroStream());
        const Opening refusal = open(hostile);
        QVERIFY(!refusal.isAccepted);
        QVERIFY2(refusal.heap <= std::max<std::size_t>(claim, 2 * std::size_t{kZeros}) + kOverhead,
                 qPrintable(tell(refusal)));

        const QByteArray sound = packageOfRules(kZeros / 66);
        QVERIFY(sound.size() <= hostile.size());
        const Opening opening = open(sound);
        QVERIFY(opening.isAccepted);
        QVERIFY2(refusal.heap <= opening.heap, qPrintable(tell(refusal) + tell(opening)));
    }

private:
    static void addSizes()
    {
        QTest::addColumn<quint32>("size");
        for (const quint32 size : kSizes) {
            QTest::newRow(qPrintable(QString::number(size, 16))) << size;
        }
    }

    static QString tell(const Opening &opening)
    {
        return QStringLiteral(" %1 bytes, %2 s").arg(opening.heap).arg(opening.seconds);
    }
};

ZEL_CORE_TEST_MAIN(tst_LyingSizes)

#include "tst_LyingSizes.moc"
