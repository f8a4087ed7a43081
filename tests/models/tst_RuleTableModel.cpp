#include "models/MaskValidationModel.h"
#include "models/TokenValidationModel.h"

#include "tests/support/ZelTest.h"

#include <QAbstractItemModelTester>
#include <QCoreApplication>
#include <QSignalSpy>
#include <QSortFilterProxyModel>

#include <functional>
#include <memory>

/// What both rule models do alike. Each test runs over each of them, holding the rows 0, 1 and 2:
/// the first column shows the number of the row.
class tst_RuleTableModel : public ZelTest
{
    Q_OBJECT

private slots:
    void flags_data() { models(); }
    void flags();
    void rowsHaveNoChildren_data() { models(); }
    void rowsHaveNoChildren();
    void keepsTheRulesOfAModel_data() { models(); }
    void keepsTheRulesOfAModel();
    void insertsRows_data();
    void insertsRows();
    void insertsNothingBelowOneRow_data() { models(); }
    void insertsNothingBelowOneRow();
    void removesRows_data();
    void removesRows();
    void removesNothingBelowOneRow_data() { models(); }
    void removesNothingBelowOneRow();
    void removingBeyondTheListOnlyNotifies_data();
    void removingBeyondTheListOnlyNotifies();
    void proxySurvivesRemovingBeyondTheList_data();
    void proxySurvivesRemovingBeyondTheList();
    void nothingIsInsertedOrRemovedBelowARow_data() { models(); }
    void nothingIsInsertedOrRemovedBelowARow();
    void setRulesResets();
    void staleIndexIsRefused_data() { models(); }
    void staleIndexIsRefused();
    void proxySortsWhileTheModelKeepsItsOrder();

private:
    using Model = std::unique_ptr<QAbstractTableModel>;

    static void models();
    static void forEachModel(const std::function<void(const QByteArray &model)> &addRows);
    static Model threeRows(const QString &name);
    static QStringList firstColumn(const QAbstractItemModel &model);
};

void tst_RuleTableModel::models()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("mask") << QStringLiteral("mask");
    QTest::newRow("token") << QStringLiteral("token");
}

void tst_RuleTableModel::forEachModel(const std::function<void(const QByteArray &)> &addRows)
{
    for (const auto &model : {QByteArrayLiteral("mask"), QByteArrayLiteral("token")}) {
        addRows(model);
    }
}

tst_RuleTableModel::Model tst_RuleTableModel::threeRows(const QString &name)
{
    if (name == QLatin1String("mask")) {
        return std::make_unique<MaskValidationModel>(
            QList<MaskValidationRule>{{0, 0, {}}, {1, 0, {}}, {2, 0, {}}});
    }
    return std::make_unique<TokenValidationModel>(QList<TokenValidationRule>{
        {QByteArrayLiteral("0"), {}}, {QByteArrayLiteral("1"), {}}, {QByteArrayLiteral("2"), {}}});
}

QStringList tst_RuleTableModel::firstColumn(const QAbstractItemModel &model)
{
    QStringList texts;
    for (int row = 0; row < model.rowCount(); ++row) {
        texts.append(model.index(row, 0).data().toString());
    }
    return texts;
}

void tst_RuleTableModel::flags()
{
    QFETCH(QString, name);
    const Model model = threeRows(name);
    for (int column = 0; column < model->columnCount(); ++column) {
        QCOMPARE(model->flags(model->index(0, column)), Qt::ItemIsSelectable | Qt::ItemIsEnabled
                                                            | Qt::ItemNeverHasChildren
                                                            | Qt::ItemIsEditable);
    }
    QCOMPARE(model->flags(QModelIndex()), Qt::ItemFlags(Qt::ItemIsDropEnabled));
}

void tst_RuleTableModel::rowsHaveNoChildren()
{
    QFETCH(QString, name);
    const Model model = threeRows(name);
    QCOMPARE(model->rowCount(), 3);
    QCOMPARE(model->rowCount(model->index(0, 0)), 0);
}

void tst_RuleTableModel::keepsTheRulesOfAModel()
{
    QFETCH(QString, name);
    const Model model = threeRows(name);
    QSortFilterProxyModel proxy;
    proxy.setSourceModel(model.get());
    proxy.sort(0, Qt::DescendingOrder);
    using Tester = QAbstractItemModelTester;
    const Tester tester(model.get(), Tester::FailureReportingMode::Fatal);
    const Tester proxyTester(&proxy, Tester::FailureReportingMode::Fatal);

    QVERIFY(model->insertRows(0, 1));
    QVERIFY(model->insertRows(2, 3));
    QVERIFY(model->insertRows(100, 1));
    QVERIFY(model->insertRows(-100, 1));
    QVERIFY(model->setData(model->index(3, 0), 9));
    QVERIFY(proxy.setData(proxy.index(0, 0), 0));
    QVERIFY(model->removeRows(1, 2));
    QVERIFY(proxy.removeRows(0, 1));
    QVERIFY(!proxy.removeRows(proxy.rowCount(), 1));
    QCOMPARE(model->rowCount(), 6);
    QVERIFY(model->removeRows(0, model->rowCount()));
    QCOMPARE(proxy.rowCount(), 0);
    QVERIFY(model->insertRows(0, 2));
    QCOMPARE(proxy.rowCount(), 2);
}

