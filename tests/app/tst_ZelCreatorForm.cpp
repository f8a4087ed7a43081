#include "app/ZelCreatorForm.h"

#include "app/ZelCreator.h"
#include "tests/support/Activation.h"
#include "tests/support/ZelTest.h"
#include "views/MaskValidationTableView.h"
#include "widgets/ButtonHoverWatcher.h"
#include "widgets/CollapsibleGroupBox.h"
#include "widgets/FirmwareAddressLineEdit.h"
#include "widgets/HardwareTypeComboBox.h"
#include "widgets/MessagePopupWidget.h"
#include "widgets/PathSelector.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGraphicsDropShadowEffect>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QScreen>
#include <QSettings>
#include <QSpinBox>
#include <QTabBar>
#include <QTabWidget>
#include <QToolButton>

#include <cmath>
#include <memory>

/// How the window looks. Runs at 96 and, with other expectations, at 144 dots per inch.
class tst_ZelCreatorForm : public ZelTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void everyNamedPartIsThere();
    void windowHasItsTitleIconAndSize();
    void applicationLook();
    void tabs();
    void groupTitles();
    void informationTexts();
    void bottomRow();
    void messagePopup();
    void menus();
    void addButtons();
    void tables();

    void versionFields();
    void versionFieldAccepts_data();
    void versionFieldAccepts();
    void addressFieldRefusesANinthDigitAndOtherCharacters();
    void fixedWidths();
    void editRowsShareOneHeight();
    void hardwareTypes();
    void errorMarks();

    void everyFieldHasALabelOrAnAccessibleName();
    void tabOrderFollowsTheEye();
    void captionsAndFieldsOfBothGroupsLineUp();
    void nothingIsClipped_data();
    void nothingIsClipped();

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
    /// The value at the display's scale: @p at96 or @p at144.
    [[nodiscard]] int scaled(int at96, int at144) const { return m_is144 ? at144 : at96; }

    std::unique_ptr<ZelCreator> m_window;
    bool m_is144 = false;
};

void tst_ZelCreatorForm::init()
{
    QSettings(QStringLiteral("Halvorn Drives"), QStringLiteral("ZEL File Creator")).clear();
    m_window = std::make_unique<ZelCreator>(QString());
    m_is144 = m_window->logicalDpiX() == 144;
    QVERIFY(m_is144 || m_window->logicalDpiX() == 96);
    m_window->show();
    QVERIFY(activate(*m_window));
}

void tst_ZelCreatorForm::cleanup()
{
    m_window.reset();
}

void tst_ZelCreatorForm::everyNamedPartIsThere()
{
    for (const char *name : {"tabWidget",
                             "versionLabel",
                             "saveButton",
                             "buttonBox",
                             "messagePopup",
                             "maskValidationInfoBox",
                             "tokenValidationInfoBox",
                             "optionSoftwareVersionsInfoBox",
                             "addMaskRuleButton",
                             "addTokenRuleButton",
                             "maskValidationTable",
                             "tokenValidationTable",
                             "optionACheckBox",
                             "optionAMinimum",
                             "optionAMaximum",
                             "optionBCheckBox",
                             "optionBMinimum",
                             "optionBMaximum",
                             "firmwarePath",
                             "firmwareAddress",
                             "binarySize",
                             "minimumHardwareVersion",
                             "maximumHardwareVersion",
                             "hardwareType"}) {
        QVERIFY2(m_window->findChild<QWidget *>(QLatin1String(name)) != nullptr, name);
    }
}

void tst_ZelCreatorForm::windowHasItsTitleIconAndSize()
{
    QCOMPARE(m_window->windowTitle(), QStringLiteral("ZEL File Creator"));
    QVERIFY(!m_window->windowIcon().isNull());
    QCOMPARE(m_window->size(), QSize(scaled(1158, 1737), scaled(716, 1074)));
    QCOMPARE(m_window->minimumSize(), QSize(scaled(610, 915), scaled(716, 1074)));
    QCOMPARE(m_window->sizePolicy().horizontalPolicy(), QSizePolicy::MinimumExpanding);
    QCOMPARE(m_window->sizePolicy().verticalPolicy(), QSizePolicy::MinimumExpanding);
}

