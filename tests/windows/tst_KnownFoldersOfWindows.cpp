#include "common/FileIo.h"
#include "common/Paths.h"

#include "tests/support/ZelTest.h"
#include "tests/windows/WideText.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <windows.h>

#include <initguid.h>

#include <knownfolders.h>
#include <shlobj.h>

#include <array>

/// The placeholders against what the system itself says, and paths as only Windows has them.
class tst_KnownFoldersOfWindows : public ZelTest
{
    Q_OBJECT

private slots:
    void placeholdersAreTheSystemsFolders_data();
    void placeholdersAreTheSystemsFolders();
    void placeholdersAreTheEnvironments_data();
    void placeholdersAreTheEnvironments();
    void temporaryFolderIsTheSystems();
    void nativePaths_data();
    void nativePaths();
    void writesToNativePaths_data();
    void writesToNativePaths();
};

void tst_KnownFoldersOfWindows::placeholdersAreTheSystemsFolders_data()
{
    QTest::addColumn<QUuid>("identifier");

    const auto row = [](const char *placeholder, const GUID &identifier) {
        QTest::newRow(placeholder) << QUuid(identifier);
    };
    row("%WinDir%", FOLDERID_Windows);
    row("%SystemRoot%", FOLDERID_Windows);
    row("%CommonProgramFiles%", FOLDERID_ProgramFilesCommon);
    row("%CommonProgramFiles(x86)%", FOLDERID_ProgramFilesCommonX86);
    row("%CommonProgramW6432%", FOLDERID_ProgramFilesCommon);
    row("%ProgramFiles%", FOLDERID_ProgramFiles);
    row("%ProgramFiles(x86)%", FOLDERID_ProgramFilesX86);
    row("%ProgramW6432%", FOLDERID_ProgramFiles);
    row("%ProgramData%", FOLDERID_ProgramData);
    row("%AllUsersProfile%", FOLDERID_ProgramData);
    row("%AppData%", FOLDERID_RoamingAppData);
    row("%LocalAppData%", FOLDERID_LocalAppData);
    row("%UserProfile%", FOLDERID_Profile);
    row("%HomePath%", FOLDERID_Profile);
    row("%MyDocuments%", FOLDERID_Documents);
    row("%MyMusic%", FOLDERID_Music);
    row("%MyPictures%", FOLDERID_Pictures);
    row("%MyVideo%", FOLDERID_Videos);
    row("%Desktop%", FOLDERID_Desktop);
    row("%UserDesktop%", FOLDERID_Desktop);
    row("%Public%", FOLDERID_Public);
    row("%PublicDocuments%", FOLDERID_PublicDocuments);
    row("%PublicMusic%", FOLDERID_PublicMusic);
    row("%PublicPictures%", FOLDERID_PublicPictures);
    row("%PublicVideo%", FOLDERID_PublicVideos);
    row("%PublicDesktop%", FOLDERID_PublicDesktop);
}

void tst_KnownFoldersOfWindows::placeholdersAreTheSystemsFolders()
{
    QFETCH(QUuid, identifier);

    PWSTR path = nullptr;
    const GUID folder = identifier;
    const HRESULT result = SHGetKnownFolderPath(folder, 0, nullptr, &path);
    const QString expected = QString::fromWCharArray(path);
    CoTaskMemFree(path);
    QCOMPARE(result, S_OK);

    const QString placeholder = QString::fromLatin1(QTest::currentDataTag());
    QCOMPARE(expandPlaceholder(placeholder), expected);
    QCOMPARE(expandPlaceholder(placeholder.toUpper() + QStringLiteral("\\x y")),
             expected + QStringLiteral("\\x y"));
    QCOMPARE(normalizePath(placeholder.toLower() + QStringLiteral("/x y")),
             placeholder + QStringLiteral("\\x y"));
}

