#include "tlv/ZelFile.h"

#include "common/FileIo.h"
#include "tests/support/ZelTest.h"
#include "tests/tlv/Wire.h"
#include "tlv/PackageBody_p.h"
#include "tlv/PackageEnvelope_p.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QScopedPointer>
#include <QSet>
#include <QTemporaryDir>
#include <QThread>
#include <QTranslator>
#include <QVector>

#include <functional>

using tlv::PackageRecord;
using tlv::SoftwareOptions;
using tlv::ZelFile;
using wire::entry;
using wire::hex;
using wire::u32;

class tst_ZelFile : public ZelTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void aFreshRecordIsZeroAndEmpty();
    void setFirmwareFileTakesTheWholeFile();
    void setFirmwareFileKeepsThePathAsGiven();
    void setFirmwareFileLooksAtTheSuffix_data();
    void setFirmwareFileLooksAtTheSuffix();
    void setFirmwareFileChangesNothingWithoutAFile_data();
    void setFirmwareFileChangesNothingWithoutAFile();
    void setFirmwareFileChangesNothingForAFileThatIsTooLarge();

    void savesTheseBytes();
    void sectionsAreWrittenAsFirstSet();
    void onlyWhatWasSetIsWritten();
    void aLoadedRecordHasNoSectionsToSave();
    void anEmptyImageIsSaved();
    void theImageIsTheOneReadAtFirst();
    void saveRefusesWithoutAFirmwarePath();
    void saveRefusesWithoutAFirmwareFile();
    void saveRefusesAFolderForFirmware();
    void saveRefusesAPathThatCannotBeOpened();
    void saveReplacesTheFileAtTheGivenPath();
    void saveNamesThePackageAfterTheFirmware_data();
    void saveNamesThePackageAfterTheFirmware();
    void saveUsesTheCanonicalFolder();
    void saveHandsTheChosenPathBackOnFailure();
    void savesInOneMillisecondShareOneFile();
    void messagesAreTranslated();

    void loadGivesBackWhatWasSaved_data();
    void loadGivesBackWhatWasSaved();
    void loadGivesBackRealFirmware_data();
    void loadGivesBackRealFirmware();
    void loadGivesBackLargeFirmware();
    void loadGivesBackTheLargestFirmware();

    void loadNeedsAFile();
    void loadLooksAtTheSuffix_data();
    void loadLooksAtTheSuffix();
    void loadNeedsToOpenTheFile();
    void loadRefusesAFileCutAnywhere();
    void loadRefusesADamagedBody_data();
    void loadRefusesADamagedBody();
    void aRefusedPackageLeavesTheRecordAlone();

    void extractsIntoTheProgramsFolder();
    void extractionStampsTheBaseName_data();
    void extractionStampsTheBaseName();
    void extractionKeepsTheNameOfAnExtractedFile_data();
    void extractionKeepsTheNameOfAnExtractedFile();
    void extractionKeepsTheNameOfAPackageWithoutOne();
    void extractionLooksAtNoOtherMachine_data();
    void extractionLooksAtNoOtherMachine();
    void extractionsInOneMillisecondShareOneFile();
    void extractionStaysInItsFolder_data();
    void extractionStaysInItsFolder();
    void extractionFollowsNoLink();
    void extractionFollowsNoLinkedFolder();
    void extractionReplacesNoFolder();
    void aFailedExtractionLeavesTheRecordFilled();
    void extractionNeedsItsFolder();

private:
    [[nodiscard]] QString inFolder(const QString &name) const;
    /// Writes a firmware file into the test's folder; its path.
    [[nodiscard]] QString firmware(const QString &name, const QByteArray &image) const;
    /// Writes a package file into the test's folder; its path.
    [[nodiscard]] QString package(const PackageRecord &record,
                                  const QString &name = QStringLiteral("package.zel")) const;

    QScopedPointer<QTemporaryDir> m_folder;
};

namespace {

const QString kInvalid =
    QStringLiteral("Cannot open the provided file, because it is not a valid ZEL file.");
const QString kNotExtracted = QStringLiteral("Failed to save firmware to a temporary folder.");
const QVector<quint32> kAllSections = {0xF0000002, 0xF0000011, 0xF0000014};

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArrayLiteral("<unreadable>");
}

/// Calls @p makeFile, which stamps the file that it makes with the time and returns its path, until
/// a file with that very stamp was there before. Returns its path; an empty one if none ever was.
QString fileMadeTwice(const QString &folder, const QString &name,
                      const std::function<QString()> &makeFile)
{
    constexpr int kAttempts = 20;
    constexpr int kLead = 300;
    constexpr int kStampCount = 100;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        const qint64 first = QDateTime::currentMSecsSinceEpoch() + kLead;
        QSet<QString> earlier;
        for (qint64 stamp = first; stamp < first + kStampCount; ++stamp) {
            const QString path = folder + QLatin1Char('/') + name.arg(stamp);
            if (!writeBytesToFile(path, "earlier")) {
                return {};
            }
            earlier.insert(QFileInfo(path).canonicalFilePath());
        }
        while (QDateTime::currentMSecsSinceEpoch() < first) {
            QThread::msleep(1);
        }
        const QString made = makeFile();
        if (earlier.contains(QFileInfo(made).canonicalFilePath())) {
            return made;
        }
    }
    return {};
}

QByteArray bodyIn(const QString &packagePath)
{
    const QByteArray file = contents(packagePath);
    return qUncompress(file.mid(8, file.size() - 10));
}

/// The folder that images are extracted into, with native separators.
QString extractionFolder()
{
    return QDir::toNativeSeparators(TestSandbox::temporaryPath()
                                    + QStringLiteral("/Halvorn Drives/ZEL File Creator"));
}

QString extracted(const ZelFile &file)
{
    return QString::fromUtf8(file.extractedFirmwarePath());
}

/// A record that loads; its image is "image".
PackageRecord stored(const QByteArray &name, const QByteArray &path)
{
    PackageRecord record;
    record.sections = kAllSections;
    record.firmwareImage = "image";
    record.firmwareFileName = name;
    record.firmwareFilePath = path;
    return record;
}

/// Every file and link below the sandbox that is not in the folder for extracted images.
QStringList filesOutsideOfTheFolder()
{
    QStringList files;
    QDirIterator walk(TestSandbox::path(), QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden,
                      QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        const QString path = QDir::toNativeSeparators(walk.next());
        if (!path.startsWith(extractionFolder())) {
            files.append(path);
        }
    }
    files.sort();
    return files;
}

