#include "tests/support/DesktopWindows.h"
#include "tests/support/ZelTest.h"
#include "tests/windows/WideText.h"

#include <QApplication>
#include <QDir>
#include <QMap>
#include <QProcess>
#include <QSet>
#include <QXmlStreamReader>

#include <windows.h>

#include <shellscalingapi.h>

#include <array>

namespace {

BOOL CALLBACK collectText(HWND window, LPARAM data)
{
    std::array<wchar_t, 4096> text = {};
    // Not GetWindowText, which reads the texts of the caller's own windows only.
    SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
    reinterpret_cast<QString *>(data)->append(QString::fromWCharArray(text.data()));
    return TRUE;
}

/// The texts of all parts of the window with @p title, such as the message of a message box.
QString textsIn(const QString &title)
{
    QString texts;
    EnumChildWindows(FindWindowW(nullptr, wideText(title)), &collectText,
                     reinterpret_cast<LPARAM>(&texts));
    return texts;
}

} // namespace

/// The program's file as the system sees it, and how it starts.
class tst_Program : public ZelTest
{
    Q_OBJECT

private slots:
    void versionInformation_data();
    void versionInformation();
    void fixedVersionNumber();
    void manifest_data();
    void manifest();
    void manifestNamesTheCommonControls();
    void iconsHaveAllSizes_data();
    void iconsHaveAllSizes();
    void screenResolutionAwarenessIsTheToolkits();
    void tellsInAMessageBoxOnTheDesktop_data() { addMessages(); }
    void tellsInAMessageBoxOnTheDesktop();
    void tellsAScriptOnItsOutput_data() { addMessages(); }
    void tellsAScriptOnItsOutput();
    void opensNoConsole();

private:
    static void addMessages();
    static QString program() { return QDir::toNativeSeparators(QStringLiteral(ZEL_PROGRAM)); }
    static QByteArray versionBlock();
    static QByteArray resource(const wchar_t *name, const wchar_t *type);
};

QByteArray tst_Program::versionBlock()
{
    const QString path = program();
    const DWORD size = GetFileVersionInfoSizeW(wideText(path), nullptr);
    QByteArray block(static_cast<int>(size), '\0');
    if (size == 0 || GetFileVersionInfoW(wideText(path), 0, size, block.data()) == FALSE) {
        return {};
    }
    return block;
}

QByteArray tst_Program::resource(const wchar_t *name, const wchar_t *type)
{
    const QString path = program();
    const HMODULE file = LoadLibraryExW(wideText(path), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    if (file == nullptr) {
        return {};
    }
    QByteArray bytes;
    if (const HRSRC place = FindResourceW(file, name, type)) {
        const HGLOBAL data = LoadResource(file, place);
        bytes = QByteArray(static_cast<const char *>(LockResource(data)),
                           static_cast<int>(SizeofResource(file, place)));
    }
    FreeLibrary(file);
    return bytes;
}

void tst_Program::versionInformation_data()
{
    QTest::addColumn<QString>("value");

    QTest::newRow("ProductName") << QStringLiteral("ZEL File Creator");
    QTest::newRow("FileDescription") << QStringLiteral("ZEL File Creator");
    QTest::newRow("ProductVersion") << QStringLiteral("1.0.9");
    QTest::newRow("FileVersion") << QStringLiteral("1.0.9");
    QTest::newRow("OriginalFilename") << QStringLiteral("ZelFileCreator.exe");
    QTest::newRow("CompanyName") << QStringLiteral("Halvorn Drives");
}

void tst_Program::versionInformation()
{
    QFETCH(QString, value);

    const QByteArray block = versionBlock();
    QVERIFY(!block.isEmpty());
    const QString key = QStringLiteral("\\StringFileInfo\\040904B0\\%1")
                            .arg(QString::fromLatin1(QTest::currentDataTag()));
    void *text = nullptr;
    UINT length = 0;
    QVERIFY(VerQueryValueW(block.constData(), wideText(key), &text, &length) != FALSE);
    QCOMPARE(QString::fromWCharArray(static_cast<const wchar_t *>(text)), value);
}

void tst_Program::fixedVersionNumber()
{
    const QByteArray block = versionBlock();
    void *data = nullptr;
    UINT length = 0;
    QVERIFY(VerQueryValueW(block.constData(), L"\\", &data, &length) != FALSE);
    const auto *const fixed = static_cast<const VS_FIXEDFILEINFO *>(data);
    QCOMPARE(fixed->dwFileVersionMS, 0x00010000u);
    QCOMPARE(fixed->dwFileVersionLS, 0x00090000u);
    QCOMPARE(fixed->dwProductVersionMS, 0x00010000u);
    QCOMPARE(fixed->dwProductVersionLS, 0x00090000u);
}

void tst_Program::manifest_data()
{
    QTest::addColumn<QString>("value");

    QTest::newRow("dpiAware") << QStringLiteral("true/pm");
    QTest::newRow("dpiAwareness") << QStringLiteral("PerMonitor");
    QTest::newRow("longPathAware") << QStringLiteral("true");
    QTest::newRow("activeCodePage") << QStringLiteral("UTF-8");
}

void tst_Program::manifest()
{
    QFETCH(QString, value);

    QXmlStreamReader reader(resource(MAKEINTRESOURCEW(1), MAKEINTRESOURCEW(24)));
    QMap<QString, QString> settings;
    bool inSettings = false;
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isStartElement() && inSettings) {
            settings.insert(reader.name().toString(), reader.readElementText());
        } else if (reader.name() == QLatin1String("windowsSettings")) {
            inSettings = reader.isStartElement();
        }
    }
    QVERIFY2(!reader.hasError(), qPrintable(reader.errorString()));
    QCOMPARE(settings.value(QString::fromLatin1(QTest::currentDataTag())), value);
}

