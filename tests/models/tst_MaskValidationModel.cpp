#include "models/MaskValidationModel.h"

#include "tests/support/ZelTest.h"

#include <QAbstractItemModelTester>
#include <QCoreApplication>
#include <QSignalSpy>

namespace {

QList<MaskValidationRule> threeRules()
{
    return {{1598, 1, QByteArrayLiteral("A*")},
            {7, 0, QByteArrayLiteral("**")},
            {65535, 65535, QByteArrayLiteral("\xff\x00\n")}};
}

} // namespace

class tst_MaskValidationModel : public ZelTest
{
    Q_OBJECT

private slots:
    void startsEmpty();
    void hasParameterIndexMaskAndDeleteColumn();
    void headers_data();
    void headers();
    void showsEachFieldOfARule();
    void hasDataForDisplayAndEditOnly();
    void newRowIsZeroZeroEmpty();
    void setDataStoresEachField();
    void setDataCutsNumbersTo16Bits_data();
    void setDataCutsNumbersTo16Bits();
    void setDataConvertsTexts();
    void setDataTellsWhatChanged();
    void setDataRefuses_data();
    void setDataRefuses();
    void rulesKeepOrderAndDuplicates();
    void constructorSharesTheList();
};

void tst_MaskValidationModel::startsEmpty()
{
    QObject owner;
    const auto *model = new MaskValidationModel(&owner);
    QCOMPARE(model->parent(), &owner);
    QCOMPARE(model->rowCount(), 0);
    QVERIFY(model->rules().isEmpty());
}

void tst_MaskValidationModel::hasParameterIndexMaskAndDeleteColumn()
{
    const MaskValidationModel model(threeRules());
    QCOMPARE(model.rowCount(), 3);
    QCOMPARE(model.columnCount(), 4);
    QCOMPARE(model.columnCount(model.index(1, 1)), 4);
}

void tst_MaskValidationModel::headers_data()
{
    QTest::addColumn<int>("section");
    QTest::addColumn<Qt::Orientation>("orientation");
    QTest::addColumn<int>("role");
    QTest::addColumn<QVariant>("header");

    const int display = Qt::DisplayRole;
    QTest::newRow("parameter") << 0 << Qt::Horizontal << display
                               << QVariant(QStringLiteral("Parameter"));
    QTest::newRow("index") << 1 << Qt::Horizontal << display << QVariant(QStringLiteral("Index"));
    QTest::newRow("mask") << 2 << Qt::Horizontal << display << QVariant(QStringLiteral("Mask"));
    QTest::newRow("delete column") << 3 << Qt::Horizontal << display << QVariant();
    QTest::newRow("before the first") << -1 << Qt::Horizontal << display << QVariant();
    QTest::newRow("behind the last") << 4 << Qt::Horizontal << display << QVariant();
    QTest::newRow("vertical") << 0 << Qt::Vertical << display << QVariant();
    QTest::newRow("edit role") << 0 << Qt::Horizontal << int(Qt::EditRole) << QVariant();
    QTest::newRow("tool tip") << 0 << Qt::Horizontal << int(Qt::ToolTipRole) << QVariant();
}

void tst_MaskValidationModel::headers()
{
    QFETCH(int, section);
    QFETCH(Qt::Orientation, orientation);
    QFETCH(int, role);
    QFETCH(QVariant, header);

    QCOMPARE(MaskValidationModel().headerData(section, orientation, role), header);
}

void tst_MaskValidationModel::showsEachFieldOfARule()
{
    const MaskValidationModel model(threeRules());
    for (const int role : {Qt::DisplayRole, Qt::EditRole}) {
        QCOMPARE(model.data(model.index(0, 0), role), QVariant(1598));
        QCOMPARE(model.data(model.index(0, 1), role), QVariant(1));
        QCOMPARE(model.data(model.index(0, 2), role), QVariant(QByteArrayLiteral("A*")));
        QCOMPARE(model.data(model.index(2, 0), role), QVariant(65535));
        QCOMPARE(model.data(model.index(2, 2), role), QVariant(QByteArrayLiteral("\xff\x00\n")));
    }
    QCOMPARE(model.data(model.index(0, 0)).userType(), int(QMetaType::Int));
    QCOMPARE(model.data(model.index(0, 1)).userType(), int(QMetaType::Int));
    QCOMPARE(model.data(model.index(0, 2)).userType(), int(QMetaType::QByteArray));
}

void tst_MaskValidationModel::hasDataForDisplayAndEditOnly()
{
    const MaskValidationModel model(threeRules());
    for (const int role : {Qt::DecorationRole, Qt::ToolTipRole, Qt::TextAlignmentRole,
                           Qt::CheckStateRole, Qt::UserRole}) {
        QVERIFY(!model.data(model.index(0, 0), role).isValid());
    }
    QVERIFY(!model.data(model.index(0, 3)).isValid());
    QVERIFY(!model.data(model.index(0, 3), Qt::EditRole).isValid());
    QVERIFY(!model.data(QModelIndex()).isValid());
}

