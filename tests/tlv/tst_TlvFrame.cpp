#include "tlv/TlvFrame.h"

#include "tests/support/ZelTest.h"

#include <QCoreApplication>
#include <QDataStream>
#include <QPoint>
#include <QVariantList>

using tlv::serializeFrame;
using tlv::TlvField;
using tlv::TlvFrame;

class tst_TlvFrame : public ZelTest
{
    Q_OBJECT

private slots:
    void addFieldAppends();
    void isKnownToTheMetaTypeSystem();
    void copiesShareTheirEntries();
    void variantsShareTheirEntries();

    void anEmptyFrameHasNoBytes();
    void anEmptyNestedFrameIsItsHeader();
    void anEmptyListIsItsHeader();
    void aTrueBoolTakesNineBytes();
    void aByteArrayIsWrittenWithItsOwnSize();
    void equalTagsAreBothWrittenInOrder();
    void nestedFramesAreWrittenRecursively();
    void aListIsWrittenWithoutACountOfElements();
    void whatIsNoFrameInAListIsWrittenAsNothing();
    void declaredLengthsAreTrusted();
    void aFieldIsWrittenWholeInTheOutermostFrame();
    void aFieldIsNoEntryOfANestedFrame();
    void insertionAgreesWithSerializeFrame();
    void expectedSizeDoesNotShow();

    void numbersAreFound_data();
    void numbersAreFound();
    void narrowNumbersKeepTheLowBits();
    void textIsFound();
    void frameIsFound();
    void listOfFramesIsFound();
    void theFirstOfEqualTagsIsFound();
    void failedLookupsLeaveTheOutputAlone_data();
    void failedLookupsLeaveTheOutputAlone();
};

namespace {

TlvFrame frameOf(quint32 tag, quint32 length, const QVariant &value)
{
    TlvFrame frame;
    frame.addField(tag, length, value);
    return frame;
}

QByteArray hexOf(const TlvFrame &frame)
{
    return serializeFrame(frame).toHex(' ');
}

} // namespace

void tst_TlvFrame::addFieldAppends()
{
    TlvFrame frame;
    QVERIFY(frame.addField(9, 4, 1));
    QVERIFY(frame.addField(9, 4, 2));
    QVERIFY(frame.addField(3, 7, 3));

    QCOMPARE(frame.entries().size(), 3);
    QCOMPARE(frame.entries().at(0).first, 9U);
    QCOMPARE(frame.entries().at(1).second->value(), QVariant(2));
    QCOMPARE(frame.entries().at(2).first, 3U);
    QCOMPARE(frame.entries().at(2).second->tag(), 3U);
    QCOMPARE(frame.entries().at(2).second->length(), 7U);
}

void tst_TlvFrame::isKnownToTheMetaTypeSystem()
{
    const int type = QMetaType::type("tlv::TlvFrame");
    QVERIFY(type >= QMetaType::User);
    QCOMPARE(QVariant::fromValue(TlvFrame()).userType(), type);
    QCOMPARE(QVariant::fromValue(TlvFrame()).typeName(), "tlv::TlvFrame");
}

void tst_TlvFrame::copiesShareTheirEntries()
{
    const TlvFrame frame = frameOf(1, 4, 5);
    TlvFrame copy = frame;
    QCOMPARE(copy.entries().constData(), frame.entries().constData());

    copy.addField(2, 4, 6);
    QCOMPARE(frame.entries().size(), 1);
    QCOMPARE(copy.entries().at(0).second.data(), frame.entries().at(0).second.data());
}

void tst_TlvFrame::variantsShareTheirEntries()
{
    const TlvFrame frame = frameOf(1, 4, 5);
    const QVariant variant = QVariant::fromValue(frame);
    QCOMPARE(variant.value<TlvFrame>().entries().constData(), frame.entries().constData());
}

void tst_TlvFrame::anEmptyFrameHasNoBytes()
{
    QCOMPARE(serializeFrame(TlvFrame()), QByteArray());
}

