#include "models/TokenValidationModel.h"

#include "tests/support/ZelTest.h"

#include <QAbstractItemModelTester>
#include <QCoreApplication>
#include <QSignalSpy>

namespace {

QList<TokenValidationRule> threeRules()
{
    return {{QByteArrayLiteral("B"), QByteArrayLiteral("2")},
            {QByteArrayLiteral("A"), QByteArrayLiteral("1")},
            {QByteArrayLiteral("\xff"), QByteArrayLiteral("a\x00z")}};
}

} // namespace

class tst_TokenValidationModel : public ZelTest
{
    Q_OBJECT

private slots:
    void startsEmpty();
    void hasTokenValueAndDeleteColumn();
    void headers_data();
    void headers();
    void showsEachFieldOfARule();
    void newRowIsTwoEmptyStrings();
    void setDataStoresEachField();
    void setDataRefuses_data();
    void setDataRefuses();
    void sameTokenTwiceIsKept();
};

void tst_TokenValidationModel::startsEmpty()
{
    QObject owner;
    const auto *model = new TokenValidationModel(&owner);
    QCOMPARE(model->parent(), &owner);
    QCOMPARE(model->rowCount(), 0);
}

void tst_TokenValidationModel::hasTokenValueAndDeleteColumn()
{
    const TokenValidationModel model(threeRules());
    QCOMPARE(model.rowCount(), 3);
    QCOMPARE(model.columnCount(), 3);
    QCOMPARE(model.columnCount(model.index(0, 0)), 3);
}

void tst_TokenValidationModel::headers_data()
{
    QTest::addColumn<int>("section");
    QTest::addColumn<Qt::Orientation>("orientation");
    QTest::addColumn<int>("role");
    QTest::addColumn<QVariant>("header");

    const int display = Qt::DisplayRole;
    QTest::newRow("token") << 0 << Qt::Horizontal << display << QVariant(QStringLiteral("Token"));
    QTest::newRow("value") << 1 << Qt::Horizontal << display << QVariant(QStringLiteral("Value"));
    QTest::newRow("delete column") << 2 << Qt::Horizontal << display << QVariant();
    QTest::newRow("vertical") << 0 << Qt::Vertical << display << QVariant();
    QTest::newRow("edit role") << 0 << Qt::Horizontal << int(Qt::EditRole) << QVariant();
}

void tst_TokenValidationModel::headers()
{
    QFETCH(int, section);
    QFETCH(Qt::Orientation, orientation);
    QFETCH(int, role);
    QFETCH(QVariant, header);

    QCOMPARE(TokenValidationModel().headerData(section, orientation, role), header);
}

void tst_TokenValidationModel::showsEachFieldOfARule()
{
    const TokenValidationModel model(threeRules());
    for (const int role : {Qt::DisplayRole, Qt::EditRole}) {
        QCOMPARE(model.data(model.index(0, 0), role), QVariant(QByteArrayLiteral("B")));
        QCOMPARE(model.data(model.index(0, 1), role), QVariant(QByteArrayLiteral("2")));
        QCOMPARE(model.data(model.index(2, 0), role), QVariant(QByteArrayLiteral("\xff")));
        QCOMPARE(model.data(model.index(2, 1), role), QVariant(QByteArrayLiteral("a\x00z")));
        QVERIFY(!model.data(model.index(0, 2), role).isValid());
    }
    QVERIFY(!model.data(model.index(0, 0), Qt::ToolTipRole).isValid());
}

void tst_TokenValidationModel::newRowIsTwoEmptyStrings()
{
    TokenValidationModel model;
    QVERIFY(model.insertRows(0, 1));
    QCOMPARE(model.data(model.index(0, 0)), QVariant(QByteArray()));
    QCOMPARE(model.data(model.index(0, 1)), QVariant(QByteArray()));
}

void tst_TokenValidationModel::setDataStoresEachField()
{
    TokenValidationModel model(threeRules());
    const QAbstractItemModelTester tester(&model,
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    const QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    QVERIFY(model.setData(model.index(1, 0), QStringLiteral("Z")));
    QVERIFY(model.setData(model.index(1, 1), QByteArrayLiteral("\x80")));

    QList<TokenValidationRule> expected = threeRules();
    expected[1] = {QByteArrayLiteral("Z"), QByteArrayLiteral("\x80")};
    QCOMPARE(model.rules(), expected);
    QCOMPARE(changed.count(), 2);
    QCOMPARE(changed.at(1).at(0).toModelIndex(), model.index(1, 1));
    QCOMPARE(changed.at(1).at(2).value<QVector<int>>(), QVector<int>{Qt::EditRole});
}

void tst_TokenValidationModel::setDataRefuses_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("column");
    QTest::addColumn<int>("role");

    QTest::newRow("delete column") << 0 << 2 << int(Qt::EditRole);
    QTest::newRow("display role") << 0 << 0 << int(Qt::DisplayRole);
    QTest::newRow("invalid index") << -1 << -1 << int(Qt::EditRole);
}

void tst_TokenValidationModel::setDataRefuses()
{
    QFETCH(int, row);
    QFETCH(int, column);
    QFETCH(int, role);

    TokenValidationModel model(threeRules());
    const QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    QVERIFY(!model.setData(model.index(row, column), QStringLiteral("x"), role));
    QCOMPARE(changed.count(), 0);
    QCOMPARE(model.rules(), threeRules());
}

void tst_TokenValidationModel::sameTokenTwiceIsKept()
{
    TokenValidationModel model(threeRules());
    QVERIFY(model.setData(model.index(1, 0), QStringLiteral("B")));
    QCOMPARE(model.rules().at(0).token, QByteArrayLiteral("B"));
    QCOMPARE(model.rules().at(1).token, QByteArrayLiteral("B"));
}

ZEL_CORE_TEST_MAIN(tst_TokenValidationModel)
#include "tst_TokenValidationModel.moc"
