#include "app/ZelCreator.h"

#include "app/ZelCreatorForm.h"
#include "models/MaskValidationModel.h"
#include "models/TokenValidationModel.h"
#include "resources/ProgramIcon.h"
#include "tlv/ZelFile.h"
#include "views/RuleTableView.h"
#include "widgets/CollapsibleGroupBox.h"
#include "widgets/ErrorMark.h"
#include "widgets/FirmwareAddressLineEdit.h"
#include "widgets/HardwareTypeComboBox.h"
#include "widgets/MessagePopupWidget.h"
#include "widgets/PathSelector.h"

#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMenuBar>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QScreen>
#include <QSettings>
#include <QSignalBlocker>
#include <QSortFilterProxyModel>
#include <QSpinBox>
#include <QToolButton>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

namespace {

const QLatin1String kProgramName("ZEL File Creator");
const QLatin1String kOrganisation("Halvorn Drives");
const QLatin1String kGeometryKey("Geometry");
const QLatin1String kMinimumVersion("00.00");
const QLatin1String kMaximumVersion("99.99");

constexpr quint32 kLayoutVersion = 1;
constexpr int kFirmwareAddressDigits = 8;
constexpr int kHexadecimal = 16;
constexpr int kPreferredWidth = 1158;
constexpr int kPreferredHeight = 716;
constexpr int kMinimumWidth = 610;
/// A window needs its preferred height and this much more of it for the frame around it.
constexpr double kHeightWithFrame = 1.07;

/// The wait cursor, for as long as this object lives.
class WaitCursor final
{
    Q_DISABLE_COPY_MOVE(WaitCursor)

public:
    WaitCursor() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { QGuiApplication::restoreOverrideCursor(); }
};

QString toText(const tlv::SoftwareVersion &version)
{
    constexpr int kDecimal = 10;
    return QStringLiteral("%1.%2")
        .arg(version.major, 2, kDecimal, QLatin1Char('0'))
        .arg(version.minor, 2, kDecimal, QLatin1Char('0'));
}

/// Anything but two numbers joined by a dot counts as 0 where it is no number.
tlv::SoftwareVersion toVersion(const QString &text)
{
    const QStringList parts = text.split(QLatin1Char('.'));
    if (parts.size() != 2) {
        return {};
    }
    return {static_cast<quint16>(parts.at(0).toUInt()), static_cast<quint16>(parts.at(1).toUInt())};
}

void setTextSilently(QLineEdit *field, const QString &text)
{
    const QSignalBlocker blocker(field);
    field->setText(text);
}

void setCheckedSilently(QCheckBox *box, bool checked)
{
    const QSignalBlocker blocker(box);
    box->setChecked(checked);
}

/// Values above the field's range show as its largest.
void setValueSilently(QSpinBox *field, quint32 value)
{
    const QSignalBlocker blocker(field);
    field->setValue(
        static_cast<int>(std::min(value, static_cast<quint32>(std::numeric_limits<int>::max()))));
}

void setPathSilently(PathSelector *selector, const QString &path)
{
    const QSignalBlocker blocker(selector);
    selector->setPath(path);
}

bool load(tlv::ZelFile &package, const QString &path, QString &message)
{
    const WaitCursor waitCursor;
    return package.load(path, message);
}

} // namespace

ZelCreator::ZelCreator(const QString &startPath, QWidget *parent)
    : QMainWindow(parent)
    , m_currentFilePath(startPath)
    , m_scale(logicalDpiX())
{
    QFont font = QApplication::font();
    font.setFamily(QStringLiteral("Segoe UI"));
    QApplication::setFont(font);
    QPalette palette = QApplication::palette();
    palette.setColor(QPalette::Window, Qt::white);
    QApplication::setPalette(palette);

    m_maskModel = new MaskValidationModel(this);
    m_tokenModel = new TokenValidationModel(this);
    m_form = new ZelCreatorForm(m_maskModel, m_tokenModel, this);
    m_messagePopup = createMessagePopup();
    createMenus();
    connectForm();

    setCentralWidget(m_form);
    setWindowIcon(programIcon(QStringLiteral(":/ZelFile")));
    setWindowTitle(kProgramName);
    setSizePolicy(QSizePolicy::MinimumExpanding, QSizePolicy::MinimumExpanding);
    setInitialSize();
    loadSettings();
    installEventFilter(this);

    if (!startPath.isEmpty()) {
        decodeFile(startPath);
    }
}