void tst_TlvFrame::anEmptyNestedFrameIsItsHeader()
{
    QCOMPARE(hexOf(frameOf(0xF0000001, 0, QVariant::fromValue(TlvFrame()))),
             QByteArrayLiteral("f0 00 00 01 00 00 00 00"));
}

void tst_TlvFrame::anEmptyListIsItsHeader()
{
    QCOMPARE(hexOf(frameOf(0xF0000003, 0, QVariantList())),
             QByteArrayLiteral("f0 00 00 03 00 00 00 00"));
}

void tst_TlvFrame::aTrueBoolTakesNineBytes()
{
    QCOMPARE(hexOf(frameOf(0xF0000010, 1, true)), QByteArrayLiteral("f0 00 00 10 00 00 00 01 01"));
}

void tst_TlvFrame::aByteArrayIsWrittenWithItsOwnSize()
{
    QCOMPARE(hexOf(frameOf(6, 77, QByteArrayLiteral("ab"))),
             QByteArrayLiteral("00 00 00 06 00 00 00 02 61 62"));
}

void tst_TlvFrame::equalTagsAreBothWrittenInOrder()
{
    TlvFrame frame = frameOf(6, 1, true);
    frame.addField(6, 1, false);
    QCOMPARE(hexOf(frame),
             QByteArrayLiteral("00 00 00 06 00 00 00 01 01 00 00 00 06 00 00 00 01 00"));
}

void tst_TlvFrame::nestedFramesAreWrittenRecursively()
{
    TlvFrame middle = frameOf(3, 9, QVariant::fromValue(frameOf(4, 1, true)));
    middle.addField(5, 1, false);
    const TlvFrame outer = frameOf(2, 26, QVariant::fromValue(middle));
    QCOMPARE(hexOf(outer), QByteArrayLiteral("00 00 00 02 00 00 00 1a "
                                             "00 00 00 03 00 00 00 09 "
                                             "00 00 00 04 00 00 00 01 01 "
                                             "00 00 00 05 00 00 00 01 00"));
}

void tst_TlvFrame::aListIsWrittenWithoutACountOfElements()
{
    TlvFrame first = frameOf(4, 1, true);
    first.addField(5, 1, true);
    const QVariantList list = {QVariant::fromValue(first),
                               QVariant::fromValue(frameOf(4, 1, false))};
    QCOMPARE(hexOf(frameOf(3, 27, list)), QByteArrayLiteral("00 00 00 03 00 00 00 1b "
                                                            "00 00 00 04 00 00 00 01 01 "
                                                            "00 00 00 05 00 00 00 01 01 "
                                                            "00 00 00 04 00 00 00 01 00"));
}

void tst_TlvFrame::whatIsNoFrameInAListIsWrittenAsNothing()
{
    const QVariantList list = {17, QVariant::fromValue(frameOf(4, 1, true))};
    QCOMPARE(hexOf(frameOf(3, 9, list)),
             QByteArrayLiteral("00 00 00 03 00 00 00 09 00 00 00 04 00 00 00 01 01"));
}

void tst_TlvFrame::declaredLengthsAreTrusted()
{
    TlvFrame frame = frameOf(1, 0xFFFFFFFF, QVariant::fromValue(frameOf(2, 5, true)));
    frame.addField(3, 0x10, QVariantList());
    QCOMPARE(hexOf(frame), QByteArrayLiteral("00 00 00 01 ff ff ff ff 00 00 00 02 00 00 00 05 01 "
                                             "00 00 00 03 00 00 00 10"));
}

void tst_TlvFrame::aFieldIsWrittenWholeInTheOutermostFrame()
{
    QCOMPARE(hexOf(frameOf(1, 9, QVariant::fromValue(TlvField(2, 1, true)))),
             QByteArrayLiteral("00 00 00 01 00 00 00 09 00 00 00 02 00 00 00 01 01"));
}

