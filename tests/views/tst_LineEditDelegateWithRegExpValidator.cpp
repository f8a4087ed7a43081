#include "views/LineEditDelegateWithRegExpValidator.h"

#include "tests/support/ZelTest.h"

#include <QApplication>
#include <QLineEdit>
#include <QRegExpValidator>
#include <QSignalSpy>
#include <QStandardItemModel>

class tst_LineEditDelegateWithRegExpValidator : public ZelTest
{
    Q_OBJECT

private slots:
    void editorIsALineEditWithThePrompt();
    void eachEditorHasItsValidator();
    void accepts_data();
    void accepts();
    void typedTextIsGuarded();
    void showsTheTextOfTheModel_data();
    void showsTheTextOfTheModel();
    void storesTheText();
    void storesAnUnchangedTextNotAgain_data();
    void storesAnUnchangedTextNotAgain();
    void longTextIsNotCut();
    void editorTakesTheCell();
};

namespace {

/// The editor of the one cell of a model.
struct Editing
{
    explicit Editing(const QVariant &value, const char *expression = ".+")
        : delegate(nullptr, QRegExp(QLatin1String(expression)), QStringLiteral("Please enter"))
    {
        model.setData(index, value);
        lineEdit = qobject_cast<QLineEdit *>(
            delegate.createEditor(&parent, QStyleOptionViewItem(), index));
        delegate.setEditorData(lineEdit, index);
    }

    QWidget parent;
    QStandardItemModel model{1, 1};
    QModelIndex index = model.index(0, 0);
    LineEditDelegateWithRegExpValidator delegate;
    QLineEdit *lineEdit = nullptr;
};

} // namespace

void tst_LineEditDelegateWithRegExpValidator::editorIsALineEditWithThePrompt()
{
    const Editing editing(QStringLiteral("text"));
    QVERIFY(editing.lineEdit);
    QCOMPARE(editing.lineEdit->parentWidget(), &editing.parent);
    QCOMPARE(editing.lineEdit->placeholderText(), QStringLiteral("Please enter"));
}

void tst_LineEditDelegateWithRegExpValidator::eachEditorHasItsValidator()
{
    Editing editing(QString(), "[A-Za-z]");
    const auto *other = qobject_cast<QLineEdit *>(
        editing.delegate.createEditor(&editing.parent, QStyleOptionViewItem(), editing.index));
    const auto *first = qobject_cast<const QRegExpValidator *>(editing.lineEdit->validator());
    const auto *second = qobject_cast<const QRegExpValidator *>(other->validator());
    QVERIFY(first && second && first != second);
    QCOMPARE(first->regExp(), QRegExp(QStringLiteral("[A-Za-z]")));
    QCOMPARE(second->regExp(), first->regExp());
}

void tst_LineEditDelegateWithRegExpValidator::accepts_data()
{
    QTest::addColumn<QByteArray>("expression");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("acceptable");

    const QByteArray letter("[A-Za-z]");
    const QByteArray any(".+");
    QTest::newRow("token, letter") << letter << QStringLiteral("a") << true;
    QTest::newRow("token, capital") << letter << QStringLiteral("Z") << true;
    QTest::newRow("token, two letters") << letter << QStringLiteral("ab") << false;
    QTest::newRow("token, digit") << letter << QStringLiteral("1") << false;
    QTest::newRow("token, umlaut") << letter << QString(QChar(0xe4)) << false;
    QTest::newRow("token, nothing") << letter << QString() << false;
    QTest::newRow("mask, nothing") << any << QString() << false;
    QTest::newRow("mask, one character") << any << QStringLiteral("*") << true;
    QTest::newRow("mask, blank") << any << QStringLiteral(" ") << true;
    QTest::newRow("mask, many") << any << QStringLiteral("A*b ;=\t\n") << true;
}

void tst_LineEditDelegateWithRegExpValidator::accepts()
{
    QFETCH(QByteArray, expression);
    QFETCH(QString, text);
    QFETCH(bool, acceptable);

    const Editing editing(QString(), expression.constData());
    editing.lineEdit->setText(text);
    QCOMPARE(editing.lineEdit->hasAcceptableInput(), acceptable);
}

void tst_LineEditDelegateWithRegExpValidator::typedTextIsGuarded()
{
    const Editing editing(QString(), "[A-Za-z]");
    QTest::keyClicks(editing.lineEdit, QStringLiteral("1 x2y"));
    QCOMPARE(editing.lineEdit->text(), QStringLiteral("x"));
}

void tst_LineEditDelegateWithRegExpValidator::showsTheTextOfTheModel_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("shown");

    QTest::newRow("bytes") << QVariant(QByteArrayLiteral("A*")) << QStringLiteral("A*");
    QTest::newRow("UTF-8") << QVariant(QByteArrayLiteral("\xc3\xa4")) << QString(QChar(0xe4));
    QTest::newRow("markup") << QVariant(QByteArrayLiteral("<b>x</b>"))
                            << QStringLiteral("<b>x</b>");
    QTest::newRow("nothing") << QVariant() << QString();
}

void tst_LineEditDelegateWithRegExpValidator::showsTheTextOfTheModel()
{
    QFETCH(QVariant, value);
    QFETCH(QString, shown);

    QCOMPARE(Editing(value).lineEdit->text(), shown);
}

void tst_LineEditDelegateWithRegExpValidator::storesTheText()
{
    Editing editing(QByteArrayLiteral("old"));
    editing.lineEdit->setText(QStringLiteral("new"));
    editing.delegate.setModelData(editing.lineEdit, &editing.model, editing.index);
    QCOMPARE(editing.index.data(Qt::EditRole), QVariant(QStringLiteral("new")));
}

void tst_LineEditDelegateWithRegExpValidator::storesAnUnchangedTextNotAgain_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("plain") << QByteArrayLiteral("plain");
    QTest::newRow("no UTF-8") << QByteArrayLiteral("\xff\xfe");
    QTest::newRow("zero byte") << QByteArrayLiteral("a\x00z");
    QTest::newRow("line feed") << QByteArrayLiteral("a\r\nb\t\x01");
    QTest::newRow("empty") << QByteArray();
}

void tst_LineEditDelegateWithRegExpValidator::storesAnUnchangedTextNotAgain()
{
    QFETCH(QByteArray, bytes);

    Editing editing(bytes);
    const QSignalSpy changed(&editing.model, &QAbstractItemModel::dataChanged);
    editing.delegate.setModelData(editing.lineEdit, &editing.model, editing.index);
    QCOMPARE(changed.count(), 0);
    QCOMPARE(editing.index.data(Qt::EditRole), QVariant(bytes));
}

void tst_LineEditDelegateWithRegExpValidator::longTextIsNotCut()
{
    const QByteArray longText(40000, 'x');
    Editing editing(longText);
    editing.lineEdit->setText(editing.lineEdit->text() + QLatin1Char('y'));
    editing.delegate.setModelData(editing.lineEdit, &editing.model, editing.index);
    QCOMPARE(editing.index.data(Qt::EditRole).toByteArray(), longText + 'y');
}

void tst_LineEditDelegateWithRegExpValidator::editorTakesTheCell()
{
    const Editing editing(QString{});
    QStyleOptionViewItem option;
    option.rect = QRect(3, 4, 90, 31);
    editing.delegate.updateEditorGeometry(editing.lineEdit, option, editing.index);
    QCOMPARE(editing.lineEdit->geometry(), QRect(3, 4, 90, 31));
}

ZEL_TEST_MAIN(tst_LineEditDelegateWithRegExpValidator)
#include "tst_LineEditDelegateWithRegExpValidator.moc"
