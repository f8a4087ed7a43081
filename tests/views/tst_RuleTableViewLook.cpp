#include "models/MaskValidationModel.h"
#include "models/TokenValidationModel.h"
#include "tests/support/ZelTest.h"
#include "tests/views/ApplicationAt.h"
#include "views/ButtonItemDelegate.h"
#include "views/MaskValidationTableView.h"
#include "views/TokenValidationTableView.h"

#include <QHeaderView>
#include <QScrollBar>
#include <QSignalSpy>
#include <QSortFilterProxyModel>
#include <QStyle>

#include <memory>

/// How both rule tables are set up and look, at 96 dots per inch. Each test runs over each of them.
class tst_RuleTableViewLook : public ZelTest
{
    Q_OBJECT

private slots:
    void initTestCase();

    void behavesAsAListOfRules_data() { tables(); }
    void behavesAsAListOfRules();
    void headers_data() { tables(); }
    void headers();
    void styleSheets_data() { tables(); }
    void styleSheets();
    void scrollBarStepsByARow_data() { tables(); }
    void scrollBarStepsByARow();
    void sortsByTheFirstColumn_data() { tables(); }
    void sortsByTheFirstColumn();
    void delegatesComeWithTheModel_data() { tables(); }
    void delegatesComeWithTheModel();
    void laterModelKeepsTheDelegates_data() { tables(); }
    void laterModelKeepsTheDelegates();
    void minimumHeightHoldsOneRow_data() { tables(); }
    void minimumHeightHoldsOneRow();
    void selectedRowIsPaintedAsOne_data() { tables(); }
    void selectedRowIsPaintedAsOne();
    void strangeTextsKeepTheirRow_data() { tables(); }
    void strangeTextsKeepTheirRow();
    void resizingWithoutAModelIsSurvived_data() { tables(); }
    void resizingWithoutAModelIsSurvived();

private:
    struct Table
    {
        std::unique_ptr<QAbstractTableModel> model;
        std::unique_ptr<RuleTableView> view;
        int deleteColumn;
    };
    static void tables();
    static Table makeTable(const QString &name);
};

void tst_RuleTableViewLook::tables()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("mask") << QStringLiteral("mask");
    QTest::newRow("token") << QStringLiteral("token");
}

tst_RuleTableViewLook::Table tst_RuleTableViewLook::makeTable(const QString &name)
{
    if (name == QLatin1String("mask")) {
        return {std::make_unique<MaskValidationModel>(),
                std::make_unique<MaskValidationTableView>(), 3};
    }
    return {std::make_unique<TokenValidationModel>(), std::make_unique<TokenValidationTableView>(),
            2};
}

void tst_RuleTableViewLook::initTestCase()
{
    QCOMPARE(QWidget().logicalDpiX(), 96);
}

void tst_RuleTableViewLook::behavesAsAListOfRules()
{
    QFETCH(QString, name);
    const Table table = makeTable(name);
    const RuleTableView &view = *table.view;
    QCOMPARE(view.selectionBehavior(), QAbstractItemView::SelectRows);
    QCOMPARE(view.selectionMode(), QAbstractItemView::ExtendedSelection);
    QCOMPARE(view.focusPolicy(), Qt::StrongFocus);
    QVERIFY(view.isSortingEnabled());
    QVERIFY(view.hasAutoScroll());
    QVERIFY(!view.showGrid());
    QVERIFY(view.hasMouseTracking());
    QCOMPARE(view.sizePolicy(),
             QSizePolicy(QSizePolicy::MinimumExpanding, QSizePolicy::MinimumExpanding));
    QCOMPARE(view.frameShape(), QFrame::StyledPanel);
    QCOMPARE(view.frameShadow(), QFrame::Plain);
}