QByteArray noise(int size)
{
    QRandomGenerator generator(static_cast<quint32>(size));
    QVector<quint32> words(size / static_cast<int>(sizeof(quint32)));
    generator.fillRange(words.data(), words.size());
    return {reinterpret_cast<const char *>(words.constData()), size};
}

/// Marks the messages of the package's context.
class MarkingTranslator final : public QTranslator
{
public:
    using QTranslator::QTranslator;

    [[nodiscard]] bool isEmpty() const override { return false; }
    [[nodiscard]] QString translate(const char *context, const char *sourceText,
                                    const char * /*disambiguation*/, int /*n*/) const override
    {
        return qstrcmp(context, "ZelFile") == 0
                   ? QStringLiteral("translated: ") + QString::fromUtf8(sourceText)
                   : QString();
    }
};

} // namespace

void tst_ZelFile::init()
{
    m_folder.reset(new QTemporaryDir(TestSandbox::path() + QStringLiteral("/test-XXXXXX")));
    QVERIFY(m_folder->isValid());
    QVERIFY(QDir::setCurrent(m_folder->path()));
}

void tst_ZelFile::cleanup()
{
    QVERIFY(QDir::setCurrent(TestSandbox::path()));
    QDir(TestSandbox::temporaryPath()).removeRecursively();
    QVERIFY(QDir().mkpath(TestSandbox::temporaryPath()));
    m_folder.reset();
}

QString tst_ZelFile::inFolder(const QString &name) const
{
    return m_folder->filePath(name);
}

QString tst_ZelFile::firmware(const QString &name, const QByteArray &image) const
{
    const QString path = inFolder(name);
    return writeBytesToFile(path, image) ? path : QStringLiteral("<not written>");
}

QString tst_ZelFile::package(const PackageRecord &record, const QString &name) const
{
    const QString path = inFolder(name);
    const QByteArray bytes = tlv::seal(tlv::serializeBody(record));
    return writeBytesToFile(path, bytes) ? path : QStringLiteral("<not written>");
}

void tst_ZelFile::aFreshRecordIsZeroAndEmpty()
{
    const ZelFile file;
    QVERIFY(file.softwareOptions() == SoftwareOptions());
    QCOMPARE(file.minimumHardwareVersion(), 0U);
    QCOMPARE(file.maximumHardwareVersion(), 0U);
    QCOMPARE(file.hardwareType(), 0U);
    QCOMPARE(file.layoutVersion(), 0U);
    QVERIFY(file.maskRules().isEmpty());
    QVERIFY(file.tokenRules().isEmpty());
    QCOMPARE(file.firmwareAddress(), 0U);
    QCOMPARE(file.firmwareImage(), QByteArray());
    QCOMPARE(file.firmwareSize(), 0U);
    QCOMPARE(file.firmwareFileName(), QByteArray());
    QCOMPARE(file.firmwareFilePath(), QByteArray());
    QCOMPARE(file.extractedFirmwarePath(), QByteArray());
}

void tst_ZelFile::setFirmwareFileTakesTheWholeFile()
{
    const QByteArray image = noise(70000);
    const QString path = firmware(QStringLiteral("Pr\u00FCfstand.bin"), image);
    ZelFile file;
    file.setFirmwareFile(path, 0x08000000);
    QCOMPARE(file.firmwareAddress(), 0x08000000U);
    QVERIFY(file.firmwareImage() == image);
    QCOMPARE(file.firmwareSize(), 70000U);
    QCOMPARE(file.firmwareFileName(), QByteArrayLiteral("Pr\xC3\xBC"
                                                        "fstand.bin"));
    QCOMPARE(file.firmwareFilePath(), path.toUtf8());
}

void tst_ZelFile::setFirmwareFileKeepsThePathAsGiven()
{
    QVERIFY(!firmware(QStringLiteral("fw.bin"), "x").isEmpty());
    ZelFile file;
    file.setFirmwareFile(QStringLiteral(".//./fw.bin"), 0);
    QCOMPARE(file.firmwareFileName(), QByteArrayLiteral("fw.bin"));
    QCOMPARE(file.firmwareFilePath(), QByteArrayLiteral(".//./fw.bin"));
}

void tst_ZelFile::setFirmwareFileLooksAtTheSuffix_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isTaken");

    QTest::newRow("bin") << QStringLiteral("fw.bin") << true;
    QTest::newRow("nothing but the suffix") << QStringLiteral(".bin") << true;
    QTest::newRow("capitals") << QStringLiteral("fw.BIN") << false;
    QTest::newRow("two dots") << QStringLiteral("fw.1.bin") << false;
    QTest::newRow("another") << QStringLiteral("fw.hex") << false;
    QTest::newRow("longer") << QStringLiteral("fw.binary") << false;
    QTest::newRow("no dot") << QStringLiteral("bin") << false;
}

void tst_ZelFile::setFirmwareFileLooksAtTheSuffix()
{
    QFETCH(QString, name);
    QFETCH(bool, isTaken);

    ZelFile file;
    file.setFirmwareFile(firmware(name, "image"), 1);
    QCOMPARE(file.firmwareImage(), isTaken ? QByteArrayLiteral("image") : QByteArray());
    QCOMPARE(file.firmwareAddress(), isTaken ? 1U : 0U);
    QCOMPARE(file.firmwareFileName(), isTaken ? name.toUtf8() : QByteArray());
}

void tst_ZelFile::setFirmwareFileChangesNothingWithoutAFile_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("empty path") << QString();
    QTest::newRow("missing") << QStringLiteral("missing.bin");
    QTest::newRow("missing folder") << QStringLiteral("missing/fw.bin");
    QTest::newRow("a folder") << QStringLiteral("folder.bin");
    QTest::newRow("another suffix") << QStringLiteral("fw.hex");
}

void tst_ZelFile::setFirmwareFileChangesNothingWithoutAFile()
{
    QFETCH(QString, name);
    QVERIFY(QDir(m_folder->path()).mkdir(QStringLiteral("folder.bin")));
    QCOMPARE(contents(firmware(QStringLiteral("fw.hex"), "hex")), QByteArrayLiteral("hex"));

    ZelFile untouched;
    untouched.setFirmwareFile(name, 2);
    QString path = inFolder(QStringLiteral("a.zel"));
    QString message;
    QVERIFY(!untouched.save(path, message));

    ZelFile file;
    const QString good = firmware(QStringLiteral("fw.bin"), "image");
    file.setFirmwareFile(good, 1);
    file.setFirmwareFile(name, 2);
    QCOMPARE(file.firmwareAddress(), 1U);
    QCOMPARE(file.firmwareImage(), QByteArrayLiteral("image"));
    QCOMPARE(file.firmwareFilePath(), good.toUtf8());
}

