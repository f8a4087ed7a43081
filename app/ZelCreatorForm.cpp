#include "app/ZelCreatorForm.h"

#include "resources/ProgramIcon.h"
#include "views/MaskValidationTableView.h"
#include "views/TokenValidationTableView.h"
#include "widgets/ButtonHoverWatcher.h"
#include "widgets/CollapsibleGroupBox.h"
#include "widgets/ErrorMark.h"
#include "widgets/FirmwareAddressLineEdit.h"
#include "widgets/HardwareTypeComboBox.h"
#include "widgets/PathSelector.h"
#include "widgets/WholeTextValidator.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QScrollArea>
#include <QSortFilterProxyModel>
#include <QSpinBox>
#include <QTabWidget>
#include <QToolButton>

#include <algorithm>
#include <limits>

namespace {

const QLatin1String kProgramVersion("1.0.9");

constexpr int kFieldWidth = 160;
constexpr int kButtonHeight = 27;
constexpr int kAddIconSize = 20;
constexpr int kPageMargin = 11;
/// Past the information box's indicator.
constexpr int kInfoTextIndent = 32;
constexpr int kRowSpacing = 6;
constexpr int kColumnSpacing = 8;

struct HardwareTypeItem
{
    const char *label;
    uint value;
};
constexpr std::array<HardwareTypeItem, 3> kHardwareTypes = {{
    {"NIOS2 (1)", 1},
    {"RISC-V (2)", 2},
    {"Ethernet-Renesas (4)", 4},
}};

QFont emphasised(QFont font, int weight, int morePoints)
{
    font.setWeight(weight);
    if (font.pointSize() > 0) {
        font.setPointSize(font.pointSize() + morePoints);
    }
    return font;
}

QValidator *createValidator(const QString &pattern, QObject *parent)
{
    return new WholeTextValidator(QRegularExpression(pattern), parent);
}

template <typename View>
RuleTableView *createView(QWidget *parent)
{
    return new View(parent);
}

} // namespace

/// What tells one rule group from the other.
struct ZelCreatorForm::RuleGroup
{
    QString title;
    QString info;
    QString infoBoxName;
    QString infoBoxAccessibleName;
    QString addToolTip;
    QString addButtonName;
    QString tableName;
    QString tableAccessibleName;
    RuleTableView *(*createTable)(QWidget *parent);
};

ZelCreatorForm::ZelCreatorForm(QAbstractItemModel *maskModel, QAbstractItemModel *tokenModel,
                               QWidget *parent)
    : QWidget(parent)
    , m_scale(logicalDpiX())
{
    const auto createProxy = [parent](QAbstractItemModel *model) {
        auto *proxy = new QSortFilterProxyModel(parent);
        proxy->setSourceModel(model);
        return proxy;
    };
    maskRules.model = maskModel;
    maskRules.proxy = createProxy(maskModel);
    tokenRules.model = tokenModel;
    tokenRules.proxy = createProxy(tokenModel);

    tabWidget = new QTabWidget(this);
    tabWidget->setObjectName(QStringLiteral("tabWidget"));
    tabWidget->setStyleSheet(
        QStringLiteral("QTabWidget:pane { border: %1px solid #dcdcdc; }").arg(m_scale.px(1))
        + QStringLiteral("QTabBar { color: #595959; } QTabBar::tab:!selected { font: normal; }"));
    tabWidget->tabBar()->setFont(emphasised(font(), QFont::Bold, 2));
    fillValidationPage(addPage(tr("Pre-update Validation")));
    fillUpdatePage(addPage(tr("Option Update")));

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(m_scale.px(kPageMargin), 0, m_scale.px(kPageMargin), 0);
    layout->setSpacing(0);
    layout->addWidget(tabWidget, 1);
    layout->addLayout(createBottomRow());

    alignRows();
}

