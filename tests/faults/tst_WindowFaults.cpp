#include "app/ZelCreator.h"

#include "models/MaskValidationModel.h"
#include "models/TokenValidationModel.h"
#include "tests/faults/Limits.h"
#include "tests/support/Activation.h"
#include "tests/support/WindowDriver.h"
#include "tests/support/ZelTest.h"
#include "tlv/ZelFile.h"
#include "widgets/ErrorMark.h"
#include "widgets/PathSelector.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLineEdit>
#include <QSpinBox>
#include <QTemporaryDir>

#include <functional>
#include <memory>
#include <optional>

#include <sys/stat.h>

using namespace driver;

/// Makes something go wrong in the folder it is given.
using Fault = std::function<void(const QDir &folder)>;
Q_DECLARE_METATYPE(Fault)

namespace {

const QString kCannotOpen = QStringLiteral("Failed to open the ZEL file.");
const QString kDoesNotExist = QStringLiteral("ZEL file doesn't exist.");
const QString kNotAPackage =
    QStringLiteral("Cannot open the provided file, because it is not a valid ZEL file.");
const QString kCannotExtract = QStringLiteral("Failed to save firmware to a temporary folder.");
const QString kCannotWrite = QStringLiteral("Failed to open an ZEL file for writing.");
/// What is said of firmware that cannot be read, whatever the reason.
const QString kFirmwareIsEmpty =
    QStringLiteral("The firmware file is empty. Please select another firmware file.");

const QByteArray kImage = QByteArrayLiteral("firmware image");

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY2(file.open(QIODevice::WriteOnly), qPrintable(path));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArrayLiteral("<unreadable>");
}

void setMode(const QString &path, mode_t mode)
{
    QCOMPARE(chmod(QFile::encodeName(path).constData(), mode), 0);
}

void makeFifo(const QString &path)
{
    QCOMPARE(mkfifo(QFile::encodeName(path).constData(), 0666), 0);
}

QString temporaryFolder()
{
    return TestSandbox::temporaryPath();
}

QString makerFolder()
{
    return temporaryFolder() + QStringLiteral("/Halvorn Drives");
}

QString extractionFolder()
{
    return makerFolder() + QStringLiteral("/ZEL File Creator");
}

} // namespace

/// Whatever fails around a package, the window says what the user can do about it and stays as it
/// was.
class tst_WindowFaults : public ZelTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void failedOpenChangesNothing_data();
    void failedOpenChangesNothing();
    void failedSaveChangesNothing_data();
    void failedSaveChangesNothing();
    void failedSaveWithoutAPathChoosesNone();
    void packageThatVanishesBehindTheDialog();
    void filesThatOpenAndCannotBeRead();
    void extractedFirmwareThatVanishes();

    void fullDiskIsNotNoticedOnSave_data();
    void fullDiskIsNotNoticedOnSave();
    void fullDiskIsNotNoticedOnOpen();
    void settingsThatCannotBeWritten();

private:
    template <typename Widget>
    [[nodiscard]] Widget *find(const char *name) const
    {
        return m_window->findChild<Widget *>(QLatin1String(name));
    }
    [[nodiscard]] PathSelector *selector() const { return find<PathSelector>("firmwarePath"); }
    [[nodiscard]] QString file(const QString &name) const { return m_folder->filePath(name); }
    void makePackage(const QString &name, const QString &firmwareName);
    void startWithPackage();
    void chooseFirmware();
    void edit() { find<QCheckBox>("optionBCheckBox")->click(); }
    [[nodiscard]] QVariantList state() const;

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<ZelCreator> m_window;
};

void tst_WindowFaults::init()
{
    // One of them is in the way of the other.
    QFile::remove(makerFolder());
    QDir(makerFolder()).removeRecursively();
    m_folder = std::make_unique<QTemporaryDir>();
    // Open to all, so that it is the fault that stops another user and nothing else.
    for (const QString &path : {TestSandbox::path(), temporaryFolder(), m_folder->path()}) {
        setMode(path, 0777);
    }
    makePackage(QStringLiteral("good.zel"), QStringLiteral("image.bin"));
    makePackage(QStringLiteral("next.zel"), QStringLiteral("image.bin"));
}

