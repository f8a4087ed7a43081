#include "app/ZelCreator.h"

#include "models/MaskValidationModel.h"
#include "models/TokenValidationModel.h"
#include "tests/support/Activation.h"
#include "tests/support/WindowDriver.h"
#include "tests/support/ZelTest.h"
#include "tlv/ZelFile.h"
#include "views/MaskValidationTableView.h"
#include "views/TokenValidationTableView.h"
#include "widgets/CollapsibleGroupBox.h"
#include "widgets/ErrorMark.h"
#include "widgets/FirmwareAddressLineEdit.h"
#include "widgets/HardwareTypeComboBox.h"
#include "widgets/PathSelector.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>
#include <QSpinBox>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QToolButton>

#include <memory>

using namespace driver;

namespace {

const QString kProgram = QStringLiteral("ZEL File Creator");
const QString kPleaseSelectFirmware = QStringLiteral("Please select a firmware file.");
const QString kPleaseSelectBinary = QStringLiteral("Please select a binary file.");
const QString kOptionARange =
    QStringLiteral("For Option A, minimum version must not be greater than maximum.");
const QString kOptionBRange =
    QStringLiteral("For Option B, minimum version must not be greater than maximum.");
const QString kSideRange =
    QStringLiteral("For Option Side Validation, minimum version must not be greater than maximum.");
const QString kAddressDigits = QStringLiteral("Firmware address must contain 8 digits.");
const QString kNotAPackage =
    QStringLiteral("Cannot open the provided file, because it is not a valid ZEL file.");

QSettings settings()
{
    return QSettings(QStringLiteral("Halvorn Drives"), kProgram);
}

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

} // namespace

class tst_ZelCreator : public ZelTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void startsWithAnEmptyForm();
    void decodesTheStartPath();
    void badStartPathIsReportedAndLeavesTheFormEmpty();

    void formCheck_data();
    void formCheck();
    void noDialogOpensForAShortAddress();
    void firmwareSuffix_data();
    void firmwareSuffix();
    void missingFirmwareMarksThePathUntilItIsThere();

    void wrongRangeIsMarkedWhileTyping();
    void optionBAndSideRangesAreMarkedToo();
    void versionsCompareAsDecimalNumbers();
    void emptyVersionsPassAndAreSavedAsZero();
    void addressCheckCanFailSilently();

    void savesWhatTheFormShows();
    void saveDialogAddsTheMissingSuffix();
    void cancelledSaveDialogChangesNothing();
    void failedSaveKeepsTheModifiedMark();
    void saveTakesWhatIsStillBeingTyped();
    void typedPathThatDoesNotExistIsRefused();
    void emptiedPathIsNoPath();
    void unknownHardwareTypeIsRefused();

    void openFillsTheForm();
    void openStartsNowhereInParticularAndCanBeCancelled();
    void failedOpenChangesNothing_data();
    void failedOpenChangesNothing();
    void addressWithALeadingZeroHasToBeCompleted();
    void newClearsAllButTheHardwareType();

    void titleFollowsThePathAndTheEdits();
    void everyEditMarksTheForm_data();
    void everyEditMarksTheForm();
    void binarySizeFollowsTheAcceptedPath();

    void addButtonBeginsToEditTheNewRule();
    void addButtonKeepsWhatIsBeingTyped();
    void clickBesideTheFieldsEndsEditing();
    void clickBesideTheTablesClearsTheirSelection();
    void failureMessagesOfTheFieldsAreShown();

    void firstRunShowsAllInformation();
    void settingsComeBack();
    void emptyGeometryIsIgnored();

    void cancelAndExitCloseTheWindow();
    void aboutQt();

private:
    template <typename Widget>
    [[nodiscard]] Widget *find(const char *name) const
    {
        auto *widget = m_window->findChild<Widget *>(QLatin1String(name));
        if (widget == nullptr) {
            qFatal("no %s", name);
        }
        return widget;
    }
    [[nodiscard]] QLineEdit *edit(const char *name) const { return find<QLineEdit>(name); }
    [[nodiscard]] QSpinBox *spin(const char *name) const { return find<QSpinBox>(name); }
    [[nodiscard]] QLineEdit *pathField() const
    {
        return selector()->findChild<QLineEdit *>(QStringLiteral("pathField"));
    }
    [[nodiscard]] PathSelector *selector() const { return find<PathSelector>("firmwarePath"); }
    [[nodiscard]] MaskValidationModel *masks() const
    {
        return m_window->findChild<MaskValidationModel *>();
    }
    [[nodiscard]] TokenValidationModel *tokens() const
    {
        return m_window->findChild<TokenValidationModel *>();
    }

    void start(const QString &path = QString());
    void showUpdateTab() { find<QTabWidget>("tabWidget")->setCurrentIndex(1); }
    void showValidationTab() { find<QTabWidget>("tabWidget")->setCurrentIndex(0); }
    void fill();
    [[nodiscard]] QString file(const QString &name) const
    {
        return QDir::toNativeSeparators(m_folder->filePath(name));
    }
    [[nodiscard]] QString makePackage(const QString &name, quint32 address = 0x80000000U);
    [[nodiscard]] QVariantList state() const;

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<ZelCreator> m_window;
};

