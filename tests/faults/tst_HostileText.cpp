#include "app/ZelCreator.h"

#include "tests/support/DesktopWindows.h"
#include "tests/support/WindowDriver.h"
#include "tests/support/ZelTest.h"
#include "tlv/FileNameRules_p.h"
#include "tlv/ZelFile.h"
#include "views/RuleTableView.h"
#include "widgets/PathSelector.h"

#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QTabWidget>
#include <QTemporaryDir>

#include <memory>

using namespace driver;

namespace {

/// Whether the system has files of that name.
bool isFileName(const QString &name)
{
    return tlv::isPlainFileName(name, tlv::nativeFileNames());
}

} // namespace

/// Text of a package is a stranger's: it is shown as it stands, and as nothing else.
class tst_HostileText : public ZelTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void isShownAsItStands_data();
    void isShownAsItStands();
    void isNoMarkupInMessages_data();
    void isNoMarkupInMessages();
    void titleShowsTheNameOfThePackage_data();
    void titleShowsTheNameOfThePackage();

private:
    /// Opens a package whose every text is @p text.
    void open(const QString &packageName, const QByteArray &text, const QString &firmwareName);

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<ZelCreator> m_window;
};

void tst_HostileText::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
}

void tst_HostileText::cleanup()
{
    m_window.reset();
    m_folder.reset();
}

void tst_HostileText::open(const QString &packageName, const QByteArray &text,
                           const QString &firmwareName)
{
    QFile firmware(m_folder->filePath(firmwareName));
    QVERIFY(firmware.open(QIODevice::WriteOnly));
    QCOMPARE(firmware.write("firmware"), 8);
    firmware.close();
    tlv::ZelFile package;
    package.setMaskRules({{1598, 1, text}});
    package.setTokenRules({{text, text}});
    package.setSoftwareOptions({});
    package.setHardware(0, 0, 1, 1);
    package.setFirmwareFile(firmware.fileName(), 0x80000000U);
    QString path = m_folder->filePath(packageName);
    QString message;
    QVERIFY2(package.save(path, message), qPrintable(message));
    m_window = std::make_unique<ZelCreator>(path);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
}

void tst_HostileText::isShownAsItStands_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("bold") << QByteArrayLiteral("<b>bold</b>");
    QTest::newRow("picture") << QByteArrayLiteral("<img src='file:///etc/passwd'>");
    QTest::newRow("remote picture") << QByteArrayLiteral("<img src=\"http://example.invalid/\">");
    QTest::newRow("link") << QByteArrayLiteral("<a href='file:///'>click</a>");
    QTest::newRow("document") << QByteArrayLiteral("<!DOCTYPE html><html><h1>large</h1></html>");
    QTest::newRow("entity") << QByteArrayLiteral("&lt;b&gt;");
    QTest::newRow("mnemonic") << QByteArrayLiteral("&File");
    QTest::newRow("place markers") << QByteArrayLiteral("%1 %2 %99");
}

void tst_HostileText::isShownAsItStands()
{
    QFETCH(QByteArray, text);

    open(QStringLiteral("pkg.zel"), text, QStringLiteral("fw.bin"));
    const QString shown = QString::fromUtf8(text);
    for (RuleTableView *table : m_window->findChildren<RuleTableView *>()) {
        const QModelIndex cell = table->model()->index(
            0, table->objectName() == QLatin1String("maskValidationTable") ? 2 : 0);
        QCOMPARE(cell.data().toString(), shown);
        QVERIFY(!cell.data(Qt::ToolTipRole).isValid());
        // A cell that drew markup would be narrower than the letters of the tags.
        const int letters = table->fontMetrics().horizontalAdvance(shown);
        QStyleOptionViewItem option;
        option.initFrom(table);
        option.font = table->font();
        option.fontMetrics = table->fontMetrics();
        QVERIFY(table->itemDelegate(cell)->sizeHint(option, cell).width() >= letters);
    }
    // Of the labels, only those may hold it that show plain text; of the tool tips, none.
    for (const QWidget *widget : m_window->findChildren<QWidget *>()) {
        QVERIFY(!widget->toolTip().contains(shown));
        const auto *label = qobject_cast<const QLabel *>(widget);
        QVERIFY(label == nullptr || !label->text().contains(shown)
                || label->textFormat() == Qt::PlainText);
    }
}

void tst_HostileText::isNoMarkupInMessages_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("bold") << QStringLiteral("<b>bold<b>");
    QTest::newRow("picture") << QStringLiteral("<img src='x'>");
    QTest::newRow("entity") << QStringLiteral("&lt;b&gt;");
    QTest::newRow("mnemonic") << QStringLiteral("&File");
    QTest::newRow("place markers") << QStringLiteral("%1 %2");
}

/// The path of the extracted image ends in a name of the stranger's.
void tst_HostileText::isNoMarkupInMessages()
{
    QFETCH(QString, name);
    if (!isFileName(name)) {
        QSKIP("No file of this system can have that name.");
    }

    open(QStringLiteral("pkg.zel"), "x", name + QStringLiteral(".bin"));
    auto *selector = m_window->findChild<PathSelector *>(QStringLiteral("firmwarePath"));
    const QString extracted = selector->path();
    QVERIFY2(QFileInfo(extracted).fileName().startsWith(name), qPrintable(extracted));
    QCOMPARE(selector->enteredPath(), extracted);
    QVERIFY(QFile::remove(extracted));

    m_window->findChild<QTabWidget *>(QStringLiteral("tabWidget"))->setCurrentIndex(1);
    QTest::mouseClick(selector->findChild<QLineEdit *>(QStringLiteral("pathField")),
                      Qt::LeftButton);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    const QString message = QStringLiteral("\"%1\" file doesn't exist.").arg(extracted);
    QCOMPARE(shownMessage(m_window.get()), message);
    const auto *label = m_window->findChild<QLabel *>(QStringLiteral("messageLabel"));
    QCOMPARE(label->textFormat(), Qt::PlainText);
    // All letters of the name take their place, those of the tags too.
    QLabel plain;
    plain.setTextFormat(Qt::PlainText);
    plain.setFont(label->font());
    plain.setText(message);
    QVERIFY(label->width() * label->height()
            >= plain.sizeHint().width() * plain.fontMetrics().height());
}

void tst_HostileText::titleShowsTheNameOfThePackage_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("the toolkit's mark") << QStringLiteral("pkg[*]");
    QTest::newRow("nothing but the mark") << QStringLiteral("[*]");
    QTest::newRow("two marks") << QStringLiteral("[*][*]");
    QTest::newRow("markup") << QStringLiteral("<b>pkg<b>");
    QTest::newRow("place markers") << QStringLiteral("%1%2%3");
}

void tst_HostileText::titleShowsTheNameOfThePackage()
{
    QFETCH(QString, name);
    if (!isFileName(name)) {
        QSKIP("No file of this system can have that name.");
    }

    open(name + QStringLiteral(".zel"), "x", QStringLiteral("fw.bin"));
    const qint64 process = QCoreApplication::applicationPid();
    QTRY_COMPARE(desktop::windowTitle(process), name + QStringLiteral(" - ZEL File Creator"));
    m_window->findChild<QCheckBox *>(QStringLiteral("optionACheckBox"))->click();
    QTRY_COMPARE(desktop::windowTitle(process), name + QStringLiteral("* - ZEL File Creator"));
}

ZEL_TEST_MAIN(tst_HostileText)
#include "tst_HostileText.moc"
