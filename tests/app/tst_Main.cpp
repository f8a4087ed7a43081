#include "tests/support/DesktopWindows.h"
#include "tests/support/ZelTest.h"
#include "tlv/ZelFile.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

/// Starts the program itself.
class tst_Main : public ZelTest
{
    Q_OBJECT

private slots:
    void initTestCase();

    void printsHelp();
    void printsVersion();
    void refusesUnknownOptions();

    void window_data();
    void window();

private:
    static QByteArray outputOf(const QStringList &arguments, int expectedExitCode);

    QTemporaryDir m_folder;
};

void tst_Main::initTestCase()
{
    QFile firmware(m_folder.filePath(QStringLiteral("image.bin")));
    QVERIFY(firmware.open(QIODevice::WriteOnly));
    firmware.write("firmware");
    firmware.close();
    for (const char *name : {"first.zel", "second.zel"}) {
        tlv::ZelFile package;
        package.setMaskRules({});
        package.setTokenRules({});
        package.setSoftwareOptions({});
        package.setHardware(0, 0, 1, 1);
        package.setFirmwareFile(firmware.fileName(), 0x10000000U);
        QString path = m_folder.filePath(QLatin1String(name));
        QString message;
        QVERIFY2(package.save(path, message), qPrintable(message));
    }
}

QByteArray tst_Main::outputOf(const QStringList &arguments, int expectedExitCode)
{
    QProcess program;
    program.setProcessChannelMode(QProcess::MergedChannels);
    program.start(QStringLiteral(ZEL_PROGRAM), arguments);
    if (!program.waitForFinished() || program.exitStatus() != QProcess::NormalExit) {
        return "the program did not end";
    }
    if (program.exitCode() != expectedExitCode) {
        return "exit code " + QByteArray::number(program.exitCode());
    }
    return program.readAll();
}

void tst_Main::printsHelp()
{
    const QByteArray help = outputOf({QStringLiteral("--help")}, 0);
    QVERIFY2(help.contains("ZEL Creator"), help);
    QVERIFY2(help.contains("zelfilepath"), help);
    QVERIFY2(help.contains("ZEL file to decode."), help);
}

void tst_Main::printsVersion()
{
    // The platform's own report of the executable: its name.
    QVERIFY(outputOf({QStringLiteral("--version")}, 0).startsWith("ZelFileCreator"));
}

void tst_Main::refusesUnknownOptions()
{
    const QByteArray output = outputOf({QStringLiteral("--no-such-option")}, 1);
    QVERIFY2(output.contains("no-such-option"), output);
}

void tst_Main::window_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("title");

    const QString first = m_folder.filePath(QStringLiteral("first.zel"));
    const QString second = m_folder.filePath(QStringLiteral("second.zel"));
    const QString empty = QStringLiteral("ZEL File Creator");
    const QString filled = QStringLiteral("first - ZEL File Creator");
    QTest::newRow("no arguments") << QStringList{} << empty;
    QTest::newRow("a package") << QStringList{first} << filled;
    QTest::newRow("only the first of two packages") << QStringList{first, second} << filled;
    QTest::newRow("an empty argument is no path") << QStringList{QString()} << empty;
    QTest::newRow("a package that is not there")
        << QStringList{m_folder.filePath(QStringLiteral("gone.zel"))} << empty;
}

void tst_Main::window()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, title);

    QProcess program;
    program.start(QStringLiteral(ZEL_PROGRAM), arguments);
    QVERIFY(program.waitForStarted());
    QTRY_COMPARE_WITH_TIMEOUT(desktop::windowTitle(program.processId()), title, 20000);

    QVERIFY(desktop::closeWindow(program.processId()));
    QVERIFY(program.waitForFinished());
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.exitCode(), 0);
    // No warning of the toolkit, nor anything else.
    QCOMPARE(program.readAllStandardError(), QByteArray());
    QCOMPARE(program.readAllStandardOutput(), QByteArray());
}

ZEL_CORE_TEST_MAIN(tst_Main)
#include "tst_Main.moc"
