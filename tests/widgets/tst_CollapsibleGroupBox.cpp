#include "widgets/CollapsibleGroupBox.h"

#include "common/Scale.h"
#include "tests/support/Activation.h"
#include "tests/support/ZelTest.h"

#include <QAccessible>
#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QSignalSpy>
#include <QStyle>
#include <QStyleOptionGroupBox>
#include <QVBoxLayout>

#include <memory>

namespace {

/// A window with one box, which holds two labels.
class Window final : public QWidget
{
public:
    explicit Window(const QString &title = QStringLiteral("Information"))
        : box(new CollapsibleGroupBox(QStringLiteral(":/a"), QStringLiteral(":/b"),
                                      QStringLiteral(":/c"), QStringLiteral(":/d"), title, this))
    {
        resize(600, 400);
        auto *const layout = new QVBoxLayout(box);
        first = new QLabel(QStringLiteral("first"));
        second = new QLabel(QStringLiteral("second"));
        layout->addWidget(first);
        layout->addWidget(second);
        box->setGeometry(20, 20, 300, 200);
    }

    CollapsibleGroupBox *const box;
    QLabel *first = nullptr;
    QLabel *second = nullptr;
};

QVariant wish(const QWidget *child)
{
    return child->property("visibilityToParent");
}

QRect part(const CollapsibleGroupBox *box, QStyle::SubControl control)
{
    QStyleOptionGroupBox option;
    option.initFrom(box);
    option.text = box->title();
    option.subControls = QStyle::SC_GroupBoxCheckBox | QStyle::SC_GroupBoxLabel;
    return box->style()->subControlRect(QStyle::CC_GroupBox, &option, control, box);
}

} // namespace

class tst_CollapsibleGroupBox : public ZelTest
{
    Q_OBJECT

private slots:
    void startsExpanded();
    void withoutArgumentsItHasNoTitle();
    void styleSheet();
    void hasItsMarginsInAStyledWindow();

    void collapsingHidesTheChildren();
    void expandingShowsTheChildren();
    void expandedIsEmittedAtTheEnd();
    void collapsedSetsTheOppositeCheckState();
    void clickOnTheIndicatorFolds();
    void spaceKeyFolds();

    void aChildHiddenOnPurposeStaysHidden();
    void aChildHiddenBeforeItWasAddedStaysHidden();
    void aChildHiddenWhileCollapsedStaysHidden();
    void aChildShownWhileCollapsedAppearsOnExpanding();
    void childrenKeepNoExplicitVisibility();
    void aChildAddedToAnExpandedBoxIsShown();
    void aChildAddedToACollapsedBoxAppearsOnExpanding();
    void aChildTakenAwayIsItsOwn();
    void aWindowOfTheBoxIsLeftAlone();
    void hidingTheWindowChangesNoWish();

    void collapsedBeforeItWasShown();
    void collapsedBeforeItWasShownByACallOfItsOwn();

    void collapsesToTitleAndCollapsedHeight();
    void collapsesWithoutTitleToCollapsedHeight();
    void collapsedHeightTakesEffectAtTheNextCollapse();
    void expandingRestoresTheSize();
    void expandingRestoresTheMaximumHeight();
    void foldsInsideALayout();

    void showsTheKeyboardFocusWithoutTitle();
    void isACheckBoxToAssistiveTechnology();

private:
    static bool show(QWidget &window);
};

bool tst_CollapsibleGroupBox::show(QWidget &window)
{
    window.show();
    return activate(window);
}

void tst_CollapsibleGroupBox::startsExpanded()
{
    Window window;
    QVERIFY(window.box->isCheckable());
    QVERIFY(window.box->isChecked());
    QCOMPARE(window.box->title(), QStringLiteral("Information"));
    QCOMPARE(window.box->collapsedHeight(), window.logicalDpiX() == 144 ? 33 : 22);
    QVERIFY(show(window));
    QVERIFY(window.first->isVisible());
}

void tst_CollapsibleGroupBox::withoutArgumentsItHasNoTitle()
{
    QWidget parent;
    const CollapsibleGroupBox box(&parent);
    QCOMPARE(box.title(), QString());
    QCOMPARE(box.parentWidget(), &parent);
    QVERIFY(box.isChecked());
    QVERIFY(box.styleSheet().contains(QStringLiteral("indicator:checked { image: url(); }")));
}

