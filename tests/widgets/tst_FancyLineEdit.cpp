#include "widgets/FancyLineEdit.h"

#include "common/Scale.h"
#include "tests/support/ZelTest.h"

#include <QApplication>
#include <QLabel>
#include <QVBoxLayout>

namespace {

/// Counts how often a widget is asked to lay itself out anew.
class LayoutRequestCounter final : public QObject
{
public:
    int count = 0;

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        count += event->type() == QEvent::LayoutRequest ? 1 : 0;
        return QObject::eventFilter(watched, event);
    }
};

} // namespace

class tst_FancyLineEdit : public ZelTest
{
    Q_OBJECT

private slots:
    void labelsAreDarkGreyInEveryColourGroup();
    void labelsShowTheTexts();
    void textsAreNoPartOfTheFieldsText();
    void markupIsShownAsItStands();
    void marginsWithoutTexts();
    void marginsMakeRoomForTheTexts();
    void anEmptyTextGivesTheRoomBack();
    void unchangedMarginsAreNotSetAgain();
    void marginsFollowTheFont();
    void labelsStandAtTheEdges();
    void labelsFollowTheSize();
    void typedTextStaysBetweenTheLabels();
    void labelsLetTheMouseThrough();

private:
    static QLabel *leading(const FancyLineEdit &field);
    static QLabel *trailing(const FancyLineEdit &field);
    static int advance(const QLabel *label, const QString &text);
    static int scaled(const QWidget &widget, int designed);

    const QString m_hex = QStringLiteral("0x");
    const QString m_bytes = QStringLiteral("bytes");
};

QLabel *tst_FancyLineEdit::leading(const FancyLineEdit &field)
{
    return field.findChild<QLabel *>(QStringLiteral("leadingLabel"));
}

QLabel *tst_FancyLineEdit::trailing(const FancyLineEdit &field)
{
    return field.findChild<QLabel *>(QStringLiteral("trailingLabel"));
}

int tst_FancyLineEdit::advance(const QLabel *label, const QString &text)
{
    return QFontMetrics(label->font()).horizontalAdvance(text);
}

int tst_FancyLineEdit::scaled(const QWidget &widget, int designed)
{
    return Scale(widget.logicalDpiX()).px(designed);
}

void tst_FancyLineEdit::labelsAreDarkGreyInEveryColourGroup()
{
    const FancyLineEdit field;
    for (const QLabel *const label : {leading(field), trailing(field)}) {
        for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
            QCOMPARE(label->palette().color(group, label->foregroundRole()), QColor(Qt::darkGray));
            QCOMPARE(label->palette().color(group, QPalette::Text), QColor(Qt::darkGray));
        }
    }
}

void tst_FancyLineEdit::labelsShowTheTexts()
{
    FancyLineEdit field;
    field.setLeadingText(m_hex);
    field.setTrailingText(m_bytes);

    QCOMPARE(leading(field)->text(), m_hex);
    QCOMPARE(field.leadingText(), m_hex);
    QCOMPARE(trailing(field)->text(), m_bytes);
    QCOMPARE(field.trailingText(), m_bytes);
}

void tst_FancyLineEdit::textsAreNoPartOfTheFieldsText()
{
    FancyLineEdit field;
    field.setLeadingText(m_hex);
    field.setTrailingText(m_bytes);
    QTest::keyClicks(&field, QStringLiteral("12"));

    QCOMPARE(field.text(), QStringLiteral("12"));
    QCOMPARE(field.displayText(), QStringLiteral("12"));
}

void tst_FancyLineEdit::markupIsShownAsItStands()
{
    const FancyLineEdit field;
    QCOMPARE(leading(field)->textFormat(), Qt::PlainText);
    QCOMPARE(trailing(field)->textFormat(), Qt::PlainText);
}

void tst_FancyLineEdit::marginsWithoutTexts()
{
    FancyLineEdit field;
    field.setLeadingText(QString());

    const QMargins expected =
        field.logicalDpiX() == 144 ? QMargins(2, 3, 3, 3) : QMargins(1, 2, 2, 2);
    QCOMPARE(field.textMargins(), expected);
}

