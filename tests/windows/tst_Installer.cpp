#include "tests/support/DesktopWindows.h"
#include "tests/support/ZelTest.h"
#include "tests/windows/WideText.h"

#include <QApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QPixmap>
#include <QProcess>
#include <QScreen>
#include <QSet>
#include <QSettings>

#include <windows.h>

#include <shellapi.h>

#include <array>

namespace {

const QString kUninstallKey =
    QStringLiteral("\\Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\ZelFileCreator");
const QString kClassesKey = QStringLiteral("\\Software\\Classes\\");
const QString kProgId = QStringLiteral("HalvornDrives.ZelFile");
const QString kProgramName = QStringLiteral("ZEL File Creator");

QString environmentFolder(const char *name)
{
    return QDir::fromNativeSeparators(QString::fromLocal8Bit(qgetenv(name)));
}

/// A value of the registry; an empty name stands for the key's default value.
QVariant registryValue(const QString &key, const QString &name = {})
{
    return QSettings(key, QSettings::NativeFormat)
        .value(name.isEmpty() ? QStringLiteral("Default") : name);
}

/// What the installer does for all users and for one differs in this.
struct Installation
{
    QString option;
    QString hive;
    HKEY hiveKey;
    QString folder;
    QString startMenu;

    [[nodiscard]] QString program() const { return folder + QStringLiteral("/ZelFileCreator.exe"); }
};

Installation forAllUsers()
{
    return {QStringLiteral("/AllUsers"), QStringLiteral("HKEY_LOCAL_MACHINE"), HKEY_LOCAL_MACHINE,
            environmentFolder("ProgramFiles") + QStringLiteral("/ZEL File Creator"),
            environmentFolder("ProgramData")
                + QStringLiteral("/Microsoft/Windows/Start Menu/Programs")};
}

Installation forCurrentUser()
{
    return {QStringLiteral("/CurrentUser"), QStringLiteral("HKEY_CURRENT_USER"), HKEY_CURRENT_USER,
            environmentFolder("LOCALAPPDATA") + QStringLiteral("/Programs/ZEL File Creator"),
            environmentFolder("APPDATA")
                + QStringLiteral("/Microsoft/Windows/Start Menu/Programs")};
}

/// Everything in @p folder, relative to it.
QSet<QString> entries(const QString &folder)
{
    QSet<QString> names;
    QDirIterator iterator(folder,
                          QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                          QDirIterator::Subdirectories);
    while (iterator.hasNext()) {
        names.insert(iterator.next().mid(folder.size() + 1));
    }
    return names;
}

/// All that an installation could leave behind outside of the temporary folder.
QSet<QString> footprint()
{
    QSet<QString> names;
    for (const char *const place : {"ProgramFiles", "ProgramData", "USERPROFILE", "PUBLIC"}) {
        const QString folder = environmentFolder(place);
        for (const QString &name : entries(folder)) {
            names.insert(folder + QLatin1Char('/') + name);
        }
    }
    for (const QString &hive :
         {QStringLiteral("HKEY_LOCAL_MACHINE"), QStringLiteral("HKEY_CURRENT_USER")}) {
        for (const QString &key :
             {QStringLiteral("\\Software\\Classes"), QStringLiteral("\\Software\\Halvorn Drives"),
              QStringLiteral("\\Software\\Microsoft\\Windows\\CurrentVersion")}) {
            const QString place = hive + key;
            for (const QString &name : QSettings(place, QSettings::NativeFormat).allKeys()) {
                names.insert(place + QLatin1Char('/') + name);
            }
        }
    }
    return names;
}

int run(const QString &program, const QString &arguments)
{
    QProcess process;
    process.setProgram(program);
    process.setNativeArguments(arguments);
    process.start();
    return process.waitForFinished(60000) ? process.exitCode() : -1;
}

/// Installs silently and returns the installer's exit code.
int install(const QString &arguments)
{
    return run(QDir::toNativeSeparators(QStringLiteral(ZEL_INSTALLER)),
               QStringLiteral("/S ") + arguments);
}

/// Uninstalls as "Apps & features" does, and waits until it is done.
bool uninstall(const Installation &installation)
{
    const QString command =
        registryValue(installation.hive + kUninstallKey, QStringLiteral("QuietUninstallString"))
            .toString();
    const int end = command.indexOf(QLatin1Char('"'), 1);
    if (run(command.mid(1, end - 1), command.mid(end + 1)) != 0) {
        return false;
    }
    // The uninstaller goes on as a copy of itself, for it removes its own file. Its last deed is to
    // take its entry out of the registry.
    return QTest::qWaitFor(
        [&installation] {
            return !registryValue(installation.hive + kUninstallKey, QStringLiteral("DisplayName"))
                        .isValid();
        },
        30000);
}

/// A program that the system has started to open a file.
class OpenedProgram final
{
    Q_DISABLE_COPY_MOVE(OpenedProgram)

public:
    /// Opens @p file as a double click does. Where the desktop overlooks the current user's file
    /// types, as Wine 8 does, it is shown the one of @p installation.
    OpenedProgram(const QString &file, const Installation &installation)
    {
        const QString native = QDir::toNativeSeparators(file);
        SHELLEXECUTEINFOW info = {};
        info.cbSize = sizeof(info);
        info.fMask = SEE_MASK_NOCLOSEPROCESS | SEE_MASK_FLAG_NO_UI;
        info.lpFile = wideText(native);
        info.nShow = SW_SHOWNORMAL;
        if (!registryValue(QStringLiteral("HKEY_CLASSES_ROOT\\.zel")).isValid()) {
            const QString key = QStringLiteral("Software\\Classes\\") + kProgId;
            info.fMask |= SEE_MASK_CLASSKEY;
            RegOpenKeyExW(installation.hiveKey, wideText(key), 0, KEY_READ, &info.hkeyClass);
        }
        ShellExecuteExW(&info);
        RegCloseKey(info.hkeyClass);
        m_process = info.hProcess;
    }
    ~OpenedProgram() { CloseHandle(m_process); }