void tst_KnownFoldersOfWindows::placeholdersAreTheEnvironments_data()
{
    QTest::addColumn<QString>("variable");

    QTest::newRow("%SystemDrive%") << QStringLiteral("SYSTEMDRIVE");
    QTest::newRow("%HomeDrive%") << QStringLiteral("HOMEDRIVE");
    QTest::newRow("%Temp%") << QStringLiteral("TEMP");
    QTest::newRow("%Tmp%") << QStringLiteral("TEMP");
}

void tst_KnownFoldersOfWindows::placeholdersAreTheEnvironments()
{
    QFETCH(QString, variable);

    std::array<wchar_t, 512> value = {};
    QVERIFY(GetEnvironmentVariableW(wideText(variable), value.data(), value.size()) > 0);
    QCOMPARE(expandPlaceholder(QString::fromLatin1(QTest::currentDataTag())),
             QString::fromWCharArray(value.data()));
}

void tst_KnownFoldersOfWindows::temporaryFolderIsTheSystems()
{
    std::array<wchar_t, MAX_PATH + 1> path = {};
    QVERIFY(GetTempPathW(path.size(), path.data()) > 0);
    QCOMPARE(normalizePath(expandPlaceholder(QStringLiteral("%Temp%"))) + QLatin1Char('\\'),
             QString::fromWCharArray(path.data()));
}

void tst_KnownFoldersOfWindows::nativePaths_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("normalized");

    const auto row = [](const char *name, const char *path, const char *normalized) {
        QTest::newRow(name) << QString::fromUtf8(path) << QString::fromUtf8(normalized);
    };
    row("blank at each end", " C:/a//b/../c ", "C:\\a\\c");
    row("backslashes", "C:\\a\\\\b\\..\\c", "C:\\a\\c");
    row("both separators", "C:\\a/b\\c", "C:\\a\\b\\c");
    row("root of a drive", "C:/", "C:\\");
    row("relative to a drive", "C:a/b", "C:a\\b");
    row("small drive letter", "c:/a", "c:\\a");
    row("share", "//server/share/a//b/../c", "\\\\server\\share\\a\\c");
    row("share in backslashes", "\\\\server\\share\\a\\.\\b", "\\\\server\\share\\a\\b");
    row("non-ASCII",
        " D:/Gr\xC3\xB6\xC3\x9F"
        "e/\xD0\x96.bin",
        "D:\\Gr\xC3\xB6\xC3\x9F"
        "e\\\xD0\x96.bin");
}

void tst_KnownFoldersOfWindows::nativePaths()
{
    QFETCH(QString, path);
    QFETCH(QString, normalized);

    QCOMPARE(normalizePath(path), normalized);
}

void tst_KnownFoldersOfWindows::writesToNativePaths_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("name");

    QTest::newRow("drive letter") << QStringLiteral("%1\\%2") << QStringLiteral("a b.bin");
    QTest::newRow("slashes and backslashes")
        << QStringLiteral("%1/./%2") << QStringLiteral("b.bin");
    QTest::newRow("Latin") << QStringLiteral("%1\\%2") << QStringLiteral("Pr\u00FCfstand.bin");
    QTest::newRow("Cyrillic") << QStringLiteral("%1\\%2")
                              << QStringLiteral("\u0416\u0443\u043A.bin");
    QTest::newRow("Chinese") << QStringLiteral("%1\\%2") << QStringLiteral("\u96FB\u529B.bin");
    QTest::newRow("device path") << QStringLiteral("\\\\?\\%1\\%2") << QStringLiteral("c.bin");
}

void tst_KnownFoldersOfWindows::writesToNativePaths()
{
    QFETCH(QString, pattern);
    QFETCH(QString, name);
    const QString folder = QDir::toNativeSeparators(TestSandbox::path());
    const QByteArray bytes("\0\r\n\x1A", 4);

    QVERIFY(writeBytesToFile(pattern.arg(folder, name), bytes));

    QCOMPARE(QDir(folder).entryList({QStringLiteral("*.bin")}), QStringList(name));
    QFile file(folder + QLatin1Char('/') + name);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), bytes);
    QVERIFY(file.remove());
}

ZEL_CORE_TEST_MAIN(tst_KnownFoldersOfWindows)
#include "tst_KnownFoldersOfWindows.moc"
