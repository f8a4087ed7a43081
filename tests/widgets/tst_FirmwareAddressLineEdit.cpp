#include "widgets/FirmwareAddressLineEdit.h"

#include "tests/support/Activation.h"
#include "tests/support/ZelTest.h"

#include <QApplication>
#include <QClipboard>
#include <QRegExp>
#include <QRegExpValidator>
#include <QSignalSpy>

#include <memory>

class tst_FirmwareAddressLineEdit : public ZelTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void copyAddsThePrefix_data();
    void copyAddsThePrefix();
    void copyTakesTheWholeFieldWhateverIsSelected();
    void everyCopyKeyCounts();
    void cutCopiesAndClears();
    void cutCanBeUndone();
    void everyCutKeyCounts();
    void cutLeavesAReadOnlyFieldAlone();
    void aDisabledFieldTakesNoKeys();

    void pasteOfAPrefixedAddress_data();
    void pasteOfAPrefixedAddress();
    void pasteOfNoAddressReports_data();
    void pasteOfNoAddressReports();
    void pasteReplacesTheWholeField();
    void pasteCanBeUndone();
    void everyPasteKeyCounts();
    void pasteWithoutPrefixIsOrdinary();
    void pasteWithoutPrefixIsHeldBackByTheValidatorOnly_data();
    void pasteWithoutPrefixIsHeldBackByTheValidatorOnly();
    void pasteLeavesAReadOnlyFieldAlone();
    void pasteWithoutValidatorTakesAnyText();
    void whatIsNoKeyPastesTheOrdinaryWay();

    void typingTakesHexadecimalDigitsOnly();
    void typingStopsAtEightDigits();

private:
    static QString clipboard() { return QGuiApplication::clipboard()->text(); }
    static void setClipboard(const QString &text) { QGuiApplication::clipboard()->setText(text); }

    std::unique_ptr<FirmwareAddressLineEdit> m_field;
    std::unique_ptr<QSignalSpy> m_errors;
};

void tst_FirmwareAddressLineEdit::init()
{
    m_field = std::make_unique<FirmwareAddressLineEdit>();
    m_field->setLeadingText(QStringLiteral("0x"));
    m_field->setText(QStringLiteral("0"));
    m_field->setValidator(
        new QRegExpValidator(QRegExp(QStringLiteral("^[A-Fa-f0-9]{1,8}$")), m_field.get()));
    m_errors = std::make_unique<QSignalSpy>(m_field.get(), &FirmwareAddressLineEdit::errorOccurred);
    m_field->show();
    QVERIFY(activate(*m_field));
    setClipboard(QStringLiteral("untouched"));
}

void tst_FirmwareAddressLineEdit::cleanup()
{
    m_errors.reset();
    m_field.reset();
}

void tst_FirmwareAddressLineEdit::copyAddsThePrefix_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("copied");

    QTest::newRow("digits") << "00FF"
                            << "0x00FF";
    QTest::newRow("lower case digits") << "ab12"
                                       << "0xab12";
    QTest::newRow("prefix is there already") << "0x12"
                                             << "0x12";
    QTest::newRow("upper case prefix does not count") << "0X12"
                                                      << "0x0X12";
    QTest::newRow("empty field") << ""
                                 << "0x";
}

void tst_FirmwareAddressLineEdit::copyAddsThePrefix()
{
    QFETCH(QString, text);
    QFETCH(QString, copied);
    m_field->setText(text);

    QTest::keySequence(m_field.get(), QKeySequence::Copy);

    QCOMPARE(clipboard(), copied);
    QCOMPARE(m_field->text(), text);
}

void tst_FirmwareAddressLineEdit::copyTakesTheWholeFieldWhateverIsSelected()
{
    m_field->setText(QStringLiteral("1A2B"));
    m_field->setSelection(1, 2);

    QTest::keySequence(m_field.get(), QKeySequence::Copy);

    QCOMPARE(clipboard(), QStringLiteral("0x1A2B"));
    QCOMPARE(m_field->selectedText(), QStringLiteral("A2"));
}

void tst_FirmwareAddressLineEdit::everyCopyKeyCounts()
{
    const auto keys = QKeySequence::keyBindings(QKeySequence::Copy);
    QVERIFY(keys.size() > 1);
    for (const QKeySequence &key : keys) {
        setClipboard(QString());
        QTest::keySequence(m_field.get(), key);
        QCOMPARE(clipboard(), QStringLiteral("0x0"));
    }
}

void tst_FirmwareAddressLineEdit::cutCopiesAndClears()
{
    m_field->setText(QStringLiteral("00FF"));
    m_field->setSelection(0, 1);

    QTest::keySequence(m_field.get(), QKeySequence::Cut);

    QCOMPARE(clipboard(), QStringLiteral("0x00FF"));
    QCOMPARE(m_field->text(), QString());
}

