#include "tests/views/RuleColumnsTest.h"

#include "views/LineEditDelegateWithRegExpValidator.h"
#include "views/RuleTableView.h"
#include "views/SpinBoxDelegate.h"

#include <QAbstractItemModel>
#include <QHeaderView>
#include <QLineEdit>
#include <QRegExpValidator>
#include <QScrollBar>
#include <QSpinBox>
#include <QStyle>

#include <numeric>
#include <utility>

namespace {

constexpr int kNarrow = 120;
constexpr int kWide = 1000;

} // namespace

RuleColumnsTest::RuleColumnsTest(QList<Column> columns, int spareColumn)
    : m_columns(std::move(columns))
    , m_spareColumn(spareColumn)
{
}

void RuleColumnsTest::init()
{
    m_model = createModel();
    m_view = createView();
    m_view->setModel(m_model.get());
}

void RuleColumnsTest::cleanup()
{
    m_view.reset();
    m_model.reset();
}

bool RuleColumnsTest::showWithWidth(int width)
{
    m_view->resize(width, 200);
    m_view->show();
    return QTest::qWaitForWindowExposed(m_view.get());
}

/// What each column needs: a text, made wider by a factor, and the frame around it.
QList<int> RuleColumnsTest::preferredWidths() const
{
    const int surround = 2
                         * (m_view->style()->pixelMetric(QStyle::PM_DefaultFrameWidth)
                            + m_view->style()->pixelMetric(QStyle::PM_HeaderMargin));
    QList<int> widths;
    for (const Column &column : m_columns) {
        const QString text = QString::fromLatin1(column.measuredText);
        widths.append(surround
                      + qRound(column.factor * m_view->fontMetrics().horizontalAdvance(text)));
    }
    return widths;
}

QList<int> RuleColumnsTest::widths() const
{
    QList<int> widths;
    for (int column = 0; column < m_model->columnCount(); ++column) {
        widths.append(m_view->columnWidth(column));
    }
    return widths;
}

void RuleColumnsTest::editors_data()
{
    QTest::addColumn<int>("column");

    for (int column = 0; column < m_columns.size(); ++column) {
        if (m_columns.at(column).editor != Editor::None) {
            QTest::newRow(m_columns.at(column).name) << column;
        }
    }
}

void RuleColumnsTest::editors()
{
    QFETCH(int, column);
    const Column &expected = m_columns.at(column);
    const auto *delegate = m_view->itemDelegateForColumn(column);
    const QWidget *editor =
        delegate->createEditor(m_view.get(), QStyleOptionViewItem(), m_model->index(0, column));

    if (expected.editor == Editor::SpinBox) {
        QVERIFY(qobject_cast<const SpinBoxDelegate *>(delegate));
        const auto *spinBox = qobject_cast<const QSpinBox *>(editor);
        QVERIFY(spinBox);
        QCOMPARE(spinBox->minimum(), 0);
        QCOMPARE(spinBox->maximum(), 2147483647);
        return;
    }
    QVERIFY(qobject_cast<const LineEditDelegateWithRegExpValidator *>(delegate));
    const auto *lineEdit = qobject_cast<const QLineEdit *>(editor);
    QVERIFY(lineEdit);
    QCOMPARE(lineEdit->placeholderText(), QString::fromLatin1(expected.prompt));
    const auto *validator = qobject_cast<const QRegExpValidator *>(lineEdit->validator());
    QVERIFY(validator);
    QCOMPARE(validator->regExp(), QRegExp(QString::fromLatin1(expected.expression)));
}

void RuleColumnsTest::columnsTakeTheirPreferredWidth()
{
    QVERIFY(showWithWidth(kNarrow));
    QCOMPARE(widths(), preferredWidths());
}

void RuleColumnsTest::spareWidthGoesToOneColumn()
{
    QVERIFY(showWithWidth(kWide));
    const QList<int> preferred = preferredWidths();
    QList<int> expected = preferred;
    expected[m_spareColumn] +=
        m_view->viewport()->width() - std::accumulate(preferred.begin(), preferred.end(), 0);
    QCOMPARE(widths(), expected);
    QCOMPARE(m_view->horizontalHeader()->length(), m_view->viewport()->width());

    m_view->resize(kWide + 200, 200);
    expected[m_spareColumn] += 200;
    QTRY_COMPARE(widths(), expected);
    m_view->resize(kNarrow, 200);
    QTRY_COMPARE(widths(), preferred);
}

void RuleColumnsTest::narrowViewScrolls()
{
    QVERIFY(showWithWidth(kNarrow));
    QTRY_VERIFY(m_view->horizontalScrollBar()->maximum() > 0);
    m_view->resize(kWide, 200);
    QTRY_COMPARE(m_view->horizontalScrollBar()->maximum(), 0);
}

void RuleColumnsTest::widthsAreThoseOfTheViewsFont()
{
    QVERIFY(showWithWidth(kNarrow));
    const QList<int> before = preferredWidths();
    QFont font = m_view->font();
    font.setPointSize(2 * font.pointSize());
    m_view->setFont(font);
    m_view->resize(kNarrow + 1, 200);
    QVERIFY(preferredWidths() != before);
    QTRY_COMPARE(widths(), preferredWidths());
}
