#include "views/SpinBoxDelegate.h"

#include "tests/support/ZelTest.h"

#include <QApplication>
#include <QSignalSpy>
#include <QSpinBox>
#include <QStandardItemModel>

class tst_SpinBoxDelegate : public ZelTest
{
    Q_OBJECT

private slots:
    void editorIsAFramelessSpinBoxOfTheRange();
    void showsTheNumberOfTheModel_data();
    void showsTheNumberOfTheModel();
    void storesTheNumber();
    void storesWhatIsTypedSoFar();
    void storesAnUnchangedNumberNotAgain();
    void refusesNumbersAboveTheMaximum();
    void editorTakesTheCell();
};

namespace {

/// The editor of the one cell of a model.
struct Editing
{
    explicit Editing(const QVariant &value, int minimum = 0, int maximum = 2147483647)
        : delegate(nullptr, minimum, maximum)
    {
        model.setData(index, value);
        spinBox =
            qobject_cast<QSpinBox *>(delegate.createEditor(&parent, QStyleOptionViewItem(), index));
        delegate.setEditorData(spinBox, index);
    }

    QWidget parent;
    QStandardItemModel model{1, 1};
    QModelIndex index = model.index(0, 0);
    SpinBoxDelegate delegate;
    QSpinBox *spinBox = nullptr;
};

} // namespace

void tst_SpinBoxDelegate::editorIsAFramelessSpinBoxOfTheRange()
{
    const Editing editing(5, -3, 12);
    QVERIFY(editing.spinBox);
    QCOMPARE(editing.spinBox->parentWidget(), &editing.parent);
    QVERIFY(!editing.spinBox->hasFrame());
    QVERIFY(editing.spinBox->autoFillBackground());
    QCOMPARE(editing.spinBox->minimum(), -3);
    QCOMPARE(editing.spinBox->maximum(), 12);
}

void tst_SpinBoxDelegate::showsTheNumberOfTheModel_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<int>("shown");

    QTest::newRow("number") << QVariant(1598) << 1598;
    QTest::newRow("largest") << QVariant(2147483647) << 2147483647;
    QTest::newRow("digits") << QVariant(QStringLiteral("42")) << 42;
    QTest::newRow("nothing") << QVariant() << 0;
    QTest::newRow("below the range") << QVariant(-1) << 0;
}

void tst_SpinBoxDelegate::showsTheNumberOfTheModel()
{
    QFETCH(QVariant, value);
    QFETCH(int, shown);

    QCOMPARE(Editing(value).spinBox->value(), shown);
}

void tst_SpinBoxDelegate::storesTheNumber()
{
    Editing editing(1);
    editing.spinBox->setValue(70000);
    editing.delegate.setModelData(editing.spinBox, &editing.model, editing.index);
    QCOMPARE(editing.index.data(Qt::EditRole), QVariant(70000));
    QCOMPARE(editing.index.data(Qt::EditRole).userType(), int(QMetaType::Int));
}

void tst_SpinBoxDelegate::storesWhatIsTypedSoFar()
{
    Editing editing(1);
    editing.spinBox->setKeyboardTracking(false);
    editing.spinBox->selectAll();
    QTest::keyClicks(editing.spinBox, QStringLiteral("123"));
    QCOMPARE(editing.spinBox->value(), 1);
    editing.delegate.setModelData(editing.spinBox, &editing.model, editing.index);
    QCOMPARE(editing.index.data(Qt::EditRole), QVariant(123));
}

void tst_SpinBoxDelegate::storesAnUnchangedNumberNotAgain()
{
    Editing editing(7);
    const QSignalSpy changed(&editing.model, &QAbstractItemModel::dataChanged);
    editing.delegate.setModelData(editing.spinBox, &editing.model, editing.index);
    QCOMPARE(changed.count(), 0);
    QCOMPARE(editing.index.data(Qt::EditRole), QVariant(7));
}

void tst_SpinBoxDelegate::refusesNumbersAboveTheMaximum()
{
    const Editing editing(0);
    editing.spinBox->selectAll();
    QTest::keyClicks(editing.spinBox, QStringLiteral("2147483648"));
    QCOMPARE(editing.spinBox->text(), QStringLiteral("214748364"));
    QTest::keyClicks(editing.spinBox, QStringLiteral("7"));
    QCOMPARE(editing.spinBox->value(), 2147483647);
    QTest::keyClicks(editing.spinBox, QStringLiteral("-x"));
    QCOMPARE(editing.spinBox->value(), 2147483647);
}

void tst_SpinBoxDelegate::editorTakesTheCell()
{
    const Editing editing(0);
    QStyleOptionViewItem option;
    option.rect = QRect(3, 4, 90, 31);
    editing.delegate.updateEditorGeometry(editing.spinBox, option, editing.index);
    QCOMPARE(editing.spinBox->geometry(), QRect(3, 4, 90, 31));
}

ZEL_TEST_MAIN(tst_SpinBoxDelegate)
#include "tst_SpinBoxDelegate.moc"