void tst_ZelFile::setFirmwareFileChangesNothingForAFileThatIsTooLarge()
{
    const QString path = inFolder(QStringLiteral("huge.bin"));
    QFile sparse(path);
    QVERIFY(sparse.open(QIODevice::WriteOnly));
    if (!sparse.resize(Q_INT64_C(5'000'000'000))) {
        QSKIP("no room for a file of 5 GB");
    }
    ZelFile file;
    file.setFirmwareFile(path, 1);
    QCOMPARE(file.firmwareFilePath(), QByteArray());
    QCOMPARE(file.firmwareAddress(), 0U);
}

void tst_ZelFile::savesTheseBytes()
{
    QCOMPARE(contents(firmware(QStringLiteral("fw.bin"), "\x01\x02")), hex("0102"));
    ZelFile file;
    file.setMaskRules({{1566, 1, "A*"}});
    file.setTokenRules({{"B", "2"}});
    file.setSoftwareOptions({true, {0, 0}, {99, 99}, false, {1, 2}, {3, 4}});
    file.setHardware(2, 3, 4, 1);
    file.setFirmwareFile(QStringLiteral("fw.bin"), 0x08000000);
    QString path = inFolder(QStringLiteral("out.zel"));
    QString message = QStringLiteral("untouched");
    QVERIFY(file.save(path, message));
    QCOMPARE(path, inFolder(QStringLiteral("out.zel")));
    QCOMPARE(message, QStringLiteral("untouched"));

    const QByteArray body = hex("F0000001 00000138"
                                "F0000002 000000A2"
                                "F0000003 0000001E"
                                "F0000004 00000016"
                                "F0000005 00000004 061E0001"
                                "F0000006 00000002 412A"
                                "F0000007 0000001A"
                                "F0000008 00000012"
                                "F0000009 00000001 42"
                                "F000000A 00000001 32"
                                "F000000B 00000052"
                                "F000000C 00000021"
                                "F0000010 00000001 01"
                                "F000000E 00000004 00000000"
                                "F000000F 00000004 00630063"
                                "F000000D 00000021"
                                "F0000010 00000001 00"
                                "F000000E 00000004 00010002"
                                "F000000F 00000004 00030004"
                                "F0000011 00000056"
                                "F0000012 00000030"
                                "50564552 00000004 00000001"
                                "4D485756 00000004 00000002"
                                "58485756 00000004 00000003"
                                "50485754 00000004 00000004"
                                "F0000013 00000016"
                                "50414452 00000004 08000000"
                                "5042494E 00000002 0102"
                                "F0000014 00000028"
                                "5053495A 00000004 00000002"
                                "F0000015 00000006 66772E62696E"
                                "F0000016 00000006 66772E62696E");
    QCOMPARE(bodyIn(path).toHex(), body.toHex());
    QCOMPARE(contents(path), wire::envelope(qCompress(body, 9)));
}

void tst_ZelFile::sectionsAreWrittenAsFirstSet()
{
    const QString path = firmware(QStringLiteral("fw.bin"), "x");
    ZelFile file;
    file.setFirmwareFile(path, 0);
    file.setTokenRules({});
    file.setHardware(0, 0, 0, 1);
    file.setMaskRules({});
    file.setSoftwareOptions({});
    file.setFirmwareFile(path, 0);
    file.setHardware(1, 2, 3, 1);

    QString out = inFolder(QStringLiteral("out.zel"));
    QString message;
    QVERIFY(file.save(out, message));
    PackageRecord record;
    record.sections = {0xF0000014, 0xF0000013, 0xF0000002, 0xF0000011};
    record.minimumHardwareVersion = 1;
    record.maximumHardwareVersion = 2;
    record.hardwareType = 3;
    record.layoutVersion = 1;
    record.firmwareImage = "x";
    record.firmwareSize = 1;
    record.firmwareFileName = "fw.bin";
    record.firmwareFilePath = path.toUtf8();
    QCOMPARE(bodyIn(out), tlv::serializeBody(record));
    QVERIFY(bodyIn(out).mid(8).startsWith(hex("F0000014")));
}

void tst_ZelFile::onlyWhatWasSetIsWritten()
{
    QCOMPARE(contents(firmware(QStringLiteral("f.bin"), "x")), QByteArrayLiteral("x"));
    ZelFile file;
    file.setFirmwareFile(QStringLiteral("f.bin"), 5);
    QString out = inFolder(QStringLiteral("out.zel"));
    QString message;
    QVERIFY(file.save(out, message));
    QCOMPARE(bodyIn(out).toHex(), hex("F0000001 0000002E"
                                      "F0000014 00000026"
                                      "5053495A 00000004 00000001"
                                      "F0000015 00000005 662E62696E"
                                      "F0000016 00000005 662E62696E")
                                      .toHex());
}

void tst_ZelFile::aLoadedRecordHasNoSectionsToSave()
{
    const QString path = firmware(QStringLiteral("fw.bin"), "x");
    ZelFile file;
    QString message;
    QVERIFY(file.load(package(stored("fw.bin", path.toUtf8())), message));
    QString out = inFolder(QStringLiteral("out.zel"));
    QVERIFY(file.save(out, message));
    QCOMPARE(bodyIn(out), hex("F0000001 00000000"));
}

void tst_ZelFile::anEmptyImageIsSaved()
{
    ZelFile file;
    file.setHardware(0, 0, 0, 1);
    file.setFirmwareFile(firmware(QStringLiteral("empty.bin"), QByteArray()), 5);
    QString out = inFolder(QStringLiteral("out.zel"));
    QString message;
    QVERIFY(file.save(out, message));
    QVERIFY(bodyIn(out).contains(hex("F0000013 00000014 50414452 00000004 00000005"
                                     "5042494E 00000000 F0000014")));
    QVERIFY(bodyIn(out).contains(hex("5053495A 00000004 00000000")));
}

void tst_ZelFile::theImageIsTheOneReadAtFirst()
{
    const QString path = firmware(QStringLiteral("fw.bin"), "before");
    ZelFile file;
    file.setHardware(0, 0, 0, 1);
    file.setFirmwareFile(path, 0);
    QVERIFY(writeBytesToFile(path, "after it was read"));
    QString out = inFolder(QStringLiteral("out.zel"));
    QString message;
    QVERIFY(file.save(out, message));
    QVERIFY(bodyIn(out).contains(entry(0x5042494E, "before")));
    QVERIFY(bodyIn(out).contains(entry(0x5053495A, u32(6))));
}

void tst_ZelFile::saveRefusesWithoutAFirmwarePath()
{
    ZelFile file;
    QString path = inFolder(QStringLiteral("out.zel"));
    QString message;
    QVERIFY(!file.save(path, message));
    QCOMPARE(message,
             QStringLiteral("The firmware file is empty. Please select another firmware file."));
    QVERIFY(!QFile::exists(path));
}

void tst_ZelFile::saveRefusesWithoutAFirmwareFile()
{
    const QString firmwarePath = firmware(QStringLiteral("fw.bin"), "x");
    ZelFile file;
    file.setFirmwareFile(firmwarePath, 0);
    QVERIFY(QFile::remove(firmwarePath));
    QString path = inFolder(QStringLiteral("out.zel"));
    QString message;
    QVERIFY(!file.save(path, message));
    QCOMPARE(message, QStringLiteral(
                          "The firmware file doesn't exist. Please select another firmware file."));
    QVERIFY(!QFile::exists(path));
}

void tst_ZelFile::saveRefusesAFolderForFirmware()
{
    const QString firmwarePath = firmware(QStringLiteral("fw.bin"), "x");
    ZelFile file;
    file.setFirmwareFile(firmwarePath, 0);
    QVERIFY(QFile::remove(firmwarePath));
    QVERIFY(QDir().mkdir(firmwarePath));
    QString path = inFolder(QStringLiteral("out.zel"));
    QString message;
    QVERIFY(!file.save(path, message));
    QCOMPARE(message,
             QStringLiteral("The firmware path is a folder. Please select another firmware file."));
    QVERIFY(!QFile::exists(path));
}

void tst_ZelFile::saveRefusesAPathThatCannotBeOpened()
{
    ZelFile file;
    file.setFirmwareFile(firmware(QStringLiteral("fw.bin"), "x"), 0);
    for (const QString &bad : {inFolder(QStringLiteral("missing/out.zel")), m_folder->path()}) {
        QString path = bad;
        QString message;
        QVERIFY(!file.save(path, message));
        QCOMPARE(message, QStringLiteral("Failed to open an ZEL file for writing."));
        QCOMPARE(path, bad);
    }
    QVERIFY(!QFile::exists(inFolder(QStringLiteral("missing"))));
}

void tst_ZelFile::saveReplacesTheFileAtTheGivenPath()
{
    QString path = inFolder(QStringLiteral("no suffix is added"));
    QVERIFY(writeBytesToFile(path, QByteArray(100000, 'x')));
    ZelFile file;
    file.setFirmwareFile(firmware(QStringLiteral("fw.bin"), "x"), 0);
    QString message;
    QVERIFY(file.save(path, message));
    QCOMPARE(path, inFolder(QStringLiteral("no suffix is added")));
    QCOMPARE(contents(path), wire::envelope(qCompress(bodyIn(path), 9)));
}

void tst_ZelFile::saveNamesThePackageAfterTheFirmware_data()
{
    QTest::addColumn<QString>("baseName");

    QTest::newRow("plain") << QStringLiteral("fw");
    QTest::newRow("with blanks") << QStringLiteral("my own firmware");
    QTest::newRow("non-ASCII") << QStringLiteral("Pr\u00FCfstand \u96FB\u6C17");
    QTest::newRow("a placeholder") << QStringLiteral("%2 %1");
    QTest::newRow("nothing") << QString();
}

void tst_ZelFile::saveNamesThePackageAfterTheFirmware()
{
    QFETCH(QString, baseName);

    ZelFile file;
    file.setFirmwareFile(firmware(baseName + QStringLiteral(".bin"), "x"), 0);
    QString path;
    QString message;
    const qint64 before = QDateTime::currentMSecsSinceEpoch();
    QVERIFY(file.save(path, message));
    const qint64 after = QDateTime::currentMSecsSinceEpoch();

    const QFileInfo info(path);
    QVERIFY(info.isFile());
    QCOMPARE(info.path(), QFileInfo(m_folder->path()).canonicalFilePath());
    const QString name = info.fileName();
    QVERIFY(name.startsWith(baseName + QLatin1Char('_')));
    QVERIFY(name.endsWith(QStringLiteral(".zel")));
    const qint64 stamp = name.mid(baseName.size() + 1).chopped(4).toLongLong();
    QVERIFY(before <= stamp && stamp <= after);
}

void tst_ZelFile::saveUsesTheCanonicalFolder()
{
#ifdef Q_OS_WIN
    QSKIP("links to folders need rights that a test need not have");
#else
    QVERIFY(QDir().mkdir(inFolder(QStringLiteral("real"))));
    QCOMPARE(contents(firmware(QStringLiteral("real/fw.bin"), "x")), QByteArrayLiteral("x"));
    QVERIFY(QFile::link(inFolder(QStringLiteral("real")), inFolder(QStringLiteral("link"))));
    ZelFile file;
    file.setFirmwareFile(inFolder(QStringLiteral("link/fw.bin")), 0);
    QString path;
    QString message;
    QVERIFY(file.save(path, message));
    QCOMPARE(QFileInfo(path).path(),
             QFileInfo(inFolder(QStringLiteral("real"))).canonicalFilePath());
#endif
}

void tst_ZelFile::saveHandsTheChosenPathBackOnFailure()
{
    // With the stamp behind it, the name is longer than file systems take.
    const QString baseName(245, QLatin1Char('n'));
    ZelFile file;
    file.setFirmwareFile(firmware(baseName + QStringLiteral(".bin"), "x"), 0);
    QCOMPARE(file.firmwareImage(), QByteArrayLiteral("x"));
    QString path;
    QString message;
    QVERIFY(!file.save(path, message));
    QCOMPARE(message, QStringLiteral("Failed to open an ZEL file for writing."));
    QVERIFY(path.contains(baseName + QLatin1Char('_')));
}

void tst_ZelFile::savesInOneMillisecondShareOneFile()
{
    ZelFile file;
    file.setFirmwareFile(firmware(QStringLiteral("fw.bin"), "x"), 0);
    const QString path = fileMadeTwice(m_folder->path(), QStringLiteral("fw_%1.zel"), [&file] {
        QString saved;
        QString message;
        return file.save(saved, message) ? saved : QString();
    });
    QVERIFY(!path.isEmpty());
    QCOMPARE(bodyIn(path).left(4), QByteArray::fromHex("F0000001"));
}

void tst_ZelFile::messagesAreTranslated()
{
    MarkingTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    ZelFile file;
    QString path;
    QString message;
    QVERIFY(!file.save(path, message));
    QCOMPARE(message,
             QStringLiteral("translated: The firmware file is empty. Please select another "
                            "firmware file."));
    QVERIFY(!file.load(QStringLiteral("missing.zel"), message));
    QCOMPARE(message, QStringLiteral("translated: ZEL file doesn't exist."));
}

void tst_ZelFile::loadGivesBackWhatWasSaved_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("image");
    QTest::addColumn<int>("rules");

    QTest::newRow("small") << QStringLiteral("fw.bin") << QByteArrayLiteral("image") << 1;
    QTest::newRow("no image, no rules") << QStringLiteral("fw.bin") << QByteArray() << 0;
    QTest::newRow("one zero byte") << QStringLiteral("fw.bin") << QByteArray(1, '\0') << 3;
    QTest::newRow("non-ASCII") << QStringLiteral("Pr\u00FCfstand \u96FB\u6C17.bin") << noise(1000)
                               << 2;
    QTest::newRow("many rules") << QStringLiteral("fw.bin") << noise(100000) << 5000;
}

void tst_ZelFile::loadGivesBackWhatWasSaved()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, image);
    QFETCH(int, rules);

    QList<MaskValidationRule> maskRules;
    QList<TokenValidationRule> tokenRules;
    for (int i = 0; i < rules; ++i) {
        maskRules.append({static_cast<quint16>(i), 0xFFFF, QByteArray(i % 3, '*')});
        tokenRules.append({QByteArray::number(i), name.toUtf8()});
    }
    const SoftwareOptions options = {true, {1, 2}, {3, 4}, true, {0, 0}, {99, 99}};
    const QString firmwarePath = firmware(name, image);
    ZelFile written;
    written.setMaskRules(maskRules);
    written.setTokenRules(tokenRules);
    written.setSoftwareOptions(options);
    written.setHardware(5, 6, 7, 1);
    written.setFirmwareFile(firmwarePath, 0xFFFFFFFF);
    QString path = inFolder(QStringLiteral("\u00FCbung.zel"));
    QString message = QStringLiteral("untouched");
    QVERIFY(written.save(path, message));

    ZelFile read;
    QVERIFY(read.load(path, message));
    QCOMPARE(message, QStringLiteral("untouched"));
    QVERIFY(read.maskRules() == maskRules);
    QVERIFY(read.tokenRules() == tokenRules);
    QVERIFY(read.softwareOptions() == options);
    QCOMPARE(read.minimumHardwareVersion(), 5U);
    QCOMPARE(read.maximumHardwareVersion(), 6U);
    QCOMPARE(read.hardwareType(), 7U);
    QCOMPARE(read.layoutVersion(), 1U);
    QCOMPARE(read.firmwareAddress(), 0xFFFFFFFFU);
    QVERIFY(read.firmwareImage() == image);
    QCOMPARE(read.firmwareSize(), static_cast<quint32>(image.size()));
    QCOMPARE(read.firmwareFileName(), name.toUtf8());
    QCOMPARE(read.firmwareFilePath(), firmwarePath.toUtf8());
    QVERIFY(contents(extracted(read)) == image);
}