void tst_CollapsibleGroupBox::styleSheet()
{
    const Window window;
    const QString at96 = QStringLiteral(
        "CollapsibleGroupBox { background-color: transparent; border: none; margin-top: 13px; "
        "margin-right: 13px; margin-left: 0; }"
        "CollapsibleGroupBox::title { subcontrol-origin: margin; }"
        "CollapsibleGroupBox::indicator { width: 25px; height: 25px; }"
        "CollapsibleGroupBox::indicator:checked { image: url(:/a); }"
        "CollapsibleGroupBox::indicator:checked:hover { image: url(:/b); }"
        "CollapsibleGroupBox::indicator:unchecked { image: url(:/c); }"
        "CollapsibleGroupBox::indicator:unchecked:hover { image: url(:/d); }");
    QString at144 = at96;
    at144.replace(QStringLiteral("25px"), QStringLiteral("38px"));
    at144.replace(QStringLiteral("13px"), QStringLiteral("19px"));

    QCOMPARE(window.box->styleSheet(), window.logicalDpiX() == 144 ? at144 : at96);
}

void tst_CollapsibleGroupBox::hasItsMarginsInAStyledWindow()
{
    const CollapsibleGroupBox alone;
    QWidget window;
    window.setStyleSheet(QStringLiteral("QLabel { color: #595959; }"));
    const CollapsibleGroupBox box(&window);

    const int margin = Scale(box.logicalDpiX()).px(12.5);
    QCOMPARE(box.contentsMargins(), QMargins(0, margin, margin, 0));
    QCOMPARE(alone.contentsMargins(), box.contentsMargins());
}

void tst_CollapsibleGroupBox::collapsingHidesTheChildren()
{
    Window window;
    QVERIFY(show(window));

    window.box->setChecked(false);

    QVERIFY(!window.first->isVisible());
    QVERIFY(!window.second->isVisible());
    QVERIFY(window.box->isVisible());
    QVERIFY(!wish(window.first).isValid() || wish(window.first).toBool());
}

void tst_CollapsibleGroupBox::expandingShowsTheChildren()
{
    Window window;
    QVERIFY(show(window));
    window.box->setChecked(false);

    window.box->setChecked(true);

    QVERIFY(window.first->isVisible());
    QVERIFY(window.second->isVisible());
}

void tst_CollapsibleGroupBox::expandedIsEmittedAtTheEnd()
{
    Window window;
    QVERIFY(show(window));
    QList<bool> emitted;
    QList<bool> childrenVisible;
    QList<int> heights;
    connect(window.box, &CollapsibleGroupBox::expanded, this, [&](bool expanded) {
        emitted << expanded;
        childrenVisible << window.first->isVisible();
        heights << window.box->height();
    });

    window.box->setChecked(false);
    window.box->setChecked(true);

    QCOMPARE(emitted, (QList<bool>{false, true}));
    QCOMPARE(childrenVisible, (QList<bool>{false, true}));
    QVERIFY(heights.at(0) < 200);
    QCOMPARE(heights.at(1), 200);
}

void tst_CollapsibleGroupBox::collapsedSetsTheOppositeCheckState()
{
    Window window;
    const QSignalSpy expanded(window.box, &CollapsibleGroupBox::expanded);

    window.box->collapsed(true);
    QVERIFY(!window.box->isChecked());
    window.box->collapsed(true);
    QCOMPARE(expanded.count(), 1);
    window.box->collapsed(false);
    QVERIFY(window.box->isChecked());
    QCOMPARE(expanded.count(), 2);
}

void tst_CollapsibleGroupBox::clickOnTheIndicatorFolds()
{
    Window window;
    QVERIFY(show(window));
    const QPoint indicator = part(window.box, QStyle::SC_GroupBoxCheckBox).center();

    QTest::mouseClick(window.box, Qt::LeftButton, Qt::NoModifier, indicator);
    QVERIFY(!window.first->isVisible());
    QTest::mouseClick(window.box, Qt::LeftButton, Qt::NoModifier, indicator);
    QVERIFY(window.first->isVisible());
}

void tst_CollapsibleGroupBox::spaceKeyFolds()
{
    Window window;
    QVERIFY(show(window));
    window.box->setFocus();
    QTRY_VERIFY(window.box->hasFocus());

    QTest::keyClick(window.windowHandle(), Qt::Key_Space);
    QVERIFY(!window.box->isChecked());
    QVERIFY(!window.first->isVisible());
    QTest::keyClick(window.windowHandle(), Qt::Key_Space);
    QVERIFY(window.first->isVisible());
}

