#include "tlv/TlvField.h"

#include "tests/support/ZelTest.h"
#include "tlv/TlvFrame.h"

#include <QCoreApplication>
#include <QDataStream>
#include <QDate>
#include <QPoint>

using tlv::TlvField;
using tlv::TlvFrame;

class tst_TlvField : public ZelTest
{
    Q_OBJECT

private slots:
    void aDefaultFieldIsNothing();
    void keepsWhatItIsGiven();
    void copiesTagLengthAndValue();
    void isKnownToTheMetaTypeSystem();
    void leaf_data();
    void leaf();
    void lengthIsWrittenAsDeclared();
    void byteArrayIsWrittenWithItsOwnSize();
};

namespace {

QByteArray written(const TlvField &field)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << field;
    return bytes;
}

} // namespace

void tst_TlvField::aDefaultFieldIsNothing()
{
    const TlvField field;
    QCOMPARE(field.tag(), 0U);
    QCOMPARE(field.length(), 0U);
    QVERIFY(field.value().isNull());
}

void tst_TlvField::keepsWhatItIsGiven()
{
    const TlvField field(0xF0000005, 99, QStringLiteral("x"));
    QCOMPARE(field.tag(), 0xF0000005U);
    QCOMPARE(field.length(), 99U);
    QCOMPARE(field.value(), QVariant(QStringLiteral("x")));
}

void tst_TlvField::copiesTagLengthAndValue()
{
    const TlvField field(7, 4, 12);
    TlvField copy(field); // NOLINT(performance-unnecessary-copy-initialization): what is tested
    QCOMPARE(copy.tag(), 7U);
    QCOMPARE(copy.length(), 4U);
    QCOMPARE(copy.value(), QVariant(12));
    copy = TlvField();
    QCOMPARE(copy.tag(), 0U);
    QCOMPARE(field.tag(), 7U);
}

void tst_TlvField::isKnownToTheMetaTypeSystem()
{
    const int type = QMetaType::type("tlv::TlvField");
    QVERIFY(type >= QMetaType::User);
    QCOMPARE(QVariant::fromValue(TlvField()).userType(), type);
    QCOMPARE(QVariant::fromValue(TlvField()).typeName(), "tlv::TlvField");
}

void tst_TlvField::leaf_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<quint32>("declared");
    QTest::addColumn<QByteArray>("afterTheTag");

    const auto row = [](const char *name, const QVariant &value, quint32 declared,
                        const char *afterTheTag) {
        QTest::newRow(name) << value << declared << QByteArray::fromHex(afterTheTag);
    };
    row("bool, true", true, 1, "00000001 01");
    row("bool, false", false, 1, "00000001 00");
    row("unsigned char", QVariant::fromValue<uchar>(0xFE), 1, "00000001 FE");
    row("short", QVariant::fromValue<short>(-2), 2, "00000002 FFFE");
    row("unsigned short", QVariant::fromValue<ushort>(0xFEDC), 2, "00000002 FEDC");
    row("int", -2, 4, "00000004 FFFFFFFE");
    row("int, null", QVariant(QVariant::Int), 4, "00000004 00000000");
    row("long", QVariant::fromValue<long>(-3), 4, "00000004 FFFFFFFD");
    if (sizeof(long) > sizeof(int)) {
        row("long, wider than 32 bits",
            QVariant::fromValue(static_cast<long>(Q_INT64_C(0x123456789A))), 4,
            "00000004 3456789A");
    }
    row("unsigned int", 0xFEDCBA98U, 4, "00000004 FEDCBA98");
    row("long long", QVariant::fromValue<qlonglong>(-2), 8, "00000008 FFFFFFFFFFFFFFFE");
    row("unsigned long long", QVariant::fromValue<qulonglong>(Q_UINT64_C(0xFEDCBA9876543210)), 8,
        "00000008 FEDCBA9876543210");
    row("float, in double precision", QVariant::fromValue(1.5F), 4, "00000004 3FF8000000000000");
    row("double", -2.25, 8, "00000008 C002000000000000");
    row("text", QStringLiteral("A\u00E9"), 99, "00000004 004100E9");
    row("text, empty", QStringLiteral(""), 99, "00000000");
    row("text, null", QString(), 99, "FFFFFFFF");
    row("byte array", QByteArray("a\0b", 3), 99, "00000003 610062");
    row("byte array, empty", QByteArray(""), 99, "00000000");
    row("byte array, null", QByteArray(), 99, "FFFFFFFF");
    row("any other type: date", QDate(2024, 2, 29), 99, "0000000A 323032342D30322D3239");
    row("any other type: character", QChar(0x20AC), 99, "00000003 E282AC");
    row("any other type: unsigned long", QVariant::fromValue<ulong>(17), 99, "00000002 3137");
    row("any other type: not set", QVariant(), 99, "00000000");
    row("any other type: no text form", QPoint(1, 2), 99, "00000000");
    row("any other type: a field", QVariant::fromValue(TlvField(1, 4, 2)), 99, "00000000");
    row("any other type: a frame", QVariant::fromValue(TlvFrame()), 99, "00000000");
}

void tst_TlvField::leaf()
{
    QFETCH(QVariant, value);
    QFETCH(quint32, declared);
    QFETCH(QByteArray, afterTheTag);

    QCOMPARE(written(TlvField(0x50564552, declared, value)).toHex(),
             ("PVER" + afterTheTag).toHex());
}

void tst_TlvField::lengthIsWrittenAsDeclared()
{
    QCOMPARE(written(TlvField(1, 0xFFFFFFFF, 2)).toHex(),
             QByteArrayLiteral("00000001ffffffff00000002"));
}

void tst_TlvField::byteArrayIsWrittenWithItsOwnSize()
{
    QCOMPARE(written(TlvField(1, 2, QByteArrayLiteral("abc"))).toHex(),
             QByteArrayLiteral("0000000100000003616263"));
}

ZEL_CORE_TEST_MAIN(tst_TlvField)
#include "tst_TlvField.moc"