void tst_ZelFile::loadGivesBackRealFirmware_data()
{
    QTest::addColumn<QString>("source");

    QTest::newRow("OpenSBI") << QStringLiteral(ZEL_OPENSBI_IMAGE);
    QTest::newRow("SeaBIOS") << QStringLiteral(ZEL_SEABIOS_IMAGE);
}

void tst_ZelFile::loadGivesBackRealFirmware()
{
    QFETCH(QString, source);

    ZelFile written;
    written.setHardware(0, 0, 0, 1);
    written.setFirmwareFile(source, 0x80000000);
    QString path = inFolder(QStringLiteral("real.zel"));
    QString message;
    QVERIFY(written.save(path, message));
    ZelFile read;
    QVERIFY(read.load(path, message));
    QVERIFY(contents(source).size() > 100000);
    QVERIFY(contents(extracted(read)) == contents(source));
}

void tst_ZelFile::loadGivesBackLargeFirmware()
{
    const QByteArray image = noise(16 << 20);
    ZelFile written;
    written.setHardware(0, 0, 0, 1);
    written.setFirmwareFile(firmware(QStringLiteral("large.bin"), image), 0);
    QString path = inFolder(QStringLiteral("large.zel"));
    QString message;
    QVERIFY(written.save(path, message));
    ZelFile read;
    QVERIFY(read.load(path, message));
    QVERIFY(read.firmwareImage() == image);
    QVERIFY(contents(extracted(read)) == image);
}