void tst_Program::manifestNamesTheCommonControls()
{
    QXmlStreamReader reader(resource(MAKEINTRESOURCEW(1), MAKEINTRESOURCEW(24)));
    QMap<QString, QString> versions;
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isStartElement() && reader.name() == QLatin1String("assemblyIdentity")) {
            const QXmlStreamAttributes attributes = reader.attributes();
            versions.insert(attributes.value(QLatin1String("name")).toString(),
                            attributes.value(QLatin1String("version")).toString());
        }
    }
    QCOMPARE(versions.value(QStringLiteral("Microsoft.Windows.Common-Controls")),
             QStringLiteral("6.0.0.0"));
    QCOMPARE(versions.value(QStringLiteral("HalvornDrives.ZelFileCreator")),
             QStringLiteral("1.0.9.0"));
}

void tst_Program::iconsHaveAllSizes_data()
{
    QTest::addColumn<int>("number");

    QTest::newRow("program") << 1;
    QTest::newRow("document") << 2;
}

void tst_Program::iconsHaveAllSizes()
{
    QFETCH(int, number);

    // Six bytes of header, the last two the count, then 14 bytes for each image, the first of them
    // its width, in which 0 stands for 256.
    const QByteArray group =
        resource(MAKEINTRESOURCEW(number), reinterpret_cast<const wchar_t *>(RT_GROUP_ICON));
    QVERIFY(group.size() > 6);
    QSet<int> widths;
    for (int entry = 6; entry + 14 <= group.size(); entry += 14) {
        const int width = static_cast<uchar>(group.at(entry));
        widths.insert(width == 0 ? 256 : width);
    }
    for (const int width : {16, 20, 24, 32, 40, 48, 64, 256}) {
        QVERIFY2(widths.contains(width), qPrintable(QString::number(width)));
    }
}

// This test program carries the same manifest. Had it asked for another awareness than the toolkit
// does, the toolkit would have printed a warning when the application was made.
void tst_Program::screenResolutionAwarenessIsTheToolkits()
{
    PROCESS_DPI_AWARENESS awareness = PROCESS_DPI_UNAWARE;
    QCOMPARE(GetProcessDpiAwareness(nullptr, &awareness), S_OK);
    QCOMPARE(awareness, PROCESS_PER_MONITOR_DPI_AWARE);
}

void tst_Program::addMessages()
{
    QTest::addColumn<QString>("option");
    QTest::addColumn<QStringList>("texts");
    QTest::addColumn<int>("exitCode");

    QTest::newRow("help") << QStringLiteral("--help")
                          << QStringList{QStringLiteral("ZEL Creator"),
                                         QStringLiteral("zelfilepath"),
                                         QStringLiteral("ZEL file to decode.")}
                          << 0;
    QTest::newRow("version") << QStringLiteral("--version")
                             << QStringList{QStringLiteral("ZelFileCreator 1.0.9")} << 0;
    QTest::newRow("unknown option")
        << QStringLiteral("--nonsense") << QStringList{QStringLiteral("nonsense")} << 1;
}

void tst_Program::tellsInAMessageBoxOnTheDesktop()
{
    QFETCH(QString, option);
    QFETCH(QStringList, texts);
    QFETCH(int, exitCode);

    QProcess process;
    // Started from the desktop, a program gets no handles to write to.
    process.setCreateProcessArgumentsModifier([](QProcess::CreateProcessArguments *arguments) {
        arguments->startupInfo->dwFlags &= ~static_cast<DWORD>(STARTF_USESTDHANDLES);
    });
    process.start(program(), {option});
    QVERIFY(process.waitForStarted());
    const qint64 processId = process.processId();
    QTRY_VERIFY_WITH_TIMEOUT(!desktop::windowTitle(processId).isEmpty(), 30000);
    const QString message = textsIn(desktop::windowTitle(processId));
    for (const QString &text : texts) {
        QVERIFY2(message.contains(text), qPrintable(message));
    }
    QVERIFY(desktop::closeWindow(processId));
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), exitCode);
}

void tst_Program::tellsAScriptOnItsOutput()
{
    QFETCH(QString, option);
    QFETCH(QStringList, texts);
    QFETCH(int, exitCode);

    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program(), {option});
    QVERIFY(process.waitForFinished());
    const QString message = QString::fromLocal8Bit(process.readAll());
    for (const QString &text : texts) {
        QVERIFY2(message.contains(text), qPrintable(message));
    }
    QCOMPARE(process.exitCode(), exitCode);
}

void tst_Program::opensNoConsole()
{
    QFile file(program());
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.read(4096);
    const auto *const dosHeader = reinterpret_cast<const IMAGE_DOS_HEADER *>(bytes.constData());
    QVERIFY(dosHeader->e_lfanew + static_cast<LONG>(sizeof(IMAGE_NT_HEADERS64)) <= bytes.size());
    const auto *const headers =
        reinterpret_cast<const IMAGE_NT_HEADERS64 *>(bytes.constData() + dosHeader->e_lfanew);
    QCOMPARE(headers->OptionalHeader.Subsystem, WORD(IMAGE_SUBSYSTEM_WINDOWS_GUI));
}

ZEL_TEST_MAIN(tst_Program)
#include "tst_Program.moc"