    [[nodiscard]] qint64 processId() const { return GetProcessId(m_process); }
    [[nodiscard]] QString path() const
    {
        std::array<wchar_t, 1024> path = {};
        DWORD length = path.size();
        QueryFullProcessImageNameW(m_process, 0, path.data(), &length);
        return QString::fromWCharArray(path.data());
    }
    /// Waits until the program has nothing left to do but to wait for its user.
    [[nodiscard]] bool waitUntilIdle() const { return WaitForInputIdle(m_process, 30000) == 0; }
    [[nodiscard]] bool waitUntilEnded() const
    {
        return WaitForSingleObject(m_process, 30000) == WAIT_OBJECT_0;
    }

private:
    HANDLE m_process = nullptr;
};

} // namespace

/// Installs the program silently, opens a package with it, closes it and takes it away again.
class tst_Installer : public ZelTest
{
    Q_OBJECT

private slots:
    void initTestCase();
    void comesAndGoes_data();
    void comesAndGoes();
    void givesTheFilesBackToTheirFormerProgram();
    void installsIntoTheFolderOfTheCommandLine();
    void leavesForeignFilesInItsFolder();
    void refusesToReplaceARunningProgram();

private:
    QString m_package;
    QString m_title;
};

void tst_Installer::initTestCase()
{
    // The programs that are started here know nothing of this process's scratch registry.
    RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);

    m_package = TestSandbox::path() + QStringLiteral("/Prüfstand Ж 7.zel");
    m_title = QStringLiteral("Prüfstand Ж 7 - ZEL File Creator");
    QVERIFY(QFile::copy(QStringLiteral(ZEL_PACKAGE), m_package));
}

void tst_Installer::comesAndGoes_data()
{
    QTest::addColumn<bool>("allUsers");

    QTest::newRow("all users") << true;
    QTest::newRow("current user") << false;
}