void tst_ZelFile::loadGivesBackTheLargestFirmware()
{
    constexpr int kSize = 256 << 20;
    QFile sparse(inFolder(QStringLiteral("largest.bin")));
    QVERIFY(sparse.open(QIODevice::WriteOnly));
    QVERIFY(sparse.resize(kSize - 1));
    QVERIFY(sparse.seek(kSize - 1));
    QVERIFY(sparse.putChar('x'));
    sparse.close();

    QString path = inFolder(QStringLiteral("largest.zel"));
    QString message;
    {
        ZelFile written;
        written.setHardware(0, 0, 0, 1);
        written.setFirmwareFile(sparse.fileName(), 0);
        QVERIFY(written.save(path, message));
    }
    ZelFile read;
    QVERIFY(read.load(path, message));
    QCOMPARE(QFileInfo(extracted(read)).size(), qint64(kSize));
    QCOMPARE(read.firmwareImage().size(), kSize);
    QCOMPARE(read.firmwareImage().indexOf('x'), kSize - 1);
}

void tst_ZelFile::loadNeedsAFile()
{
    for (const QString &path : {QString(), inFolder(QStringLiteral("missing.zel")),
                                inFolder(QStringLiteral("missing.txt"))}) {
        ZelFile file;
        QString message;
        QVERIFY(!file.load(path, message));
        QCOMPARE(message, QStringLiteral("ZEL file doesn't exist."));
    }
}

void tst_ZelFile::loadLooksAtTheSuffix_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isRead");

    QTest::newRow("zel") << QStringLiteral("a.zel") << true;
    QTest::newRow("nothing but the suffix") << QStringLiteral(".zel") << true;
    QTest::newRow("capitals") << QStringLiteral("a.ZEL") << false;
    QTest::newRow("two dots") << QStringLiteral("a.b.zel") << false;
    QTest::newRow("no suffix") << QStringLiteral("zel") << false;
    QTest::newRow("another") << QStringLiteral("a.bin") << false;
}

void tst_ZelFile::loadLooksAtTheSuffix()
{
    QFETCH(QString, name);
    QFETCH(bool, isRead);

    ZelFile file;
    QString message;
    QCOMPARE(file.load(package(stored("fw.bin", ""), name), message), isRead);
    QCOMPARE(message, isRead ? QString() : kInvalid);
}

