#include "tests/support/ZelTest.h"
#include "widgets/FirmwareAddressLineEdit.h"
#include "widgets/WholeTextValidator.h"

#include <QApplication>
#include <QClipboard>
#include <QLineEdit>

class tst_WholeTextValidator final : public ZelTest
{
    Q_OBJECT

private slots:
    void validate_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QValidator::State>("expected");
        QTest::newRow("empty") << QString() << QValidator::Intermediate;
        QTest::newRow("a digit") << QStringLiteral("8") << QValidator::Acceptable;
        QTest::newRow("all digits") << QStringLiteral("80aBcDeF") << QValidator::Acceptable;
        QTest::newRow("a digit more") << QStringLiteral("80aBcDeF0") << QValidator::Invalid;
        QTest::newRow("no digit") << QStringLiteral("8g") << QValidator::Invalid;
        QTest::newRow("line break alone") << QStringLiteral("\n") << QValidator::Invalid;
        QTest::newRow("line break behind") << QStringLiteral("8000000\n") << QValidator::Invalid;
        QTest::newRow("line break within") << QStringLiteral("80\n00") << QValidator::Invalid;
        QTest::newRow("two line breaks") << QStringLiteral("80\n\n") << QValidator::Invalid;
    }
    void validate()
    {
        QFETCH(QString, text);
        QFETCH(QValidator::State, expected);
        int position = 0;
        QCOMPARE(m_validator.validate(text, position), expected);
    }

    /// The line break would count as the eighth digit.
    void aPastedLineBreakDoesNotEnterTheAddressField()
    {
        FirmwareAddressLineEdit field;
        field.setValidator(&m_validator);
        field.setText(QStringLiteral("12"));
        field.selectAll();
        QGuiApplication::clipboard()->setText(QStringLiteral("8000000\n"));
        QTest::keyClick(&field, Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(field.text(), QStringLiteral("12"));
    }

private:
    const WholeTextValidator m_validator{QRegularExpression(QStringLiteral("^[A-Fa-f0-9]{1,8}$"))};
};

ZEL_TEST_MAIN(tst_WholeTextValidator)

#include "tst_WholeTextValidator.moc"