void tst_ZelCreatorForm::applicationLook()
{
    QCOMPARE(QApplication::font().family(), QStringLiteral("Segoe UI"));
    for (const QPalette::ColorGroup group :
         {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        QCOMPARE(QApplication::palette().color(group, QPalette::Window), QColor(Qt::white));
    }
}

void tst_ZelCreatorForm::tabs()
{
    auto *tabWidget = find<QTabWidget>("tabWidget");
    QCOMPARE(tabWidget->count(), 2);
    QCOMPARE(tabWidget->tabText(0), QStringLiteral("Pre-update Validation"));
    QCOMPARE(tabWidget->tabText(1), QStringLiteral("Option Update"));
    QCOMPARE(tabWidget->styleSheet(),
             QStringLiteral("QTabWidget:pane { border: %1px solid #dcdcdc; }"
                            "QTabBar { color: #595959; } QTabBar::tab:!selected { font: normal; }")
                 .arg(scaled(1, 2)));
    QCOMPARE(tabWidget->tabBar()->font().weight(), 75);
    QCOMPARE(tabWidget->tabBar()->font().pointSize(), QApplication::font().pointSize() + 2);
}

void tst_ZelCreatorForm::groupTitles()
{
    QStringList titles;
    const QString groupStyle =
        QStringLiteral("QGroupBox { font: bold %1px; color: #595959; }").arg(scaled(14, 21));
    for (const QGroupBox *group : m_window->findChildren<QGroupBox *>()) {
        if (!group->title().isEmpty()) {
            titles << group->title();
            QCOMPARE(group->styleSheet(), groupStyle);
        }
    }
    titles.sort();
    QCOMPARE(titles,
             QStringList({QStringLiteral("Binary Data"), QStringLiteral("Option Side Validation"),
                          QStringLiteral("Option Software Versions")}));

    titles.clear();
    for (const QLabel *label : m_window->findChildren<QLabel *>()) {
        if (label->styleSheet()
            == QStringLiteral("QLabel { font: bold %1px; color: #595959; }").arg(scaled(14, 21))) {
            titles << label->text();
        }
    }
    QCOMPARE(titles,
             QStringList({QStringLiteral("Mask Validation"), QStringLiteral("Token Validation")}));
}

void tst_ZelCreatorForm::informationTexts()
{
    const auto text = [this](const char *name) {
        return find<CollapsibleGroupBox>(name)->findChild<QLabel *>()->text();
    };
    QCOMPARE(text("maskValidationInfoBox"),
             QStringLiteral("<p>Mask validators require a parameter's value to match a mask.</p>"
                            "<p>The mask can contain asterisks, which match any one character in "
                            "parameter's value.</p>"
                            "<p>All other characters as well as the mask's length must precisely "
                            "match the parameter's value.</p>"));
    QCOMPARE(text("tokenValidationInfoBox"),
             QStringLiteral("<p>Token validators require a named token to have a given value.</p>"
                            "<p>Token name - value pairs are contained in drive parameter 1598,</p>"
                            "<p>which might look like \"A=1; B=2; C=3\". In this example, token "
                            "\"B\" has value \"2\".</p>"));
    QCOMPARE(text("optionSoftwareVersionsInfoBox"),
             QStringLiteral("<p>Software version in the range of 00.00 to 99.99.</p>"));
}

void tst_ZelCreatorForm::bottomRow()
{
    QCOMPARE(find<QLabel>("versionLabel")->text(), QStringLiteral("Version: 1.0.9"));
    auto *save = find<QPushButton>("saveButton");
    auto *box = find<QDialogButtonBox>("buttonBox");
    QCOMPARE(box->buttons().size(), 1);
    QPushButton *cancel = box->button(QDialogButtonBox::Cancel);
    QVERIFY(cancel != nullptr);
    QCOMPARE(save->text(), QStringLiteral("Save..."));
    QCOMPARE(save->height(), scaled(27, 41));
    QCOMPARE(cancel->height(), scaled(27, 41));
    QCOMPARE(save->width(), cancel->sizeHint().width());
    QVERIFY(save->geometry().right() < box->geometry().left());
}

void tst_ZelCreatorForm::messagePopup()
{
    auto *popup = find<MessagePopupWidget>("messagePopup");
    QCOMPARE(popup->styleSheet(),
             QStringLiteral("QWidget { font-size: %1px; }").arg(scaled(14, 21)));
    QCOMPARE(int(popup->alignment()), 196);
    QCOMPARE(popup->verticalDirection(), PopupWidget::BottomToTop);
    QCOMPARE(popup->baseWidget(), m_window->centralWidget());
    QVERIFY(!popup->isVisible());
}

void tst_ZelCreatorForm::menus()
{
    const QMenuBar *bar = m_window->menuBar();
    QCOMPARE(bar->styleSheet(),
             QStringLiteral("QMenuBar { background-color: transparent; margin: %1px; } ")
                 .arg(scaled(5, 8)));

    struct Row
    {
        const char *name;
        const char *text;
        bool hasIcon;
        QKeySequence::StandardKey shortcut;
    };
    const std::vector<std::pair<QString, std::vector<Row>>> menus = {
        {QStringLiteral("&File"),
         {{"actionNew", "&New", true, QKeySequence::New},
          {"actionOpen", "&Open...", true, QKeySequence::Open},
          {"actionSave", "&Save...", true, QKeySequence::Save},
          {"actionExit", "&Exit", false, QKeySequence::Close}}},
        {QStringLiteral("&Help"),
         {{"actionAboutQt", "About &Qt...", true, QKeySequence::UnknownKey}}},
    };
    QCOMPARE(bar->actions().size(), int(menus.size()));
    for (std::size_t i = 0; i < menus.size(); ++i) {
        const QMenu *menu = bar->actions().at(int(i))->menu();
        QCOMPARE(menu->title(), menus[i].first);
        QCOMPARE(
            menu->styleSheet(),
            QStringLiteral("QMenu { background-color: #fbfcfd; }QMenu::icon { padding-left: %1px; }"
                           "QMenu::item { background-color: transparent; border: %2px solid "
                           "transparent; padding: %3px %4px %3px %5px; } "
                           "QMenu::item:selected { background-color: #edf4fc; border-color: "
                           "#a8d2fd; } ")
                .arg(scaled(7, 11))
                .arg(scaled(1, 2))
                .arg(scaled(2, 3))
                .arg(scaled(11, 17))
                .arg(scaled(25, 38)));
        QCOMPARE(menu->actions().size(), int(menus[i].second.size()));
        for (std::size_t row = 0; row < menus[i].second.size(); ++row) {
            const QAction *action = menu->actions().at(int(row));
            const Row &expected = menus[i].second[row];
            QCOMPARE(action->objectName(), QLatin1String(expected.name));
            QCOMPARE(action->text(), QLatin1String(expected.text));
            QCOMPARE(!action->icon().isNull(), expected.hasIcon);
            QCOMPARE(action->shortcuts(), QKeySequence::keyBindings(expected.shortcut));
        }
    }
}

void tst_ZelCreatorForm::addButtons()
{
    const auto imageOf = [](const QToolButton *button) {
        return button->icon().pixmap(button->iconSize()).toImage();
    };
    for (const auto &[name, toolTip] :
         {std::pair("addMaskRuleButton", "Add a mask validation rule"),
          std::pair("addTokenRuleButton", "Add a token validation rule")}) {
        auto *button = find<QToolButton>(name);
        QCOMPARE(button->toolTip(), QLatin1String(toolTip));
        const QImage normal = imageOf(button);
        QCOMPARE(normal, QIcon(QStringLiteral(":/Add")).pixmap(button->iconSize()).toImage());
        QEvent enter(QEvent::Enter);
        QApplication::sendEvent(button, &enter);
        QVERIFY(imageOf(button) != normal);
        QEvent leave(QEvent::Leave);
        QApplication::sendEvent(button, &leave);
        QCOMPARE(imageOf(button), normal);
    }
}

void tst_ZelCreatorForm::tables()
{
    for (const char *name : {"maskValidationTable", "tokenValidationTable"}) {
        auto *table = find<QTableView>(name);
        QCOMPARE(table->horizontalHeader()->sortIndicatorSection(), 0);
        QCOMPARE(table->horizontalHeader()->sortIndicatorOrder(), Qt::AscendingOrder);
        QVERIFY(table->minimumHeight() > table->verticalHeader()->defaultSectionSize());
        // The whole of one row is seen even in the lowest window.
        QVERIFY(table->viewport()->height() >= table->verticalHeader()->defaultSectionSize());
    }
}

void tst_ZelCreatorForm::versionFields()
{
    for (const auto &[name, text] :
         {std::pair("optionAMinimum", "00.00"), std::pair("optionAMaximum", "99.99"),
          std::pair("optionBMinimum", "00.00"), std::pair("optionBMaximum", "99.99")}) {
        QLineEdit *field = edit(name);
        QCOMPARE(field->text(), QLatin1String(text));
        QCOMPARE(field->width(),
                 2 * field->fontMetrics().horizontalAdvance(QStringLiteral("99.99")));
    }
    for (const auto &[name, text] :
         {std::pair("optionACheckBox", "Option A"), std::pair("optionBCheckBox", "Option B")}) {
        auto *box = find<QCheckBox>(name);
        QCOMPARE(box->text(), QLatin1String(text));
        QCOMPARE(box->styleSheet(), QStringLiteral("QCheckBox { color: #595959; }"));
        QCOMPARE(box->font().weight(), 75);
        QCOMPARE(box->font().pointSize(), QApplication::font().pointSize() + 1);
    }
}

void tst_ZelCreatorForm::versionFieldAccepts_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("shown");
    QTest::newRow("1.2") << QStringLiteral("1.2") << QStringLiteral("1.2");
    QTest::newRow("01.20") << QStringLiteral("01.20") << QStringLiteral("01.20");
    QTest::newRow("dot alone") << QStringLiteral(".") << QStringLiteral(".");
    QTest::newRow("123.4 loses a digit") << QStringLiteral("123.4") << QStringLiteral("12.4");
    QTest::newRow("letters") << QStringLiteral("ab1c.d2") << QStringLiteral("1.2");
    QTest::newRow("a third decimal") << QStringLiteral("1.234") << QStringLiteral("1.23");
    QTest::newRow("a second dot") << QStringLiteral("1.2.3") << QStringLiteral("1.23");
}

