#include "widgets/HardwareTypeComboBox.h"

#include "tests/support/Activation.h"
#include "tests/support/ZelTest.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QSignalSpy>
#include <QVBoxLayout>

#include <memory>
#include <vector>

namespace {

const QString kRefusal = QStringLiteral("The inserted hardware type must be uint 32.");
constexpr int kStandardTypes = 3;

/// A window with the combo box, filled with the standard types, and a field to go to.
class Form final : public QWidget
{
public:
    Form()
        : box(new HardwareTypeComboBox(this))
        , other(new QLineEdit(this))
        , errors(box, &HardwareTypeComboBox::errorOccurred)
    {
        auto *const layout = new QVBoxLayout(this);
        layout->addWidget(box);
        layout->addWidget(other);
        box->addItem(QStringLiteral("NIOS2 (1)"), 1U);
        box->addItem(QStringLiteral("RISC-V (2)"), 2U);
        box->addItem(QStringLiteral("Ethernet-Renesas (4)"), 4U);
    }

    HardwareTypeComboBox *const box;
    QLineEdit *const other;
    const QSignalSpy errors;
    std::vector<int> keysReceived;

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        keysReceived.push_back(event->key());
        QWidget::keyPressEvent(event);
    }
};

} // namespace

class tst_HardwareTypeComboBox : public ZelTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void typingAKnownNumberSelectsIt();
    void typingTheSelectedNumberShowsItsLabel();
    void typingANewNumberAddsItAtTheTop();
    void typingANumberTwiceAddsItOnce();
    void numbers_data();
    void numbers();
    void noNumberAndNoLabelReports_data();
    void noNumberAndNoLabelReports();
    void typingAFullLabelSelectsIt();
    void theFirstOfSeveralIsSelected();
    void nothingIsCompleted();

    void setHardwareTypeSelectsByNumber();
    void setHardwareTypeAddsAnUnknownNumberAtTheTop();
    void setHardwareTypeFillsAnEmptyBox();

    void returnFinishesNothing_data();
    void returnFinishesNothing();
    void returnIsHandledButNotAccepted_data();
    void returnIsHandledButNotAccepted();
    void returnReachesTheWindow();
    void otherKeysAreTheComboBoxesOwn();
    void everyKeyPressIsLogged();
    void openingTheListTakesWhatIsTyped();

private:
    void type(const QString &text);
    void leave();

    std::unique_ptr<Form> m_form;
    HardwareTypeComboBox *m_box = nullptr;
};

void tst_HardwareTypeComboBox::init()
{
    m_form = std::make_unique<Form>();
    m_box = m_form->box;
    m_form->show();
    QVERIFY(activate(*m_form));
    m_box->setFocus();
    QTRY_VERIFY(m_box->hasFocus());
}

void tst_HardwareTypeComboBox::cleanup()
{
    m_form.reset();
}

/// Replaces what the field shows, as a hand on the keyboard does.
void tst_HardwareTypeComboBox::type(const QString &text)
{
    QTest::keySequence(m_box, QKeySequence::SelectAll);
    QTest::keyClick(m_box, Qt::Key_Delete);
    QTest::keyClicks(m_box, text);
}

void tst_HardwareTypeComboBox::leave()
{
    QTest::keyClick(m_box, Qt::Key_Tab);
    QTRY_VERIFY(m_form->other->hasFocus());
}

void tst_HardwareTypeComboBox::typingAKnownNumberSelectsIt()
{
    type(QStringLiteral("4"));
    leave();

    QCOMPARE(m_box->currentText(), QStringLiteral("Ethernet-Renesas (4)"));
    QCOMPARE(m_box->currentData(), QVariant(4U));
    QCOMPARE(m_box->count(), kStandardTypes);
    QCOMPARE(m_form->errors.count(), 0);
}

void tst_HardwareTypeComboBox::typingTheSelectedNumberShowsItsLabel()
{
    type(QStringLiteral("1"));
    leave();

    QCOMPARE(m_box->currentText(), QStringLiteral("NIOS2 (1)"));
    QCOMPARE(m_box->currentIndex(), 0);
    QCOMPARE(m_box->count(), kStandardTypes);
}

