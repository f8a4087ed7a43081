#include "fuzz/Forge.h"
#include "tests/damage/HeapWatch.h"
#include "tests/damage/SamplePackage.h"
#include "tests/support/ZelTest.h"
#include "tests/tlv/Wire.h"
#include "tlv/PackageBody_p.h"
#include "tlv/PackageEnvelope_p.h"
#include "tlv/PackageRecord.h"
#include "tlv/ZelFile.h"

#include <QCoreApplication>
#include <QFile>

#include <ctime>

namespace {

constexpr int kMebibyte = 1024 * 1024;
/// What opening any file takes besides: the file's buffer, the state of zlib, texts.
constexpr std::size_t kOverhead = 256 * 1024;
/// The most that a deflated byte can become.
constexpr int kLargestExpansion = 1032;
/// Generous enough for the slowest build: the checksum has to be computed over the whole block.
constexpr double kSecondsForRefusal = 0.25;

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

/// A package that holds @p image and no more than it must.
QByteArray packageOf(const QByteArray &image)
{
    tlv::PackageRecord record;
    record.sections = {0xF0000011};
    record.firmwareImage = image;
    return tlv::seal(tlv::serializeBody(record));
}

} // namespace

/// Sizes that a package declares without having them cost neither memory nor time.
class tst_LyingSizes final : public ZelTest
{
    Q_OBJECT

private slots:
    void init()
    {
        if (!heapWatch::isAvailable()) {
            QSKIP("The heap cannot be watched on this platform or under a sanitizer.");
        }
    }

    void theWatchSeesWhatIsNotTouched()
    {
        heapWatch::restart();
        {
            const QByteArray untouched(kMebibyte, Qt::Uninitialized);
            QVERIFY(!untouched.isNull());
        }
        QVERIFY(heapWatch::peak() >= std::size_t{kMebibyte});
        QVERIFY(heapWatch::peak() < std::size_t{2 * kMebibyte});
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

    /// Files of one size, each as densely packed as can be: none needs more than the honest one, or
    /// twice that where it claims to hold less than it does.
    void noHostileFileNeedsMuchMoreThanAnHonestOne()
    {
        const QByteArray honest = packageOf(QByteArray(32 * kMebibyte, '\0'));
        const QByteArray zeros(32 * kMebibyte + 100, '\0');
        const QByteArray stream = qCompress(zeros, 9).mid(4);
        const auto size = quint32(zeros.size());

        const Opening opening = open(honest);
        QVERIFY(opening.isAccepted);
        QVERIFY(opening.heap > std::size_t{32 * kMebibyte});
        const struct
        {
            const char *name;
            quint32 claim;
        } lies[] = {
            {"true", size},
            {"nothing", 0},
            {"one", 1},
            {"half", size / 2 + 1},
            {"one less", size - 1},
            {"one more", size + 1},
            {"most", quint32(stream.size()) * kLargestExpansion},
        };
        for (const auto &lie : lies) {
            const QByteArray hostile = fuzz::envelope(wire::u32(lie.claim) + stream);
            QVERIFY(qAbs(hostile.size() - honest.size()) < 200);
            const Opening refusal = open(hostile);
            QVERIFY(!refusal.isAccepted);
            // The toolkit doubles its buffer until all fits when the claim is too small.
            const std::size_t bound = lie.claim < size ? 2 * opening.heap : opening.heap;
            QVERIFY2(refusal.heap <= bound + kOverhead,
                     qPrintable(QLatin1String(lie.name) + tell(refusal) + tell(opening)));
        }
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