void tst_FirmwareAddressLineEdit::cutCanBeUndone()
{
    m_field->setText(QStringLiteral("00FF"));

    QTest::keySequence(m_field.get(), QKeySequence::Cut);
    QTest::keySequence(m_field.get(), QKeySequence::Undo);

    QCOMPARE(m_field->text(), QStringLiteral("00FF"));
}

void tst_FirmwareAddressLineEdit::everyCutKeyCounts()
{
    const auto keys = QKeySequence::keyBindings(QKeySequence::Cut);
    QVERIFY(keys.size() > 1);
    for (const QKeySequence &key : keys) {
        m_field->setText(QStringLiteral("AB"));
        setClipboard(QString());
        QTest::keySequence(m_field.get(), key);
        QCOMPARE(clipboard(), QStringLiteral("0xAB"));
        QCOMPARE(m_field->text(), QString());
    }
}

void tst_FirmwareAddressLineEdit::cutLeavesAReadOnlyFieldAlone()
{
    m_field->setText(QStringLiteral("00FF"));
    m_field->setReadOnly(true);
    m_field->selectAll();

    QTest::keySequence(m_field.get(), QKeySequence::Cut);

    QCOMPARE(m_field->text(), QStringLiteral("00FF"));
    QCOMPARE(clipboard(), QStringLiteral("untouched"));
}

void tst_FirmwareAddressLineEdit::aDisabledFieldTakesNoKeys()
{
    QWidget window;
    m_field->setParent(&window);
    m_field->setText(QStringLiteral("00FF"));
    m_field->setEnabled(false);
    m_field->show();
    window.show();
    QVERIFY(activate(window));

    QTest::keySequence(window.windowHandle(), QKeySequence(QKeySequence::Cut));

    QCOMPARE(m_field->text(), QStringLiteral("00FF"));
    QCOMPARE(clipboard(), QStringLiteral("untouched"));
    m_field->setParent(nullptr);
}

void tst_FirmwareAddressLineEdit::pasteOfAPrefixedAddress_data()
{
    QTest::addColumn<QString>("pasted");
    QTest::addColumn<QString>("text");

    QTest::newRow("four digits") << "0x1A2B"
                                 << "1A2B";
    QTest::newRow("eight digits") << "0x0123abCD"
                                  << "0123abCD";
    QTest::newRow("first of two addresses") << "0x1A0x2B"
                                            << "1A";
    QTest::newRow("doubled prefix") << "0x0x12"
                                    << "12";
    QTest::newRow("blank part is dropped") << "0x 0x2B"
                                           << "2B";
    QTest::newRow("part of blanks and tabs is dropped") << "0x \t 0x\t0xFF"
                                                        << "FF";
    QTest::newRow("what follows the first address is not looked at") << "0xFF0xnonsense"
                                                                     << "FF";
}

void tst_FirmwareAddressLineEdit::pasteOfAPrefixedAddress()
{
    QFETCH(QString, pasted);
    QFETCH(QString, text);
    setClipboard(pasted);

    QTest::keySequence(m_field.get(), QKeySequence::Paste);

    QCOMPARE(m_field->text(), text);
    QCOMPARE(m_errors->count(), 0);
}

void tst_FirmwareAddressLineEdit::pasteOfNoAddressReports_data()
{
    QTest::addColumn<QString>("pasted");

    QTest::newRow("nine digits") << "0x123456789";
    QTest::newRow("no hexadecimal digits") << "0xZZ";
    QTest::newRow("upper case prefix after the prefix") << "0x0X12";
    QTest::newRow("trailing blank counts") << "0x1A ";
    QTest::newRow("leading blank counts") << "0x 1A";
    QTest::newRow("line feed is not dropped") << "0x\n0x1A";
    QTest::newRow("first part is wrong, second is right") << "0xZZ0x1A";
    QTest::newRow("prefix alone") << "0x";
    QTest::newRow("prefixes and blanks alone") << "0x 0x\t0x";
}

void tst_FirmwareAddressLineEdit::pasteOfNoAddressReports()
{
    QFETCH(QString, pasted);
    m_field->setText(QStringLiteral("C0DE"));
    setClipboard(pasted);

    QTest::keySequence(m_field.get(), QKeySequence::Paste);

    QCOMPARE(m_errors->count(), 1);
    QCOMPARE(m_errors->at(0).at(0).toString(), QStringLiteral("Firmware address is not valid."));
    QCOMPARE(m_field->text(), QStringLiteral("C0DE"));
}

