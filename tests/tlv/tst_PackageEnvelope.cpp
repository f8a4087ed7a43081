#include "tlv/PackageEnvelope_p.h"

#include "tests/support/ZelTest.h"
#include "tests/tlv/Wire.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QLoggingCategory>
#include <QRandomGenerator>

class tst_PackageEnvelope : public ZelTest
{
    Q_OBJECT

private slots:
    void checksumHasThePublishedCheckValue();
    void sealsTheseBytes();
    void sealedPartsAgree_data();
    void sealedPartsAgree();
    void unsealsWhatItSealed_data();
    void unsealsWhatItSealed();
    void anyFirstByteIsAccepted();
    void aWrongMagicIsRefused_data();
    void aWrongMagicIsRefused();
    void aFileCutAnywhereIsRefused();
    void aFileCutBeforeAChecksumOfZeroIsRefused();
    void aFlippedBitIsRefused();
    void aChecksumOverTheBodyIsRefused();
    void aLargerCountThanTheFileIsRefused_data();
    void aLargerCountThanTheFileIsRefused();
    void aBlockThatHoldsNothingIsRefused_data();
    void aBlockThatHoldsNothingIsRefused();
    void aDamagedBlockIsRefusedInSilence_data();
    void aDamagedBlockIsRefusedInSilence();
    void warningsAreHeardAgainAfterwards();
    void aWrongButPossibleClaimIsLetPass_data();
    void aWrongButPossibleClaimIsLetPass();
    void anImpossibleClaimIsRefused_data();
    void anImpossibleClaimIsRefused();
    void bytesAfterTheChecksumAreNotLookedAt();
    void theLargestExpansionIsPossible();
};

namespace {

QByteArray unsealed(QByteArray file)
{
    QBuffer buffer(&file);
    buffer.open(QIODevice::ReadOnly);
    return tlv::unseal(buffer);
}

QByteArray noise(int size)
{
    QRandomGenerator generator(1);
    QByteArray bytes(size, '\0');
    for (char &byte : bytes) {
        byte = static_cast<char>(generator.generate());
    }
    return bytes;
}

/// A block whose claim is @p claimed, whatever it holds.
QByteArray claiming(quint32 claimed, const QByteArray &body)
{
    return wire::u32(claimed) + qCompress(body, 9).mid(4);
}

/// A block with a checksum of 0: two bytes behind the compressed stream, which no one reads, make
/// it so.
QByteArray blockWithChecksumZero(const QByteArray &body)
{
    const QByteArray block = qCompress(body, 9);
    for (int tail = 0; tail <= 0xFFFF; ++tail) {
        QByteArray candidate = block + wire::u16(static_cast<quint16>(tail));
        if (qChecksum(candidate.constData(), static_cast<uint>(candidate.size())) == 0) {
            return candidate;
        }
    }
    return {};
}

} // namespace

void tst_PackageEnvelope::checksumHasThePublishedCheckValue()
{
    QCOMPARE(wire::crc(QByteArrayLiteral("123456789")), quint16(0x906E));
    QCOMPARE(qChecksum("123456789", 9), quint16(0x906E));
}

void tst_PackageEnvelope::sealsTheseBytes()
{
    QCOMPARE(tlv::seal(QByteArrayLiteral("abc")).toHex(' '),
             QByteArrayLiteral("00 5a 45 4c "                      // magic
                               "00 00 00 0f "                      // count
                               "00 00 00 03 "                      // size of the body
                               "78 da 4b 4c 4a 06 00 02 4d 01 27 " // zlib
                               "e2 37"));
}

void tst_PackageEnvelope::sealedPartsAgree_data()
{
    QTest::addColumn<QByteArray>("body");

    QTest::newRow("one byte") << QByteArrayLiteral("x");
    QTest::newRow("zeros") << QByteArray(100000, '\0');
    QTest::newRow("noise") << noise(100000);
}

void tst_PackageEnvelope::sealedPartsAgree()
{
    QFETCH(QByteArray, body);

    const QByteArray package = tlv::seal(body);
    const QByteArray block = package.mid(8, package.size() - 10);
    QCOMPARE(package.left(4), wire::hex("00 5A 45 4C"));
    QCOMPARE(package.mid(4, 4), wire::u32(static_cast<quint32>(block.size())));
    QCOMPARE(block.left(4), wire::u32(static_cast<quint32>(body.size())));
    QCOMPARE(block.mid(4, 2), wire::hex("78 DA"));
    QCOMPARE(qUncompress(block), body);
    QCOMPARE(package.right(2), wire::u16(wire::crc(block)));
}