void ZelCreatorForm::makePagesScrollable()
{
    for (int tab = 0; tab < tabWidget->count(); ++tab) {
        const QString title = tabWidget->tabText(tab);
        QWidget *page = tabWidget->widget(tab);
        auto *area = new QScrollArea(this);
        area->setFrameShape(QFrame::NoFrame);
        area->setFocusPolicy(Qt::NoFocus);
        area->setWidgetResizable(true);
        tabWidget->removeTab(tab);
        area->setWidget(page);
        tabWidget->insertTab(tab, area, title);
    }
    tabWidget->setCurrentIndex(0);
}

std::array<const RuleSection *, 2> ZelCreatorForm::ruleSections() const
{
    return {&maskRules, &tokenRules};
}

std::array<const OptionFields *, 2> ZelCreatorForm::options() const
{
    return {&optionA, &optionB};
}

std::array<QLineEdit *, 4> ZelCreatorForm::versionFields() const
{
    return {optionA.minimum, optionA.maximum, optionB.minimum, optionB.maximum};
}

std::array<QSpinBox *, 2> ZelCreatorForm::hardwareVersions() const
{
    return {minimumHardwareVersion, maximumHardwareVersion};
}

std::array<InfoBox, 3> ZelCreatorForm::infoBoxes() const
{
    return {{
        {maskRules.infoBox, "MaskValidationPrompt_Shown"},
        {tokenRules.infoBox, "TokenValidationPrompt_Shown"},
        // The key says hardware, but it deliberately governs the software versions box.
        {optionSoftwareVersionsInfoBox, "OptionHardwareVersionsPrompt_Shown"},
    }};
}

std::array<QWidget *, 8> ZelCreatorForm::clickAwayFields() const
{
    return {firmwarePath,    firmwareAddress, minimumHardwareVersion, maximumHardwareVersion,
            optionA.minimum, optionA.maximum, optionB.minimum,        optionB.maximum};
}

QWidget *ZelCreatorForm::addPage(const QString &title) const
{
    auto *page = new QWidget(tabWidget);
    tabWidget->addTab(page, title);
    return page;
}

void ZelCreatorForm::fillValidationPage(QWidget *page)
{
    auto *layout = new QVBoxLayout(page);
    layout->setSpacing(m_scale.px(kRowSpacing));

    layout->addWidget(
        createRuleGroup(maskRules,
                        {tr("Mask Validation"),
                         tr("<p>Mask validators require a parameter's value to match a mask.</p>")
                             + tr("<p>The mask can contain asterisks, which match any one "
                                  "character in parameter's "
                                  "value.</p>")
                             + tr("<p>All other characters as well as the mask's length must "
                                  "precisely match the "
                                  "parameter's value.</p>"),
                         QStringLiteral("maskValidationInfoBox"), tr("About mask validation"),
                         tr("Add a mask validation rule"), QStringLiteral("addMaskRuleButton"),
                         QStringLiteral("maskValidationTable"), tr("Mask validation rules"),
                         &createView<MaskValidationTableView>},
                        page),
        1);
    layout->addWidget(createGap(4, page));

    layout->addWidget(
        createRuleGroup(
            tokenRules,
            {tr("Token Validation"),
             tr("<p>Token validators require a named token to have a given value.</p>")
                 + tr("<p>Token name - value pairs are contained in drive parameter 1598,</p>")
                 + tr(
                     "<p>which might look like \"A=1; B=2; C=3\". In this example, token \"B\" has "
                     "value \"2\".</p>"),
             QStringLiteral("tokenValidationInfoBox"), tr("About token validation"),
             tr("Add a token validation rule"), QStringLiteral("addTokenRuleButton"),
             QStringLiteral("tokenValidationTable"), tr("Token validation rules"),
             &createView<TokenValidationTableView>},
            page),
        1);
    layout->addWidget(createGap(4, page));

    layout->addWidget(createSoftwareVersionsGroup(page));
}

