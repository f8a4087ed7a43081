#include "common/Scale.h"

#include "tests/support/ZelTest.h"

#include <QCoreApplication>

class tst_Scale : public ZelTest
{
    Q_OBJECT

private slots:
    void pixels_data();
    void pixels();
    void factorIsRelativeTo96DotsPerInch();
};

void tst_Scale::pixels_data()
{
    QTest::addColumn<double>("dpi");
    QTest::addColumn<double>("designed");
    QTest::addColumn<int>("pixels");

    QTest::newRow("96 DPI leaves sizes alone") << 96.0 << 27.0 << 27;
    QTest::newRow("144 DPI, popup font") << 144.0 << 14.0 << 21;
    QTest::newRow("144 DPI, field width") << 144.0 << 160.0 << 240;
    QTest::newRow("144 DPI, button height, half rounds up") << 144.0 << 27.0 << 41;
    QTest::newRow("144 DPI, border") << 144.0 << 1.0 << 2;
    QTest::newRow("144 DPI, padding") << 144.0 << 5.0 << 8;
    QTest::newRow("120 DPI") << 120.0 << 11.0 << 14;
    QTest::newRow("negative half rounds away from zero") << 96.0 << -0.5 << -1;
    QTest::newRow("nothing") << 144.0 << 0.0 << 0;
}

void tst_Scale::pixels()
{
    QFETCH(double, dpi);
    QFETCH(double, designed);
    QFETCH(int, pixels);

    QCOMPARE(Scale(dpi).px(designed), pixels);
}

void tst_Scale::factorIsRelativeTo96DotsPerInch()
{
    QCOMPARE(Scale(96).factor(), 1.0);
    QCOMPARE(Scale(144).factor(), 1.5);
}

ZEL_CORE_TEST_MAIN(tst_Scale)
#include "tst_Scale.moc"