void tst_Installer::comesAndGoes()
{
    QFETCH(bool, allUsers);
    const Installation installation = allUsers ? forAllUsers() : forCurrentUser();
    const QSet<QString> before = footprint();

    QCOMPARE(install(installation.option), 0);

    // What is installed is what the portable archive holds, and the uninstaller.
    QSet<QString> expected = entries(QStringLiteral(ZEL_STAGE));
    expected.insert(QStringLiteral("uninstall.exe"));
    QCOMPARE(entries(installation.folder), expected);
    // Asked of the folder, for the toolkit takes a shortcut for the file that it leads to.
    QVERIFY(entries(installation.startMenu).contains(QStringLiteral("ZEL File Creator.lnk")));

    const QString entry = installation.hive + kUninstallKey;
    QCOMPARE(registryValue(entry, QStringLiteral("DisplayName")).toString(), kProgramName);
    QCOMPARE(registryValue(entry, QStringLiteral("DisplayVersion")).toString(),
             QStringLiteral("1.0.9"));
    QCOMPARE(registryValue(entry, QStringLiteral("InstallLocation")).toString(),
             QDir::toNativeSeparators(installation.folder));
    QVERIFY(registryValue(entry, QStringLiteral("EstimatedSize")).toInt() > 10000);

    const QString program = QDir::toNativeSeparators(installation.program());
    const QString classes = installation.hive + kClassesKey;
    QCOMPARE(registryValue(classes + QStringLiteral(".zel")).toString(), kProgId);
    const QString type = classes + kProgId;
    QCOMPARE(registryValue(type + QStringLiteral("\\DefaultIcon")).toString(),
             QStringLiteral("\"%1\",1").arg(program));
    QCOMPARE(registryValue(type + QStringLiteral("\\shell\\open")).toString(),
             QStringLiteral("&Open"));
    QCOMPARE(registryValue(type + QStringLiteral("\\shell\\open\\command")).toString(),
             QStringLiteral("\"%1\" \"%2\"").arg(program, QStringLiteral("%1")));

    const OpenedProgram opened(m_package, installation);
    QTRY_COMPARE_WITH_TIMEOUT(desktop::windowTitle(opened.processId()), m_title, 30000);
    QCOMPARE(opened.path(), program);
    const QDir pictures(QStringLiteral(ZEL_PICTURES));
    QVERIFY(pictures.mkpath(QStringLiteral(".")));
    QVERIFY(opened.waitUntilIdle());
    QVERIFY(QGuiApplication::primaryScreen()->grabWindow(0).save(
        pictures.filePath(QStringLiteral("installed-for-%1.png")
                              .arg(QString::fromLatin1(QTest::currentDataTag()))
                              .replace(QLatin1Char(' '), QLatin1Char('-')))));

    QVERIFY(desktop::closeWindow(opened.processId()));
    QVERIFY(opened.waitUntilEnded());
    const QString settings = QStringLiteral("HKEY_CURRENT_USER\\Software\\Halvorn Drives");
    QVERIFY(
        registryValue(settings + QStringLiteral("\\ZEL File Creator"), QStringLiteral("Geometry"))
            .isValid());

    QVERIFY(uninstall(installation));
    QVERIFY(!QFile::exists(installation.folder));

    QStringList left;
    const QSet<QString> added = footprint() - before;
    for (const QString &name : added) {
        if (!name.startsWith(settings) && !name.startsWith(TestSandbox::path())) {
            left.append(name);
        }
    }
    QVERIFY2(left.isEmpty(), qPrintable(left.join(QLatin1Char('\n'))));
    QVERIFY(!QFile::exists(TestSandbox::temporaryPath() + QStringLiteral("/Halvorn Drives")));
    // The user's settings stay; the next row begins without them.
    QVERIFY(
        registryValue(settings + QStringLiteral("\\ZEL File Creator"), QStringLiteral("Geometry"))
            .isValid());
    QSettings(settings, QSettings::NativeFormat).clear();
}

void tst_Installer::givesTheFilesBackToTheirFormerProgram()
{
    const Installation installation = forCurrentUser();
    QSettings association(installation.hive + kClassesKey + QStringLiteral(".zel"),
                          QSettings::NativeFormat);
    association.setValue(QStringLiteral("Default"), QStringLiteral("Other.Program"));
    association.sync();

    QCOMPARE(install(installation.option), 0);
    // Once more, as an update does: the first one is remembered, not the program itself.
    QCOMPARE(install(installation.option), 0);
    QVERIFY(uninstall(installation));

    association.sync();
    QCOMPARE(association.value(QStringLiteral("Default")).toString(),
             QStringLiteral("Other.Program"));
    association.clear();
}

void tst_Installer::installsIntoTheFolderOfTheCommandLine()
{
    Installation installation = forCurrentUser();
    installation.folder = TestSandbox::path() + QStringLiteral("/Größe 2");

    QCOMPARE(
        install(QStringLiteral("/CurrentUser /D=") + QDir::toNativeSeparators(installation.folder)),
        0);
    QVERIFY(QFile::exists(installation.program()));
    QVERIFY(uninstall(installation));
}

void tst_Installer::leavesForeignFilesInItsFolder()
{
    const Installation installation = forCurrentUser();
    QCOMPARE(install(installation.option), 0);
    const QString foreign = installation.folder + QStringLiteral("/platforms/mine.txt");
    QVERIFY(QFile::copy(m_package, foreign));

    QVERIFY(uninstall(installation));
    QCOMPARE(entries(installation.folder),
             (QSet<QString>{QStringLiteral("platforms"), QStringLiteral("platforms/mine.txt")}));
    QVERIFY(QDir(installation.folder).removeRecursively());
}

void tst_Installer::refusesToReplaceARunningProgram()
{
    const Installation installation = forCurrentUser();
    QCOMPARE(install(installation.option), 0);
    QProcess process;
    process.start(installation.program(), {m_package});
    QTRY_COMPARE_WITH_TIMEOUT(desktop::windowTitle(process.processId()), m_title, 30000);

    QCOMPARE(install(installation.option), 2);

    QVERIFY(desktop::closeWindow(process.processId()));
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 0);
    QVERIFY(uninstall(installation));
    QSettings(QStringLiteral("HKEY_CURRENT_USER\\Software\\Halvorn Drives"),
              QSettings::NativeFormat)
        .clear();
}

ZEL_TEST_MAIN(tst_Installer)
#include "tst_Installer.moc"