void tst_FirmwareAddressLineEdit::pasteReplacesTheWholeField()
{
    m_field->setText(QStringLiteral("12345678"));
    m_field->setCursorPosition(3);
    setClipboard(QStringLiteral("0xAB"));
    const QSignalSpy changes(m_field.get(), &QLineEdit::textChanged);

    QTest::keySequence(m_field.get(), QKeySequence::Paste);

    QCOMPARE(m_field->text(), QStringLiteral("AB"));
    QCOMPARE(m_field->cursorPosition(), 2);
    QCOMPARE(changes.count(), 1);
}

void tst_FirmwareAddressLineEdit::pasteCanBeUndone()
{
    m_field->setText(QStringLiteral("12345678"));
    setClipboard(QStringLiteral("0xAB"));

    QTest::keySequence(m_field.get(), QKeySequence::Paste);
    QTest::keySequence(m_field.get(), QKeySequence::Undo);

    QCOMPARE(m_field->text(), QStringLiteral("12345678"));
}

void tst_FirmwareAddressLineEdit::everyPasteKeyCounts()
{
    const auto keys = QKeySequence::keyBindings(QKeySequence::Paste);
    QVERIFY(keys.size() > 1);
    for (const QKeySequence &key : keys) {
        m_field->setText(QStringLiteral("0"));
        setClipboard(QStringLiteral("0x1A2B"));
        QTest::keySequence(m_field.get(), key);
        QCOMPARE(m_field->text(), QStringLiteral("1A2B"));
    }
}

void tst_FirmwareAddressLineEdit::pasteWithoutPrefixIsOrdinary()
{
    m_field->setText(QStringLiteral("1234"));
    m_field->setSelection(1, 2);
    setClipboard(QStringLiteral("FF"));

    QTest::keySequence(m_field.get(), QKeySequence::Paste);

    QCOMPARE(m_field->text(), QStringLiteral("1FF4"));
}

void tst_FirmwareAddressLineEdit::pasteWithoutPrefixIsHeldBackByTheValidatorOnly_data()
{
    QTest::addColumn<QString>("pasted");

    QTest::newRow("no digits") << "XYZ";
    QTest::newRow("too many digits") << "123456789";
    QTest::newRow("upper case prefix") << "0X1A";
    QTest::newRow("blank before the prefix") << " 0x1A";
}

void tst_FirmwareAddressLineEdit::pasteWithoutPrefixIsHeldBackByTheValidatorOnly()
{
    QFETCH(QString, pasted);
    setClipboard(pasted);

    QTest::keySequence(m_field.get(), QKeySequence::Paste);

    QCOMPARE(m_field->text(), QStringLiteral("0"));
    QCOMPARE(m_errors->count(), 0);
}

void tst_FirmwareAddressLineEdit::pasteLeavesAReadOnlyFieldAlone()
{
    m_field->setReadOnly(true);
    setClipboard(QStringLiteral("0x1A"));
    QTest::keySequence(m_field.get(), QKeySequence::Paste);
    setClipboard(QStringLiteral("0xZZ"));
    QTest::keySequence(m_field.get(), QKeySequence::Paste);

    QCOMPARE(m_field->text(), QStringLiteral("0"));
    QCOMPARE(m_errors->count(), 0);
}

void tst_FirmwareAddressLineEdit::pasteWithoutValidatorTakesAnyText()
{
    m_field->setValidator(nullptr);
    setClipboard(QStringLiteral("0xanything"));

    QTest::keySequence(m_field.get(), QKeySequence::Paste);

    QCOMPARE(m_field->text(), QStringLiteral("anything"));
}

void tst_FirmwareAddressLineEdit::whatIsNoKeyPastesTheOrdinaryWay()
{
    setClipboard(QStringLiteral("0x1A"));
    m_field->paste();
    QCOMPARE(m_field->text(), QStringLiteral("0"));
    QCOMPARE(m_errors->count(), 0);

    m_field->setText(QStringLiteral("1A2B"));
    m_field->setSelection(0, 2);
    m_field->copy();
    QCOMPARE(clipboard(), QStringLiteral("1A"));
}

void tst_FirmwareAddressLineEdit::typingTakesHexadecimalDigitsOnly()
{
    m_field->clear();
    QTest::keyClicks(m_field.get(), QStringLiteral("g0x1-A .f"));
    QCOMPARE(m_field->text(), QStringLiteral("01Af"));
}

void tst_FirmwareAddressLineEdit::typingStopsAtEightDigits()
{
    m_field->clear();
    QTest::keyClicks(m_field.get(), QStringLiteral("123456789"));
    QCOMPARE(m_field->text(), QStringLiteral("12345678"));
}

ZEL_TEST_MAIN(tst_FirmwareAddressLineEdit)
#include "tst_FirmwareAddressLineEdit.moc"