void tst_ZelCreatorForm::versionFieldAccepts()
{
    QFETCH(QString, typed);
    QFETCH(QString, shown);
    QLineEdit *field = edit("optionAMinimum");
    field->setFocus();
    field->selectAll();
    QTest::keyClicks(field, typed);
    QCOMPARE(field->text(), shown);
}

void tst_ZelCreatorForm::addressFieldRefusesANinthDigitAndOtherCharacters()
{
    QLineEdit *field = edit("firmwareAddress");
    QCOMPARE(field->text(), QStringLiteral("0"));
    field->selectAll();
    QTest::keyClicks(field, QStringLiteral("g12x3AbC-D456"));
    QCOMPARE(field->text(), QStringLiteral("123AbCD4"));
}

void tst_ZelCreatorForm::fixedWidths()
{
    find<QTabWidget>("tabWidget")->setCurrentIndex(1);
    for (const char *name : {"firmwareAddress", "binarySize", "minimumHardwareVersion",
                             "maximumHardwareVersion", "hardwareType"}) {
        QCOMPARE(find<QWidget>(name)->width(), scaled(160, 240));
    }
    QVERIFY(!edit("binarySize")->isEnabled());
    for (const char *name : {"minimumHardwareVersion", "maximumHardwareVersion"}) {
        QCOMPARE(find<QSpinBox>(name)->minimum(), 0);
        QCOMPARE(find<QSpinBox>(name)->maximum(), 2147483647);
    }
}