void tst_WindowFaults::cleanup()
{
    m_window.reset();
    m_folder.reset();
}

void tst_WindowFaults::makePackage(const QString &name, const QString &firmwareName)
{
    const QString firmware = file(firmwareName);
    writeFile(firmware, kImage);
    tlv::ZelFile package;
    package.setMaskRules({{7, 1, "A*"}});
    package.setTokenRules({{"T", "1"}});
    package.setSoftwareOptions({true, {5, 7}, {12, 34}, false, {0, 1}, {99, 98}});
    package.setHardware(11, 22, 4, 1);
    package.setFirmwareFile(firmware, 0x80000000U);
    QString path = file(name);
    QString message;
    QVERIFY2(package.save(path, message), qPrintable(message));
}

/// The window with a package in it that was edited since.
void tst_WindowFaults::startWithPackage()
{
    m_window = std::make_unique<ZelCreator>(file(QStringLiteral("good.zel")));
    m_window->show();
    QVERIFY(activate(*m_window));
    edit();
    QCOMPARE(m_window->windowTitle(), QStringLiteral("good* - ZEL File Creator"));
}

/// Firmware of its own instead of the extracted one.
void tst_WindowFaults::chooseFirmware()
{
    const QString firmware = file(QStringLiteral("own.bin"));
    writeFile(firmware, kImage);
    selector()->setPath(firmware);
}

/// All that a user sees of the form: contents, marks and title.
QVariantList tst_WindowFaults::state() const
{
    QVariantList values;
    for (const QLineEdit *field : m_window->findChildren<QLineEdit *>()) {
        values << field->text() << ErrorMark::isMarked(field);
    }
    for (const QSpinBox *field : m_window->findChildren<QSpinBox *>()) {
        values << field->value() << ErrorMark::isMarked(field);
    }
    for (const char *name : {"optionACheckBox", "optionBCheckBox"}) {
        values << find<QCheckBox>(name)->isChecked();
    }
    for (const MaskValidationRule &rule : m_window->findChild<MaskValidationModel *>()->rules()) {
        values << rule.parameter << rule.index << rule.mask;
    }
    for (const TokenValidationRule &rule : m_window->findChild<TokenValidationModel *>()->rules()) {
        values << rule.token << rule.value;
    }
    values << selector()->path() << selector()->hasErrorMark()
           << find<QComboBox>("hardwareType")->currentData() << m_window->windowTitle();
    return values;
}

