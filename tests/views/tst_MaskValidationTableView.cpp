#include "views/MaskValidationTableView.h"

#include "models/MaskValidationModel.h"
#include "tests/support/ZelTest.h"
#include "tests/views/ApplicationAt.h"
#include "views/LineEditDelegateWithRegExpValidator.h"
#include "views/SpinBoxDelegate.h"

#include <QHeaderView>
#include <QLineEdit>
#include <QRegExpValidator>
#include <QScrollBar>
#include <QSpinBox>
#include <QStyle>

#include <numeric>

class tst_MaskValidationTableView : public ZelTest
{
    Q_OBJECT

private slots:
    void numbersAreEditedInSpinBoxes();
    void textsAreEditedInLineEdits_data();
    void textsAreEditedInLineEdits();
    void columnsTakeTheirPreferredWidth();
    void spareWidthGoesToTheMaskColumn();
    void narrowViewScrolls();
    void widthsAreThoseOfTheViewsFont();

private:
    static QList<int> preferredWidths(const MaskValidationTableView &view);
    static QList<int> widths(const MaskValidationTableView &view);
};

/// What each column needs: its header text, made wider by a factor, and the frame around it.
QList<int> tst_MaskValidationTableView::preferredWidths(const MaskValidationTableView &view)
{
    const int surround = 2
                         * (view.style()->pixelMetric(QStyle::PM_DefaultFrameWidth)
                            + view.style()->pixelMetric(QStyle::PM_HeaderMargin));
    const auto width = [&](const char *header, double factor) {
        return surround
               + qRound(factor * view.fontMetrics().horizontalAdvance(QLatin1String(header)));
    };
    return {width("Parameter", 1.6), width("Index", 1.6), width("Mask", 3.0), width("Index", 0.8)};
}

QList<int> tst_MaskValidationTableView::widths(const MaskValidationTableView &view)
{
    QList<int> widths;
    for (int column = 0; column < view.model()->columnCount(); ++column) {
        widths.append(view.columnWidth(column));
    }
    return widths;
}

void tst_MaskValidationTableView::numbersAreEditedInSpinBoxes()
{
    MaskValidationModel model({MaskValidationRule()});
    MaskValidationTableView view;
    view.setModel(&model);
    for (const int column : {0, 1}) {
        const auto *delegate = qobject_cast<SpinBoxDelegate *>(view.itemDelegateForColumn(column));
        QVERIFY(delegate);
        const auto *spinBox = qobject_cast<QSpinBox *>(
            delegate->createEditor(&view, QStyleOptionViewItem(), model.index(0, column)));
        QVERIFY(spinBox);
        QCOMPARE(spinBox->minimum(), 0);
        QCOMPARE(spinBox->maximum(), 2147483647);
    }
}

void tst_MaskValidationTableView::textsAreEditedInLineEdits_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("expression");
    QTest::addColumn<QString>("prompt");

    QTest::newRow("mask") << 2 << QStringLiteral(".+") << QStringLiteral("Please enter a mask");
}

void tst_MaskValidationTableView::textsAreEditedInLineEdits()
{
    QFETCH(int, column);
    QFETCH(QString, expression);
    QFETCH(QString, prompt);

    MaskValidationModel model({MaskValidationRule()});
    MaskValidationTableView view;
    view.setModel(&model);
    const auto *delegate =
        qobject_cast<LineEditDelegateWithRegExpValidator *>(view.itemDelegateForColumn(column));
    QVERIFY(delegate);
    const auto *lineEdit = qobject_cast<QLineEdit *>(
        delegate->createEditor(&view, QStyleOptionViewItem(), model.index(0, column)));
    QVERIFY(lineEdit);
    QCOMPARE(lineEdit->placeholderText(), prompt);
    const auto *validator = qobject_cast<const QRegExpValidator *>(lineEdit->validator());
    QVERIFY(validator);
    QCOMPARE(validator->regExp(), QRegExp(expression));
}

void tst_MaskValidationTableView::columnsTakeTheirPreferredWidth()
{
    MaskValidationModel model;
    MaskValidationTableView view;
    view.setModel(&model);
    view.resize(150, 200);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    QCOMPARE(widths(view), preferredWidths(view));
}

void tst_MaskValidationTableView::spareWidthGoesToTheMaskColumn()
{
    MaskValidationModel model;
    MaskValidationTableView view;
    view.setModel(&model);
    view.resize(1000, 200);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    const QList<int> preferred = preferredWidths(view);
    QList<int> expected = preferred;
    expected[2] +=
        view.viewport()->width() - std::accumulate(preferred.begin(), preferred.end(), 0);
    QCOMPARE(widths(view), expected);
    QCOMPARE(view.horizontalHeader()->length(), view.viewport()->width());

    view.resize(1200, 200);
    expected[2] += 200;
    QTRY_COMPARE(widths(view), expected);
    view.resize(150, 200);
    QTRY_COMPARE(widths(view), preferred);
}

void tst_MaskValidationTableView::narrowViewScrolls()
{
    MaskValidationModel model;
    MaskValidationTableView view;
    view.setModel(&model);
    view.resize(150, 200);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    QTRY_VERIFY(view.horizontalScrollBar()->maximum() > 0);
    view.resize(1000, 200);
    QTRY_COMPARE(view.horizontalScrollBar()->maximum(), 0);
}

void tst_MaskValidationTableView::widthsAreThoseOfTheViewsFont()
{
    MaskValidationModel model;
    MaskValidationTableView view;
    view.setModel(&model);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    QFont font = view.font();
    font.setPointSize(2 * font.pointSize());
    view.setFont(font);
    view.resize(120, 200);
    const QList<int> preferred = preferredWidths(view);
    QTRY_COMPARE(widths(view), preferred);
}

ZEL_TEST_MAIN_WITH(ApplicationAt<96>, tst_MaskValidationTableView)
#include "tst_MaskValidationTableView.moc"
