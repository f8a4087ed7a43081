#include "tlv/FileNameRules_p.h"

#include "tests/support/ZelTest.h"

#include <QCoreApplication>

using tlv::isPlainFileName;

class tst_FileNameRules : public ZelTest
{
    Q_OBJECT

private slots:
    void names_data();
    void names();
    void theSystemHasItsOwnRules();
};

void tst_FileNameRules::names_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isPlainOnPosix");
    QTest::addColumn<bool>("isPlainOnWindows");

    const auto row = [](const QString &name, bool onPosix, bool onWindows) {
        QTest::newRow(qPrintable(name.toHtmlEscaped())) << name << onPosix << onWindows;
    };
    row(QStringLiteral("fw.bin"), true, true);
    row(QStringLiteral("Motor \u00FCber \u96FB\u6C17_1700000000000.bin"), true, true);
    row(QStringLiteral(".bin"), true, true);
    row(QStringLiteral("..."), true, false);
    row(QStringLiteral("fw..bin"), true, true);
    row(QStringLiteral(""), false, false);
    row(QStringLiteral("."), false, false);
    row(QStringLiteral(".."), false, false);
    row(QStringLiteral("../fw.bin"), false, false);
    row(QStringLiteral("..\\fw.bin"), true, false);
    row(QStringLiteral("/etc/fw.bin"), false, false);
    row(QStringLiteral("C:fw.bin"), true, false);
    row(QStringLiteral("fw.bin:stream"), true, false);
    row(QStringLiteral("fw?.bin"), true, false);
    row(QStringLiteral("fw*.bin"), true, false);
    row(QStringLiteral("fw\".bin"), true, false);
    row(QStringLiteral("fw<.bin"), true, false);
    row(QStringLiteral("fw>.bin"), true, false);
    row(QStringLiteral("fw|.bin"), true, false);
    row(QStringLiteral("fw.bin."), true, false);
    row(QStringLiteral("fw.bin "), true, false);
    row(QStringLiteral(" fw.bin"), true, true);
    row(QStringLiteral("CON"), true, false);
    row(QStringLiteral("nul.bin"), true, false);
    row(QStringLiteral("Aux .bin"), true, false);
    row(QStringLiteral("PRN.a.b"), true, false);
    row(QStringLiteral("COM1"), true, false);
    row(QStringLiteral("com\u00B2.bin"), true, false);
    row(QStringLiteral("LPT9.bin"), true, false);
    row(QStringLiteral("CONIN$"), true, false);
    row(QStringLiteral("CONIN$.bin"), true, false);
    row(QStringLiteral("COM10.bin"), true, true);
    row(QStringLiteral("CONTROL.bin"), true, true);
    row(QStringLiteral("fw.con"), true, true);
    QTest::newRow("line feed") << QStringLiteral("fw\n.bin") << true << false;
    QTest::newRow("NUL") << QStringLiteral("fw.bin") + QChar(QChar::Null) << false << false;
    QTest::newRow("NUL inside") << QStringLiteral("a%1b").arg(QChar(QChar::Null)) << false << false;
}

void tst_FileNameRules::names()
{
    QFETCH(QString, name);
    QFETCH(bool, isPlainOnPosix);
    QFETCH(bool, isPlainOnWindows);

    QCOMPARE(isPlainFileName(name, tlv::kPosixFileNames), isPlainOnPosix);
    QCOMPARE(isPlainFileName(name, tlv::kWindowsFileNames), isPlainOnWindows);
}

void tst_FileNameRules::theSystemHasItsOwnRules()
{
    const bool isWindows = QSysInfo::productType() == QLatin1String("windows");
    QCOMPARE(isPlainFileName(QStringLiteral("a:b"), tlv::nativeFileNames()), !isWindows);
}

ZEL_CORE_TEST_MAIN(tst_FileNameRules)
#include "tst_FileNameRules.moc"