void tst_ZelCreatorForm::editRowsShareOneHeight()
{
    find<QTabWidget>("tabWidget")->setCurrentIndex(1);
    const int height = find<PathSelector>("firmwarePath")->sizeHint().height();
    for (const char *name :
         {"optionAMinimum", "optionAMaximum", "optionBMinimum", "optionBMaximum", "firmwareAddress",
          "binarySize", "minimumHardwareVersion", "maximumHardwareVersion", "hardwareType"}) {
        QCOMPARE(find<QWidget>(name)->minimumHeight(), height);
        QCOMPARE(find<QWidget>(name)->maximumHeight(), height);
    }
}

void tst_ZelCreatorForm::hardwareTypes()
{
    auto *types = find<HardwareTypeComboBox>("hardwareType");
    QCOMPARE(types->count(), 3);
    QCOMPARE(types->itemText(0), QStringLiteral("NIOS2 (1)"));
    QCOMPARE(types->itemText(1), QStringLiteral("RISC-V (2)"));
    QCOMPARE(types->itemText(2), QStringLiteral("Ethernet-Renesas (4)"));
    QCOMPARE(types->itemData(0), QVariant(1U));
    QCOMPARE(types->itemData(1), QVariant(2U));
    QCOMPARE(types->itemData(2), QVariant(4U));
}