void tst_TlvFrame::aFieldIsNoEntryOfANestedFrame()
{
    const TlvFrame nested = frameOf(1, 9, QVariant::fromValue(TlvField(2, 1, true)));
    QCOMPARE(hexOf(frameOf(3, 8, QVariant::fromValue(nested))),
             QByteArrayLiteral("00 00 00 03 00 00 00 08 00 00 00 01 00 00 00 00"));
}

void tst_TlvFrame::insertionAgreesWithSerializeFrame()
{
    TlvFrame frame = frameOf(1, 9, QVariant::fromValue(frameOf(2, 1, true)));
    frame.addField(3, 0, QVariantList());
    frame.addField(4, 4, 5U);
    QByteArray inserted;
    QDataStream stream(&inserted, QIODevice::WriteOnly);
    stream << frame;
    QCOMPARE(inserted, serializeFrame(frame));
}

void tst_TlvFrame::expectedSizeDoesNotShow()
{
    const TlvFrame frame = frameOf(1, 1, true);
    QCOMPARE(serializeFrame(frame, 9), serializeFrame(frame));
    QCOMPARE(serializeFrame(frame, 3), serializeFrame(frame));
    QCOMPARE(serializeFrame(frame, 1000), serializeFrame(frame));
}

void tst_TlvFrame::numbersAreFound_data()
{
    QTest::addColumn<QVariant>("value");

    QTest::newRow("unsigned 8-bit") << QVariant::fromValue<quint8>(42);
    QTest::newRow("signed 16-bit") << QVariant::fromValue<qint16>(42);
    QTest::newRow("unsigned 16-bit") << QVariant::fromValue<quint16>(42);
    QTest::newRow("signed 32-bit") << QVariant(42);
    QTest::newRow("unsigned 32-bit") << QVariant(42U);
    QTest::newRow("64-bit") << QVariant::fromValue<qint64>(42);
    QTest::newRow("float") << QVariant(42.0F);
    QTest::newRow("double") << QVariant(42.0);
    QTest::newRow("text") << QVariant(QStringLiteral("42"));
    QTest::newRow("byte array") << QVariant(QByteArrayLiteral("42"));
}

void tst_TlvFrame::numbersAreFound()
{
    QFETCH(QVariant, value);
    const TlvFrame frame = frameOf(1, 4, value);

    quint8 byte = 0;
    QVERIFY(frame.getValue(1, byte));
    QCOMPARE(byte, quint8(42));
    qint16 signedWord = 0;
    QVERIFY(frame.getValue(1, signedWord));
    QCOMPARE(signedWord, qint16(42));
    quint16 word = 0;
    QVERIFY(frame.getValue(1, word));
    QCOMPARE(word, quint16(42));
    qint32 signedNumber = 0;
    QVERIFY(frame.getValue(1, signedNumber));
    QCOMPARE(signedNumber, 42);
    quint32 number = 0;
    QVERIFY(frame.getValue(1, number));
    QCOMPARE(number, 42U);
    float single = 0;
    QVERIFY(frame.getValue(1, single));
    QCOMPARE(single, 42.0F);
    double wide = 0;
    QVERIFY(frame.getValue(1, wide));
    QCOMPARE(wide, 42.0);
}

void tst_TlvFrame::narrowNumbersKeepTheLowBits()
{
    const TlvFrame frame = frameOf(1, 4, 0x1FEDCU);
    quint8 byte = 0;
    QVERIFY(frame.getValue(1, byte));
    QCOMPARE(byte, quint8(0xDC));
    quint16 word = 0;
    QVERIFY(frame.getValue(1, word));
    QCOMPARE(word, quint16(0xFEDC));
    qint16 signedWord = 0;
    QVERIFY(frame.getValue(1, signedWord));
    QCOMPARE(signedWord, qint16(-0x124));
}