void tst_PackageEnvelope::unsealsWhatItSealed_data()
{
    sealedPartsAgree_data();
    QTest::newRow("a mebibyte of noise") << noise(1 << 20);
}

void tst_PackageEnvelope::unsealsWhatItSealed()
{
    QFETCH(QByteArray, body);

    QVERIFY(unsealed(tlv::seal(body)) == body);
}

void tst_PackageEnvelope::anyFirstByteIsAccepted()
{
    QByteArray file = tlv::seal(QByteArrayLiteral("abc"));
    for (const char first : {'\x01', 'Z', '\x7F', '\xFF'}) {
        file[0] = first;
        QCOMPARE(unsealed(file), QByteArrayLiteral("abc"));
    }
}

void tst_PackageEnvelope::aWrongMagicIsRefused_data()
{
    QTest::addColumn<QByteArray>("magic");

    QTest::newRow("zeros") << QByteArray(4, '\0');
    QTest::newRow("small letters") << QByteArray("\0zel", 4);
    QTest::newRow("second byte") << QByteArray("\0xEL", 4);
    QTest::newRow("third byte") << QByteArray("\0ZxL", 4);
    QTest::newRow("fourth byte") << QByteArray("\0ZEx", 4);
    QTest::newRow("one byte early") << QByteArray("ZEL\0", 4);
}

void tst_PackageEnvelope::aWrongMagicIsRefused()
{
    QFETCH(QByteArray, magic);

    QCOMPARE(unsealed(tlv::seal(QByteArrayLiteral("abc")).replace(0, 4, magic)), QByteArray());
}

void tst_PackageEnvelope::aFileCutAnywhereIsRefused()
{
    const QByteArray file = tlv::seal(QByteArrayLiteral("Some body of a package"));
    for (int size = 0; size < file.size(); ++size) {
        QVERIFY2(unsealed(file.left(size)).isEmpty(), qPrintable(QString::number(size)));
    }
    QVERIFY(!unsealed(file).isEmpty());
}

void tst_PackageEnvelope::aFileCutBeforeAChecksumOfZeroIsRefused()
{
    const QByteArray file = wire::envelope(blockWithChecksumZero(QByteArrayLiteral("abc")));
    QCOMPARE(file.right(2), QByteArray(2, '\0'));

    QCOMPARE(unsealed(file), QByteArrayLiteral("abc"));
    QCOMPARE(unsealed(file.chopped(1)), QByteArray());
    QCOMPARE(unsealed(file.chopped(2)), QByteArray());
}

void tst_PackageEnvelope::aFlippedBitIsRefused()
{
    const QByteArray file = tlv::seal(QByteArrayLiteral("Some body of a package"));
    for (int bit = 8; bit < file.size() * 8; ++bit) {
        QByteArray damaged = file;
        damaged[bit / 8] = static_cast<char>(damaged.at(bit / 8) ^ (1 << bit % 8));
        QVERIFY2(unsealed(damaged).isEmpty(), qPrintable(QString::number(bit)));
    }
}

void tst_PackageEnvelope::aChecksumOverTheBodyIsRefused()
{
    const QByteArray body = QByteArrayLiteral("abc");
    const QByteArray file = tlv::seal(body);
    QCOMPARE(unsealed(file.chopped(2) + wire::u16(wire::crc(body))), QByteArray());
}

void tst_PackageEnvelope::aLargerCountThanTheFileIsRefused_data()
{
    QTest::addColumn<quint32>("count");

    QTest::newRow("by one") << 18U;
    QTest::newRow("the checksum counted in") << 17U;
    QTest::newRow("by far") << 0x10000000U;
    QTest::newRow("the largest signed") << 0x7FFFFFFFU;
    QTest::newRow("the smallest negative") << 0x80000000U;
    QTest::newRow("null") << 0xFFFFFFFFU;
}

void tst_PackageEnvelope::aLargerCountThanTheFileIsRefused()
{
    QFETCH(quint32, count);

    const QByteArray file = tlv::seal(QByteArrayLiteral("abc"));
    QCOMPARE(unsealed(QByteArray(file).replace(4, 4, wire::u32(count))), QByteArray());
}