void tst_FancyLineEdit::marginsMakeRoomForTheTexts()
{
    FancyLineEdit field;
    const int one = scaled(field, 1);
    const int two = scaled(field, 2);

    field.setLeadingText(m_hex);
    const int left = advance(leading(field), m_hex) + one;
    QCOMPARE(field.textMargins(), QMargins(left, two, two, two));

    field.setTrailingText(m_bytes);
    const int right = advance(trailing(field), m_bytes) + two;
    QCOMPARE(field.textMargins(), QMargins(left, two, right, two));
}

void tst_FancyLineEdit::anEmptyTextGivesTheRoomBack()
{
    FancyLineEdit field;
    field.setLeadingText(m_hex);
    field.setTrailingText(m_bytes);

    field.setLeadingText(QString());
    QCOMPARE(field.textMargins().left(), scaled(field, 1));
    field.setTrailingText(QString());
    QCOMPARE(field.textMargins().right(), scaled(field, 2));
}

void tst_FancyLineEdit::unchangedMarginsAreNotSetAgain()
{
    QWidget parent;
    auto *const layout = new QVBoxLayout(&parent);
    auto *const field = new FancyLineEdit;
    layout->addWidget(field);
    field->setLeadingText(m_hex);
    parent.show();
    QVERIFY(QTest::qWaitForWindowExposed(&parent));
    LayoutRequestCounter requests;
    parent.installEventFilter(&requests);

    field->setLeadingText(m_hex);
    QCoreApplication::sendPostedEvents();
    QCOMPARE(requests.count, 0);

    field->setLeadingText(m_bytes);
    QCoreApplication::sendPostedEvents();
    QVERIFY(requests.count > 0);
}

void tst_FancyLineEdit::marginsFollowTheFont()
{
    FancyLineEdit field;
    field.setLeadingText(m_hex);
    const int before = field.textMargins().left();
    QFont large = field.font();
    large.setPixelSize(60);

    field.setFont(large);

    QVERIFY(field.textMargins().left() > before);
    QCOMPARE(field.textMargins().left(), advance(leading(field), m_hex) + scaled(field, 1));
    QCOMPARE(leading(field)->width(), advance(leading(field), m_hex));
}

void tst_FancyLineEdit::labelsStandAtTheEdges()
{
    FancyLineEdit field;
    field.resize(scaled(field, 160), field.sizeHint().height());
    field.setLeadingText(m_hex);
    field.setTrailingText(m_bytes);

    QCOMPARE(leading(field)->x(), scaled(field, 2));
    QCOMPARE(trailing(field)->width(), advance(trailing(field), m_bytes));
    QCOMPARE(trailing(field)->x() + trailing(field)->width(), field.width() - scaled(field, 3));
}

void tst_FancyLineEdit::labelsFollowTheSize()
{
    FancyLineEdit field;
    field.setLeadingText(m_hex);
    field.setTrailingText(m_bytes);
    field.show();
    QVERIFY(QTest::qWaitForWindowExposed(&field));

    field.resize(400, 60);

    QTRY_COMPARE(field.size(), QSize(400, 60));
    QCOMPARE(leading(field)->x(), scaled(field, 2));
    QCOMPARE(trailing(field)->x() + trailing(field)->width(), 400 - scaled(field, 3));
    QVERIFY(leading(field)->height() > 40);
}

void tst_FancyLineEdit::typedTextStaysBetweenTheLabels()
{
    FancyLineEdit field;
    field.setLeadingText(m_hex);
    field.setTrailingText(m_bytes);
    field.resize(scaled(field, 160), field.sizeHint().height());
    field.show();
    QVERIFY(QTest::qWaitForWindowExposed(&field));
    const auto cursor = [&field] {
        return field.inputMethodQuery(Qt::ImCursorRectangle).toRect().center().x();
    };

    QVERIFY(cursor() > leading(field)->geometry().right());
    QTest::keyClicks(&field, QString(50, QLatin1Char('8')));
    QTRY_VERIFY(cursor() < trailing(field)->geometry().left());
}

void tst_FancyLineEdit::labelsLetTheMouseThrough()
{
    FancyLineEdit field;
    field.setLeadingText(m_hex);
    field.setTrailingText(m_bytes);
    field.resize(scaled(field, 160), field.sizeHint().height());

    QVERIFY(field.childAt(leading(field)->geometry().center()) == nullptr);
    QVERIFY(field.childAt(trailing(field)->geometry().center()) == nullptr);
}

ZEL_TEST_MAIN(tst_FancyLineEdit)
#include "tst_FancyLineEdit.moc"