void tst_ZelCreator::init()
{
    QDir(TestSandbox::path() + QStringLiteral("/config")).removeRecursively();
    settings().clear();
    m_folder = std::make_unique<QTemporaryDir>();
    writeFile(file(QStringLiteral("image.bin")), QByteArrayLiteral("firmware"));
}

void tst_ZelCreator::cleanup()
{
    m_window.reset();
    m_folder.reset();
}

void tst_ZelCreator::start(const QString &path)
{
    m_window = std::make_unique<ZelCreator>(path);
    m_window->show();
    QVERIFY(activate(*m_window));
}

void tst_ZelCreator::fill()
{
    selector()->setPath(file(QStringLiteral("image.bin")));
    find<FirmwareAddressLineEdit>("firmwareAddress")->setText(QStringLiteral("8000ABCD"));
}

QString tst_ZelCreator::makePackage(const QString &name, quint32 address)
{
    tlv::ZelFile package;
    package.setMaskRules({{7, 1, "A*"}, {3, 2, "B"}});
    package.setTokenRules({{"T", "1"}, {"T", "1"}});
    package.setSoftwareOptions({true, {5, 7}, {12, 34}, false, {0, 1}, {99, 98}});
    package.setHardware(11, 22, 4, 1);
    package.setFirmwareFile(file(QStringLiteral("image.bin")), address);
    QString path = file(name);
    QString message;
    if (!package.save(path, message)) {
        qFatal("%s", qPrintable(message));
    }
    return path;
}

/// All that a user sees of the form.
QVariantList tst_ZelCreator::state() const
{
    QVariantList values;
    for (const char *name : {"optionAMinimum", "optionAMaximum", "optionBMinimum", "optionBMaximum",
                             "firmwareAddress", "binarySize"}) {
        values << edit(name)->text();
    }
    values << pathField()->text() << selector()->path()
           << find<QCheckBox>("optionACheckBox")->isChecked()
           << find<QCheckBox>("optionBCheckBox")->isChecked()
           << spin("minimumHardwareVersion")->value() << spin("maximumHardwareVersion")->value()
           << find<HardwareTypeComboBox>("hardwareType")->currentText() << m_window->windowTitle();
    for (const MaskValidationRule &rule : masks()->rules()) {
        values << rule.parameter << rule.index << rule.mask;
    }
    for (const TokenValidationRule &rule : tokens()->rules()) {
        values << rule.token << rule.value;
    }
    return values;
}

void tst_ZelCreator::startsWithAnEmptyForm()
{
    start();
    QCOMPARE(m_window->windowTitle(), kProgram);
    QCOMPARE(masks()->rowCount(), 0);
    QCOMPARE(tokens()->rowCount(), 0);
    QCOMPARE(edit("optionAMinimum")->text(), QStringLiteral("00.00"));
    QCOMPARE(edit("optionBMaximum")->text(), QStringLiteral("99.99"));
    QCOMPARE(edit("firmwareAddress")->text(), QStringLiteral("0"));
    QCOMPARE(edit("binarySize")->text(), QStringLiteral("0"));
    QVERIFY(!isMessageVisible(m_window.get()));
}

void tst_ZelCreator::decodesTheStartPath()
{
    const QString package = makePackage(QStringLiteral("pkg.zel"));
    start(package);
    QCOMPARE(m_window->windowTitle(), QStringLiteral("pkg - ZEL File Creator"));
    QCOMPARE(masks()->rowCount(), 2);
}

void tst_ZelCreator::badStartPathIsReportedAndLeavesTheFormEmpty()
{
    start(file(QStringLiteral("nothing.zel")));
    QCOMPARE(shownMessage(m_window.get()), QStringLiteral("ZEL file doesn't exist."));
    QVERIFY(isErrorMessage(m_window.get()));
    QCOMPARE(edit("firmwareAddress")->text(), QStringLiteral("0"));
    // The start path stays the current one; the title tells so with the first edit.
    QCOMPARE(m_window->windowTitle(), kProgram);
    find<QCheckBox>("optionACheckBox")->click();
    QCOMPARE(m_window->windowTitle(), QStringLiteral("nothing* - ZEL File Creator"));
}

void tst_ZelCreator::formCheck_data()
{
    QTest::addColumn<QStringList>("settings");
    QTest::addColumn<QString>("message");

    const auto row = [](const char *name, const QStringList &values, const QString &message) {
        QTest::newRow(name) << values << message;
    };
    row("no firmware file", {QStringLiteral("path=")}, kPleaseSelectFirmware);
    row("no firmware file, before any range",
        {QStringLiteral("path="), QStringLiteral("optionAMinimum=99.99"),
         QStringLiteral("optionAMaximum=00.00")},
        kPleaseSelectFirmware);
    row("option A before option B",
        {QStringLiteral("optionAMinimum=2.0"), QStringLiteral("optionAMaximum=1.0"),
         QStringLiteral("optionBMinimum=2.0"), QStringLiteral("optionBMaximum=1.0")},
        kOptionARange);
    row("option B before the hardware",
        {QStringLiteral("optionBMinimum=2.0"), QStringLiteral("optionBMaximum=1.0"),
         QStringLiteral("minimumHardwareVersion=5")},
        kOptionBRange);
    row("hardware before the address",
        {QStringLiteral("minimumHardwareVersion=5"), QStringLiteral("firmwareAddress=1")},
        kSideRange);
    row("address of 7 digits", {QStringLiteral("firmwareAddress=1A2B3C4")}, kAddressDigits);
    row("empty address", {QStringLiteral("firmwareAddress=")}, kAddressDigits);
}