void tst_PackageEnvelope::aBlockThatHoldsNothingIsRefused_data()
{
    QTest::addColumn<QByteArray>("block");

    QTest::newRow("no bytes") << QByteArray();
    QTest::newRow("one byte") << wire::hex("00");
    QTest::newRow("a claim of nothing") << wire::hex("00 00 00 00");
    QTest::newRow("a claim alone") << wire::hex("00 00 00 03");
    QTest::newRow("an empty stream") << qCompress("", 9) + "x";
    QTest::newRow("a compressed nothing") << wire::hex("00 00 00 00 78 DA 03 00 00 00 00 01");
}

void tst_PackageEnvelope::aBlockThatHoldsNothingIsRefused()
{
    QFETCH(QByteArray, block);

    QCOMPARE(unsealed(wire::envelope(block)), QByteArray());
}

void tst_PackageEnvelope::aDamagedBlockIsRefusedInSilence_data()
{
    QTest::addColumn<QByteArray>("block");

    const QByteArray block = qCompress(QByteArrayLiteral("Some body of a package"), 9);
    QTest::newRow("not zlib") << wire::u32(3) + QByteArrayLiteral("not compressed at all");
    QTest::newRow("header alone") << block.left(6);
    QTest::newRow("cut stream") << block.chopped(6);
    QTest::newRow("cut check value") << block.chopped(1);
    QTest::newRow("wrong check value") << block.chopped(1) + 'x';
    QTest::newRow("asks for a dictionary") << wire::u32(3) + wire::hex("78 BB 00 00 00 01 00");
    QTest::newRow("reserved kind of block") << wire::u32(3) + wire::hex("78 DA 07 00 00 00 00 01");
}

void tst_PackageEnvelope::aDamagedBlockIsRefusedInSilence()
{
    QFETCH(QByteArray, block);

    QCOMPARE(unsealed(wire::envelope(block)), QByteArray());
}

void tst_PackageEnvelope::warningsAreHeardAgainAfterwards()
{
    QCOMPARE(unsealed(wire::envelope(wire::u32(3) + QByteArrayLiteral("damaged"))), QByteArray());
    QVERIFY(QLoggingCategory::defaultCategory()->isWarningEnabled());
}

void tst_PackageEnvelope::aWrongButPossibleClaimIsLetPass_data()
{
    QTest::addColumn<quint32>("claimed");

    QTest::newRow("nothing") << 0U;
    QTest::newRow("one byte") << 1U;
    QTest::newRow("one too few") << 21U;
    QTest::newRow("one too many") << 23U;
    QTest::newRow("many too many") << 20000U;
}

void tst_PackageEnvelope::aWrongButPossibleClaimIsLetPass()
{
    QFETCH(quint32, claimed);

    const QByteArray body = QByteArrayLiteral("Some body of a package");
    QCOMPARE(unsealed(wire::envelope(claiming(claimed, body))), body);
}

void tst_PackageEnvelope::anImpossibleClaimIsRefused_data()
{
    QTest::addColumn<quint32>("claimed");

    QTest::newRow("a mebibyte") << 0x00100000U;
    QTest::newRow("the largest signed") << 0x7FFFFFFFU;
    QTest::newRow("the smallest negative") << 0x80000000U;
    QTest::newRow("the largest") << 0xFFFFFFFFU;
}

void tst_PackageEnvelope::anImpossibleClaimIsRefused()
{
    QFETCH(quint32, claimed);

    const QByteArray body = QByteArrayLiteral("Some body of a package");
    QCOMPARE(unsealed(wire::envelope(claiming(claimed, body))), QByteArray());
}

void tst_PackageEnvelope::bytesAfterTheChecksumAreNotLookedAt()
{
    const QByteArray file = tlv::seal(QByteArrayLiteral("abc"));
    QCOMPARE(unsealed(file + "more"), QByteArrayLiteral("abc"));
}

void tst_PackageEnvelope::theLargestExpansionIsPossible()
{
    const QByteArray zeros(16 << 20, '\0');
    const QByteArray file = tlv::seal(zeros);
    QVERIFY(zeros.size() / file.size() > 1000);
    QVERIFY(unsealed(file) == zeros);
}

ZEL_CORE_TEST_MAIN(tst_PackageEnvelope)
#include "tst_PackageEnvelope.moc"