QWidget *ZelCreatorForm::createRuleGroup(RuleSection &section, const RuleGroup &group,
                                         QWidget *parent)
{
    auto *widget = new QWidget(parent);
    auto *title = new QLabel(group.title, widget);
    title->setStyleSheet(
        QStringLiteral("QLabel { font: bold %1px; color: #595959; }").arg(m_scale.px(14)));
    section.infoBox =
        createInfoBox(group.infoBoxName, group.infoBoxAccessibleName, group.info, widget);

    const QIcon icon = programIcon(QStringLiteral(":/Add"));
    section.addButton = new QToolButton(widget);
    section.addButton->setObjectName(group.addButtonName);
    section.addButton->setAccessibleName(group.addToolTip);
    section.addButton->setToolTip(group.addToolTip);
    section.addButton->setIcon(icon);
    section.addButton->setIconSize(QSize(m_scale.px(kAddIconSize), m_scale.px(kAddIconSize)));
    section.addButton->setAutoRaise(true);
    section.addButton->installEventFilter(
        new ButtonHoverWatcher(icon, programIcon(QStringLiteral(":/AddHover")), section.addButton));

    section.view = group.createTable(widget);
    section.view->setObjectName(group.tableName);
    section.view->setAccessibleName(group.tableAccessibleName);
    section.view->setModel(section.proxy);
    section.view->sortByColumn(0, Qt::AscendingOrder);
    section.view->updateMinimumHeight();
    title->setBuddy(section.view);

    auto *row = new QHBoxLayout;
    row->addWidget(section.infoBox, 1);
    row->addStretch();
    row->addWidget(section.addButton, 0, Qt::AlignRight | Qt::AlignBottom);

    auto *layout = new QVBoxLayout(widget);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(m_scale.px(kRowSpacing));
    layout->addWidget(title);
    layout->addLayout(row);
    layout->addWidget(section.view, 1);

    return widget;
}

QGroupBox *ZelCreatorForm::createSoftwareVersionsGroup(QWidget *parent)
{
    QGroupBox *group = createGroup(tr("Option Software Versions"), parent);
    optionSoftwareVersionsInfoBox = createInfoBox(
        QStringLiteral("optionSoftwareVersionsInfoBox"), tr("About option software versions"),
        tr("<p>Software version in the range of 00.00 to 99.99.</p>"), group);

    optionA.enabledMember = &tlv::SoftwareOptions::optionAEnabled;
    optionA.minimumMember = &tlv::SoftwareOptions::optionAMinimum;
    optionA.maximumMember = &tlv::SoftwareOptions::optionAMaximum;
    optionB.enabledMember = &tlv::SoftwareOptions::optionBEnabled;
    optionB.minimumMember = &tlv::SoftwareOptions::optionBMinimum;
    optionB.maximumMember = &tlv::SoftwareOptions::optionBMaximum;

    auto *layout = new QVBoxLayout(group);
    layout->setSpacing(m_scale.px(kRowSpacing));
    layout->addWidget(optionSoftwareVersionsInfoBox);
    layout->addLayout(createOptionRow(optionA, tr("Option A"), QStringLiteral("optionA"), group));
    layout->addLayout(createOptionRow(optionB, tr("Option B"), QStringLiteral("optionB"), group));
    return group;
}

QBoxLayout *ZelCreatorForm::createOptionRow(OptionFields &option, const QString &name,
                                            const QString &objectName, QWidget *parent)
{
    option.enabled = new QCheckBox(name, parent);
    option.enabled->setObjectName(objectName + QStringLiteral("CheckBox"));
    option.enabled->setStyleSheet(QStringLiteral("QCheckBox { color: #595959; }"));
    option.enabled->setFont(emphasised(font(), QFont::Bold, 1));
    option.minimum =
        createVersionField(objectName + QStringLiteral("Minimum"),
                           tr("%1 minimum version").arg(name), QStringLiteral("00.00"), parent);
    option.maximum =
        createVersionField(objectName + QStringLiteral("Maximum"),
                           tr("%1 maximum version").arg(name), QStringLiteral("99.99"), parent);

    auto *row = new QHBoxLayout;
    row->setSpacing(m_scale.px(kColumnSpacing));
    row->addWidget(option.enabled);
    row->addStretch(1);
    const auto addField = [parent, row](const QString &text, QLineEdit *field) {
        auto *label = new QLabel(text, parent);
        label->setBuddy(field);
        row->addWidget(label);
        row->addWidget(field);
    };
    addField(tr("Min"), option.minimum);
    addField(tr("Max"), option.maximum);
    return row;
}