ZelCreator::~ZelCreator()
{
    // A field that loses the focus as it is destroyed must not report to a window that is going
    // too.
    for (const QObject *part : m_form->findChildren<QObject *>()) {
        disconnect(part, nullptr, this, nullptr);
    }
}

MessagePopupWidget *ZelCreator::createMessagePopup()
{
    auto *popup = new MessagePopupWidget(m_form);
    popup->setObjectName(QStringLiteral("messagePopup"));
    popup->setAlignment(Qt::AlignHCenter | Qt::AlignBottom | Qt::AlignVCenter);
    popup->setMargin(Qt::AlignBottom);
    popup->setVerticalDirection(PopupWidget::BottomToTop);
    popup->setStyleSheet(QStringLiteral("QWidget { font-size: %1px; }").arg(m_scale.px(14)));
    return popup;
}

void ZelCreator::createMenus()
{
    struct Row
    {
        QString text;
        QString objectName;
        QString icon;
        QKeySequence::StandardKey shortcut;
        void (ZelCreator::*slot)();
    };
    struct Menu
    {
        QString title;
        std::vector<Row> rows;
    };
    const std::array<Menu, 2> menus = {{
        {tr("&File"),
         {{tr("&New"), QStringLiteral("actionNew"), QStringLiteral(":/New"), QKeySequence::New,
           &ZelCreator::newFile},
          {tr("&Open..."), QStringLiteral("actionOpen"), QStringLiteral(":/OpenFile"),
           QKeySequence::Open, &ZelCreator::openZelFile},
          {tr("&Save..."), QStringLiteral("actionSave"), QStringLiteral(":/SaveAs"),
           QKeySequence::Save, &ZelCreator::saveZelFileAs},
          {tr("&Exit"), QStringLiteral("actionExit"), QString(), QKeySequence::Close,
           &ZelCreator::exitProgram}}},
        {tr("&Help"),
         {{tr("About &Qt..."), QStringLiteral("actionAboutQt"), QStringLiteral(":/QtLogo"),
           QKeySequence::UnknownKey, &ZelCreator::showAboutQt}}},
    }};

    menuBar()->setStyleSheet(
        QStringLiteral("QMenuBar { background-color: transparent; margin: %1px; } ")
            .arg(m_scale.px(5)));
    const QString menuStyle =
        QStringLiteral("QMenu { background-color: #fbfcfd; }")
        + QStringLiteral("QMenu::icon { padding-left: %1px; }").arg(m_scale.px(7))
        + QStringLiteral("QMenu::item { background-color: transparent; border: %1px solid "
                         "transparent; padding: %2px %3px %2px %4px; } ")
              .arg(m_scale.px(1))
              .arg(m_scale.px(2))
              .arg(m_scale.px(11))
              .arg(m_scale.px(25))
        + QStringLiteral(
            "QMenu::item:selected { background-color: #edf4fc; border-color: #a8d2fd; } ");
    for (const Menu &entry : menus) {
        QMenu *menu = menuBar()->addMenu(entry.title);
        menu->setStyleSheet(menuStyle);
        for (const Row &row : entry.rows) {
            QAction *action = menu->addAction(programIcon(row.icon), row.text, this, row.slot);
            action->setObjectName(row.objectName);
            action->setShortcuts(row.shortcut);
        }
    }
}

