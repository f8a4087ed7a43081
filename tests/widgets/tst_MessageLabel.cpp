#include "widgets/MessageLabel.h"

#include "tests/support/ZelTest.h"

#include <QApplication>
#include <QImage>

namespace {

QString longPath()
{
    return QStringLiteral("/") + QString(300, QLatin1Char('m'));
}

QStringList lines(const MessageLabel &label)
{
    return label.brokenText().split(QLatin1Char('\n'));
}

int inkedRows(MessageLabel &label)
{
    label.resize(label.sizeHint());
    QImage image(label.size(), QImage::Format_ARGB32);
    image.fill(Qt::white);
    label.render(&image);
    int rows = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y).lightness() < 128) {
                ++rows;
                break;
            }
        }
    }
    return rows;
}

} // namespace

class tst_MessageLabel : public ZelTest
{
    Q_OBJECT

private slots:
    void showsPlainText();
    void withoutALimitItIsAPlainLabel();
    void aFittingTextStaysAsItIs();
    void breaksBetweenWords();
    void breaksBehindSlashes_data();
    void breaksBehindSlashes();
    void breaksAWordThatIsTooLong();
    void keepsItsOwnLineBreaks();
    void sizeFollowsTheText();
    void aNewLimitIsANewSize();
    void paintsEveryLine();
};

void tst_MessageLabel::showsPlainText()
{
    MessageLabel label;
    const QString markup = QStringLiteral("<b>not bold</b>");
    label.setText(markup);
    QCOMPARE(label.textFormat(), Qt::PlainText);
    QVERIFY(label.sizeHint().width() >= label.fontMetrics().horizontalAdvance(markup));
}

void tst_MessageLabel::withoutALimitItIsAPlainLabel()
{
    MessageLabel label;
    label.setText(longPath());
    QCOMPARE(label.lineWidthLimit(), 0);
    QCOMPARE(label.brokenText(), longPath());
    QCOMPARE(label.sizeHint(), label.QLabel::sizeHint());
    QCOMPARE(label.minimumSizeHint(), label.QLabel::sizeHint());
}

void tst_MessageLabel::aFittingTextStaysAsItIs()
{
    MessageLabel label;
    label.setText(QStringLiteral("two words\nand more"));
    label.setLineWidthLimit(500);
    QCOMPARE(label.brokenText(), label.text());
    QCOMPARE(label.sizeHint(), label.QLabel::sizeHint());
    label.setText(QString());
    QCOMPARE(label.brokenText(), QString());
}

void tst_MessageLabel::breaksBetweenWords()
{
    MessageLabel label;
    label.setText(QStringLiteral("alpha beta gamma"));
    label.setLineWidthLimit(label.fontMetrics().horizontalAdvance(QStringLiteral("alpha beta ")));
    const QStringList expected{QStringLiteral("alpha beta"), QStringLiteral("gamma")};
    QCOMPARE(lines(label), expected);
    QCOMPARE(label.text(), QStringLiteral("alpha beta gamma"));
}

void tst_MessageLabel::breaksBehindSlashes_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("firstLine");
    QTest::newRow("slashes") << QStringLiteral("/folder/firmware/image.bin")
                             << QStringLiteral("/folder/firmware/");
    QTest::newRow("backslashes") << QStringLiteral("C:\\folder\\firmware\\image.bin")
                                 << QStringLiteral("C:\\folder\\firmware\\");
}

void tst_MessageLabel::breaksBehindSlashes()
{
    QFETCH(QString, path);
    QFETCH(QString, firstLine);

    MessageLabel label;
    label.setText(path);
    label.setLineWidthLimit(label.fontMetrics().horizontalAdvance(firstLine + QLatin1Char('i')));
    const QStringList expected{firstLine, QStringLiteral("image.bin")};
    QCOMPARE(lines(label), expected);
}

void tst_MessageLabel::breaksAWordThatIsTooLong()
{
    MessageLabel label;
    label.setText(longPath());
    label.setLineWidthLimit(200);
    const QStringList broken = lines(label);
    QVERIFY(broken.size() > 2);
    QCOMPARE(broken.join(QString()), longPath());
    for (const QString &line : broken) {
        QVERIFY(label.fontMetrics().horizontalAdvance(line) <= 200);
    }
}

void tst_MessageLabel::keepsItsOwnLineBreaks()
{
    MessageLabel label;
    label.setText(QStringLiteral("saved to\n\n") + longPath());
    label.setLineWidthLimit(200);
    QCOMPARE(lines(label).at(0), QStringLiteral("saved to"));
    QCOMPARE(lines(label).at(1), QString());
    QVERIFY(lines(label).size() > 4);
}

void tst_MessageLabel::sizeFollowsTheText()
{
    MessageLabel label;
    label.setText(longPath());
    label.setLineWidthLimit(200);
    label.setContentsMargins(3, 4, 5, 6);
    QVERIFY(label.sizeHint().width() <= 200 + 8);
    QCOMPARE(label.sizeHint().height(), lines(label).size() * label.fontMetrics().lineSpacing()
                                            - label.fontMetrics().leading() + 10);
    QCOMPARE(label.minimumSizeHint(), label.sizeHint());
}

void tst_MessageLabel::aNewLimitIsANewSize()
{
    MessageLabel label;
    label.setText(longPath());
    label.setLineWidthLimit(200);
    const QSize narrow = label.sizeHint();
    label.setLineWidthLimit(400);
    QVERIFY(label.sizeHint().width() > narrow.width());
    QVERIFY(label.sizeHint().height() < narrow.height());
    label.setLineWidthLimit(0);
    QCOMPARE(label.sizeHint(), label.QLabel::sizeHint());
}

void tst_MessageLabel::paintsEveryLine()
{
    MessageLabel label;
    label.setText(longPath());
    const int oneLine = inkedRows(label);
    QVERIFY(oneLine > 0);
    label.setLineWidthLimit(200);
    QVERIFY(inkedRows(label) >= (lines(label).size() - 1) * (oneLine - 6));
    QVERIFY(inkedRows(label) > 3 * oneLine);
}

ZEL_TEST_MAIN(tst_MessageLabel)
#include "tst_MessageLabel.moc"
