#include "widgets/ErrorMark.h"

#include "tests/support/ZelTest.h"

#include <QApplication>
#include <QImage>
#include <QLineEdit>
#include <QPointer>

class tst_ErrorMark : public ZelTest
{
    Q_OBJECT

private slots:
    void isARedGlow();
    void isOffAtFirst();
    void switchesOnAndOff();
    void aFieldWithoutMarkIsLeftAlone();
    void anotherEffectIsNoMark();
    void belongsToItsField();
    void showsAroundTheField();
};

void tst_ErrorMark::isARedGlow()
{
    QLineEdit field;
    const ErrorMark *const mark = new ErrorMark(&field);

    QCOMPARE(mark->color(), QColor(247, 60, 9, 255));
    QCOMPARE(mark->offset(), QPointF(0, 0));
    QCOMPARE(mark->blurRadius(), field.logicalDpiX() == 144 ? 11.0 : 7.0);
}

void tst_ErrorMark::isOffAtFirst()
{
    QLineEdit field;
    const ErrorMark *const mark = new ErrorMark(&field);

    QCOMPARE(field.graphicsEffect(), mark);
    QVERIFY(!mark->isEnabled());
    QVERIFY(!ErrorMark::isMarked(&field));
}

void tst_ErrorMark::switchesOnAndOff()
{
    QLineEdit field;
    const ErrorMark *const mark = new ErrorMark(&field);

    ErrorMark::setMarked(&field, true);
    QVERIFY(mark->isEnabled());
    QVERIFY(ErrorMark::isMarked(&field));

    ErrorMark::setMarked(&field, false);
    QVERIFY(!mark->isEnabled());
    QVERIFY(!ErrorMark::isMarked(&field));
}

void tst_ErrorMark::aFieldWithoutMarkIsLeftAlone()
{
    QLineEdit field;

    ErrorMark::setMarked(&field, true);

    QVERIFY(!ErrorMark::isMarked(&field));
    QVERIFY(field.graphicsEffect() == nullptr);
}

void tst_ErrorMark::anotherEffectIsNoMark()
{
    QLineEdit field;
    auto *const shadow = new QGraphicsDropShadowEffect(&field);
    field.setGraphicsEffect(shadow);

    QVERIFY(!ErrorMark::isMarked(&field));
    ErrorMark::setMarked(&field, false);
    QVERIFY(shadow->isEnabled());
}

void tst_ErrorMark::belongsToItsField()
{
    QPointer<ErrorMark> mark;
    {
        QLineEdit field;
        mark = new ErrorMark(&field);
    }
    QVERIFY(mark.isNull());
}

void tst_ErrorMark::showsAroundTheField()
{
    QWidget parent;
    QPalette white;
    white.setColor(QPalette::Window, Qt::white);
    parent.setPalette(white);
    parent.resize(200, 100);
    QLineEdit field(&parent);
    field.setGeometry(50, 30, 100, 40);
    new ErrorMark(&field);
    const QPoint justAbove(100, 28);
    parent.show();
    QVERIFY(QTest::qWaitForWindowExposed(&parent));

    QCOMPARE(parent.grab().toImage().pixelColor(justAbove), QColor(Qt::white));
    ErrorMark::setMarked(&field, true);
    const QColor glow = parent.grab().toImage().pixelColor(justAbove);
    QVERIFY2(glow.red() > glow.green() && glow.green() < 250, qPrintable(glow.name()));
}

ZEL_TEST_MAIN(tst_ErrorMark)
#include "tst_ErrorMark.moc"