void tst_TlvFrame::textIsFound()
{
    TlvFrame frame = frameOf(1, 4, QByteArrayLiteral("a\xC3\xA9"));
    frame.addField(2, 4, 17);
    frame.addField(3, 0, QByteArray());
    QString text;
    QVERIFY(frame.getValue(1, text));
    QCOMPARE(text, QStringLiteral("a\u00E9"));
    QVERIFY(frame.getValue(2, text));
    QCOMPARE(text, QStringLiteral("17"));
    QVERIFY(frame.getValue(3, text));
    QCOMPARE(text, QString());
}

void tst_TlvFrame::frameIsFound()
{
    const TlvFrame inner = frameOf(2, 4, 17);
    TlvFrame found;
    QVERIFY(frameOf(1, 12, QVariant::fromValue(inner)).getValue(1, found));
    QCOMPARE(found.entries().constData(), inner.entries().constData());
}

void tst_TlvFrame::listOfFramesIsFound()
{
    const QVariantList list = {QVariant::fromValue(frameOf(4, 1, true)),
                               QVariant::fromValue(frameOf(5, 1, true))};
    QList<TlvFrame> found;
    QVERIFY(frameOf(1, 18, list).getValue(1, found));
    QCOMPARE(found.size(), 2);
    QCOMPARE(found.at(1).entries().at(0).first, 5U);

    QVERIFY(frameOf(1, 0, QVariantList()).getValue(1, found));
    QVERIFY(found.isEmpty());
}

void tst_TlvFrame::theFirstOfEqualTagsIsFound()
{
    TlvFrame frame = frameOf(8, 4, 1U);
    frame.addField(7, 4, 2U);
    frame.addField(7, 4, 3U);
    quint32 number = 0;
    QVERIFY(frame.getValue(7, number));
    QCOMPARE(number, 2U);
}

void tst_TlvFrame::failedLookupsLeaveTheOutputAlone_data()
{
    QTest::addColumn<quint32>("tag");
    QTest::addColumn<QVariant>("value");

    QTest::newRow("no such tag") << 2U << QVariant(5);
    QTest::newRow("no value") << 1U << QVariant();
    QTest::newRow("no conversion") << 1U << QVariant(QPoint(1, 2));
    QTest::newRow("a list of other things") << 1U << QVariant(QVariantList{1, 2});
    QTest::newRow("a field") << 1U << QVariant::fromValue(TlvField(1, 4, 2));
}

void tst_TlvFrame::failedLookupsLeaveTheOutputAlone()
{
    QFETCH(quint32, tag);
    QFETCH(QVariant, value);
    const TlvFrame frame = frameOf(1, 4, value);

    quint8 byte = 11;
    QVERIFY(!frame.getValue(tag, byte));
    QCOMPARE(byte, quint8(11));
    qint16 signedWord = 12;
    QVERIFY(!frame.getValue(tag, signedWord));
    QCOMPARE(signedWord, qint16(12));
    quint16 word = 13;
    QVERIFY(!frame.getValue(tag, word));
    QCOMPARE(word, quint16(13));
    qint32 signedNumber = 14;
    QVERIFY(!frame.getValue(tag, signedNumber));
    QCOMPARE(signedNumber, 14);
    quint32 number = 15;
    QVERIFY(!frame.getValue(tag, number));
    QCOMPARE(number, 15U);
    float single = 16;
    QVERIFY(!frame.getValue(tag, single));
    QCOMPARE(single, 16.0F);
    double wide = 17;
    QVERIFY(!frame.getValue(tag, wide));
    QCOMPARE(wide, 17.0);
    QString text = QStringLiteral("kept");
    QVERIFY(!frame.getValue(tag, text));
    QCOMPARE(text, QStringLiteral("kept"));
    TlvFrame kept = frameOf(9, 4, 9);
    QVERIFY(!frame.getValue(tag, kept));
    QCOMPARE(kept.entries().size(), 1);
    QList<TlvFrame> keptList = {kept};
    QVERIFY(!frame.getValue(tag, keptList));
    QCOMPARE(keptList.size(), 1);
}

ZEL_CORE_TEST_MAIN(tst_TlvFrame)
#include "tst_TlvFrame.moc"