void tst_ZelCreator::formCheck()
{
    QFETCH(QStringList, settings);
    QFETCH(QString, message);

    start();
    fill();
    for (const QString &setting : settings) {
        const QString name = setting.section(QLatin1Char('='), 0, 0);
        const QString value = setting.section(QLatin1Char('='), 1);
        if (name == QLatin1String("path")) {
            selector()->setPath(value);
        } else if (auto *spinBox = m_window->findChild<QSpinBox *>(name)) {
            spinBox->setValue(value.toInt());
        } else {
            m_window->findChild<QLineEdit *>(name)->setText(value);
        }
    }

    QVERIFY(!m_window->saveFile());
    QCOMPARE(shownMessage(m_window.get()), message);
    QVERIFY(isErrorMessage(m_window.get()));
}

void tst_ZelCreator::noDialogOpensForAShortAddress()
{
    start();
    fill();
    edit("firmwareAddress")->setText(QStringLiteral("1A2B3C4"));
    m_window->saveZelFileAs();
    QVERIFY(QApplication::activeModalWidget() == nullptr);
    QCOMPARE(shownMessage(m_window.get()), kAddressDigits);
    QVERIFY(ErrorMark::isMarked(edit("firmwareAddress")));
}

void tst_ZelCreator::firmwareSuffix_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("accepted");
    QTest::newRow("image.bin") << QStringLiteral("image.bin") << true;
    QTest::newRow("fw.hex") << QStringLiteral("fw.hex") << false;
    QTest::newRow("fw.bin.bak") << QStringLiteral("fw.bin.bak") << false;
    QTest::newRow("two dots are refused, deliberately") << QStringLiteral("image.v2.bin") << false;
    QTest::newRow("capitals are refused, deliberately") << QStringLiteral("image.BIN") << false;
    QTest::newRow("no suffix") << QStringLiteral("bin") << false;
}

void tst_ZelCreator::firmwareSuffix()
{
    QFETCH(QString, name);
    QFETCH(bool, accepted);

    start();
    fill();
    writeFile(file(name), QByteArrayLiteral("x"));
    selector()->setPath(file(name));
    QCOMPARE(m_window->saveFile(), accepted);
    if (!accepted) {
        QCOMPARE(shownMessage(m_window.get()), kPleaseSelectBinary);
    }
}

void tst_ZelCreator::missingFirmwareMarksThePathUntilItIsThere()
{
    start();
    showUpdateTab();
    QVERIFY(!m_window->saveFile());
    QVERIFY(selector()->hasErrorMark());

    retype(pathField(), file(QStringLiteral("image.bin")));
    QTest::keyClick(pathField(), Qt::Key_Return);
    QVERIFY(!selector()->hasErrorMark());
}

void tst_ZelCreator::wrongRangeIsMarkedWhileTyping()
{
    start();
    retype(edit("optionAMinimum"), QStringLiteral("02.00"));
    retype(edit("optionAMaximum"), QStringLiteral("01.99"));
    QVERIFY(ErrorMark::isMarked(edit("optionAMinimum")));
    QVERIFY(ErrorMark::isMarked(edit("optionAMaximum")));
    QCOMPARE(shownMessage(m_window.get()), kOptionARange);
    // The popup leaves the keyboard to the field.
    QVERIFY(edit("optionAMaximum")->hasFocus());

    retype(edit("optionAMaximum"), QStringLiteral("02.00"));
    QVERIFY(!ErrorMark::isMarked(edit("optionAMinimum")));
    QVERIFY(!ErrorMark::isMarked(edit("optionAMaximum")));
    QTRY_VERIFY(!isMessageVisible(m_window.get()));
}

void tst_ZelCreator::optionBAndSideRangesAreMarkedToo()
{
    start();
    retype(edit("optionBMinimum"), QStringLiteral("9.0"));
    retype(edit("optionBMaximum"), QStringLiteral("8.0"));
    QVERIFY(ErrorMark::isMarked(edit("optionBMinimum")));
    QCOMPARE(shownMessage(m_window.get()), kOptionBRange);
    retype(edit("optionBMinimum"), QStringLiteral("8.0"));
    QVERIFY(!ErrorMark::isMarked(edit("optionBMaximum")));

    showUpdateTab();
    QTest::keyClick(spin("minimumHardwareVersion"), Qt::Key_Up);
    QVERIFY(ErrorMark::isMarked(spin("minimumHardwareVersion")));
    QVERIFY(ErrorMark::isMarked(spin("maximumHardwareVersion")));
    QTRY_COMPARE(shownMessage(m_window.get()), kSideRange);
    QTest::keyClick(spin("maximumHardwareVersion"), Qt::Key_Up);
    QVERIFY(!ErrorMark::isMarked(spin("minimumHardwareVersion")));
}