void tst_HardwareTypeComboBox::typingANewNumberAddsItAtTheTop()
{
    type(QStringLiteral("7"));
    leave();

    QCOMPARE(m_box->count(), kStandardTypes + 1);
    QCOMPARE(m_box->currentIndex(), 0);
    QCOMPARE(m_box->itemText(0), QStringLiteral("7"));
    QCOMPARE(m_box->itemData(0, 256), QVariant(7U));
    QVERIFY(m_box->itemIcon(0).isNull());
    QCOMPARE(m_box->currentText(), QStringLiteral("7"));
    QCOMPARE(m_form->errors.count(), 0);
}

void tst_HardwareTypeComboBox::typingANumberTwiceAddsItOnce()
{
    type(QStringLiteral("7"));
    leave();
    m_box->setCurrentIndex(2);
    m_box->setFocus();
    type(QStringLiteral("7"));
    leave();

    QCOMPARE(m_box->count(), kStandardTypes + 1);
    QCOMPARE(m_box->currentIndex(), 0);
}

void tst_HardwareTypeComboBox::numbers_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<quint32>("value");

    QTest::newRow("zero") << "0" << 0U;
    QTest::newRow("largest") << "4294967295" << 4294967295U;
    QTest::newRow("beyond the signed range") << "2147483648" << 2147483648U;
    QTest::newRow("leading zeros") << "007" << 7U;
    QTest::newRow("blanks around it") << " 7 " << 7U;
}

void tst_HardwareTypeComboBox::numbers()
{
    QFETCH(QString, typed);
    QFETCH(quint32, value);

    type(typed);
    leave();

    QCOMPARE(m_box->currentIndex(), 0);
    QCOMPARE(m_box->itemText(0), typed);
    QCOMPARE(m_box->currentData(), QVariant(value));
    QCOMPARE(m_form->errors.count(), 0);
}

void tst_HardwareTypeComboBox::noNumberAndNoLabelReports_data()
{
    QTest::addColumn<QString>("typed");

    QTest::newRow("letters") << "abc";
    QTest::newRow("two to the power of 32") << "4294967296";
    QTest::newRow("negative") << "-1";
    QTest::newRow("fraction") << "1.5";
    QTest::newRow("hexadecimal") << "0x10";
    QTest::newRow("two numbers") << "1 2";
    QTest::newRow("empty") << "";
    QTest::newRow("beginning of a label") << "RISC";
    QTest::newRow("label in the wrong case") << "risc-v (2)";
    QTest::newRow("label with a blank too many") << "RISC-V (2) ";
}

void tst_HardwareTypeComboBox::noNumberAndNoLabelReports()
{
    QFETCH(QString, typed);
    m_box->setCurrentIndex(2);
    const QSignalSpy selected(m_box, qOverload<int>(&QComboBox::currentIndexChanged));

    type(typed);
    leave();

    QCOMPARE(m_form->errors.count(), 1);
    QCOMPARE(m_form->errors.at(0).at(0).toString(), kRefusal);
    QCOMPARE(m_box->currentText(), typed);
    QCOMPARE(m_box->currentIndex(), 2);
    QCOMPARE(m_box->currentData(), QVariant(4U));
    QCOMPARE(selected.count(), 0);
    QCOMPARE(m_box->count(), kStandardTypes);
}

void tst_HardwareTypeComboBox::typingAFullLabelSelectsIt()
{
    type(QStringLiteral("RISC-V (2)"));
    leave();

    QCOMPARE(m_box->currentIndex(), 1);
    QCOMPARE(m_box->count(), kStandardTypes);
    QCOMPARE(m_form->errors.count(), 0);
}

void tst_HardwareTypeComboBox::theFirstOfSeveralIsSelected()
{
    m_box->addItem(QStringLiteral("Twin (4)"), 4U);
    m_box->addItem(QStringLiteral("RISC-V (2)"), 22U);

    type(QStringLiteral("4"));
    leave();
    QCOMPARE(m_box->currentIndex(), 2);

    m_box->setFocus();
    type(QStringLiteral("RISC-V (2)"));
    leave();
    QCOMPARE(m_box->currentIndex(), 1);
    QCOMPARE(m_box->currentData(), QVariant(2U));
}

void tst_HardwareTypeComboBox::nothingIsCompleted()
{
    type(QStringLiteral("123"));
    leave();
    m_box->setFocus();

    type(QStringLiteral("12"));
    QCOMPARE(m_box->currentText(), QStringLiteral("12"));
    leave();
    QCOMPARE(m_box->currentData(), QVariant(12U));

    m_box->setFocus();
    type(QStringLiteral("e"));
    QCOMPARE(m_box->currentText(), QStringLiteral("e"));
}

