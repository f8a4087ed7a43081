#include "tests/support/ZelTest.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QtEndian>

namespace {

const QString kCannotOpen = QStringLiteral("Failed to open the ZEL file.");
const QString kNotAPackage =
    QStringLiteral("Cannot open the provided file, because it is not a valid ZEL file.");
const QString kCannotWrite = QStringLiteral("Failed to open an ZEL file for writing.");
const QString kFirmwareIsEmpty =
    QStringLiteral("The firmware file is empty. Please select another firmware file.");

constexpr qint64 kMebibyte = 1 << 20;
/// What the program needs to run at all, and some more.
constexpr int kLittleMemory = 160;

} // namespace

/// Memory runs out in a process of its own.
class tst_Memory : public ZelTest
{
    Q_OBJECT

private slots:
    void initTestCase();

    void enoughMemory();
    void noMemoryForTheFirmware();
    void noMemoryForThePackageOfTheFirmware();
    void noMemoryForThePackage();
    void noMemoryForWhatThePackageHolds();

private:
    [[nodiscard]] QString file(const QString &name) const { return m_folder.filePath(name); }
    void makeFile(const QString &name, qint64 size, const QByteArray &head = {});
    [[nodiscard]] static QString run(int mebibytes, const QStringList &arguments);

    QTemporaryDir m_folder;
};

void tst_Memory::initTestCase()
{
    makeFile(QStringLiteral("small.bin"), 1000);
    makeFile(QStringLiteral("large.bin"), 60 * kMebibyte);
    makeFile(QStringLiteral("huge.bin"), 1000 * kMebibyte);
    QCOMPARE(run(0, {QStringLiteral("save"), file(QStringLiteral("large.bin")),
                     file(QStringLiteral("large.zel"))}),
             QStringLiteral("done"));
}

/// A file of zeros behind its first bytes, which takes no room on the disk.
void tst_Memory::makeFile(const QString &name, qint64 size, const QByteArray &head)
{
    QFile out(file(name));
    QVERIFY(out.open(QIODevice::WriteOnly));
    QCOMPARE(out.write(head), qint64(head.size()));
    QVERIFY(out.resize(size));
}

QString tst_Memory::run(int mebibytes, const QStringList &arguments)
{
    QProcess tool;
    tool.start(QStringLiteral(ZEL_PACKAGE_TOOL),
               QStringList(QString::number(mebibytes)) + arguments);
    if (!tool.waitForFinished(120000) || tool.exitStatus() != QProcess::NormalExit) {
        return QStringLiteral("crashed: ") + QString::fromUtf8(tool.readAllStandardError());
    }
    return QString::fromUtf8(tool.readAllStandardOutput()).trimmed();
}

void tst_Memory::enoughMemory()
{
    QCOMPARE(run(kLittleMemory, {QStringLiteral("save"), file(QStringLiteral("small.bin")),
                                 file(QStringLiteral("small.zel"))}),
             QStringLiteral("done"));
    QCOMPARE(run(kLittleMemory, {QStringLiteral("open"), file(QStringLiteral("small.zel"))}),
             QStringLiteral("done"));
}

void tst_Memory::noMemoryForTheFirmware()
{
    const QString package = file(QStringLiteral("huge.zel"));
    QCOMPARE(
        run(kLittleMemory, {QStringLiteral("save"), file(QStringLiteral("huge.bin")), package}),
        kFirmwareIsEmpty);
    QVERIFY(!QFileInfo::exists(package));
}

/// The image fits into memory; it does so no second time.
void tst_Memory::noMemoryForThePackageOfTheFirmware()
{
    const QString package = file(QStringLiteral("second.zel"));
    QCOMPARE(
        run(kLittleMemory, {QStringLiteral("save"), file(QStringLiteral("large.bin")), package}),
        kCannotWrite);
    QVERIFY(!QFileInfo::exists(package));
}

void tst_Memory::noMemoryForThePackage()
{
    constexpr int kSize = 500 * kMebibyte;
    QByteArray head = QByteArray("\0ZEL", 4) + QByteArray(4, '\0');
    qToBigEndian<quint32>(kSize, head.data() + 4);
    makeFile(QStringLiteral("huge.zel"), kSize + 10, head);
    QCOMPARE(run(kLittleMemory, {QStringLiteral("open"), file(QStringLiteral("huge.zel"))}),
             kCannotOpen);
}

/// A small package that holds much is not known to be one before it is unpacked.
void tst_Memory::noMemoryForWhatThePackageHolds()
{
    QVERIFY(QFileInfo(file(QStringLiteral("large.zel"))).size() < kMebibyte);
    constexpr int kLessMemory = 60;
    QCOMPARE(run(kLessMemory, {QStringLiteral("open"), file(QStringLiteral("small.zel"))}),
             QStringLiteral("done"));
    const QString outcome =
        run(kLessMemory, {QStringLiteral("open"), file(QStringLiteral("large.zel"))});
    QVERIFY2(outcome == kNotAPackage || outcome == kCannotOpen, qPrintable(outcome));
}

ZEL_CORE_TEST_MAIN(tst_Memory)
#include "tst_Memory.moc"