void tst_RuleTableViewLook::headers()
{
    QFETCH(QString, name);
    const Table table = makeTable(name);
    table.view->setModel(table.model.get());
    const QHeaderView *header = table.view->horizontalHeader();
    QVERIFY(!header->highlightSections());
    QVERIFY(!header->stretchLastSection());
    QCOMPARE(header->minimumSectionSize(), 1);
    QCOMPARE(header->defaultAlignment(), Qt::Alignment(Qt::AlignVCenter));
    for (int column = 0; column <= table.deleteColumn; ++column) {
        QCOMPARE(header->sectionResizeMode(column), QHeaderView::Fixed);
    }
    const QFont plain = QHeaderView(Qt::Horizontal).font();
    QCOMPARE(header->font().weight(), 75);
    QCOMPARE(header->font().pointSize(), plain.pointSize() + 1);

    QVERIFY(table.model->insertRows(0, 1));
    QVERIFY(table.view->verticalHeader()->isHidden());
    QCOMPARE(table.view->verticalHeader()->sectionResizeMode(0), QHeaderView::Fixed);
}

void tst_RuleTableViewLook::styleSheets()
{
    QFETCH(QString, name);
    const Table table = makeTable(name);
    QCOMPARE(table.view->styleSheet(),
             QStringLiteral("QTableView { outline: 0; border: 1px solid #dcdcdc; }"
                            "QTableView::item { border-bottom: 1px solid #ebebeb;"
                            " background-color: #f0f8ff; padding-left: 5px; }"
                            "QTableView::item:selected { background: #3899fa; }"));
    QCOMPARE(table.view->horizontalHeader()->styleSheet(),
             QStringLiteral("QHeaderView { color: #595959; text-align: bottom; }"
                            "QHeaderView::section { background-color: #fafbfd;"
                            " border: 1px solid #ebebeb;"
                            " border-top: none; border-left: none; padding-left: 5px; }"
                            "QHeaderView::down-arrow { image: url(:/SortDown); }"
                            " QHeaderView::up-arrow { image: url(:/SortUp); }"));
}

void tst_RuleTableViewLook::scrollBarStepsByARow()
{
    QFETCH(QString, name);
    const Table table = makeTable(name);
    QCOMPARE(table.view->verticalScrollBar()->singleStep(),
             table.view->verticalHeader()->defaultSectionSize());

    table.view->setModel(table.model.get());
    QVERIFY(table.model->insertRows(0, 100));
    table.view->resize(400, 200);
    table.view->show();
    QVERIFY(QTest::qWaitForWindowExposed(table.view.get()));
    table.view->verticalScrollBar()->triggerAction(QAbstractSlider::SliderSingleStepAdd);
    QCOMPARE(table.view->rowAt(0), 1);
}

void tst_RuleTableViewLook::sortsByTheFirstColumn()
{
    QFETCH(QString, name);
    const Table table = makeTable(name);
    QCOMPARE(table.view->horizontalHeader()->sortIndicatorSection(), 0);
    QCOMPARE(table.view->horizontalHeader()->sortIndicatorOrder(), Qt::AscendingOrder);
    QVERIFY(table.view->horizontalHeader()->isSortIndicatorShown());
}

void tst_RuleTableViewLook::delegatesComeWithTheModel()
{
    QFETCH(QString, name);
    const Table table = makeTable(name);
    QVERIFY(!table.view->itemDelegateForColumn(0));
    table.view->setModel(table.model.get());
    for (int column = 0; column <= table.deleteColumn; ++column) {
        QVERIFY(table.view->itemDelegateForColumn(column));
        QCOMPARE(table.view->itemDelegateForColumn(column)->parent(), table.view.get());
    }
    QVERIFY(
        qobject_cast<ButtonItemDelegate *>(table.view->itemDelegateForColumn(table.deleteColumn)));
}

void tst_RuleTableViewLook::laterModelKeepsTheDelegates()
{
    QFETCH(QString, name);
    const Table first = makeTable(name);
    const Table second = makeTable(name);
    RuleTableView &view = *first.view;
    view.setModel(first.model.get());
    QVERIFY(first.model->insertRows(0, 2));
    QVERIFY(second.model->insertRows(0, 2));
    auto *button =
        qobject_cast<ButtonItemDelegate *>(view.itemDelegateForColumn(first.deleteColumn));
    view.setModel(second.model.get());
    QCOMPARE(view.itemDelegateForColumn(first.deleteColumn), button);

    const QSignalSpy announced(&view, &RuleTableView::onDeleteMaskValidationRule);
    emit button->clicked(1);
    QCOMPARE(announced.count(), 1);
    QCOMPARE(announced.at(0).at(0).toInt(), 1);
    QCOMPARE(first.model->rowCount(), 2);
    QCOMPARE(second.model->rowCount(), 1);

    view.setModel(nullptr);
    QVERIFY(!view.model());
}