void tst_RuleTableModel::insertsRows_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("first");
    QTest::addColumn<QString>("rows");

    forEachModel([](const QByteArray &model) {
        const auto name = QString::fromLatin1(model);
        const auto blank = name == QLatin1String("mask") ? QStringLiteral("0") : QString();
        const auto add = [&](const char *row) -> QTestData & {
            return QTest::newRow(model + ": " + row) << name;
        };
        add("at the start") << 0 << 1 << 0 << QStringLiteral("%1,0,1,2").arg(blank);
        add("two in the middle") << 1 << 2 << 1 << QStringLiteral("0,%1,%1,1,2").arg(blank);
        add("at the end") << 3 << 1 << 3 << QStringLiteral("0,1,2,%1").arg(blank);
        add("beyond the end appends") << 7 << 2 << 3 << QStringLiteral("0,1,2,%1,%1").arg(blank);
        add("before the start prepends") << -4 << 1 << 0 << QStringLiteral("%1,0,1,2").arg(blank);
    });
}

void tst_RuleTableModel::insertsRows()
{
    QFETCH(QString, name);
    QFETCH(int, row);
    QFETCH(int, count);
    QFETCH(int, first);
    QFETCH(QString, rows);

    const Model model = threeRows(name);
    const QAbstractItemModelTester tester(model.get(),
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    const QSignalSpy begun(model.get(), &QAbstractItemModel::rowsAboutToBeInserted);
    const QSignalSpy ended(model.get(), &QAbstractItemModel::rowsInserted);
    QVERIFY(model->insertRows(row, count));
    QCOMPARE(firstColumn(*model).join(QLatin1Char(',')), rows);
    for (const QSignalSpy *spy : {&begun, &ended}) {
        QCOMPARE(spy->count(), 1);
        QCOMPARE(spy->at(0).at(0).toModelIndex(), QModelIndex());
        QCOMPARE(spy->at(0).at(1).toInt(), first);
        QCOMPARE(spy->at(0).at(2).toInt(), first + count - 1);
    }
}

void tst_RuleTableModel::insertsNothingBelowOneRow()
{
    QFETCH(QString, name);
    const Model model = threeRows(name);
    const QSignalSpy inserted(model.get(), &QAbstractItemModel::rowsInserted);
    QVERIFY(model->insertRows(0, 0));
    QVERIFY(model->insertRows(0, -2));
    QCOMPARE(model->rowCount(), 3);
    QCOMPARE(inserted.count(), 0);
}

void tst_RuleTableModel::removesRows_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("rows");

    forEachModel([](const QByteArray &model) {
        const auto add = [&model](const char *row) -> QTestData & {
            return QTest::newRow(model + ": " + row) << QString::fromLatin1(model);
        };
        add("the first") << 0 << 1 << QStringLiteral("1,2");
        add("the last") << 2 << 1 << QStringLiteral("0,1");
        add("two") << 0 << 2 << QStringLiteral("2");
        add("all") << 0 << 3 << QString();
        add("more than there are") << 1 << 5 << QStringLiteral("0");
    });
}

void tst_RuleTableModel::removesRows()
{
    QFETCH(QString, name);
    QFETCH(int, row);
    QFETCH(int, count);
    QFETCH(QString, rows);

    const Model model = threeRows(name);
    QSortFilterProxyModel proxy;
    proxy.setSourceModel(model.get());
    proxy.sort(0, Qt::AscendingOrder);
    const QAbstractItemModelTester tester(&proxy,
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    const QSignalSpy begun(model.get(), &QAbstractItemModel::rowsAboutToBeRemoved);
    const QSignalSpy ended(model.get(), &QAbstractItemModel::rowsRemoved);
    QVERIFY(model->removeRows(row, count));
    QCOMPARE(firstColumn(*model).join(QLatin1Char(',')), rows);
    QCOMPARE(firstColumn(proxy).join(QLatin1Char(',')), rows);
    for (const QSignalSpy *spy : {&begun, &ended}) {
        QCOMPARE(spy->count(), 1);
        QCOMPARE(spy->at(0).at(0).toModelIndex(), QModelIndex());
        QCOMPARE(spy->at(0).at(1).toInt(), row);
        QCOMPARE(spy->at(0).at(2).toInt(), row + count - 1);
    }
}

void tst_RuleTableModel::removesNothingBelowOneRow()
{
    QFETCH(QString, name);
    const Model model = threeRows(name);
    QVERIFY(model->removeRows(0, 0));
    QVERIFY(model->removeRows(1, -1));
    QCOMPARE(model->rowCount(), 3);
}

void tst_RuleTableModel::removingBeyondTheListOnlyNotifies_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("last");

    forEachModel([](const QByteArray &model) {
        const auto add = [&model](const char *row) -> QTestData & {
            return QTest::newRow(model + ": " + row) << QString::fromLatin1(model);
        };
        add("right behind the last row") << 3 << 1 << 3;
        add("far behind") << 5 << 1 << 5;
        add("several") << 5 << 4 << 8;
        add("before the first") << -1 << 2 << 0;
        add("past the largest number") << 2147483647 << 2 << 2147483647;
    });
}

