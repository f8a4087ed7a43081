#include "app/ZelCreator.h"

#include "models/MaskValidationModel.h"
#include "models/TokenValidationModel.h"
#include "tests/support/Activation.h"
#include "tests/support/WindowDriver.h"
#include "tests/support/ZelTest.h"
#include "widgets/HardwareTypeComboBox.h"
#include "widgets/PathSelector.h"

#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QSpinBox>
#include <QTabBar>
#include <QTabWidget>
#include <QTableView>
#include <QTemporaryDir>
#include <QToolButton>

#include <memory>

using namespace driver;

/// What an engineer does in a day: from a firmware image to a package and back, by hand.
class tst_MainJob : public ZelTest
{
    Q_OBJECT

private slots:
    void fromAnImageToAPackageAndBack_data();
    void fromAnImageToAPackageAndBack();

private:
    template <typename Widget>
    [[nodiscard]] Widget *find(const char *name) const
    {
        auto *widget = m_window->findChild<Widget *>(QLatin1String(name));
        if (widget == nullptr) {
            qFatal("no %s", name);
        }
        return widget;
    }

    void start(const QString &path = QString());
    void chooseTab(int index);
    void chooseFromFileMenu(Qt::Key key);
    void addRule(const char *addButton, const QStringList &cells);
    void fillValidationTab();
    void fillUpdateTab(const QString &image);
    void checkForm();

    std::unique_ptr<ZelCreator> m_window;
};

void tst_MainJob::start(const QString &path)
{
    m_window = std::make_unique<ZelCreator>(path);
    m_window->show();
    QVERIFY(activate(*m_window));
}

void tst_MainJob::chooseTab(int index)
{
    QTabBar *bar = find<QTabWidget>("tabWidget")->tabBar();
    QTest::mouseClick(bar, Qt::LeftButton, Qt::NoModifier, bar->tabRect(index).center());
}

void tst_MainJob::chooseFromFileMenu(Qt::Key key)
{
    QMenuBar *bar = m_window->menuBar();
    QTest::mouseClick(bar, Qt::LeftButton, Qt::NoModifier,
                      bar->actionGeometry(bar->actions().constFirst()).center());
    QTRY_VERIFY(QApplication::activePopupWidget() != nullptr);
    QTest::keyClick(QApplication::activePopupWidget(), key);
}

/// Types the cells one after the other, with Tab between them and Enter at the end.
void tst_MainJob::addRule(const char *addButton, const QStringList &cells)
{
    QTest::mouseClick(find<QToolButton>(addButton), Qt::LeftButton);
    for (int cell = 0; cell < cells.size(); ++cell) {
        QWidget *editor = QApplication::focusWidget();
        QTest::keyClick(editor, Qt::Key_A, Qt::ControlModifier);
        enter(editor, cells.at(cell));
        QTest::keyClick(editor, cell + 1 < cells.size() ? Qt::Key_Tab : Qt::Key_Return);
    }
    QTRY_VERIFY(qobject_cast<QTableView *>(QApplication::focusWidget()) != nullptr);
}

void tst_MainJob::fillValidationTab()
{
    chooseTab(0);
    addRule("addMaskRuleButton",
            {QStringLiteral("1801"), QStringLiteral("3"), QStringLiteral("RISCV-****")});
    addRule("addMaskRuleButton",
            {QStringLiteral("12"), QStringLiteral("0"), QStringLiteral("3.*é")});
    addRule("addTokenRuleButton", {QStringLiteral("B"), QStringLiteral("two words")});
    addRule("addTokenRuleButton", {QStringLiteral("A"), QStringLiteral("1")});

    for (const char *box : {"optionACheckBox", "optionBCheckBox"}) {
        QTest::mouseClick(find<QCheckBox>(box), Qt::LeftButton, Qt::NoModifier,
                          QPoint(8, find<QCheckBox>(box)->height() / 2));
    }
    retype(find<QLineEdit>("optionAMinimum"), QStringLiteral("01.04"));
    retype(find<QLineEdit>("optionAMaximum"), QStringLiteral("05.99"));
    retype(find<QLineEdit>("optionBMinimum"), QStringLiteral("2.3"));
    retype(find<QLineEdit>("optionBMaximum"), QStringLiteral("88.77"));
}

void tst_MainJob::fillUpdateTab(const QString &image)
{
    chooseTab(1);
    auto *path = find<QLineEdit>("pathField");
    retype(path, image);
    QTest::keyClick(path, Qt::Key_Tab);
    retype(find<QLineEdit>("firmwareAddress"), QStringLiteral("8000ffE0"));
    const auto retypeNumber = [this](const char *name, const QString &number) {
        retype(find<QSpinBox>(name)->findChild<QLineEdit *>(), number);
    };
    retypeNumber("maximumHardwareVersion", QStringLiteral("70"));
    retypeNumber("minimumHardwareVersion", QStringLiteral("20"));
    auto *type = find<HardwareTypeComboBox>("hardwareType");
    retype(type->lineEdit(), QStringLiteral("4294967295"));
    QTest::keyClick(type->lineEdit(), Qt::Key_Return);
}