void tst_WindowFaults::failedOpenChangesNothing_data()
{
    QTest::addColumn<Fault>("fault");
    QTest::addColumn<QString>("message");

    const auto row = [](const char *name, const QString &message, const Fault &fault) {
        QTest::newRow(name) << fault << message;
    };
    row("vanished", kDoesNotExist,
        [](const QDir &folder) { QFile::remove(folder.filePath(QStringLiteral("next.zel"))); });
    row("its folder vanished", kDoesNotExist,
        [](const QDir &folder) { QDir(folder).removeRecursively(); });
    row("its folder is closed", kDoesNotExist,
        [](const QDir &folder) { setMode(folder.path(), 0); });
    row("permission revoked", kCannotOpen,
        [](const QDir &folder) { setMode(folder.filePath(QStringLiteral("next.zel")), 0); });
    row("a folder instead", kCannotOpen, [](const QDir &folder) {
        QFile::remove(folder.filePath(QStringLiteral("next.zel")));
        QVERIFY(folder.mkdir(QStringLiteral("next.zel")));
    });
    row("a pipe instead", kCannotOpen, [](const QDir &folder) {
        QFile::remove(folder.filePath(QStringLiteral("next.zel")));
        makeFifo(folder.filePath(QStringLiteral("next.zel")));
    });
    row("an endless device instead", kCannotOpen, [](const QDir &folder) {
        QFile::remove(folder.filePath(QStringLiteral("next.zel")));
        QVERIFY(
            QFile::link(QStringLiteral("/dev/zero"), folder.filePath(QStringLiteral("next.zel"))));
    });
    row("a link to nothing instead", kDoesNotExist, [](const QDir &folder) {
        QFile::remove(folder.filePath(QStringLiteral("next.zel")));
        QVERIFY(
            QFile::link(QStringLiteral("/nowhere"), folder.filePath(QStringLiteral("next.zel"))));
    });
    row("cut short meanwhile", kNotAPackage, [](const QDir &folder) {
        QVERIFY(QFile::resize(folder.filePath(QStringLiteral("next.zel")), 20));
    });
    row("no temporary folder, and none can be made", kCannotExtract, [](const QDir & /*folder*/) {
        QVERIFY(QDir(makerFolder()).removeRecursively());
        setMode(temporaryFolder(), 0555);
    });
    row("a file in the way of the maker's folder", kCannotExtract, [](const QDir & /*folder*/) {
        QVERIFY(QDir(makerFolder()).removeRecursively());
        writeFile(makerFolder(), "in the way");
    });
    row("a file in the way of the program's folder", kCannotExtract, [](const QDir & /*folder*/) {
        QVERIFY(QDir(makerFolder()).removeRecursively());
        QVERIFY(QDir().mkpath(makerFolder()));
        writeFile(extractionFolder(), "in the way");
    });
    row("the program's folder is read-only", kCannotExtract,
        [](const QDir & /*folder*/) { setMode(extractionFolder(), 0555); });
    row("the program's folder is a link", kCannotExtract, [](const QDir &folder) {
        QVERIFY(QDir(makerFolder()).removeRecursively());
        QVERIFY(QDir().mkpath(makerFolder()));
        QVERIFY(QFile::link(folder.path(), extractionFolder()));
    });
    row("the maker's folder is a link", kCannotExtract, [](const QDir &folder) {
        QVERIFY(QDir(makerFolder()).removeRecursively());
        QVERIFY(QFile::link(folder.path(), makerFolder()));
    });
}

void tst_WindowFaults::failedOpenChangesNothing()
{
    QFETCH(Fault, fault);
    QFETCH(QString, message);

    startWithPackage();
    const QVariantList before = state();
    fault(QDir(m_folder->path()));
    const int filesBefore = QDir(extractionFolder()).entryList(QDir::Files).size();
    {
        const OrdinaryUser user;
        QVERIFY(!m_window->decodeFile(file(QStringLiteral("next.zel"))));
    }
    QCOMPARE(shownMessage(m_window.get()), message);
    QVERIFY(isErrorMessage(m_window.get()));
    QCOMPARE(state(), before);
    QCOMPARE(QDir(extractionFolder()).entryList(QDir::Files).size(), filesBefore);
    // The path is still that of the first package: the next edit shows it.
    edit();
    QCOMPARE(m_window->windowTitle(), QStringLiteral("good* - ZEL File Creator"));
    if (QFileInfo::exists(m_folder->path())) {
        setMode(m_folder->path(), 0777);
    }
}