void tst_RuleTableModel::removingBeyondTheListOnlyNotifies()
{
    QFETCH(QString, name);
    QFETCH(int, row);
    QFETCH(int, count);
    QFETCH(int, last);

    const Model model = threeRows(name);
    const QPersistentModelIndex firstRow = model->index(0, 0);
    const QSignalSpy begun(model.get(), &QAbstractItemModel::rowsAboutToBeRemoved);
    const QSignalSpy ended(model.get(), &QAbstractItemModel::rowsRemoved);
    QVERIFY(model->removeRows(row, count));
    QCOMPARE(firstColumn(*model).join(QLatin1Char(',')), QStringLiteral("0,1,2"));
    QCOMPARE(firstRow, model->index(0, 0));
    for (const QSignalSpy *spy : {&begun, &ended}) {
        QCOMPARE(spy->count(), 1);
        QCOMPARE(spy->at(0).at(1).toInt(), row);
        QCOMPARE(spy->at(0).at(2).toInt(), last);
    }
}

void tst_RuleTableModel::proxySurvivesRemovingBeyondTheList_data()
{
    removingBeyondTheListOnlyNotifies_data();
}

void tst_RuleTableModel::proxySurvivesRemovingBeyondTheList()
{
    QFETCH(QString, name);
    QFETCH(int, row);
    QFETCH(int, count);

    const Model model = threeRows(name);
    QSortFilterProxyModel proxy;
    proxy.setSourceModel(model.get());
    proxy.sort(0, Qt::DescendingOrder);
    const QAbstractItemModelTester tester(&proxy,
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    QVERIFY(model->removeRows(row, count));
    QCOMPARE(firstColumn(proxy).join(QLatin1Char(',')), QStringLiteral("2,1,0"));
    QVERIFY(model->insertRows(3, 1));
    QVERIFY(model->removeRows(0, 1));
    QVERIFY(proxy.removeRows(0, 1));
    QCOMPARE(firstColumn(proxy).size(), 2);
}

void tst_RuleTableModel::nothingIsInsertedOrRemovedBelowARow()
{
    QFETCH(QString, name);
    const Model model = threeRows(name);
    QVERIFY(!model->insertRows(0, 1, model->index(0, 0)));
    QVERIFY(!model->removeRows(0, 1, model->index(0, 0)));
    QCOMPARE(model->rowCount(), 3);
}

void tst_RuleTableModel::setRulesResets()
{
    MaskValidationModel model({{1, 2, QByteArrayLiteral("old")}});
    const QAbstractItemModelTester tester(&model,
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    const QSignalSpy begun(&model, &QAbstractItemModel::modelAboutToBeReset);
    const QSignalSpy ended(&model, &QAbstractItemModel::modelReset);
    const QList<MaskValidationRule> rules{{3, 4, QByteArrayLiteral("new")}, {5, 6, {}}};
    model.setRules(rules);
    QCOMPARE(model.rules(), rules);
    model.setRules({});
    QVERIFY(model.rules().isEmpty());
    QCOMPARE(begun.count(), 2);
    QCOMPARE(ended.count(), 2);
}

void tst_RuleTableModel::staleIndexIsRefused()
{
    QFETCH(QString, name);
    const Model model = threeRows(name);
    const QModelIndex stale = model->index(2, 0);
    QVERIFY(model->removeRows(2, 1));
    const QSignalSpy changed(model.get(), &QAbstractItemModel::dataChanged);
    QVERIFY(!model->setData(stale, 1));
    QVERIFY(!model->data(stale).isValid());
    QCOMPARE(changed.count(), 0);
    QCOMPARE(firstColumn(*model).join(QLatin1Char(',')), QStringLiteral("0,1"));
}

void tst_RuleTableModel::proxySortsWhileTheModelKeepsItsOrder()
{
    const QList<MaskValidationRule> rules{{30, 0, {}}, {4, 0, {}}, {200, 0, {}}};
    MaskValidationModel model(rules);
    QSortFilterProxyModel proxy;
    proxy.setSourceModel(&model);
    proxy.sort(0, Qt::AscendingOrder);
    QCOMPARE(firstColumn(proxy).join(QLatin1Char(',')), QStringLiteral("4,30,200"));
    QVERIFY(proxy.setData(proxy.index(0, 0), 50));
    QCOMPARE(firstColumn(proxy).join(QLatin1Char(',')), QStringLiteral("30,50,200"));
    QVERIFY(proxy.removeRows(0, 1));
    const QList<MaskValidationRule> expected{{50, 0, {}}, {200, 0, {}}};
    QCOMPARE(model.rules(), expected);
}

ZEL_CORE_TEST_MAIN(tst_RuleTableModel)
#include "tst_RuleTableModel.moc"