void ZelCreator::connectForm()
{
    for (QLineEdit *field : {m_form->optionA.minimum, m_form->optionA.maximum}) {
        connect(field, &QLineEdit::textChanged, this, &ZelCreator::validateOptionASoftwareVersions);
    }
    for (QLineEdit *field : {m_form->optionB.minimum, m_form->optionB.maximum}) {
        connect(field, &QLineEdit::textChanged, this, &ZelCreator::validateOptionBSoftwareVersions);
    }
    for (QLineEdit *field : m_form->versionFields()) {
        connect(field, &QLineEdit::textChanged, this, &ZelCreator::updateProjectStatus);
    }
    for (const OptionFields *option : m_form->options()) {
        connect(option->enabled, &QCheckBox::stateChanged, this, &ZelCreator::updateProjectStatus);
    }
    for (QSpinBox *field : m_form->hardwareVersions()) {
        const auto valueChanged = qOverload<int>(&QSpinBox::valueChanged);
        connect(field, valueChanged, this, &ZelCreator::validateOptionSideHardwareVersions);
        connect(field, valueChanged, this, &ZelCreator::updateProjectStatus);
    }

    connect(m_form->hardwareType, qOverload<int>(&QComboBox::currentIndexChanged), this,
            &ZelCreator::updateProjectStatus);
    connect(m_form->hardwareType, &HardwareTypeComboBox::errorOccurred, this,
            &ZelCreator::showError);

    connect(m_form->firmwarePath, &PathSelector::pathChanged, this, &ZelCreator::showFirmwareSize);
    connect(m_form->firmwarePath, &PathSelector::pathChanged, this,
            &ZelCreator::updateProjectStatus);
    connect(m_form->firmwarePath, &PathSelector::editingFinished, this,
            &ZelCreator::updateProjectStatus);
    connect(m_form->firmwarePath, &PathSelector::errorOccurred, this, &ZelCreator::showError);

    connect(m_form->firmwareAddress, &QLineEdit::textChanged, this,
            &ZelCreator::updateProjectStatus);
    connect(m_form->firmwareAddress, &QLineEdit::editingFinished, this,
            &ZelCreator::updateProjectStatus);
    connect(m_form->firmwareAddress, &FirmwareAddressLineEdit::errorOccurred, this,
            &ZelCreator::showError);

    for (const RuleSection *section : m_form->ruleSections()) {
        connectRules(*section);
    }
    connect(m_form->saveButton, &QPushButton::clicked, this, &ZelCreator::saveZelFileAs);
    connect(m_form->buttonBox, &QDialogButtonBox::rejected, this, &ZelCreator::close);
}

void ZelCreator::connectRules(const RuleSection &section)
{
    const QAbstractItemModel *model = section.model;
    connect(model, &QAbstractItemModel::dataChanged, this, &ZelCreator::updateProjectStatus);
    connect(model, &QAbstractItemModel::rowsInserted, this, &ZelCreator::updateProjectStatus);
    connect(model, &QAbstractItemModel::rowsRemoved, this, &ZelCreator::updateProjectStatus);
    connect(model, &QAbstractItemModel::modelReset, this, &ZelCreator::updateProjectStatus);
    connect(section.addButton, &QToolButton::clicked, this, [this, &section] { addRule(section); });
}

void ZelCreator::setInitialSize()
{
    const QSize preferred(m_scale.px(kPreferredWidth), m_scale.px(kPreferredHeight));
    const int heightWithFrame =
        static_cast<int>(std::lround(kHeightWithFrame * preferred.height()));
    const QRect available = screen() != nullptr ? screen()->availableGeometry() : QRect();
    const bool tooLarge =
        preferred.width() > available.width() || heightWithFrame > available.height();
    if (!available.isEmpty() && tooLarge) {
        if (minimumSizeHint().height() > available.height()) {
            m_form->makePagesScrollable();
        }
        showMaximized();
        return;
    }
    setMinimumSize(m_scale.px(kMinimumWidth), preferred.height());
    resize(preferred);
}

void ZelCreator::loadSettings()
{
    const QSettings settings(kOrganisation, kProgramName);
    const QByteArray geometry = settings.value(kGeometryKey).toByteArray();
    if (!geometry.isEmpty()) {
        restoreGeometry(geometry);
    }
    for (const InfoBox &info : m_form->infoBoxes()) {
        info.box->setChecked(settings.value(QLatin1String(info.settingsKey), true).toBool());
    }
}

