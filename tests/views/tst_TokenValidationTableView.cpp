#include "views/TokenValidationTableView.h"

#include "models/TokenValidationModel.h"
#include "tests/support/ZelTest.h"
#include "tests/views/ApplicationAt.h"
#include "views/LineEditDelegateWithRegExpValidator.h"

#include <QHeaderView>
#include <QLineEdit>
#include <QRegExpValidator>
#include <QScrollBar>
#include <QStyle>

#include <numeric>

class tst_TokenValidationTableView : public ZelTest
{
    Q_OBJECT

private slots:
    void textsAreEditedInLineEdits_data();
    void textsAreEditedInLineEdits();
    void columnsTakeTheirPreferredWidth();
    void spareWidthGoesToTheValueColumn();
    void narrowViewScrolls();
    void widthsAreThoseOfTheViewsFont();

private:
    static QList<int> preferredWidths(const TokenValidationTableView &view);
    static QList<int> widths(const TokenValidationTableView &view);
};

/// What each column needs: its header text, made wider by a factor, and the frame around it.
QList<int> tst_TokenValidationTableView::preferredWidths(const TokenValidationTableView &view)
{
    const int surround = 2
                         * (view.style()->pixelMetric(QStyle::PM_DefaultFrameWidth)
                            + view.style()->pixelMetric(QStyle::PM_HeaderMargin));
    const auto width = [&](const char *header, double factor) {
        return surround
               + qRound(factor * view.fontMetrics().horizontalAdvance(QLatin1String(header)));
    };
    return {width("Token", 3.0), width("Value", 7.0), width("Token", 0.8)};
}

QList<int> tst_TokenValidationTableView::widths(const TokenValidationTableView &view)
{
    QList<int> widths;
    for (int column = 0; column < view.model()->columnCount(); ++column) {
        widths.append(view.columnWidth(column));
    }
    return widths;
}

void tst_TokenValidationTableView::textsAreEditedInLineEdits_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("expression");
    QTest::addColumn<QString>("prompt");

    QTest::newRow("token") << 0 << QStringLiteral("[A-Za-z]")
                           << QStringLiteral("Please enter a token");
    QTest::newRow("value") << 1 << QStringLiteral(".+") << QStringLiteral("Please enter a value");
}

void tst_TokenValidationTableView::textsAreEditedInLineEdits()
{
    QFETCH(int, column);
    QFETCH(QString, expression);
    QFETCH(QString, prompt);

    TokenValidationModel model({TokenValidationRule()});
    TokenValidationTableView view;
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

void tst_TokenValidationTableView::columnsTakeTheirPreferredWidth()
{
    TokenValidationModel model;
    TokenValidationTableView view;
    view.setModel(&model);
    view.resize(150, 200);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    QCOMPARE(widths(view), preferredWidths(view));
}

void tst_TokenValidationTableView::spareWidthGoesToTheValueColumn()
{
    TokenValidationModel model;
    TokenValidationTableView view;
    view.setModel(&model);
    view.resize(1000, 200);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    const QList<int> preferred = preferredWidths(view);
    QList<int> expected = preferred;
    expected[1] +=
        view.viewport()->width() - std::accumulate(preferred.begin(), preferred.end(), 0);
    QCOMPARE(widths(view), expected);
    QCOMPARE(view.horizontalHeader()->length(), view.viewport()->width());

    view.resize(1200, 200);
    expected[1] += 200;
    QTRY_COMPARE(widths(view), expected);
    view.resize(150, 200);
    QTRY_COMPARE(widths(view), preferred);
}

void tst_TokenValidationTableView::narrowViewScrolls()
{
    TokenValidationModel model;
    TokenValidationTableView view;
    view.setModel(&model);
    view.resize(150, 200);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    QTRY_VERIFY(view.horizontalScrollBar()->maximum() > 0);
    view.resize(1000, 200);
    QTRY_COMPARE(view.horizontalScrollBar()->maximum(), 0);
}

void tst_TokenValidationTableView::widthsAreThoseOfTheViewsFont()
{
    TokenValidationModel model;
    TokenValidationTableView view;
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

ZEL_TEST_MAIN_WITH(ApplicationAt<96>, tst_TokenValidationTableView)
#include "tst_TokenValidationTableView.moc"