void tst_ZelFile::loadNeedsToOpenTheFile()
{
    QVERIFY(QDir().mkdir(inFolder(QStringLiteral("folder.zel"))));
    ZelFile file;
    QString message;
    QVERIFY(!file.load(inFolder(QStringLiteral("folder.zel")), message));
    QCOMPARE(message, QStringLiteral("Failed to open the ZEL file."));
}

void tst_ZelFile::loadRefusesAFileCutAnywhere()
{
    const QString path = package(stored("fw.bin", "/a/fw.bin"));
    const QByteArray whole = contents(path);
    for (int size = 0; size < whole.size(); ++size) {
        QVERIFY(writeBytesToFile(path, whole.left(size)));
        ZelFile file;
        QString message;
        QVERIFY2(!file.load(path, message), qPrintable(QString::number(size)));
        QCOMPARE(message, kInvalid);
    }
    QVERIFY(!QFile::exists(extractionFolder()));
}

void tst_ZelFile::loadRefusesADamagedBody_data()
{
    QTest::addColumn<QByteArray>("body");

    const QByteArray section = entry(0xF0000014, entry(0x5053495A, u32(0)) + entry(0xF0000015, "n")
                                                     + entry(0xF0000016, "p"));
    QTest::newRow("no body") << QByteArray();
    QTest::newRow("1, the root's tag") << entry(0xF0000002, section);
    QTest::newRow("2, the root's length") << entry(0xF0000001, section) + "x";
    QTest::newRow("3, a length") << entry(0xF0000001, section.chopped(1));
    QTest::newRow("4, a missing tag") << entry(0xF0000001, entry(0xF0000011, section));
    QTest::newRow("5, an unknown section") << entry(0xF0000001, section + entry(0xF0000003, ""));
}

void tst_ZelFile::loadRefusesADamagedBody()
{
    QFETCH(QByteArray, body);

    const QString path = inFolder(QStringLiteral("damaged.zel"));
    QVERIFY(writeBytesToFile(path, wire::envelope(qCompress(body, 9))));
    ZelFile file;
    QString message;
    QVERIFY(!file.load(path, message));
    QCOMPARE(message, kInvalid);
}

void tst_ZelFile::aRefusedPackageLeavesTheRecordAlone()
{
    const QString path = inFolder(QStringLiteral("damaged.zel"));
    const QByteArray body =
        entry(0xF0000001, entry(0xF0000014, entry(0x5053495A, u32(99)) + entry(0xF0000015, "n")
                                                + entry(0xF0000016, "p"))
                              + entry(0xF0000003, ""));
    QVERIFY(writeBytesToFile(path, wire::envelope(qCompress(body, 9))));
    ZelFile file;
    file.setMaskRules({{1, 2, "m"}});
    QString message;
    QVERIFY(!file.load(path, message));
    QCOMPARE(file.maskRules().size(), 1);
    QCOMPARE(file.firmwareSize(), 0U);
}

void tst_ZelFile::extractsIntoTheProgramsFolder()
{
    QVERIFY(QDir(TestSandbox::temporaryPath()).removeRecursively());
    ZelFile file;
    QString message;
    QVERIFY(file.load(package(stored("fw.bin", "/a/fw.bin")), message));
    QVERIFY(extracted(file).startsWith(extractionFolder() + QDir::separator()));
    QCOMPARE(contents(extracted(file)), QByteArrayLiteral("image"));
    QCOMPARE(QDir(extractionFolder()).entryList(QDir::Files).size(), 1);
}

void tst_ZelFile::extractionStampsTheBaseName_data()
{
    QTest::addColumn<QByteArray>("storedName");
    QTest::addColumn<QString>("baseName");

    QTest::newRow("plain") << QByteArrayLiteral("fw.bin") << QStringLiteral("fw");
    QTest::newRow("two dots") << QByteArrayLiteral("fw.1.bin") << QStringLiteral("fw");
    QTest::newRow("no dot") << QByteArrayLiteral("fw") << QStringLiteral("fw");
    QTest::newRow("a placeholder") << QByteArrayLiteral("%1%2.bin") << QStringLiteral("%1%2");
    QTest::newRow("suffix alone") << QByteArrayLiteral(".bin") << QString();
    QTest::newRow("non-ASCII") << QStringLiteral("Pr\u00FCf \u96FB.bin").toUtf8()
                               << QStringLiteral("Pr\u00FCf \u96FB");
    QTest::newRow("stamped already")
        << QByteArrayLiteral("fw_1700000000000.bin") << QStringLiteral("fw_1700000000000");
    QTest::newRow("no name: the package's") << QByteArray() << QStringLiteral("package");
}

void tst_ZelFile::extractionStampsTheBaseName()
{
    QFETCH(QByteArray, storedName);
    QFETCH(QString, baseName);

    ZelFile file;
    QString message;
    const qint64 before = QDateTime::currentMSecsSinceEpoch();
    QVERIFY(file.load(package(stored(storedName, "/a/fw.bin")), message));
    const qint64 after = QDateTime::currentMSecsSinceEpoch();

    const QString start = extractionFolder() + QDir::separator() + baseName + QLatin1Char('_');
    const QString path = extracted(file);
    QVERIFY2(path.startsWith(start), qPrintable(path));
    QVERIFY2(path.endsWith(QStringLiteral(".bin")), qPrintable(path));
    const qint64 stamp = path.mid(start.size()).chopped(4).toLongLong();
    QVERIFY(before <= stamp && stamp <= after);
    QCOMPARE(contents(path), QByteArrayLiteral("image"));
}

void tst_ZelFile::extractionKeepsTheNameOfAnExtractedFile_data()
{
    QTest::addColumn<QString>("existing");
    QTest::addColumn<QString>("storedPath");
    QTest::addColumn<bool>("isKept");

    const QString folder = extractionFolder() + QDir::separator();
    const QString name = QStringLiteral("old.bin");
    QTest::newRow("the file") << name << folder + name << true;
    QTest::newRow("in other words")
        << name << QStringLiteral("  %1./../ZEL File Creator//old.bin ").arg(folder) << true;
    QTest::newRow("another file there")
        << QStringLiteral("o.bin") << folder + QStringLiteral("o.bin") << true;
    QTest::newRow("gone") << QStringLiteral("o.bin") << folder + name << false;
    QTest::newRow("the folder itself") << name << folder << false;
    QTest::newRow("below the folder")
        << QStringLiteral("sub/old.bin") << folder + QStringLiteral("sub/old.bin") << false;
    QTest::newRow("above the folder")
        << QStringLiteral("../old.bin") << folder + QStringLiteral("../old.bin") << false;
    QTest::newRow("by placeholder")
        << name << QStringLiteral("%Temp%/Halvorn Drives/ZEL File Creator/old.bin") << false;
    QTest::newRow("no path") << name << QString() << false;
    QTest::newRow("NUL in the path") << name << folder + name + QChar(QChar::Null) << false;
    QTest::newRow("too long a path") << name << folder + QString(200000, QLatin1Char('x')) << false;
}