void tst_ZelCreator::versionsCompareAsDecimalNumbers()
{
    start();
    edit("optionAMinimum")->setText(QStringLiteral("01.5"));
    edit("optionAMaximum")->setText(QStringLiteral("01.10"));
    QVERIFY(!m_window->validateOptionASoftwareVersions());
    QCOMPARE(shownMessage(m_window.get()), kOptionARange);
}

void tst_ZelCreator::emptyVersionsPassAndAreSavedAsZero()
{
    start();
    fill();
    for (const char *name :
         {"optionAMinimum", "optionAMaximum", "optionBMinimum", "optionBMaximum"}) {
        edit(name)->clear();
    }
    const QString path = file(QStringLiteral("zero.zel"));
    answerFileDialog(path);
    m_window->saveZelFileAs();

    tlv::ZelFile package;
    QString message;
    QVERIFY2(package.load(path, message), qPrintable(message));
    QCOMPARE(package.softwareOptions().optionAMaximum.major, quint16(0));
    QCOMPARE(package.softwareOptions().optionAMaximum.minor, quint16(0));
}

void tst_ZelCreator::addressCheckCanFailSilently()
{
    start();
    QVERIFY(!m_window->validateFirmwareAddress(false));
    QVERIFY(ErrorMark::isMarked(edit("firmwareAddress")));
    QTest::qWait(100);
    QVERIFY(!isMessageVisible(m_window.get()));
}

void tst_ZelCreator::savesWhatTheFormShows()
{
    start();
    fill();
    masks()->setRules({{9, 8, "x*"}, {1, 2, "y"}});
    tokens()->setRules({{"Z", "1"}, {"A", "2"}});
    find<QCheckBox>("optionBCheckBox")->click();
    edit("optionBMinimum")->setText(QStringLiteral("1.2"));
    edit("optionBMaximum")->setText(QStringLiteral("34.56"));
    spin("minimumHardwareVersion")->setValue(3);
    spin("maximumHardwareVersion")->setValue(2147483647);
    find<HardwareTypeComboBox>("hardwareType")->setCurrentIndex(1);

    const QString path = file(QStringLiteral("saved.zel"));
    answerFileDialog(path);
    find<QPushButton>("saveButton")->click();
    QCOMPARE(shownMessage(m_window.get()),
             QStringLiteral("ZEL file was successfully saved to\n%1.").arg(path));
    QVERIFY(!isErrorMessage(m_window.get()));
    QCOMPARE(m_window->windowTitle(), QStringLiteral("saved - ZEL File Creator"));

    tlv::ZelFile package;
    QString message;
    QVERIFY2(package.load(path, message), qPrintable(message));
    // In the order of the model, whatever the tables' sorting shows.
    QCOMPARE(package.maskRules(), (QList<MaskValidationRule>{{9, 8, "x*"}, {1, 2, "y"}}));
    QCOMPARE(package.tokenRules(), (QList<TokenValidationRule>{{"Z", "1"}, {"A", "2"}}));
    const tlv::SoftwareOptions options = package.softwareOptions();
    QVERIFY(!options.optionAEnabled);
    QVERIFY(options.optionBEnabled);
    QCOMPARE(options.optionAMaximum.major, quint16(99));
    QCOMPARE(options.optionBMinimum.minor, quint16(2));
    QCOMPARE(options.optionBMaximum.major, quint16(34));
    QCOMPARE(options.optionBMaximum.minor, quint16(56));
    QCOMPARE(package.minimumHardwareVersion(), 3U);
    QCOMPARE(package.maximumHardwareVersion(), 2147483647U);
    QCOMPARE(package.hardwareType(), 2U);
    QCOMPARE(package.layoutVersion(), 1U);
    QCOMPARE(package.firmwareAddress(), 0x8000ABCDU);
    QCOMPARE(package.firmwareImage(), QByteArrayLiteral("firmware"));
    QCOMPARE(package.firmwareFileName(), QByteArrayLiteral("image.bin"));
    QCOMPARE(package.firmwareFilePath(), file(QStringLiteral("image.bin")).toUtf8());
}

void tst_ZelCreator::saveDialogAddsTheMissingSuffix()
{
    start();
    fill();
    answerFileDialog(file(QStringLiteral("bare")));
    m_window->saveZelFileAs();
    QVERIFY(QFile::exists(file(QStringLiteral("bare.zel"))));
    QCOMPARE(m_window->windowTitle(), QStringLiteral("bare - ZEL File Creator"));
}

void tst_ZelCreator::cancelledSaveDialogChangesNothing()
{
    start();
    fill();
    const QVariantList before = state();
    cancelFileDialog();
    m_window->saveZelFileAs();
    QCOMPARE(state(), before);
}

void tst_ZelCreator::failedSaveKeepsTheModifiedMark()
{
    start(makePackage(QStringLiteral("pkg.zel")));
    find<QCheckBox>("optionBCheckBox")->click();
    const QString title = m_window->windowTitle();
    QCOMPARE(title, QStringLiteral("pkg* - ZEL File Creator"));

    QDir(QFileInfo(selector()->path()).path()).removeRecursively();
    QVERIFY(!m_window->saveFile());
    QCOMPARE(shownMessage(m_window.get()), QStringLiteral("The firmware file is empty. Please "
                                                          "select another firmware file."));
    QCOMPARE(m_window->windowTitle(), title);
}