void ZelCreator::saveSettings() const
{
    QSettings settings(kOrganisation, kProgramName);
    settings.setValue(kGeometryKey, saveGeometry());
    for (const InfoBox &info : m_form->infoBoxes()) {
        settings.setValue(QLatin1String(info.settingsKey), info.box->isChecked());
    }
}

void ZelCreator::closeEvent(QCloseEvent *event)
{
    saveSettings();
    event->accept();
}

bool ZelCreator::eventFilter(QObject *watched, QEvent *event)
{
    const bool isPress =
        event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonDblClick;
    if (watched == this && isPress) {
        leaveTables();
        leaveFields();
    }
    return QMainWindow::eventFilter(watched, event);
}

void ZelCreator::leaveTables()
{
    for (const RuleSection *section : m_form->ruleSections()) {
        const bool hadFocus = section->view->hasFocus();
        if (hadFocus) {
            section->view->clearFocus();
        }
        section->view->clearSelection();
        section->view->setCurrentIndex(QModelIndex());
        if (hadFocus) {
            setFocus(Qt::OtherFocusReason);
        }
    }
}

void ZelCreator::leaveFields()
{
    for (QWidget *field : m_form->clickAwayFields()) {
        if (field->hasFocus()) {
            field->clearFocus();
            setFocus(Qt::OtherFocusReason);
        }
    }
}

/// Brings what is still being typed into the form, as leaving its field would.
void ZelCreator::finishEditing()
{
    const QPointer<QWidget> focused = QApplication::focusWidget();
    if (focused == nullptr || !m_form->isAncestorOf(focused)) {
        return;
    }
    focused->clearFocus();
    if (focused != nullptr && focused->isVisible()) {
        focused->setFocus(Qt::OtherFocusReason);
    }
}

void ZelCreator::addRule(const RuleSection &section)
{
    finishEditing();
    const int row = section.model->rowCount();
    section.model->insertRows(row, 1);
    section.view->beginEditing(section.proxy->mapFromSource(section.model->index(row, 0)));
}

void ZelCreator::newFile()
{
    m_currentFilePath.clear();
    m_modified = false;

    const QScopedValueRollback<bool> filling(m_filling, true);
    m_maskModel->setRules({});
    m_tokenModel->setRules({});
    for (const OptionFields *option : m_form->options()) {
        setCheckedSilently(option->enabled, false);
        setTextSilently(option->minimum, kMinimumVersion);
        setTextSilently(option->maximum, kMaximumVersion);
    }
    setPathSilently(m_form->firmwarePath, QString());
    for (QSpinBox *field : m_form->hardwareVersions()) {
        setValueSilently(field, 0);
    }
    setTextSilently(m_form->firmwareAddress, QString());
    setTextSilently(m_form->binarySize, QString());
    clearErrorMarks();
    updateTitle();
}

void ZelCreator::openZelFile()
{
    const QString path = QFileDialog::getOpenFileName(nullptr, tr("ZEL File Path"), QString(),
                                                      tr("ZEL Files (*.zel)"));
    if (!path.isEmpty()) {
        decodeFile(QDir::toNativeSeparators(path));
    }
}

bool ZelCreator::decodeFile(const QString &filePath)
{
    tlv::ZelFile package;
    QString message;
    if (!load(package, filePath, message)) {
        showError(message);
        return false;
    }
    fillForm(package);
    m_currentFilePath = filePath;
    m_modified = false;
    updateTitle();
    return true;
}

void ZelCreator::fillForm(const tlv::ZelFile &package)
{
    const QScopedValueRollback<bool> filling(m_filling, true);
    m_maskModel->setRules(package.maskRules());
    m_tokenModel->setRules(package.tokenRules());

    const tlv::SoftwareOptions software = package.softwareOptions();
    for (const OptionFields *option : m_form->options()) {
        setCheckedSilently(option->enabled, software.*option->enabledMember);
        setTextSilently(option->minimum, toText(software.*option->minimumMember));
        setTextSilently(option->maximum, toText(software.*option->maximumMember));
    }

    setValueSilently(m_form->minimumHardwareVersion, package.minimumHardwareVersion());
    setValueSilently(m_form->maximumHardwareVersion, package.maximumHardwareVersion());
    {
        const QSignalBlocker blocker(m_form->hardwareType);
        m_form->hardwareType->setHardwareType(QString::number(package.hardwareType()),
                                              package.hardwareType());
    }

    // Deliberately without leading zeros: an address that begins with one is shown with fewer than
    // 8 digits and has to be completed before the package can be saved again.
    setTextSilently(m_form->firmwareAddress,
                    QString::number(package.firmwareAddress(), kHexadecimal).toUpper());
    setTextSilently(m_form->binarySize, QString::number(package.firmwareSize()));
    setPathSilently(m_form->firmwarePath, QString::fromUtf8(package.extractedFirmwarePath()));
    clearErrorMarks();
}

