#pragma once

#include "common/Scale.h"
#include "tlv/ZelFile.h"

#include <QCoreApplication>
#include <QWidget>

#include <array>
#include <vector>

class CollapsibleGroupBox;
class FirmwareAddressLineEdit;
class HardwareTypeComboBox;
class PathSelector;
class QAbstractItemModel;
class QBoxLayout;
class QCheckBox;
class QDialogButtonBox;
class QGridLayout;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QSortFilterProxyModel;
class QSpinBox;
class QTabWidget;
class QToolButton;
class RuleTableView;

/// The fields of one option, and where their contents stand in the package.
struct OptionFields
{
    QCheckBox *enabled = nullptr;
    QLineEdit *minimum = nullptr;
    QLineEdit *maximum = nullptr;
    bool tlv::SoftwareOptions::*enabledMember = nullptr;
    tlv::SoftwareVersion tlv::SoftwareOptions::*minimumMember = nullptr;
    tlv::SoftwareVersion tlv::SoftwareOptions::*maximumMember = nullptr;
};

/// One kind of validation rules: its table and what belongs to it.
struct RuleSection
{
    QAbstractItemModel *model = nullptr;
    QSortFilterProxyModel *proxy = nullptr;
    RuleTableView *view = nullptr;
    CollapsibleGroupBox *infoBox = nullptr;
    QToolButton *addButton = nullptr;
};

/// An information box and the settings key under which its state is kept.
struct InfoBox
{
    CollapsibleGroupBox *box = nullptr;
    const char *settingsKey = nullptr;
};

/// Widgets and layout of the window. What the widgets do is the window's affair; the form only
/// names its parts. All of them are owned by the form. They are created in the order in which the
/// Tab key visits them, and each where it stays: moving one later has all below it styled again.
class ZelCreatorForm final : public QWidget
{
    Q_DECLARE_TR_FUNCTIONS(ZelCreator)
    Q_DISABLE_COPY_MOVE(ZelCreatorForm)

public:
    /// @p maskModel and @p tokenModel hold the rules that the two tables show; they are not owned.
    ZelCreatorForm(QAbstractItemModel *maskModel, QAbstractItemModel *tokenModel, QWidget *parent);

    QTabWidget *tabWidget = nullptr;
    QLabel *versionLabel = nullptr;
    QPushButton *saveButton = nullptr;
    QDialogButtonBox *buttonBox = nullptr;

    RuleSection maskRules;
    RuleSection tokenRules;

    CollapsibleGroupBox *optionSoftwareVersionsInfoBox = nullptr;
    OptionFields optionA;
    OptionFields optionB;

    PathSelector *firmwarePath = nullptr;
    FirmwareAddressLineEdit *firmwareAddress = nullptr;
    QLineEdit *binarySize = nullptr;

    QSpinBox *minimumHardwareVersion = nullptr;
    QSpinBox *maximumHardwareVersion = nullptr;
    HardwareTypeComboBox *hardwareType = nullptr;

    /// Lets the pages of both tabs be scrolled, for a screen that is too low for them.
    void makePagesScrollable();

    [[nodiscard]] std::array<const RuleSection *, 2> ruleSections() const;
    [[nodiscard]] std::array<const OptionFields *, 2> options() const;
    [[nodiscard]] std::array<QLineEdit *, 4> versionFields() const;
    [[nodiscard]] std::array<QSpinBox *, 2> hardwareVersions() const;
    [[nodiscard]] std::array<InfoBox, 3> infoBoxes() const;
    /// The fields that lose the focus when the window's own surface is clicked.
    [[nodiscard]] std::array<QWidget *, 8> clickAwayFields() const;

private:
    struct RuleGroup;

    [[nodiscard]] QWidget *addPage(const QString &title) const;
    void fillValidationPage(QWidget *page);
    void fillUpdatePage(QWidget *page);
    QBoxLayout *createBottomRow();

    QWidget *createRuleGroup(RuleSection &section, const RuleGroup &group, QWidget *parent);
    QGroupBox *createSoftwareVersionsGroup(QWidget *parent);
    QBoxLayout *createOptionRow(OptionFields &option, const QString &name,
                                const QString &objectName, QWidget *parent);
    QLineEdit *createVersionField(const QString &objectName, const QString &accessibleName,
                                  const QString &text, QWidget *parent);
    QGroupBox *createBinaryDataGroup(QWidget *parent);
    QGroupBox *createSideValidationGroup(QWidget *parent);
    QSpinBox *createHardwareVersionField(const QString &objectName, QWidget *parent);

    [[nodiscard]] QGroupBox *createGroup(const QString &title, QWidget *parent) const;
    [[nodiscard]] CollapsibleGroupBox *createInfoBox(const QString &objectName,
                                                     const QString &accessibleName,
                                                     const QString &text, QWidget *parent) const;
    [[nodiscard]] QWidget *createGap(int designedHeight, QWidget *parent) const;
    void addRow(QGridLayout *grid, int row, const QString &label, QWidget *field);
    void alignRows();

    Scale m_scale;
    std::vector<QLabel *> m_captions;
};