void tst_ZelCreator::saveTakesWhatIsStillBeingTyped()
{
    start();
    fill();
    find<QToolButton>("addMaskRuleButton")->click();
    auto *table = find<MaskValidationTableView>("maskValidationTable");
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("42"));
    const QString path = file(QStringLiteral("typed.zel"));
    answerFileDialog(path);
    QTest::keySequence(m_window.get(), QKeySequence(QKeySequence::Save));
    QTRY_VERIFY(QFile::exists(path));
    QCOMPARE(table->model()->rowCount(), 1);

    tlv::ZelFile package;
    QString message;
    QVERIFY2(package.load(path, message), qPrintable(message));
    QCOMPARE(package.maskRules().value(0).parameter, quint16(42));
}

void tst_ZelCreator::typedPathThatDoesNotExistIsRefused()
{
    start();
    fill();
    showUpdateTab();
    const QString wrong = file(QStringLiteral("gone.bin"));
    retype(pathField(), wrong);
    QVERIFY(!m_window->saveFile());
    QCOMPARE(shownMessage(m_window.get()), QStringLiteral("\"%1\" file doesn't exist.").arg(wrong));
    QCOMPARE(pathField()->text(), wrong);
}

void tst_ZelCreator::emptiedPathIsNoPath()
{
    start();
    fill();
    showUpdateTab();
    retype(pathField(), QString());
    QVERIFY(!m_window->saveFile());
    QCOMPARE(shownMessage(m_window.get()), kPleaseSelectFirmware);
}

void tst_ZelCreator::unknownHardwareTypeIsRefused()
{
    start();
    fill();
    showUpdateTab();
    auto *types = find<HardwareTypeComboBox>("hardwareType");
    retype(types->lineEdit(), QStringLiteral("abc"));
    QVERIFY(!m_window->saveFile());
    QCOMPARE(shownMessage(m_window.get()),
             QStringLiteral("The inserted hardware type must be uint 32."));
    QCOMPARE(types->currentText(), QStringLiteral("abc"));

    retype(types->lineEdit(), QStringLiteral("7"));
    answerFileDialog(file(QStringLiteral("seven.zel")));
    m_window->saveZelFileAs();
    QCOMPARE(types->currentData().toUInt(), 7U);
    QVERIFY(QFile::exists(file(QStringLiteral("seven.zel"))));
}

void tst_ZelCreator::openFillsTheForm()
{
    start();
    answerFileDialog(makePackage(QStringLiteral("pkg.zel")));
    find<QAction>("actionOpen")->trigger();

    QCOMPARE(m_window->windowTitle(), QStringLiteral("pkg - ZEL File Creator"));
    QCOMPARE(masks()->rules(), (QList<MaskValidationRule>{{7, 1, "A*"}, {3, 2, "B"}}));
    QCOMPARE(tokens()->rules(), (QList<TokenValidationRule>{{"T", "1"}, {"T", "1"}}));
    QVERIFY(find<QCheckBox>("optionACheckBox")->isChecked());
    QVERIFY(!find<QCheckBox>("optionBCheckBox")->isChecked());
    QCOMPARE(edit("optionAMinimum")->text(), QStringLiteral("05.07"));
    QCOMPARE(edit("optionAMaximum")->text(), QStringLiteral("12.34"));
    QCOMPARE(edit("optionBMinimum")->text(), QStringLiteral("00.01"));
    QCOMPARE(edit("optionBMaximum")->text(), QStringLiteral("99.98"));
    QCOMPARE(spin("minimumHardwareVersion")->value(), 11);
    QCOMPARE(spin("maximumHardwareVersion")->value(), 22);
    QCOMPARE(find<HardwareTypeComboBox>("hardwareType")->currentText(),
             QStringLiteral("Ethernet-Renesas (4)"));
    QCOMPARE(edit("firmwareAddress")->text(), QStringLiteral("80000000"));
    QCOMPARE(edit("binarySize")->text(), QStringLiteral("8"));
    QCOMPARE(readFile(selector()->path()), QByteArrayLiteral("firmware"));
    QVERIFY(QFileInfo(selector()->path())
                .canonicalFilePath()
                .startsWith(QFileInfo(TestSandbox::temporaryPath()).canonicalFilePath()));
}

void tst_ZelCreator::openStartsNowhereInParticularAndCanBeCancelled()
{
    start(makePackage(QStringLiteral("pkg.zel")));
    const QVariantList before = state();
    QString directory;
    onNextDialog([&directory](QWidget *dialog) {
        directory = qobject_cast<QFileDialog *>(dialog)->directory().absolutePath();
        QTest::keyClick(dialog, Qt::Key_Escape);
    });
    m_window->openZelFile();
    QCOMPARE(state(), before);
    QVERIFY(directory != QFileInfo(file(QStringLiteral("pkg.zel"))).absolutePath());
}