void tst_ZelCreatorForm::errorMarks()
{
    for (const char *name :
         {"optionAMinimum", "optionAMaximum", "optionBMinimum", "optionBMaximum", "firmwareAddress",
          "minimumHardwareVersion", "maximumHardwareVersion", "pathField"}) {
        auto *mark =
            qobject_cast<QGraphicsDropShadowEffect *>(find<QWidget>(name)->graphicsEffect());
        QVERIFY2(mark != nullptr, name);
        QVERIFY(!mark->isEnabled());
        QCOMPARE(mark->color(), QColor(247, 60, 9, 255));
        QCOMPARE(mark->offset(), QPointF(0, 0));
        QCOMPARE(mark->blurRadius(), double(scaled(7, 11)));
    }
}

void tst_ZelCreatorForm::everyFieldHasALabelOrAnAccessibleName()
{
    QSet<const QWidget *> buddies;
    for (const QLabel *label : m_window->findChildren<QLabel *>()) {
        buddies.insert(label->buddy());
    }
    for (const QWidget *widget : m_window->centralWidget()->findChildren<QWidget *>()) {
        const bool isField = (widget->focusPolicy() & Qt::TabFocus) != 0
                             && widget->focusProxy() == nullptr
                             && qobject_cast<const QTabBar *>(widget) == nullptr;
        const auto *button = qobject_cast<const QAbstractButton *>(widget);
        const bool hasText = button != nullptr && button->text().size() > 3;
        const bool isInner = widget->parentWidget()->focusProxy() == widget || widget->isWindow()
                             || widget->window() != m_window.get()
                             || buddies.contains(widget->parentWidget());
        if (isField && !hasText && !isInner) {
            QVERIFY2(!widget->accessibleName().isEmpty() || buddies.contains(widget),
                     qPrintable(QString::fromLatin1(widget->metaObject()->className())
                                + QLatin1Char(' ') + widget->objectName()));
        }
    }
}

