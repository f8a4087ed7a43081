#include "tlv/ZelFile.h"

#include "common/Paths.h"
#include "tests/support/ZelTest.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QtEndian>

/// Packages travel between systems: what one has written, the other reads, and writes alike.
class tst_PackageExchange : public ZelTest
{
    Q_OBJECT

private slots:
    void init();
    void opens_data() { addPackages(); }
    void opens();
    void extractsIntoTheUsersTemporaryFolder_data() { addPackages(); }
    void extractsIntoTheUsersTemporaryFolder();
    void writesTheSameBody_data() { addPackages(); }
    void writesTheSameBody();

private:
    static void addPackages();
    static QByteArray image();
    /// The body in the envelope of the package at @p path.
    static QByteArray body(const QString &path);
    static QString firmwareName() { return QStringLiteral("Pr\u00FCfstand-\u0416.bin"); }
};

void tst_PackageExchange::init()
{
    // The stored path of the firmware is its bare name, so the firmware lies in the current folder.
    QVERIFY(QDir::setCurrent(TestSandbox::path()));
    QFile firmware(firmwareName());
    QVERIFY(firmware.open(QIODevice::WriteOnly));
    QCOMPARE(firmware.write(image()), qint64(image().size()));
}

void tst_PackageExchange::addPackages()
{
    QTest::addColumn<QString>("package");

    QTest::newRow("written on Linux") << QStringLiteral(ZEL_PACKAGES "/linux.zel");
    QTest::newRow("written on Windows") << QStringLiteral(ZEL_PACKAGES "/windows.zel");
}

QByteArray tst_PackageExchange::image()
{
    QByteArray bytes;
    for (int i = 0; i < 512; ++i) {
        bytes.append(static_cast<char>(i));
    }
    return bytes + QByteArray("end\r\n\x1A\0", 7);
}

QByteArray tst_PackageExchange::body(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    const QByteArray envelope = file.readAll();
    // Four bytes of magic, four of length, the compressed block, two of checksum.
    return qUncompress(envelope.mid(8, envelope.size() - 10));
}

void tst_PackageExchange::opens()
{
    QFETCH(QString, package);

    tlv::ZelFile file;
    QString message;
    QVERIFY2(file.load(package, message), qPrintable(message));

    QCOMPARE(file.maskRules(), (QList<MaskValidationRule>{
                                   {1801, 0, "RISCV-****-01"}, {12, 4, "3.*"}, {1650, 2, "A2**"}}));
    QCOMPARE(file.tokenRules(),
             (QList<TokenValidationRule>{{"A", "1"}, {"B", "2"}, {"C", "rev 3"}}));
    QCOMPARE(file.minimumHardwareVersion(), 2u);
    QCOMPARE(file.maximumHardwareVersion(), 7u);
    QCOMPARE(file.hardwareType(), 2u);
    QCOMPARE(file.firmwareAddress(), 0x80000000u);
    QCOMPARE(file.firmwareImage(), image());
    QCOMPARE(QString::fromUtf8(file.firmwareFileName()), firmwareName());
}

void tst_PackageExchange::extractsIntoTheUsersTemporaryFolder()
{
    QFETCH(QString, package);

    tlv::ZelFile file;
    QString message;
    QVERIFY2(file.load(package, message), qPrintable(message));

    const QString path = QString::fromUtf8(file.extractedFirmwarePath());
    QCOMPARE(QFileInfo(path).canonicalPath(),
             QFileInfo(QDir::tempPath()).canonicalFilePath()
                 + QStringLiteral("/Halvorn Drives/ZEL File Creator"));
    QCOMPARE(path, QDir::toNativeSeparators(path));
    QFile extracted(path);
    QVERIFY(extracted.open(QIODevice::ReadOnly));
    QCOMPARE(extracted.readAll(), image());
}

void tst_PackageExchange::writesTheSameBody()
{
    QFETCH(QString, package);

    tlv::ZelFile file;
    file.setMaskRules({{1801, 0, "RISCV-****-01"}, {12, 4, "3.*"}, {1650, 2, "A2**"}});
    file.setTokenRules({{"A", "1"}, {"B", "2"}, {"C", "rev 3"}});
    file.setSoftwareOptions({true, {1, 4}, {5, 99}, true, {0, 0}, {99, 99}});
    file.setHardware(2, 7, 2, 1);
    file.setFirmwareFile(firmwareName(), 0x80000000U);
    QString path = TestSandbox::path() + QStringLiteral("/written.zel");
    QString message;
    QVERIFY2(file.save(path, message), qPrintable(message));

    QVERIFY(!body(package).isEmpty());
    QCOMPARE(body(path), body(package));
}

ZEL_CORE_TEST_MAIN(tst_PackageExchange)
#include "tst_PackageExchange.moc"