void tst_ZelCreator::failedOpenChangesNothing_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("message");
    QTest::newRow("vanished") << QStringLiteral("gone.zel")
                              << QStringLiteral("ZEL file doesn't exist.");
    QTest::newRow("not a package") << QStringLiteral("text.zel") << kNotAPackage;
    QTest::newRow("cut short") << QStringLiteral("short.zel") << kNotAPackage;
    QTest::newRow("damaged") << QStringLiteral("damaged.zel") << kNotAPackage;
    QTest::newRow("empty") << QStringLiteral("empty.zel") << kNotAPackage;
    QTest::newRow("wrong suffix") << QStringLiteral("good.zip") << kNotAPackage;
    QTest::newRow("two dots, deliberately") << QStringLiteral("a.b.zel") << kNotAPackage;
    QTest::newRow("folder") << QStringLiteral("folder.zel")
                            << QStringLiteral("Failed to open the ZEL file.");
}

void tst_ZelCreator::failedOpenChangesNothing()
{
    QFETCH(QString, name);
    QFETCH(QString, message);

    const QByteArray good = readFile(makePackage(QStringLiteral("good.zel")));
    QByteArray damaged = good;
    damaged[damaged.size() / 2] = static_cast<char>(damaged.at(damaged.size() / 2) ^ 1);
    writeFile(file(QStringLiteral("text.zel")), QByteArrayLiteral("no package at all"));
    writeFile(file(QStringLiteral("short.zel")), good.left(good.size() - 1));
    writeFile(file(QStringLiteral("damaged.zel")), damaged);
    writeFile(file(QStringLiteral("empty.zel")), QByteArray());
    writeFile(file(QStringLiteral("good.zip")), good);
    writeFile(file(QStringLiteral("a.b.zel")), good);
    QDir(m_folder->path()).mkdir(QStringLiteral("folder.zel"));

    start(file(QStringLiteral("good.zel")));
    find<QCheckBox>("optionBCheckBox")->click();
    const QVariantList before = state();
    QVERIFY(!m_window->decodeFile(file(name)));
    QCOMPARE(shownMessage(m_window.get()), message);
    QVERIFY(isErrorMessage(m_window.get()));
    QCOMPARE(state(), before);
}

void tst_ZelCreator::addressWithALeadingZeroHasToBeCompleted()
{
    start(makePackage(QStringLiteral("pkg.zel"), 0x00A00000U));
    QCOMPARE(edit("firmwareAddress")->text(), QStringLiteral("A00000"));
    QVERIFY(!m_window->saveFile());
    QCOMPARE(shownMessage(m_window.get()), kAddressDigits);
    QCOMPARE(edit("firmwareAddress")->text(), QStringLiteral("A00000"));
}

void tst_ZelCreator::newClearsAllButTheHardwareType()
{
    start(makePackage(QStringLiteral("pkg.zel")));
    edit("optionAMinimum")->setText(QStringLiteral("98.0"));
    spin("minimumHardwareVersion")->setValue(99);
    edit("firmwareAddress")->setText(QStringLiteral("1"));
    QVERIFY(!m_window->validateFirmwareAddress());
    selector()->setErrorMark(true);

    find<QAction>("actionNew")->trigger();
    QCOMPARE(m_window->windowTitle(), kProgram);
    QCOMPARE(masks()->rowCount(), 0);
    QCOMPARE(tokens()->rowCount(), 0);
    QVERIFY(!find<QCheckBox>("optionACheckBox")->isChecked());
    for (const char *name : {"optionAMinimum", "optionBMinimum"}) {
        QCOMPARE(edit(name)->text(), QStringLiteral("00.00"));
        QVERIFY(!ErrorMark::isMarked(edit(name)));
    }
    for (const char *name : {"optionAMaximum", "optionBMaximum"}) {
        QCOMPARE(edit(name)->text(), QStringLiteral("99.99"));
        QVERIFY(!ErrorMark::isMarked(edit(name)));
    }
    for (const char *name : {"minimumHardwareVersion", "maximumHardwareVersion"}) {
        QCOMPARE(spin(name)->value(), 0);
        QVERIFY(!ErrorMark::isMarked(spin(name)));
    }
    QCOMPARE(pathField()->text(), QString());
    QVERIFY(!selector()->hasErrorMark());
    QCOMPARE(edit("firmwareAddress")->text(), QString());
    QVERIFY(!ErrorMark::isMarked(edit("firmwareAddress")));
    QCOMPARE(edit("binarySize")->text(), QString());
    QCOMPARE(find<HardwareTypeComboBox>("hardwareType")->currentData().toUInt(), 4U);
}

void tst_ZelCreator::titleFollowsThePathAndTheEdits()
{
    start();
    QCOMPARE(m_window->windowTitle(), kProgram);
    fill();
    // Without a path there is nothing to mark.
    QCOMPARE(m_window->windowTitle(), kProgram);
    answerFileDialog(file(QStringLiteral("test.zel")));
    m_window->saveZelFileAs();
    QCOMPARE(m_window->windowTitle(), QStringLiteral("test - ZEL File Creator"));
    QTest::keyClick(edit("optionAMinimum"), Qt::Key_Backspace);
    QCOMPARE(m_window->windowTitle(), QStringLiteral("test* - ZEL File Creator"));
    QVERIFY(m_window->saveFile());
    QCOMPARE(m_window->windowTitle(), QStringLiteral("test - ZEL File Creator"));
}