void tst_RuleTableViewLook::minimumHeightHoldsOneRow()
{
    QFETCH(QString, name);
    const Table table = makeTable(name);
    RuleTableView &view = *table.view;
    view.setModel(table.model.get());
    QVERIFY(table.model->insertRows(0, 1));
    view.updateMinimumHeight();
    const int minimum = view.minimumHeight();
    const int frame = view.style()->pixelMetric(QStyle::PM_DefaultFrameWidth);
    QCOMPARE(minimum, view.verticalHeader()->defaultSectionSize()
                          + view.horizontalHeader()->height() + 2 * frame);

    view.resize(800, minimum);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    view.updateMinimumHeight();
    QCOMPARE(view.minimumHeight(), minimum);
    QVERIFY(view.viewport()->rect().contains(view.visualRect(view.model()->index(0, 0))));
}

void tst_RuleTableViewLook::selectedRowIsPaintedAsOne()
{
    QFETCH(QString, name);
    const Table table = makeTable(name);
    RuleTableView &view = *table.view;
    view.setModel(table.model.get());
    QVERIFY(table.model->insertRows(0, 3));
    view.resize(1000, 200);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    view.selectRow(1);
    const QImage image = view.viewport()->grab().toImage();
    for (int column = 0; column <= table.deleteColumn; ++column) {
        for (int row = 0; row < 3; ++row) {
            const QRect cell = view.visualRect(table.model->index(row, column));
            const QColor row1(QStringLiteral("#3899fa"));
            const QColor others(QStringLiteral("#f0f8ff"));
            QCOMPARE(image.pixelColor(cell.topLeft()), row == 1 ? row1 : others);
            QCOMPARE(image.pixelColor(cell.topRight()), row == 1 ? row1 : others);
            QCOMPARE(image.pixelColor(cell.bottomLeft()), QColor(QStringLiteral("#ebebeb")));
            QCOMPARE(image.pixelColor(cell.bottomRight()), QColor(QStringLiteral("#ebebeb")));
        }
    }
}

void tst_RuleTableViewLook::strangeTextsKeepTheirRow()
{
    QFETCH(QString, name);
    const Table table = makeTable(name);
    RuleTableView &view = *table.view;
    view.setModel(table.model.get());
    const QList<QByteArray> texts{QByteArrayLiteral("a\nb\r\nc\x00"), QByteArrayLiteral("\xff\xfe"),
                                  QByteArrayLiteral("<img src=x><b>"), QByteArray(100000, 'W'),
                                  QByteArrayLiteral("\t\x01\x1b[31m\x7f")};
    QVERIFY(table.model->insertRows(0, texts.size()));
    for (int row = 0; row < texts.size(); ++row) {
        QVERIFY(
            table.model->setData(table.model->index(row, table.deleteColumn - 1), texts.at(row)));
    }
    view.resize(500, 300);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    QVERIFY(!view.viewport()->grab().isNull());
    const int height = view.verticalHeader()->defaultSectionSize();
    for (int row = 0; row < texts.size(); ++row) {
        QCOMPARE(view.rowHeight(row), height);
        const QModelIndex index = table.model->index(row, table.deleteColumn - 1);
        QVERIFY(!index.data(Qt::ToolTipRole).isValid());
        view.beginEditing(index);
    }
}

void tst_RuleTableViewLook::resizingWithoutAModelIsSurvived()
{
    QFETCH(QString, name);
    const Table table = makeTable(name);
    table.view->recomputeColumnWidths();
    table.view->updateMinimumHeight();
    table.view->resize(300, 100);
    table.view->show();
    QVERIFY(QTest::qWaitForWindowExposed(table.view.get()));
    table.view->resize(400, 100);
    QCOMPARE(table.view->horizontalHeader()->count(), 0);
}

ZEL_TEST_MAIN_WITH(ApplicationAt<96>, tst_RuleTableViewLook)
#include "tst_RuleTableViewLook.moc"