void tst_ZelFile::extractionKeepsTheNameOfAnExtractedFile()
{
    QFETCH(QString, existing);
    QFETCH(QString, storedPath);
    QFETCH(bool, isKept);
    QVERIFY(QDir().mkpath(extractionFolder() + QStringLiteral("/sub")));
    QVERIFY(writeBytesToFile(extractionFolder() + QDir::separator() + existing, "old"));

    ZelFile file;
    QString message;
    QVERIFY(file.load(package(stored("old.bin", storedPath.toUtf8())), message));
    const QString kept = extractionFolder() + QDir::separator() + QStringLiteral("old.bin");
    QCOMPARE(extracted(file) == kept, isKept);
    QCOMPARE(contents(extracted(file)), QByteArrayLiteral("image"));
}

void tst_ZelFile::extractionKeepsTheNameOfAPackageWithoutOne()
{
    QVERIFY(QDir().mkpath(extractionFolder()));
    const QString existing = extractionFolder() + QStringLiteral("/old.bin");
    QVERIFY(writeBytesToFile(existing, "old"));
    ZelFile file;
    QString message;
    QVERIFY(file.load(package(stored("", existing.toUtf8())), message));
    QCOMPARE(extracted(file),
             extractionFolder() + QDir::separator() + QStringLiteral("package.zel"));
}

void tst_ZelFile::extractionLooksAtNoOtherMachine_data()
{
    QTest::addColumn<QString>("prefix");

    QTest::newRow("slashes") << QStringLiteral("/");
    QTest::newRow("slashes behind blanks") << QStringLiteral(" \t/");
    QTest::newRow("backslashes") << QStringLiteral("\\\\server\\share");
    QTest::newRow("mixed") << QStringLiteral("\\/server/share");
    QTest::newRow("device") << QStringLiteral("\\\\?\\UNC\\server\\share");
    QTest::newRow("kernel") << QStringLiteral("\\\?\?\\UNC\\server\\share");
}

void tst_ZelFile::extractionLooksAtNoOtherMachine()
{
    QFETCH(QString, prefix);
    QVERIFY(QDir().mkpath(extractionFolder()));
    const QString existing = extractionFolder() + QStringLiteral("/old.bin");
    QVERIFY(writeBytesToFile(existing, "old"));

    // Were the path looked at, "//folder/old.bin" would be found on systems without network paths.
    ZelFile file;
    QString message;
    QVERIFY(file.load(package(stored("old.bin", (prefix + existing).toUtf8())), message));
    QVERIFY(extracted(file).contains(QStringLiteral("old_")));
}

void tst_ZelFile::extractionsInOneMillisecondShareOneFile()
{
    const QString path = package(stored("fw.bin", ""));
    QVERIFY(QDir().mkpath(extractionFolder()));
    const QString image = fileMadeTwice(extractionFolder(), QStringLiteral("fw_%1.bin"), [&path] {
        ZelFile file;
        QString message;
        return file.load(path, message) ? extracted(file) : QString();
    });
    QVERIFY(!image.isEmpty());
    QCOMPARE(contents(image), QByteArrayLiteral("image"));
}

void tst_ZelFile::extractionStaysInItsFolder_data()
{
    QTest::addColumn<QByteArray>("name");

    QTest::newRow("parent") << QByteArrayLiteral("..");
    QTest::newRow("this") << QByteArrayLiteral(".");
    QTest::newRow("up") << QByteArrayLiteral("../up.bin");
    QTest::newRow("up, Windows") << QByteArrayLiteral("..\\up.bin");
    QTest::newRow("far up") << QByteArrayLiteral("../../../far.bin");
    QTest::newRow("root") << QByteArrayLiteral("/zel-escaped.bin");
    QTest::newRow("root alone") << QByteArrayLiteral("/");
    QTest::newRow("below") << QByteArrayLiteral("sub/below.bin");
    QTest::newRow("ends in a separator") << QByteArrayLiteral("fw.bin/");
    QTest::newRow("drive") << QByteArrayLiteral("C:\\escaped.bin");
    QTest::newRow("drive, relative") << QByteArrayLiteral("C:escaped.bin");
    QTest::newRow("share") << QByteArrayLiteral("\\\\server\\share\\escaped.bin");
    QTest::newRow("stream") << QByteArrayLiteral("fw.bin:stream");
    QTest::newRow("stream in the base name") << QByteArrayLiteral("fw:stream.bin");
    QTest::newRow("device CON") << QByteArrayLiteral("CON");
    QTest::newRow("device NUL.bin") << QByteArrayLiteral("NUL.bin");
    QTest::newRow("device COM1") << QByteArrayLiteral("COM1");
    QTest::newRow("trailing dot") << QByteArrayLiteral("fw.bin.");
    QTest::newRow("trailing blank") << QByteArrayLiteral("fw.bin ");
    QTest::newRow("blank") << QByteArrayLiteral(" ");
    QTest::newRow("NUL at the end") << QByteArray("fw.bin\0", 7);
    QTest::newRow("NUL inside") << QByteArray("up\0.bin", 7);
    QTest::newRow("NUL alone") << QByteArray(1, '\0');
    QTest::newRow("control characters") << QByteArrayLiteral("a\r\n\x1B[31m.bin");
    QTest::newRow("not UTF-8") << QByteArrayLiteral("\xFF\xFE/\xC0\xAE.bin");
    QTest::newRow("fullwidth separators")
        << QStringLiteral("..\uFF0F..\uFF3Cup\uFF1As.bin").toUtf8();
    QTest::newRow("control characters of Latin-1") << QByteArrayLiteral("a\xC2\x85\xC2\x9B.bin");
    QTest::newRow("written from right to left") << QStringLiteral("a\u202Enib.exe").toUtf8();
    QTest::newRow("several trailing dots and blanks") << QByteArrayLiteral("fw.bin. . .");
    QTest::newRow("drive alone") << QByteArrayLiteral("C:");
    QTest::newRow("drive, slashes") << QByteArrayLiteral("C:/escaped.bin");
    QTest::newRow("device path") << QByteArrayLiteral("\\\\.\\C:\\escaped.bin");
    QTest::newRow("device COM with a raised one") << QStringLiteral("COM\u00B9.bin").toUtf8();
    QTest::newRow("default stream") << QByteArrayLiteral("fw.bin::$DATA");
    QTest::newRow("the folder's own name") << QByteArrayLiteral("ZEL File Creator");
    QTest::newRow("the folder's own name, from above") << QByteArrayLiteral("../ZEL File Creator");
    QTest::newRow("the folder's own path") << extractionFolder().toUtf8();
    QTest::newRow("by placeholder") << QByteArrayLiteral("%TEMP%/escaped.bin");
    QTest::newRow("300 characters") << QByteArray(300, 'n');
    QTest::newRow("300 characters beyond ASCII") << QString(300, QChar(0x96FB)).toUtf8();
    QTest::newRow("300 characters and a suffix") << QByteArray(300, 'n') + ".bin";
    QTest::newRow("a mebibyte") << QByteArray(1 << 20, 'n');
}