void tst_ZelCreator::everyEditMarksTheForm_data()
{
    QTest::addColumn<QString>("what");
    for (const char *what :
         {"optionAMinimum", "optionAMaximum", "optionBMinimum", "optionBMaximum", "optionACheckBox",
          "optionBCheckBox", "minimumHardwareVersion", "maximumHardwareVersion", "hardwareType",
          "firmwarePath", "firmwareAddress", "mask data", "mask row", "mask removed", "mask reset",
          "token data", "token row", "token removed", "token reset"}) {
        QTest::newRow(what) << QString::fromLatin1(what);
    }
}

void tst_ZelCreator::everyEditMarksTheForm()
{
    QFETCH(QString, what);

    start(makePackage(QStringLiteral("pkg.zel")));
    QCOMPARE(m_window->windowTitle(), QStringLiteral("pkg - ZEL File Creator"));

    QAbstractItemModel *model = what.startsWith(QLatin1String("mask"))
                                    ? static_cast<QAbstractItemModel *>(masks())
                                    : tokens();
    if (auto *line = qobject_cast<QLineEdit *>(m_window->findChild<QWidget *>(what))) {
        QTest::keyClick(line, Qt::Key_Backspace);
    } else if (auto *box = m_window->findChild<QCheckBox *>(what)) {
        box->click();
    } else if (auto *spinBox = m_window->findChild<QSpinBox *>(what)) {
        QTest::keyClick(spinBox, Qt::Key_Up);
    } else if (auto *types = m_window->findChild<HardwareTypeComboBox *>(what)) {
        QTest::keyClick(types, Qt::Key_Up);
    } else if (what == QLatin1String("firmwarePath")) {
        showUpdateTab();
        retype(pathField(), file(QStringLiteral("image.bin")));
        QTest::keyClick(pathField(), Qt::Key_Return);
    } else if (what.endsWith(QLatin1String("data"))) {
        QVERIFY(model->setData(model->index(0, 0), QStringLiteral("9")));
    } else if (what.endsWith(QLatin1String("row"))) {
        QVERIFY(model->insertRow(0));
    } else if (what.endsWith(QLatin1String("removed"))) {
        QVERIFY(model->removeRow(0));
    } else if (model == masks()) {
        masks()->setRules({});
    } else {
        tokens()->setRules({});
    }
    QCOMPARE(m_window->windowTitle(), QStringLiteral("pkg* - ZEL File Creator"));
}

void tst_ZelCreator::binarySizeFollowsTheAcceptedPath()
{
    start();
    showUpdateTab();
    retype(pathField(), file(QStringLiteral("image.bin")));
    QCOMPARE(edit("binarySize")->text(), QStringLiteral("0"));
    QTest::keyClick(pathField(), Qt::Key_Return);
    QCOMPARE(edit("binarySize")->text(), QStringLiteral("8"));

    retype(pathField(), file(QStringLiteral("gone.bin")));
    QTest::keyClick(pathField(), Qt::Key_Return);
    QCOMPARE(edit("binarySize")->text(), QStringLiteral("8"));
}

