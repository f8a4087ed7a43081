#include "app/ZelCreator.h"
#include "benchmarks/support/PlainTableModel.h"
#include "benchmarks/support/Samples.h"
#include "benchmarks/support/Table.h"
#include "tlv/ZelFile.h"

#include <QApplication>
#include <QFile>
#include <QHeaderView>
#include <QMainWindow>
#include <QScrollBar>
#include <QSortFilterProxyModel>
#include <QStyledItemDelegate>
#include <QTableView>
#include <QTest>

#include <algorithm>
#include <functional>
#include <memory>

/// The program's window with 10,000 rules, against a plain model behind the same proxy in a plain
/// table. Both stand on the screen.

namespace {

using table::MeasureRound;

constexpr int kRows = 10'000;
constexpr int kRounds = 21;
constexpr int kMaskColumn = 2;
constexpr double kLongest = 50e-3;

/// A table and the model behind its proxy.
struct Table
{
    std::shared_ptr<QMainWindow> window;
    QTableView *view = nullptr;

    [[nodiscard]] QAbstractItemModel *proxy() const { return view->model(); }
    [[nodiscard]] QAbstractItemModel *model() const
    {
        return qobject_cast<QSortFilterProxyModel *>(proxy())->sourceModel();
    }
};

void showAlone(QWidget *window)
{
    window->show();
    if (!QTest::qWaitForWindowExposed(window)) {
        qFatal("The window does not appear.");
    }
}

/// Everything that an operation has set going, painting included unless that is held off.
void settle()
{
    QCoreApplication::sendPostedEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

QString packageWithRules()
{
    static const QString path = samples::savePackage(
        samples::packageOf(samples::writeFile(QStringLiteral("image.bin"), "firmware"),
                           samples::maskRules(kRows)),
        QStringLiteral("rules.zel"));
    return path;
}

Table programTable(const QString &package)
{
    const auto window = std::make_shared<ZelCreator>(package);
    showAlone(window.get());
    return {window, window->findChild<QTableView *>(QStringLiteral("maskValidationTable"))};
}

Table plainTable(const QList<MaskValidationRule> &rules)
{
    auto window = std::make_shared<QMainWindow>();
    auto *view = new QTableView(window.get());
    auto *model = new PlainTableModel(view);
    auto *proxy = new QSortFilterProxyModel(view);
    proxy->setSourceModel(model);
    model->setRules(rules);
    view->setModel(proxy);
    view->setSortingEnabled(true);
    view->sortByColumn(0, Qt::AscendingOrder);
    window->setCentralWidget(view);
    window->resize(1158, 716);
    showAlone(window.get());
    return {window, view};
}

MeasureRound opening()
{
    const QString path = packageWithRules();
    const QList<MaskValidationRule> rules = samples::loadPackage(path).maskRules();
    const Table ours = programTable(QString());
    const Table floor = plainTable({});
    return table::inTurn(
        [ours, path] {
            qobject_cast<ZelCreator *>(ours.window.get())->decodeFile(path);
            settle();
        },
        [floor, rules] {
            static_cast<PlainTableModel *>(floor.model())->setRules(rules);
            settle();
        });
}

/// Something that is done to a table of kRows rows. What it changes it leaves different for the
/// next time, but as many rows.
struct Operation
{
    std::string name;
    std::function<void(const Table &, int number)> perform;
    int times; ///< Repetitions in a round.
};

void sortByMask(const Table &table, int number)
{
    table.view->sortByColumn(kMaskColumn,
                             number % 2 == 0 ? Qt::DescendingOrder : Qt::AscendingOrder);
}

void editMask(const Table &table, int number)
{
    const int row = number * 97 % kRows;
    table.proxy()->setData(table.proxy()->index(row, kMaskColumn),
                           QByteArray("B") + QByteArray::number(number * 7919 % 1000),
                           Qt::EditRole);
}

void editParameter(const Table &table, int number)
{
    const int row = number * 97 % kRows;
    table.proxy()->setData(table.proxy()->index(row, 0), number * 7919 % 60'000, Qt::EditRole);
}

void insertRow(const Table &table, int /*number*/)
{
    table.model()->insertRows(table.model()->rowCount(), 1, QModelIndex());
}

void removeRow(const Table &table, int number)
{
    table.proxy()->removeRows(number * 97 % kRows, 1, QModelIndex());
}

/// The CPU time of doing @p operation once; the longest of a round goes to @p longest.
double timeOf(const Operation &operation, const Table &table, int &number, double &longest)
{
    double sum = 0;
    longest = 0;
    for (int time = 0; time < operation.times; ++time) {
        const int current = number++;
        const double taken = table::cpuTime([&] {
            operation.perform(table, current);
            settle();
        });
        sum += taken;
        longest = std::max(longest, taken);
    }
    const int surplus = table.model()->rowCount() - kRows;
    if (surplus > 0) {
        table.model()->removeRows(kRows, surplus, QModelIndex());
    } else if (surplus < 0) {
        table.model()->insertRows(table.model()->rowCount(), -surplus, QModelIndex());
    }
    settle();
    return sum / operation.times;
}

/// Painting is measured on its own.
Table withoutPainting(Table table)
{
    table.view->setUpdatesEnabled(false);
    return table;
}

MeasureRound operating(const Operation &operation, bool measuresLongest)
{
    const Table ours = withoutPainting(programTable(packageWithRules()));
    const Table floor =
        withoutPainting(plainTable(samples::loadPackage(packageWithRules()).maskRules()));
    return [=, oursNumber = 0, floorNumber = 0]() mutable {
        table::Round mean;
        table::Round longest;
        const bool oursFirst = oursNumber / operation.times % 2 == 0;
        if (oursFirst) {
            mean.ours = timeOf(operation, ours, oursNumber, longest.ours);
        }
        mean.floor = timeOf(operation, floor, floorNumber, longest.floor);
        if (!oursFirst) {
            mean.ours = timeOf(operation, ours, oursNumber, longest.ours);
        }
        return measuresLongest ? longest : mean;
    };
}

/// One screenful further each time; at the end, back to the top.
void scrollOn(const Table &table)
{
    QScrollBar *bar = table.view->verticalScrollBar();
    const int next = bar->value() + bar->pageStep();
    bar->setValue(next > bar->maximum() ? 0 : next);
    table.view->viewport()->repaint();
}

/// The same table twice, once with the base delegate in every column.
MeasureRound scrolling()
{
    constexpr int kPages = 10;
    const Table ours = programTable(packageWithRules());
    const Table floor = programTable(packageWithRules());
    for (int column = 0; column < floor.proxy()->columnCount(); ++column) {
        floor.view->setItemDelegateForColumn(column, new QStyledItemDelegate(floor.view));
    }
    return table::inTurn([ours] { scrollOn(ours); }, [floor] { scrollOn(floor); }, kPages);
}

} // namespace

int main(int argc, char *argv[])
{
    samples::scratchFolder();
    const QApplication application(argc, argv);
    table::addRow("open 10,000 rules into the window", table::kMilliseconds, table::atMost(1.2),
                  opening, kRounds);
    for (const Operation &operation :
         {Operation{"sort", sortByMask, 2}, Operation{"edit the sorted column", editParameter, 20},
          Operation{"edit another column", editMask, 200}, Operation{"insert", insertRow, 20},
          Operation{"remove", removeRow, 20}}) {
        table::addRow(
            operation.name + " in 10,000 rows", table::kMilliseconds, table::atMost(1.1),
            [operation] { return operating(operation, false); }, kRounds);
        table::addRow(operation.name + " in 10,000 rows, the longest", table::kMilliseconds,
                      table::atMostUnlessTheFloor(kLongest, "50 ms, unless the floor takes it"),
                      [operation] { return operating(operation, true); });
    }
    table::addRow("paint a page of rules while scrolling", table::kMilliseconds, table::atMost(1.5),
                  scrolling, kRounds);
    return table::run(argc, argv);
}