void tst_MainJob::checkForm()
{
    QCOMPARE(m_window->findChild<MaskValidationModel *>()->rules(),
             (QList<MaskValidationRule>{{1801, 3, "RISCV-****"}, {12, 0, "3.*\xC3\xA9"}}));
    QCOMPARE(m_window->findChild<TokenValidationModel *>()->rules(),
             (QList<TokenValidationRule>{{"B", "two words"}, {"A", "1"}}));
    QVERIFY(find<QCheckBox>("optionACheckBox")->isChecked());
    QVERIFY(find<QCheckBox>("optionBCheckBox")->isChecked());
    QCOMPARE(find<QLineEdit>("optionAMinimum")->text(), QStringLiteral("01.04"));
    QCOMPARE(find<QLineEdit>("optionAMaximum")->text(), QStringLiteral("05.99"));
    QCOMPARE(find<QLineEdit>("optionBMinimum")->text(), QStringLiteral("02.03"));
    QCOMPARE(find<QLineEdit>("optionBMaximum")->text(), QStringLiteral("88.77"));
    QCOMPARE(find<QLineEdit>("firmwareAddress")->text(), QStringLiteral("8000FFE0"));
    QCOMPARE(find<QSpinBox>("minimumHardwareVersion")->value(), 20);
    QCOMPARE(find<QSpinBox>("maximumHardwareVersion")->value(), 70);
    QCOMPARE(find<HardwareTypeComboBox>("hardwareType")->currentData().toUInt(), 4294967295U);
}

void tst_MainJob::fromAnImageToAPackageAndBack_data()
{
    QTest::addColumn<QString>("image");
    QTest::newRow("RISC-V firmware") << QStringLiteral(ZEL_OPENSBI_IMAGE);
    QTest::newRow("PC firmware") << QStringLiteral(ZEL_SEABIOS_IMAGE);
}

void tst_MainJob::fromAnImageToAPackageAndBack()
{
    QFETCH(QString, image);

    QTemporaryDir folder;
    const QString package = QDir::toNativeSeparators(folder.filePath(QStringLiteral("update.zel")));
    QFile original(image);
    QVERIFY2(original.open(QIODevice::ReadOnly), qPrintable(image));
    const QByteArray bytes = original.readAll();

    start();
    fillValidationTab();
    fillUpdateTab(image);
    QCOMPARE(find<QLineEdit>("binarySize")->text(), QString::number(bytes.size()));
    answerFileDialog(package);
    QTest::mouseClick(find<QPushButton>("saveButton"), Qt::LeftButton);
    QCOMPARE(shownMessage(m_window.get()),
             QStringLiteral("ZEL file was successfully saved to\n%1.").arg(package));
    QTest::mouseClick(find<QWidget>("buttonBox")->findChild<QPushButton *>(), Qt::LeftButton);
    QVERIFY(!m_window->isVisible());

    start(package);
    QCOMPARE(m_window->windowTitle(), QStringLiteral("update - ZEL File Creator"));
    checkForm();
    QFile extracted(find<PathSelector>("firmwarePath")->path());
    QVERIFY(extracted.open(QIODevice::ReadOnly));
    QVERIFY(extracted.readAll() == bytes);

    addRule("addMaskRuleButton",
            {QStringLiteral("1"), QStringLiteral("1"), QStringLiteral("later")});
    QCOMPARE(m_window->windowTitle(), QStringLiteral("update* - ZEL File Creator"));
    const QString second = QDir::toNativeSeparators(folder.filePath(QStringLiteral("later.zel")));
    answerFileDialog(second);
    QTest::keyClick(m_window.get(), Qt::Key_S, Qt::ControlModifier);
    QTRY_VERIFY(QFile::exists(second));

    answerFileDialog(package);
    chooseFromFileMenu(Qt::Key_O);
    QTRY_COMPARE(m_window->windowTitle(), QStringLiteral("update - ZEL File Creator"));
    checkForm();
    answerFileDialog(second);
    chooseFromFileMenu(Qt::Key_O);
    QTRY_COMPARE(m_window->windowTitle(), QStringLiteral("later - ZEL File Creator"));
    QCOMPARE(m_window->findChild<MaskValidationModel *>()->rules().value(2),
             (MaskValidationRule{1, 1, "later"}));
    m_window.reset();
}

ZEL_TEST_MAIN(tst_MainJob)
#include "tst_MainJob.moc"