void tst_ZelCreator::addButtonBeginsToEditTheNewRule()
{
    start();
    tokens()->setRules({{"B", "1"}, {"C", "2"}});
    auto *table = find<TokenValidationTableView>("tokenValidationTable");
    QTest::mouseClick(find<QToolButton>("addTokenRuleButton"), Qt::LeftButton);

    // Appended to the model, and shown first by the sorting.
    QCOMPARE(tokens()->rules(),
             (QList<TokenValidationRule>{{"B", "1"}, {"C", "2"}, {QByteArray(), QByteArray()}}));
    QCOMPARE(table->currentIndex(), table->model()->index(0, 0));
    QVERIFY(table->selectionModel()->isRowSelected(0, QModelIndex()));
    QVERIFY(qobject_cast<QLineEdit *>(QApplication::focusWidget()) != nullptr);
    QVERIFY(table->isAncestorOf(QApplication::focusWidget()));

    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("Z"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QTRY_COMPARE(tokens()->rules().at(2).token, QByteArrayLiteral("Z"));
    QCOMPARE(table->currentIndex().row(), 2);
}

void tst_ZelCreator::addButtonKeepsWhatIsBeingTyped()
{
    start();
    masks()->setRules({{5, 0, "a"}, {6, 0, "b"}});
    auto *button = find<QToolButton>("addMaskRuleButton");
    QTest::mouseClick(button, Qt::LeftButton);
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("99"));
    QTest::mouseClick(button, Qt::LeftButton);

    auto *table = find<MaskValidationTableView>("maskValidationTable");
    QCOMPARE(masks()->rowCount(), 4);
    QCOMPARE(masks()->rules().at(2).parameter, quint16(99));
    QCOMPARE(masks()->rules().at(3), MaskValidationRule());
    // The second new rule is the one being edited, though the first has moved below the others.
    QCOMPARE(table->currentIndex().row(), 0);
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("7"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QTRY_COMPARE(masks()->rules().at(3).parameter, quint16(7));
}

void tst_ZelCreator::clickBesideTheFieldsEndsEditing()
{
    start();
    showUpdateTab();
    retype(pathField(), file(QStringLiteral("image.bin")));
    QVERIFY(pathField()->hasFocus());
    QVERIFY(selector()->path().isEmpty());

    // A free spot at the bottom of the window.
    QTest::mouseClick(m_window.get(), Qt::LeftButton, Qt::NoModifier,
                      QPoint(m_window->width() / 2, m_window->height() - 3));
    QVERIFY(!pathField()->hasFocus());
    QVERIFY(m_window->hasFocus());
    QCOMPARE(selector()->path(), file(QStringLiteral("image.bin")));
}

void tst_ZelCreator::clickBesideTheTablesClearsTheirSelection()
{
    start(makePackage(QStringLiteral("pkg.zel")));
    auto *table = find<MaskValidationTableView>("maskValidationTable");
    table->setFocus();
    table->selectRow(1);
    QVERIFY(table->selectionModel()->hasSelection());

    QTest::mouseClick(m_window.get(), Qt::LeftButton, Qt::NoModifier,
                      QPoint(m_window->width() / 2, m_window->height() - 3));
    QVERIFY(!table->selectionModel()->hasSelection());
    QVERIFY(!table->currentIndex().isValid());
    QVERIFY(!table->hasFocus());
    QVERIFY(m_window->hasFocus());
}

void tst_ZelCreator::failureMessagesOfTheFieldsAreShown()
{
    start();
    showUpdateTab();
    retype(pathField(), m_folder->path());
    QTest::keyClick(pathField(), Qt::Key_Return);
    QCOMPARE(shownMessage(m_window.get()),
             QStringLiteral("\"%1\" is a directory.\nPlease specify path to a file.")
                 .arg(QDir::toNativeSeparators(m_folder->path())));

    auto *types = find<HardwareTypeComboBox>("hardwareType");
    retype(types->lineEdit(), QStringLiteral("abc"));
    QTest::keyClick(types->lineEdit(), Qt::Key_Return);
    QTRY_COMPARE(shownMessage(m_window.get()),
                 QStringLiteral("The inserted hardware type must be uint 32."));
}

void tst_ZelCreator::firstRunShowsAllInformation()
{
    start();
    for (const char *name :
         {"maskValidationInfoBox", "tokenValidationInfoBox", "optionSoftwareVersionsInfoBox"}) {
        QVERIFY2(find<CollapsibleGroupBox>(name)->isChecked(), name);
    }
    QVERIFY(!m_window->isMaximized());
}

void tst_ZelCreator::settingsComeBack()
{
    start();
    find<CollapsibleGroupBox>("tokenValidationInfoBox")->setChecked(false);
    find<CollapsibleGroupBox>("optionSoftwareVersionsInfoBox")->setChecked(false);
    m_window->resize(m_window->size() + QSize(40, 30));
    const QSize size = m_window->size();
    m_window->close();

    QSettings stored = settings();
    QStringList keys = stored.allKeys();
    keys.sort();
    QCOMPARE(keys,
             QStringList({QStringLiteral("Geometry"), QStringLiteral("MaskValidationPrompt_Shown"),
                          QStringLiteral("OptionHardwareVersionsPrompt_Shown"),
                          QStringLiteral("TokenValidationPrompt_Shown")}));
    QCOMPARE(stored.value(QStringLiteral("Geometry")).toByteArray(), m_window->saveGeometry());
    QCOMPARE(stored.value(QStringLiteral("MaskValidationPrompt_Shown")).toBool(), true);
    QCOMPARE(stored.value(QStringLiteral("TokenValidationPrompt_Shown")).toBool(), false);
    // Named after the hardware, but it is the software versions' box, deliberately.
    QCOMPARE(stored.value(QStringLiteral("OptionHardwareVersionsPrompt_Shown")).toBool(), false);

    start();
    QVERIFY(find<CollapsibleGroupBox>("maskValidationInfoBox")->isChecked());
    QVERIFY(!find<CollapsibleGroupBox>("tokenValidationInfoBox")->isChecked());
    QVERIFY(!find<CollapsibleGroupBox>("optionSoftwareVersionsInfoBox")->isChecked());
    QTRY_COMPARE(m_window->size(), size);
}

void tst_ZelCreator::emptyGeometryIsIgnored()
{
    start();
    const QSize size = m_window->size();
    m_window->close();
    settings().setValue(QStringLiteral("Geometry"), QByteArray());
    start();
    QCOMPARE(m_window->size(), size);
}

void tst_ZelCreator::cancelAndExitCloseTheWindow()
{
    start();
    QTest::mouseClick(find<QDialogButtonBox>("buttonBox")->button(QDialogButtonBox::Cancel),
                      Qt::LeftButton);
    QVERIFY(!m_window->isVisible());

    start(makePackage(QStringLiteral("pkg.zel")));
    // Unsaved changes are discarded without a question.
    find<QCheckBox>("optionBCheckBox")->click();
    find<QAction>("actionExit")->trigger();
    QVERIFY(!m_window->isVisible());
}

void tst_ZelCreator::aboutQt()
{
    start();
    QString title;
    onNextDialog([&title](QWidget *dialog) {
        title = dialog->windowTitle();
        QTest::keyClick(dialog, Qt::Key_Escape);
    });
    find<QAction>("actionAboutQt")->trigger();
    QTRY_COMPARE(title, QStringLiteral("About Qt"));
}

ZEL_TEST_MAIN(tst_ZelCreator)
#include "tst_ZelCreator.moc"