void tst_HardwareTypeComboBox::setHardwareTypeSelectsByNumber()
{
    m_box->setHardwareType(QStringLiteral("some other label"), 4);

    QCOMPARE(m_box->currentText(), QStringLiteral("Ethernet-Renesas (4)"));
    QCOMPARE(m_box->count(), kStandardTypes);
}

void tst_HardwareTypeComboBox::setHardwareTypeAddsAnUnknownNumberAtTheTop()
{
    m_box->setHardwareType(QStringLiteral("Prototype (99)"), 99);

    QCOMPARE(m_box->count(), kStandardTypes + 1);
    QCOMPARE(m_box->currentIndex(), 0);
    QCOMPARE(m_box->currentText(), QStringLiteral("Prototype (99)"));
    QCOMPARE(m_box->currentData(), QVariant(99U));
    QVERIFY(m_box->itemIcon(0).isNull());
}

void tst_HardwareTypeComboBox::setHardwareTypeFillsAnEmptyBox()
{
    HardwareTypeComboBox box;
    QCOMPARE(box.count(), 0);

    box.setHardwareType(QStringLiteral("5"), 5);

    QCOMPARE(box.count(), 1);
    QCOMPARE(box.currentData(), QVariant(5U));
}

void tst_HardwareTypeComboBox::returnFinishesNothing_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("Return") << Qt::Key_Return;
    QTest::newRow("Enter") << Qt::Key_Enter;
}

void tst_HardwareTypeComboBox::returnFinishesNothing()
{
    QFETCH(Qt::Key, key);
    type(QStringLiteral("7"));

    QTest::keyClick(m_box, key);
    QCOMPARE(m_box->count(), kStandardTypes);
    QCOMPARE(m_box->currentText(), QStringLiteral("7"));

    leave();
    QCOMPARE(m_box->count(), kStandardTypes + 1);
}

void tst_HardwareTypeComboBox::returnIsHandledButNotAccepted_data()
{
    returnFinishesNothing_data();
}

void tst_HardwareTypeComboBox::returnIsHandledButNotAccepted()
{
    QFETCH(Qt::Key, key);
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
    press.accept();

    QVERIFY(m_box->event(&press));
    QVERIFY(!press.isAccepted());
}

void tst_HardwareTypeComboBox::returnReachesTheWindow()
{
    QTest::keyClick(m_box, Qt::Key_Return);
    QTest::keyClick(m_box, Qt::Key_Enter);
    QTest::keyClick(m_box, Qt::Key_7);

    QCOMPARE(m_form->keysReceived, (std::vector<int>{Qt::Key_Return, Qt::Key_Enter}));
}

void tst_HardwareTypeComboBox::otherKeysAreTheComboBoxesOwn()
{
    QTest::keyClick(m_box, Qt::Key_Down);
    QCOMPARE(m_box->currentIndex(), 1);
    QTest::keyClick(m_box, Qt::Key_End, Qt::ControlModifier);
    QTest::keyClick(m_box, Qt::Key_Up);
    QCOMPARE(m_box->currentIndex(), 0);
}

void tst_HardwareTypeComboBox::everyKeyPressIsLogged()
{
    QTest::ignoreMessage(QtDebugMsg, "Key press: 0x00000037");
    QTest::keyClick(m_box, Qt::Key_7);
    QTest::ignoreMessage(QtDebugMsg, "Key press: 0x01000015");
    QTest::keyClick(m_box, Qt::Key_Down);
    QTest::ignoreMessage(QtDebugMsg, "Key press: 0x01000004");
    QTest::keyClick(m_box, Qt::Key_Return);
}

void tst_HardwareTypeComboBox::openingTheListTakesWhatIsTyped()
{
    type(QStringLiteral("7"));

    m_box->showPopup();
    QTRY_VERIFY(m_box->view()->isVisible());
    QCOMPARE(m_box->count(), kStandardTypes + 1);
    QCOMPARE(m_box->currentData(), QVariant(7U));

    QCOMPARE(m_box->view()->currentIndex().row(), 0);
    QTest::keyClick(m_box->view(), Qt::Key_Down);
    QTest::keyClick(m_box->view(), Qt::Key_Return);
    QTRY_COMPARE(m_box->currentText(), QStringLiteral("NIOS2 (1)"));
    QCOMPARE(m_form->errors.count(), 0);
}

ZEL_TEST_MAIN(tst_HardwareTypeComboBox)
#include "tst_HardwareTypeComboBox.moc"