QLineEdit *ZelCreatorForm::createVersionField(const QString &objectName,
                                              const QString &accessibleName, const QString &text,
                                              QWidget *parent)
{
    auto *field = new QLineEdit(text, parent);
    field->setObjectName(objectName);
    field->setAccessibleName(accessibleName);
    field->setValidator(createValidator(QStringLiteral("^\\d?\\d?\\.\\d?\\d?$"), field));
    field->setFixedWidth(2 * field->fontMetrics().horizontalAdvance(QStringLiteral("99.99")));
    new ErrorMark(field);
    return field;
}

void ZelCreatorForm::fillUpdatePage(QWidget *page)
{
    auto *layout = new QVBoxLayout(page);
    layout->setSpacing(m_scale.px(kRowSpacing));
    layout->addWidget(createBinaryDataGroup(page));
    layout->addWidget(createGap(7, page));
    layout->addWidget(createSideValidationGroup(page));
    layout->addStretch(1);
}

QGroupBox *ZelCreatorForm::createBinaryDataGroup(QWidget *parent)
{
    QGroupBox *group = createGroup(tr("Binary Data"), parent);

    firmwarePath = new PathSelector(tr("Firmware"), PathSelector::File, group);
    firmwarePath->setObjectName(QStringLiteral("firmwarePath"));
    firmwarePath->setFileType(commonData::BinaryFile);

    firmwareAddress = new FirmwareAddressLineEdit(group);
    firmwareAddress->setObjectName(QStringLiteral("firmwareAddress"));
    firmwareAddress->setLeadingText(QStringLiteral("0x"));
    firmwareAddress->setText(QStringLiteral("0"));
    firmwareAddress->setValidator(
        createValidator(QStringLiteral("^[A-Fa-f0-9]{1,8}$"), firmwareAddress));
    new ErrorMark(firmwareAddress);

    binarySize = new QLineEdit(QStringLiteral("0"), group);
    binarySize->setObjectName(QStringLiteral("binarySize"));
    binarySize->setEnabled(false);

    auto *grid = new QGridLayout(group);
    grid->addWidget(firmwarePath, 0, 0, 1, 2);
    addRow(grid, 3, tr("Firmware address"), firmwareAddress);
    addRow(grid, 4, tr("Binary size (bytes)"), binarySize);
    return group;
}

QGroupBox *ZelCreatorForm::createSideValidationGroup(QWidget *parent)
{
    QGroupBox *group = createGroup(tr("Option Side Validation"), parent);

    minimumHardwareVersion =
        createHardwareVersionField(QStringLiteral("minimumHardwareVersion"), group);
    maximumHardwareVersion =
        createHardwareVersionField(QStringLiteral("maximumHardwareVersion"), group);
    hardwareType = new HardwareTypeComboBox(group);
    hardwareType->setObjectName(QStringLiteral("hardwareType"));
    for (const HardwareTypeItem &item : kHardwareTypes) {
        hardwareType->addItem(QLatin1String(item.label), item.value);
    }

    auto *grid = new QGridLayout(group);
    addRow(grid, 0, tr("Minimum hardware version"), minimumHardwareVersion);
    addRow(grid, 1, tr("Maximum hardware version"), maximumHardwareVersion);
    addRow(grid, 2, tr("Hardware type"), hardwareType);
    return group;
}

QSpinBox *ZelCreatorForm::createHardwareVersionField(const QString &objectName, QWidget *parent)
{
    auto *field = new QSpinBox(parent);
    field->setObjectName(objectName);
    field->setRange(0, std::numeric_limits<int>::max());
    new ErrorMark(field);
    return field;
}