void tst_WindowFaults::failedSaveChangesNothing_data()
{
    QTest::addColumn<Fault>("fault");
    QTest::addColumn<QString>("message");

    const auto row = [](const char *name, const QString &message, const Fault &fault) {
        QTest::newRow(name) << fault << message;
    };
    const auto package = [](const QDir &folder) {
        return folder.filePath(QStringLiteral("out/new.zel"));
    };
    const auto firmware = [](const QDir &folder) {
        return folder.filePath(QStringLiteral("own.bin"));
    };
    row("folder vanished", kCannotWrite,
        [](const QDir &folder) { QVERIFY(folder.rmdir(QStringLiteral("out"))); });
    row("a file instead of the folder", kCannotWrite, [](const QDir &folder) {
        QVERIFY(folder.rmdir(QStringLiteral("out")));
        writeFile(folder.filePath(QStringLiteral("out")), "in the way");
    });
    row("folder became read-only", kCannotWrite,
        [](const QDir &folder) { setMode(folder.filePath(QStringLiteral("out")), 0555); });
    row("folder was closed", kCannotWrite,
        [](const QDir &folder) { setMode(folder.filePath(QStringLiteral("out")), 0); });
    row("a folder instead of the package", kCannotWrite,
        [package](const QDir &folder) { QVERIFY(QDir().mkdir(package(folder))); });
    row("a read-only file instead of the package", kCannotWrite, [package](const QDir &folder) {
        writeFile(package(folder), "not yours");
        setMode(package(folder), 0444);
    });
    row("a link to itself instead of the package", kCannotWrite, [package](const QDir &folder) {
        QVERIFY(QFile::link(QStringLiteral("new.zel"), package(folder)));
    });

    row("firmware vanished", kFirmwareIsEmpty,
        [firmware](const QDir &folder) { QVERIFY(QFile::remove(firmware(folder))); });
    row("firmware became a folder", kFirmwareIsEmpty, [firmware](const QDir &folder) {
        QVERIFY(QFile::remove(firmware(folder)));
        QVERIFY(QDir().mkdir(firmware(folder)));
    });
    row("firmware became a pipe", kFirmwareIsEmpty, [firmware](const QDir &folder) {
        QVERIFY(QFile::remove(firmware(folder)));
        makeFifo(firmware(folder));
    });
    row("firmware may not be read", kFirmwareIsEmpty,
        [firmware](const QDir &folder) { setMode(firmware(folder), 0); });
    row("firmware outgrew all packages", kFirmwareIsEmpty, [firmware](const QDir &folder) {
        QVERIFY(QFile::resize(firmware(folder), Q_INT64_C(3'000'000'000)));
    });
}

/// The fault strikes when the user has just chosen the path.
void tst_WindowFaults::failedSaveChangesNothing()
{
    QFETCH(Fault, fault);
    QFETCH(QString, message);

    startWithPackage();
    chooseFirmware();
    const QDir folder(m_folder->path());
    QVERIFY(folder.mkdir(QStringLiteral("out")));
    setMode(file(QStringLiteral("out")), 0777);
    const QVariantList before = state();
    std::optional<OrdinaryUser> user;
    answerFileDialog(file(QStringLiteral("out/new.zel")), [&] {
        fault(folder);
        user.emplace();
    });
    m_window->saveZelFileAs();
    user.reset();
    QCOMPARE(shownMessage(m_window.get()), message);
    QVERIFY(isErrorMessage(m_window.get()));
    QCOMPARE(state(), before);
    // The path is still that of the first package: the next edit shows it, and the next dialog.
    edit();
    QCOMPARE(m_window->windowTitle(), QStringLiteral("good* - ZEL File Creator"));
    const QVariantList edited = state();
    QString proposed;
    onNextDialog([&proposed](QWidget *dialog) {
        proposed = dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->text();
        QTest::keyClick(dialog, Qt::Key_Escape);
    });
    m_window->saveZelFileAs();
    QCOMPARE(proposed, QStringLiteral("good.zel"));
    QCOMPARE(state(), edited);
}

void tst_WindowFaults::failedSaveWithoutAPathChoosesNone()
{
    m_window = std::make_unique<ZelCreator>(QString());
    m_window->show();
    QVERIFY(activate(*m_window));
    chooseFirmware();
    find<QLineEdit>("firmwareAddress")->setText(QStringLiteral("80000000"));
    setMode(m_folder->path(), 0555);
    {
        const OrdinaryUser user;
        QVERIFY(!m_window->saveFile());
    }
    setMode(m_folder->path(), 0777);
    QCOMPARE(shownMessage(m_window.get()), kCannotWrite);
    QCOMPARE(m_window->windowTitle(), QStringLiteral("ZEL File Creator"));
    edit();
    QCOMPARE(m_window->windowTitle(), QStringLiteral("ZEL File Creator"));
}

void tst_WindowFaults::packageThatVanishesBehindTheDialog()
{
    startWithPackage();
    const QVariantList before = state();
    const QString next = file(QStringLiteral("next.zel"));
    answerFileDialog(next, [next] { QVERIFY(QFile::remove(next)); });
    m_window->openZelFile();
    QCOMPARE(shownMessage(m_window.get()), kDoesNotExist);
    QCOMPARE(state(), before);
}

void tst_WindowFaults::filesThatOpenAndCannotBeRead()
{
    startWithPackage();
    chooseFirmware();
    const QVariantList before = state();
    const QString next = file(QStringLiteral("next.zel"));
    for (const QString &path : {next, selector()->path()}) {
        // This process's memory has nothing at its first address.
        QVERIFY(QFile::remove(path));
        QVERIFY(QFile::link(QStringLiteral("/proc/self/mem"), path));
    }
    QVERIFY(!m_window->decodeFile(next));
    QCOMPARE(shownMessage(m_window.get()), kNotAPackage);
    QVERIFY(!m_window->saveFile());
    QTRY_COMPARE(shownMessage(m_window.get()), kFirmwareIsEmpty);
    QCOMPARE(state(), before);
}

void tst_WindowFaults::extractedFirmwareThatVanishes()
{
    startWithPackage();
    const QString extracted = selector()->path();
    QVERIFY(QFile::remove(extracted));
    const QVariantList before = state();
    QVERIFY(!m_window->saveFile());
    QCOMPARE(shownMessage(m_window.get()), kFirmwareIsEmpty);
    QCOMPARE(state(), before);

    QVERIFY(!selector()->validatePath());
    QCOMPARE(shownMessage(m_window.get()),
             QStringLiteral("\"%1\" file doesn't exist.").arg(extracted));
    QCOMPARE(state(), before);
}

void tst_WindowFaults::fullDiskIsNotNoticedOnSave_data()
{
    QTest::addColumn<quint64>("space");
    QTest::newRow("for no byte") << Q_UINT64_C(0);
    QTest::newRow("for some bytes") << Q_UINT64_C(20);
}

/// Deliberate: what was written is not counted. The user's manual tells of it.
void tst_WindowFaults::fullDiskIsNotNoticedOnSave()
{
    QFETCH(quint64, space);

    startWithPackage();
    const QString path = file(QStringLiteral("good.zel"));
    const QByteArray whole = readFile(path);
    {
        const FullDisk disk(space);
        QVERIFY(m_window->saveFile());
    }
    QCOMPARE(shownMessage(m_window.get()),
             QStringLiteral("ZEL file was successfully saved to\n%1.").arg(path));
    QVERIFY(!isErrorMessage(m_window.get()));
    QCOMPARE(m_window->windowTitle(), QStringLiteral("good - ZEL File Creator"));
    QCOMPARE(readFile(path).size(), static_cast<int>(space));
    QVERIFY(whole.size() > static_cast<int>(space));
    // What was lost is noticed when the package is opened again, by hand or by a drive.
    const QVariantList before = state();
    QVERIFY(!m_window->decodeFile(path));
    QCOMPARE(shownMessage(m_window.get()), kNotAPackage);
    QCOMPARE(state(), before);
}

/// Deliberate, as above: the size that the form shows is the package's, the file is shorter.
void tst_WindowFaults::fullDiskIsNotNoticedOnOpen()
{
    startWithPackage();
    {
        const FullDisk disk(5);
        QVERIFY(m_window->decodeFile(file(QStringLiteral("next.zel"))));
    }
    QCOMPARE(m_window->windowTitle(), QStringLiteral("next - ZEL File Creator"));
    QCOMPARE(find<QLineEdit>("binarySize")->text(), QString::number(kImage.size()));
    QCOMPARE(readFile(selector()->path()), kImage.left(5));
}

void tst_WindowFaults::settingsThatCannotBeWritten()
{
    startWithPackage();
    const QString settings = TestSandbox::path() + QStringLiteral("/config");
    QVERIFY(QDir(settings).removeRecursively());
    writeFile(settings, "in the way");
    QVERIFY(m_window->close());
    m_window.reset();
    QVERIFY(QFile::remove(settings));
    QVERIFY(QDir().mkdir(settings));
}

ZEL_TEST_MAIN(tst_WindowFaults)
#include "tst_WindowFaults.moc"