void tst_MaskValidationModel::newRowIsZeroZeroEmpty()
{
    MaskValidationModel model;
    QVERIFY(model.insertRows(0, 1));
    QCOMPARE(model.data(model.index(0, 0)), QVariant(0));
    QCOMPARE(model.data(model.index(0, 1)), QVariant(0));
    QCOMPARE(model.data(model.index(0, 2)), QVariant(QByteArray()));
    QCOMPARE(model.rules(), QList<MaskValidationRule>{MaskValidationRule()});
}

void tst_MaskValidationModel::setDataStoresEachField()
{
    MaskValidationModel model(threeRules());
    const QAbstractItemModelTester tester(&model,
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    QVERIFY(model.setData(model.index(1, 0), 12));
    QVERIFY(model.setData(model.index(1, 1), 34));
    QVERIFY(model.setData(model.index(1, 2), QStringLiteral("X*Z")));

    QList<MaskValidationRule> expected = threeRules();
    expected[1] = {12, 34, QByteArrayLiteral("X*Z")};
    QCOMPARE(model.rules(), expected);
}

void tst_MaskValidationModel::setDataCutsNumbersTo16Bits_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<int>("stored");

    QTest::newRow("largest that fits") << QVariant(65535) << 65535;
    QTest::newRow("one more") << QVariant(65536) << 0;
    QTest::newRow("70000") << QVariant(70000) << 4464;
    QTest::newRow("largest of the editor") << QVariant(2147483647) << 65535;
    QTest::newRow("negative") << QVariant(-1) << 65535;
    QTest::newRow("digits") << QVariant(QStringLiteral("17")) << 17;
    QTest::newRow("no number") << QVariant(QStringLiteral("x")) << 0;
    QTest::newRow("nothing") << QVariant() << 0;
}

void tst_MaskValidationModel::setDataCutsNumbersTo16Bits()
{
    QFETCH(QVariant, value);
    QFETCH(int, stored);

    MaskValidationModel model({{1, 2, QByteArrayLiteral("m")}});
    for (const int column : {0, 1}) {
        QVERIFY(model.setData(model.index(0, column), value));
        QCOMPARE(model.data(model.index(0, column)), QVariant(stored));
    }
}

void tst_MaskValidationModel::setDataConvertsTexts()
{
    MaskValidationModel model({MaskValidationRule()});
    QVERIFY(model.setData(model.index(0, 2), QString(QChar(0xe4))));
    QCOMPARE(model.rules().at(0).mask, QByteArrayLiteral("\xc3\xa4"));
    QVERIFY(model.setData(model.index(0, 2), QByteArrayLiteral("\xff\xfe")));
    QCOMPARE(model.rules().at(0).mask, QByteArrayLiteral("\xff\xfe"));
    QVERIFY(model.setData(model.index(0, 2), QString()));
    QCOMPARE(model.rules().at(0).mask, QByteArray());
}

void tst_MaskValidationModel::setDataTellsWhatChanged()
{
    MaskValidationModel model(threeRules());
    const QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    QVERIFY(model.setData(model.index(2, 1), 5));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.at(0).at(0).toModelIndex(), model.index(2, 1));
    QCOMPARE(changed.at(0).at(1).toModelIndex(), model.index(2, 1));
    QCOMPARE(changed.at(0).at(2).value<QVector<int>>(), QVector<int>{Qt::EditRole});
}

void tst_MaskValidationModel::setDataRefuses_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("column");
    QTest::addColumn<int>("role");

    QTest::newRow("display role") << 0 << 0 << int(Qt::DisplayRole);
    QTest::newRow("user role") << 0 << 2 << int(Qt::UserRole);
    QTest::newRow("delete column") << 0 << 3 << int(Qt::EditRole);
    QTest::newRow("invalid index") << -1 << -1 << int(Qt::EditRole);
}

void tst_MaskValidationModel::setDataRefuses()
{
    QFETCH(int, row);
    QFETCH(int, column);
    QFETCH(int, role);

    MaskValidationModel model(threeRules());
    const QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    QVERIFY(!model.setData(model.index(row, column), 99, role));
    QCOMPARE(changed.count(), 0);
    QCOMPARE(model.rules(), threeRules());
}

void tst_MaskValidationModel::rulesKeepOrderAndDuplicates()
{
    const MaskValidationRule rule{5, 6, QByteArrayLiteral("same")};
    const QList<MaskValidationRule> rules{{9, 9, {}}, rule, rule, {1, 1, {}}};
    MaskValidationModel model;
    model.setRules(rules);
    QCOMPARE(model.rules(), rules);
}

void tst_MaskValidationModel::constructorSharesTheList()
{
    const QList<MaskValidationRule> rules = threeRules();
    MaskValidationModel model(rules);
    QVERIFY(model.rules().isSharedWith(rules));
    QVERIFY(model.setData(model.index(0, 0), 2));
    QCOMPARE(rules, threeRules());
}

ZEL_CORE_TEST_MAIN(tst_MaskValidationModel)
#include "tst_MaskValidationModel.moc"