void tst_CollapsibleGroupBox::aChildHiddenOnPurposeStaysHidden()
{
    Window window;
    QVERIFY(show(window));

    window.first->hide();
    QCOMPARE(wish(window.first), QVariant(false));
    window.box->setChecked(false);
    window.box->setChecked(true);
    QVERIFY(!window.first->isVisible());
    QVERIFY(window.second->isVisible());

    window.first->show();
    QCOMPARE(wish(window.first), QVariant(true));
    QVERIFY(window.first->isVisible());
}

void tst_CollapsibleGroupBox::aChildHiddenBeforeItWasAddedStaysHidden()
{
    Window window;
    auto *const late = new QLabel(QStringLiteral("late"));
    late->hide();
    window.box->layout()->addWidget(late);
    QCOMPARE(wish(late), QVariant(false));
    QVERIFY(show(window));
    QVERIFY(!late->isVisible());

    window.box->setChecked(false);
    window.box->setChecked(true);

    QVERIFY(!late->isVisible());
    QVERIFY(window.first->isVisible());
}

void tst_CollapsibleGroupBox::aChildHiddenWhileCollapsedStaysHidden()
{
    Window window;
    QVERIFY(show(window));
    window.box->setChecked(false);

    window.first->hide();
    QCOMPARE(wish(window.first), QVariant(false));
    window.box->setChecked(true);

    QVERIFY(!window.first->isVisible());
    QVERIFY(window.second->isVisible());
}

void tst_CollapsibleGroupBox::aChildShownWhileCollapsedAppearsOnExpanding()
{
    Window window;
    QVERIFY(show(window));
    window.first->hide();
    window.box->setChecked(false);

    window.first->show();
    QVERIFY(!window.first->isVisible());
    QCOMPARE(wish(window.first), QVariant(true));

    window.box->setChecked(true);
    QVERIFY(window.first->isVisible());
}

void tst_CollapsibleGroupBox::childrenKeepNoExplicitVisibility()
{
    Window window;
    QVERIFY(show(window));

    window.box->setChecked(false);
    QVERIFY(!window.first->testAttribute(Qt::WA_WState_ExplicitShowHide));
    window.box->setChecked(true);
    QVERIFY(!window.first->testAttribute(Qt::WA_WState_ExplicitShowHide));

    window.first->hide();
    window.box->setChecked(false);
    QVERIFY(window.first->testAttribute(Qt::WA_WState_ExplicitShowHide));
}

void tst_CollapsibleGroupBox::aChildAddedToAnExpandedBoxIsShown()
{
    Window window;
    QVERIFY(show(window));
    auto *const late = new QLabel(QStringLiteral("late"));

    late->setParent(window.box);

    QVERIFY(late->isVisible());
}

void tst_CollapsibleGroupBox::aChildAddedToACollapsedBoxAppearsOnExpanding()
{
    Window window;
    QVERIFY(show(window));
    window.box->setChecked(false);
    auto *const late = new QLabel(QStringLiteral("late"));

    window.box->layout()->addWidget(late);
    QCoreApplication::sendPostedEvents();
    QVERIFY(!late->isVisible());

    window.box->setChecked(true);
    QVERIFY(late->isVisible());
}

void tst_CollapsibleGroupBox::aChildTakenAwayIsItsOwn()
{
    Window window;
    QVERIFY(show(window));
    window.box->setChecked(false);

    window.first->setParent(&window);
    window.first->show();

    QVERIFY(window.first->isVisible());
}

void tst_CollapsibleGroupBox::aWindowOfTheBoxIsLeftAlone()
{
    Window window;
    QVERIFY(show(window));
    const QDialog dialog(window.box);
    QVERIFY(!dialog.isVisible());

    window.box->setChecked(false);
    window.box->setChecked(true);

    QVERIFY(!dialog.isVisible());
}

void tst_CollapsibleGroupBox::hidingTheWindowChangesNoWish()
{
    Window window;
    QVERIFY(show(window));
    window.second->hide();
    window.hide();
    QVERIFY(!window.first->isVisible());

    QVERIFY(show(window));

    QVERIFY(window.first->isVisible());
    QVERIFY(!window.second->isVisible());
    window.box->setVisible(false);
    window.box->setVisible(true);
    QVERIFY(window.first->isVisible());
    QVERIFY(!window.second->isVisible());
}