QBoxLayout *ZelCreatorForm::createBottomRow()
{
    versionLabel = new QLabel(tr("Version: ") + kProgramVersion, this);
    versionLabel->setObjectName(QStringLiteral("versionLabel"));
    saveButton = new QPushButton(tr("Save..."), this);
    saveButton->setObjectName(QStringLiteral("saveButton"));
    buttonBox = new QDialogButtonBox(this);
    buttonBox->setObjectName(QStringLiteral("buttonBox"));
    // Before there is a button: the icon would be looked for in the desktop's theme.
    buttonBox->setStyleSheet(
        QStringLiteral("QDialogButtonBox { dialogbuttonbox-buttons-have-icons: 0; }"));
    buttonBox->setStandardButtons(QDialogButtonBox::Cancel);

    QPushButton *cancelButton = buttonBox->button(QDialogButtonBox::Cancel);
    cancelButton->setFixedHeight(m_scale.px(kButtonHeight));
    saveButton->setFixedSize(cancelButton->sizeHint().width(), m_scale.px(kButtonHeight));

    auto *row = new QHBoxLayout;
    row->setContentsMargins(0, m_scale.px(11), 0, m_scale.px(22));
    row->setSpacing(m_scale.px(kColumnSpacing));
    row->addWidget(versionLabel);
    row->addStretch(1);
    row->addWidget(saveButton);
    row->addWidget(buttonBox);
    return row;
}

QGroupBox *ZelCreatorForm::createGroup(const QString &title, QWidget *parent) const
{
    auto *group = new QGroupBox(title, parent);
    group->setStyleSheet(
        QStringLiteral("QGroupBox { font: bold %1px; color: #595959; }").arg(m_scale.px(14)));
    return group;
}

CollapsibleGroupBox *ZelCreatorForm::createInfoBox(const QString &objectName,
                                                   const QString &accessibleName,
                                                   const QString &text, QWidget *parent) const
{
    auto *box = new CollapsibleGroupBox(QStringLiteral(":/InfoExpanded"),
                                        QStringLiteral(":/InfoExpandedHover"),
                                        QStringLiteral(":/InfoCollapsed"),
                                        QStringLiteral(":/InfoCollapsedHover"), QString(), parent);
    box->setObjectName(objectName);
    box->setAccessibleName(accessibleName);
    auto *label = new QLabel(text, box);
    label->setWordWrap(true);
    auto *layout = new QVBoxLayout(box);
    layout->setContentsMargins(m_scale.px(kInfoTextIndent), 0, 0, 0);
    layout->addWidget(label);
    return box;
}

QWidget *ZelCreatorForm::createGap(int designedHeight, QWidget *parent) const
{
    auto *gap = new QWidget(parent);
    gap->setFixedHeight(m_scale.px(designedHeight));
    return gap;
}

void ZelCreatorForm::addRow(QGridLayout *grid, int row, const QString &label, QWidget *field)
{
    auto *caption = new QLabel(label, grid->parentWidget());
    caption->setBuddy(field);
    field->setFixedWidth(m_scale.px(kFieldWidth));
    grid->addWidget(caption, row, 0);
    grid->addWidget(field, row, 1, Qt::AlignLeft);
    grid->setColumnStretch(1, 1);
    m_captions.push_back(caption);
}

/// Gives the edit rows one height, and the captions of both groups one width.
void ZelCreatorForm::alignRows()
{
    const std::array<QWidget *, 9> fields = {
        optionA.minimum,        optionA.maximum,        optionB.minimum,
        optionB.maximum,        firmwareAddress,        binarySize,
        minimumHardwareVersion, maximumHardwareVersion, hardwareType};
    const int height = firmwarePath->sizeHint().height();
    for (QWidget *field : fields) {
        field->setFixedHeight(height);
    }
    int captionWidth = 0;
    for (const QLabel *caption : m_captions) {
        captionWidth = std::max(captionWidth, caption->sizeHint().width());
    }
    for (QLabel *caption : m_captions) {
        caption->setFixedWidth(captionWidth);
    }
    firmwarePath->setPathLabelWidth(captionWidth);
}