void ZelCreator::clearErrorMarks()
{
    for (QLineEdit *field : m_form->versionFields()) {
        ErrorMark::setMarked(field, false);
    }
    for (QSpinBox *field : m_form->hardwareVersions()) {
        ErrorMark::setMarked(field, false);
    }
    ErrorMark::setMarked(m_form->firmwareAddress, false);
    m_form->firmwarePath->setErrorMark(false);
}

void ZelCreator::saveZelFileAs()
{
    finishEditing();
    if (!validateForm()) {
        return;
    }
    const QString path = askForSavePath();
    if (path.isEmpty()) {
        return;
    }
    const QString previousPath = std::exchange(m_currentFilePath, QDir::toNativeSeparators(path));
    if (!saveFile()) {
        m_currentFilePath = previousPath;
    }
}

QString ZelCreator::askForSavePath()
{
    QFileDialog dialog(this, tr("ZEL File Path"), QString(), tr("ZEL Files (*.zel)"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setDefaultSuffix(QStringLiteral("zel"));
    if (!m_currentFilePath.isEmpty()) {
        dialog.setDirectory(QFileInfo(m_currentFilePath).absolutePath());
        dialog.selectFile(QFileInfo(m_currentFilePath).fileName());
    }
    if (dialog.exec() != QDialog::Accepted) {
        return {};
    }
    return dialog.selectedFiles().value(0);
}

bool ZelCreator::saveFile()
{
    if (!validateForm()) {
        return false;
    }
    QString path = m_currentFilePath;
    QString message;
    if (!write(path, message)) {
        showError(message);
        return false;
    }
    m_currentFilePath = path;
    m_messagePopup->showMessage(
        tr("ZEL file was successfully saved to\n%1.").arg(m_currentFilePath),
        MessagePopupWidget::Info);
    m_modified = false;
    updateTitle();
    return true;
}

bool ZelCreator::write(QString &path, QString &message) const
{
    const WaitCursor waitCursor;
    return packageFromForm().save(path, message);
}

tlv::ZelFile ZelCreator::packageFromForm() const
{
    tlv::SoftwareOptions software;
    for (const OptionFields *option : m_form->options()) {
        software.*option->enabledMember = option->enabled->isChecked();
        software.*option->minimumMember = toVersion(option->minimum->text());
        software.*option->maximumMember = toVersion(option->maximum->text());
    }

    tlv::ZelFile package;
    package.setMaskRules(m_maskModel->rules());
    package.setTokenRules(m_tokenModel->rules());
    package.setSoftwareOptions(software);
    package.setHardware(static_cast<quint32>(m_form->minimumHardwareVersion->value()),
                        static_cast<quint32>(m_form->maximumHardwareVersion->value()),
                        m_form->hardwareType->currentData().toUInt(), kLayoutVersion);
    package.setFirmwareFile(m_form->firmwarePath->path(),
                            m_form->firmwareAddress->text().toUInt(nullptr, kHexadecimal));
    return package;
}

bool ZelCreator::validateForm()
{
    return validateFirmwarePath() && validateOptionASoftwareVersions()
           && validateOptionBSoftwareVersions() && validateOptionSideHardwareVersions()
           && validateFirmwareAddress(true) && validateHardwareType();
}

/// What the path field shows is what is saved: a path that was typed but never accepted is checked
/// here, and an emptied field counts as no path.
bool ZelCreator::validateFirmwarePath()
{
    PathSelector *selector = m_form->firmwarePath;
    const QString entered = selector->enteredPath();
    if (entered.trimmed().isEmpty()) {
        selector->setErrorMark(true);
        showError(tr("Please select a firmware file."));
        return false;
    }
    if (entered != selector->path() && !selector->validatePath()) {
        return false;
    }
    // The complete suffix, deliberately: image.v2.bin and image.BIN are refused.
    if (QFileInfo(selector->path()).completeSuffix() != QLatin1String("bin")) {
        showError(tr("Please select a binary file."));
        return false;
    }
    return true;
}

/// A type that was typed but never accepted is looked up here; the field reports why it cannot be.
bool ZelCreator::validateHardwareType()
{
    HardwareTypeComboBox *types = m_form->hardwareType;
    const auto isAccepted = [types] {
        return types->currentText() == types->itemText(types->currentIndex());
    };
    if (!isAccepted()) {
        types->insertNewHardwareType();
    }
    return isAccepted();
}

bool ZelCreator::validateOptionASoftwareVersions()
{
    return validateOption(m_form->optionA,
                          tr("For Option A, minimum version must not be greater than maximum."));
}

bool ZelCreator::validateOptionBSoftwareVersions()
{
    return validateOption(m_form->optionB,
                          tr("For Option B, minimum version must not be greater than maximum."));
}

bool ZelCreator::validateOption(const OptionFields &option, const QString &message)
{
    // Compared as decimal numbers, deliberately: 01.5 is greater than 01.10.
    const bool passed = option.minimum->text().toDouble() <= option.maximum->text().toDouble();
    return showOutcome(passed, {option.minimum, option.maximum}, message);
}

bool ZelCreator::validateOptionSideHardwareVersions()
{
    const auto [minimum, maximum] = m_form->hardwareVersions();
    return showOutcome(
        minimum->value() <= maximum->value(), {minimum, maximum},
        tr("For Option Side Validation, minimum version must not be greater than maximum."));
}

bool ZelCreator::validateFirmwareAddress(bool showErrorPopup)
{
    const bool passed = m_form->firmwareAddress->text().size() == kFirmwareAddressDigits;
    if (!passed && !showErrorPopup) {
        ErrorMark::setMarked(m_form->firmwareAddress, true);
        return false;
    }
    return showOutcome(passed, {m_form->firmwareAddress},
                       tr("Firmware address must contain 8 digits."));
}

bool ZelCreator::showOutcome(bool passed, std::initializer_list<QWidget *> fields,
                             const QString &message)
{
    for (QWidget *field : fields) {
        ErrorMark::setMarked(field, !passed);
    }
    if (passed) {
        m_messagePopup->hidePopup();
    } else {
        showError(message);
    }
    return passed;
}

void ZelCreator::updateTitle()
{
    if (m_currentFilePath.isEmpty()) {
        setWindowTitle(kProgramName);
        return;
    }
    // In a title, "[*]" alone would stand for the toolkit's own modified mark and not be shown.
    const QString baseName = QFileInfo(m_currentFilePath)
                                 .baseName()
                                 .replace(QLatin1String("[*]"), QLatin1String("[*][*]"));
    setWindowTitle(
        m_modified ? QStringLiteral("%1%2 - %3").arg(baseName, QStringLiteral("*"), kProgramName)
                   : QStringLiteral("%1 - %2").arg(baseName, kProgramName));
}

void ZelCreator::updateProjectStatus()
{
    // A modified form has its title already.
    if (m_filling || m_modified) {
        return;
    }
    m_modified = true;
    updateTitle();
}

void ZelCreator::showFirmwareSize(const QString &firmwarePath)
{
    const QFileInfo firmware(firmwarePath);
    if (firmware.isFile()) {
        m_form->binarySize->setText(QString::number(firmware.size()));
    }
}

void ZelCreator::showError(const QString &message)
{
    m_messagePopup->showMessage(message, MessagePopupWidget::Error);
}

void ZelCreator::exitProgram()
{
    close();
}

void ZelCreator::showAboutQt()
{
    QMessageBox::aboutQt(this, tr("About Qt"));
}