void tst_ZelCreatorForm::tabOrderFollowsTheEye()
{
    const auto walk = [this](const char *first, int stops) {
        QStringList names;
        find<QWidget>(first)->setFocus();
        for (int i = 0; i < stops; ++i) {
            const QWidget *focused = QApplication::focusWidget();
            names << (focused->objectName().isEmpty() ? focused->parentWidget()->objectName()
                                                      : focused->objectName());
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        }
        return names.join(QLatin1Char(' '));
    };
    QCOMPARE(walk("maskValidationInfoBox", 12),
             QStringLiteral("maskValidationInfoBox addMaskRuleButton maskValidationTable "
                            "tokenValidationInfoBox addTokenRuleButton tokenValidationTable "
                            "optionSoftwareVersionsInfoBox optionACheckBox optionAMinimum "
                            "optionAMaximum optionBCheckBox optionBMinimum"));
    QCOMPARE(walk("optionBMinimum", 4),
             QStringLiteral("optionBMinimum optionBMaximum saveButton buttonBox"));
    find<QTabWidget>("tabWidget")->setCurrentIndex(1);
    QCOMPARE(walk("pathField", 9),
             QStringLiteral("pathField browseButton openFolderButton firmwareAddress "
                            "minimumHardwareVersion maximumHardwareVersion hardwareType "
                            "saveButton buttonBox"));
}

void tst_ZelCreatorForm::captionsAndFieldsOfBothGroupsLineUp()
{
    find<QTabWidget>("tabWidget")->setCurrentIndex(1);
    const auto left = [this](const char *name) {
        return find<QWidget>(name)->mapTo(m_window.get(), QPoint(0, 0)).x();
    };
    QTRY_COMPARE(left("pathField"), left("firmwareAddress"));
    for (const char *name :
         {"binarySize", "minimumHardwareVersion", "maximumHardwareVersion", "hardwareType"}) {
        QCOMPARE(left(name), left("firmwareAddress"));
    }
}

void tst_ZelCreatorForm::nothingIsClipped_data()
{
    QTest::addColumn<int>("tab");
    QTest::addColumn<bool>("small");
    QTest::newRow("rules, smallest window") << 0 << true;
    QTest::newRow("rules, preferred size") << 0 << false;
    QTest::newRow("update, smallest window") << 1 << true;
    QTest::newRow("update, preferred size") << 1 << false;
}

void tst_ZelCreatorForm::nothingIsClipped()
{
    QFETCH(int, tab);
    QFETCH(bool, small);

    find<QTabWidget>("tabWidget")->setCurrentIndex(tab);
    if (small) {
        m_window->resize(m_window->minimumSize());
        QTRY_COMPARE(m_window->size(), m_window->minimumSize());
    }
    QApplication::processEvents();
    for (const QWidget *widget : m_window->centralWidget()->findChildren<QWidget *>()) {
        const auto *label = qobject_cast<const QLabel *>(widget);
        const bool isCaption = label != nullptr && !label->text().isEmpty()
                               && qobject_cast<const QLineEdit *>(label->parentWidget()) == nullptr;
        const bool hasText = isCaption || qobject_cast<const QAbstractButton *>(widget) != nullptr;
        // The browse button's three dots have a width of their own.
        const bool isBrowseButton = widget->objectName() == QLatin1String("browseButton");
        if (!hasText || isBrowseButton || !widget->isVisible() || widget->isWindow()) {
            continue;
        }
        const QString what = QString::fromLatin1(widget->metaObject()->className())
                             + QLatin1Char(' ') + widget->objectName();
        QVERIFY2(widget->width() >= widget->minimumSizeHint().width(), qPrintable(what));
        const int height = widget->hasHeightForWidth() ? widget->heightForWidth(widget->width())
                                                       : widget->minimumSizeHint().height();
        QVERIFY2(widget->height() >= height, qPrintable(what));
        QVERIFY2(widget->visibleRegion().boundingRect() == widget->rect(), qPrintable(what));
    }
}

ZEL_TEST_MAIN(tst_ZelCreatorForm)
#include "tst_ZelCreatorForm.moc"