void tst_CollapsibleGroupBox::collapsedBeforeItWasShown()
{
    Window window;
    window.box->setChecked(false);

    QVERIFY(show(window));
    QVERIFY(!window.first->isVisible());
    QVERIFY(!window.second->isVisible());

    window.box->setChecked(true);
    QVERIFY(window.first->isVisible());
    QCOMPARE(window.box->height(), 200);
}

void tst_CollapsibleGroupBox::collapsedBeforeItWasShownByACallOfItsOwn()
{
    Window window;
    window.box->setChecked(false);
    window.box->show();

    QVERIFY(show(window));

    QVERIFY(!window.first->isVisible());
}

void tst_CollapsibleGroupBox::collapsesToTitleAndCollapsedHeight()
{
    Window window;
    QVERIFY(show(window));
    const int label = part(window.box, QStyle::SC_GroupBoxLabel).height();
    QVERIFY(label > 0);

    window.box->setChecked(false);

    const int expected = label + Scale(window.logicalDpiX()).px(22);
    QCOMPARE(window.box->maximumHeight(), expected);
    QCOMPARE(window.box->height(), expected);
}

void tst_CollapsibleGroupBox::collapsesWithoutTitleToCollapsedHeight()
{
    Window window{QString()};
    QVERIFY(show(window));

    window.box->setChecked(false);

    QCOMPARE(window.box->maximumHeight(), Scale(window.logicalDpiX()).px(22));
    QCOMPARE(window.box->height(), Scale(window.logicalDpiX()).px(22));
}

void tst_CollapsibleGroupBox::collapsedHeightTakesEffectAtTheNextCollapse()
{
    Window window{QString()};
    QVERIFY(show(window));
    window.box->setChecked(false);

    QVERIFY(window.box->setProperty("collapsedHeight", 60));
    QCOMPARE(window.box->collapsedHeight(), 60);
    QCOMPARE(window.box->maximumHeight(), Scale(window.logicalDpiX()).px(22));

    window.box->setChecked(true);
    window.box->setChecked(false);
    QCOMPARE(window.box->height(), 60);
}

void tst_CollapsibleGroupBox::expandingRestoresTheSize()
{
    Window window;
    QVERIFY(show(window));
    window.box->resize(333, 177);

    window.box->setChecked(false);
    QVERIFY(window.box->height() < 177);
    window.box->setChecked(true);

    QCOMPARE(window.box->size(), QSize(333, 177));
}

void tst_CollapsibleGroupBox::expandingRestoresTheMaximumHeight()
{
    Window window;
    QVERIFY(show(window));
    window.box->setMaximumHeight(250);

    window.box->setChecked(false);
    window.box->setChecked(true);
    QCOMPARE(window.box->maximumHeight(), 250);

    window.box->setMaximumHeight(QWIDGETSIZE_MAX);
    window.box->setChecked(false);
    window.box->setChecked(true);
    QCOMPARE(window.box->maximumHeight(), QWIDGETSIZE_MAX);
}

void tst_CollapsibleGroupBox::foldsInsideALayout()
{
    Window window;
    auto *const layout = new QVBoxLayout(&window);
    layout->addWidget(window.box);
    layout->addStretch();
    QVERIFY(show(window));
    const QRect before = window.box->geometry();

    window.box->setChecked(false);
    QTRY_COMPARE(window.box->height(), window.box->maximumHeight());
    QVERIFY(window.box->height() < before.height());

    window.box->setChecked(true);
    QTRY_COMPARE(window.box->geometry(), before);
}

void tst_CollapsibleGroupBox::showsTheKeyboardFocusWithoutTitle()
{
    Window window{QString()};
    QVERIFY(show(window));
    window.box->clearFocus();
    const QRect indicator = part(window.box, QStyle::SC_GroupBoxCheckBox);
    const QImage without = window.box->grab(indicator).toImage();

    QTest::keyClick(window.windowHandle(), Qt::Key_Tab);
    QTRY_VERIFY(window.box->hasFocus());

    QVERIFY(window.box->grab(indicator).toImage() != without);
}

void tst_CollapsibleGroupBox::isACheckBoxToAssistiveTechnology()
{
    Window window;
    QAccessibleInterface *const accessible = QAccessible::queryAccessibleInterface(window.box);
    QVERIFY(accessible != nullptr);
    QCOMPARE(accessible->text(QAccessible::Name), QStringLiteral("Information"));
    QVERIFY(accessible->state().checked);
    window.box->setChecked(false);
    QVERIFY(!accessible->state().checked);
}

ZEL_TEST_MAIN(tst_CollapsibleGroupBox)
#include "tst_CollapsibleGroupBox.moc"