void tst_ZelFile::extractionStaysInItsFolder()
{
    QFETCH(QByteArray, name);
    QVERIFY(QDir().mkpath(extractionFolder()));
    const QString existing = extractionFolder() + QStringLiteral("/old.bin");
    QVERIFY(writeBytesToFile(existing, "old"));

    // The name is stamped for the one path, and for the other kept as it is.
    for (const QByteArray &storedPath : {QByteArray("/a/fw.bin"), existing.toUtf8()}) {
        const QString path = package(stored(name, storedPath));
        const QStringList before = filesOutsideOfTheFolder();
        const int filesBefore = QDir(extractionFolder()).entryList(QDir::Files).size();
        ZelFile file;
        QString message;
        const bool isWritten = file.load(path, message);
        QCOMPARE(filesOutsideOfTheFolder(), before);
        QVERIFY(!QFile::exists(QStringLiteral("/zel-escaped.bin")));

        const QStringList files =
            QDir(extractionFolder()).entryList(QDir::Files | QDir::Hidden | QDir::System);
        if (isWritten) {
            const QFileInfo info(extracted(file));
            // A file system that takes a longer name may list it under a short one.
            QVERIFY(files.contains(info.fileName()) || info.fileName().size() > 255);
            QVERIFY(info.isFile());
            QCOMPARE(QDir::toNativeSeparators(info.canonicalPath()), extractionFolder());
            QCOMPARE(contents(extracted(file)), QByteArrayLiteral("image"));
        } else {
            QCOMPARE(message, kNotExtracted);
            QCOMPARE(QDir(extractionFolder()).entryList(QDir::Files).size(), filesBefore);
        }
    }
    QCOMPARE(contents(existing), QByteArrayLiteral("old"));
}

void tst_ZelFile::extractionFollowsNoLink()
{
#ifdef Q_OS_WIN
    QSKIP("links to files need rights that a test need not have");
#else
    QVERIFY(QDir().mkpath(extractionFolder()));
    const QString existing = extractionFolder() + QStringLiteral("/old.bin");
    QVERIFY(writeBytesToFile(existing, "old"));
    const QString victim = firmware(QStringLiteral("victim"), "victim");
    for (const QString &target : {victim, inFolder(QStringLiteral("not there"))}) {
        const QString link = extractionFolder() + QStringLiteral("/link.bin");
        QVERIFY(QFile::link(target, link));
        ZelFile file;
        QString message;
        QVERIFY(!file.load(package(stored("link.bin", existing.toUtf8())), message));
        QCOMPARE(message, kNotExtracted);
        QVERIFY(QFile::remove(link));
    }
    QCOMPARE(contents(victim), QByteArrayLiteral("victim"));
    QVERIFY(!QFile::exists(inFolder(QStringLiteral("not there"))));
#endif
}

void tst_ZelFile::extractionFollowsNoLinkedFolder()
{
#ifdef Q_OS_WIN
    QSKIP("links to folders need rights that a test need not have");
#else
    const QString elsewhere = inFolder(QStringLiteral("elsewhere"));
    QVERIFY(QDir().mkpath(elsewhere + QStringLiteral("/ZEL File Creator")));
    const QString maker = TestSandbox::temporaryPath() + QStringLiteral("/Halvorn Drives");
    ZelFile file;
    QString message;

    QVERIFY(QFile::link(elsewhere, maker));
    QVERIFY(!file.load(package(stored("fw.bin", "")), message));
    QCOMPARE(message, kNotExtracted);

    QVERIFY(QFile::remove(maker));
    QVERIFY(QDir().mkdir(maker));
    QVERIFY(QFile::link(elsewhere, maker + QStringLiteral("/ZEL File Creator")));
    QVERIFY(!file.load(package(stored("fw.bin", "")), message));
    QVERIFY(QDir(elsewhere).entryList(QDir::Files).isEmpty());
    QVERIFY(QDir(elsewhere + QStringLiteral("/ZEL File Creator")).isEmpty());
#endif
}

void tst_ZelFile::extractionReplacesNoFolder()
{
    QVERIFY(QDir().mkpath(extractionFolder() + QStringLiteral("/taken.bin")));
    const QString existing = extractionFolder() + QStringLiteral("/old.bin");
    QVERIFY(writeBytesToFile(existing, "old"));
    ZelFile file;
    QString message;
    QVERIFY(!file.load(package(stored("taken.bin", existing.toUtf8())), message));
    QCOMPARE(message, kNotExtracted);
    QVERIFY(QFileInfo(extractionFolder() + QStringLiteral("/taken.bin")).isDir());
}

void tst_ZelFile::aFailedExtractionLeavesTheRecordFilled()
{
    PackageRecord record = stored(QByteArray(300, 'n'), "/a/fw.bin");
    record.hardwareType = 7;
    ZelFile file;
    QString message;
    QVERIFY(!file.load(package(record), message));
    QCOMPARE(message, kNotExtracted);
    QCOMPARE(file.hardwareType(), 7U);
    QCOMPARE(file.firmwareImage(), QByteArrayLiteral("image"));
    QVERIFY(extracted(file).startsWith(extractionFolder() + QDir::separator()
                                       + QString(300, QLatin1Char('n')) + QLatin1Char('_')));
}

void tst_ZelFile::extractionNeedsItsFolder()
{
    QVERIFY(writeBytesToFile(TestSandbox::temporaryPath() + QStringLiteral("/Halvorn Drives"),
                             "a file in the way"));
    ZelFile file;
    QString message;
    QVERIFY(!file.load(package(stored("fw.bin", "")), message));
    QCOMPARE(message, kNotExtracted);
    QVERIFY(file.extractedFirmwarePath().isEmpty());
}

ZEL_CORE_TEST_MAIN(tst_ZelFile)
#include "tst_ZelFile.moc"
