#include "common/Paths.h"

#include "common/KnownFolders.h"
#include "tests/support/ZelTest.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QStandardPaths>
#include <QThread>

#include <cstdio>
#include <memory>
#include <utility>
#include <vector>

namespace {

/// Makes this program print the expansions of its last arguments instead of testing. Before them,
/// and before kPathsFollow, stand the variables that are to be set, as "NAME=VALUE".
const char *const kExpandArgument = "--expand-placeholders";
const char *const kPathsFollow = "--";

const char *const kVariables[] = {"TEMP",
                                  "TMP",
                                  "TMPDIR",
                                  "SYSTEMDRIVE",
                                  "HOMEDRIVE",
                                  "COMMONPROGRAMW6432",
                                  "COMMONPROGRAMFILES",
                                  "PROGRAMW6432",
                                  "PROGRAMFILES"};

/// Gives this process, of the variables that matter, only @p assignments. Done by the process
/// itself, for a system may set some of them anew in every process that starts.
void setVariables(const QStringList &assignments)
{
    for (const char *const name : kVariables) {
        qunsetenv(name);
    }
    for (const QString &assignment : assignments) {
        const int sign = assignment.indexOf(QLatin1Char('='));
        qputenv(assignment.left(sign).toLatin1().constData(),
                assignment.mid(sign + 1).toLocal8Bit());
    }
}

/// Expands one path in a thread of its own.
class Expansion final : public QThread
{
public:
    explicit Expansion(QString path)
        : m_path(std::move(path))
    {
    }

    /// The path; expanded once the thread has finished.
    [[nodiscard]] QString path() const { return m_path; }

protected:
    void run() override { m_path = expandPlaceholder(m_path); }

private:
    QString m_path;
};

/// Expands @p paths all at once and prints the results.
int printExpansions(const QStringList &paths)
{
    std::vector<std::unique_ptr<Expansion>> expansions;
    expansions.reserve(static_cast<std::size_t>(paths.size()));
    for (const QString &path : paths) {
        expansions.push_back(std::make_unique<Expansion>(path));
        expansions.back()->start();
    }
    QStringList expanded;
    for (const auto &expansion : expansions) {
        expansion->wait();
        expanded << expansion->path();
    }
    std::fputs(expanded.join(QLatin1Char('\n')).toUtf8().constData(), stdout);
    return 0;
}

using Variables = QList<QPair<QString, QString>>;

/// The expansions of @p paths in a fresh process, as the folders are cached for as long as a
/// process lives. Of the variables that matter it has only @p variables.
QStringList expansionsWith(const Variables &variables, const QStringList &paths)
{
    QStringList arguments(QString::fromLatin1(kExpandArgument));
    for (const auto &variable : variables) {
        arguments << variable.first + QLatin1Char('=') + variable.second;
    }
    arguments << QString::fromLatin1(kPathsFollow) << paths;
    QProcess process;
    process.start(QCoreApplication::applicationFilePath(), arguments);
    if (!process.waitForFinished() || process.exitCode() != 0) {
        return {QStringLiteral("<failed>")};
    }
    QString output = QString::fromUtf8(process.readAllStandardOutput());
    return output.remove(QLatin1Char('\r')).split(QLatin1Char('\n'));
}

bool isWindows()
{
    return QSysInfo::productType() == QLatin1String("windows");
}

} // namespace

class tst_Paths : public ZelTest
{
    Q_OBJECT

private slots:
    void unchangedPaths_data();
    void unchangedPaths();
    void temporaryFolder_data();
    void temporaryFolder();
    void sharedFolders_data();
    void sharedFolders();
    void userFolders_data();
    void userFolders();
    void everyPlaceholderHasItsSpelling_data();
    void everyPlaceholderHasItsSpelling();

    void seededValues_data();
    void seededValues();
    void temporaryFolderWithoutAVariable();
    void cacheOutlivesTheEnvironment();
    void firstCallsMayBeConcurrent();

    void environmentValues_data();
    void environmentValues();
    void ownFoldersAreUnknownToTheSystem();

    void normalized_data();
    void normalized();
};

void tst_Paths::unchangedPaths_data()
{
    QTest::addColumn<QString>("path");

    QTest::newRow("empty") << QString();
    QTest::newRow("no placeholder") << QStringLiteral("/a/b.bin");
    QTest::newRow("not at the start") << QStringLiteral("x\\%TEMP%");
    QTest::newRow("behind a blank") << QStringLiteral(" %TEMP%");
    QTest::newRow("two placeholders") << QStringLiteral("%TEMP%\\%TMP%");
    QTest::newRow("two placeholders that share a sign") << QStringLiteral("%TEMP%TMP%");
    QTest::newRow("two, one of them non-ASCII") << QStringLiteral("%TEMP%/%\u00FCber%");
    QTest::newRow("unknown") << QStringLiteral("%NOSUCH%\\x");
    QTest::newRow("half") << QStringLiteral("%TEMP\\x");
    QTest::newRow("empty placeholder") << QStringLiteral("%%\\x");
    QTest::newRow("other characters") << QStringLiteral("%TE MP%\\x");
}

void tst_Paths::unchangedPaths()
{
    QFETCH(QString, path);

    QCOMPARE(expandPlaceholder(path), path);
}

void tst_Paths::temporaryFolder_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("rest");

    QTest::newRow("alone") << QStringLiteral("%TEMP%") << QString();
    QTest::newRow("capitals") << QStringLiteral("%TEMP%\\x") << QStringLiteral("\\x");
    QTest::newRow("small letters") << QStringLiteral("%temp%\\x") << QStringLiteral("\\x");
    QTest::newRow("mixed") << QStringLiteral("%Temp%/a b/c") << QStringLiteral("/a b/c");
    QTest::newRow("its other name") << QStringLiteral("%Tmp%/x") << QStringLiteral("/x");
    QTest::newRow("rest without a separator") << QStringLiteral("%TEMP%x") << QStringLiteral("x");
    QTest::newRow("rest with a sign") << QStringLiteral("%TEMP%/50%") << QStringLiteral("/50%");
    QTest::newRow("rest that is non-ASCII")
        << QStringLiteral("%TEMP%/\u00FC") << QStringLiteral("/\u00FC");
}

void tst_Paths::temporaryFolder()
{
    QFETCH(QString, path);
    QFETCH(QString, rest);

    QCOMPARE(expandPlaceholder(path),
             QDir::toNativeSeparators(TestSandbox::temporaryPath()) + rest);
}

void tst_Paths::sharedFolders_data()
{
    QTest::addColumn<QString>("one");
    QTest::addColumn<QString>("other");

    const auto row = [](const char *one, const char *other) {
        QTest::addRow("%s", one) << QString::fromLatin1(one) << QString::fromLatin1(other);
    };
    row("WINDIR", "SYSTEMROOT");
    row("COMMONPROGRAMFILES", "COMMONPROGRAMW6432");
    row("PROGRAMFILES", "PROGRAMW6432");
    row("PROGRAMDATA", "ALLUSERSPROFILE");
    row("USERPROFILE", "HOMEPATH");
    row("DESKTOP", "USERDESKTOP");
    row("TEMP", "TMP");
}

void tst_Paths::sharedFolders()
{
    QFETCH(QString, one);
    QFETCH(QString, other);

    const QString first = QStringLiteral("%%1%").arg(one);
    const QString second = QStringLiteral("%%1%").arg(other);
    const bool isKnown = expandPlaceholder(first) != first;
    QCOMPARE(expandPlaceholder(second) != second, isKnown);
    if (isKnown) {
        QCOMPARE(expandPlaceholder(first), expandPlaceholder(second));
    } else {
        QVERIFY(!isWindows());
    }
}

void tst_Paths::userFolders_data()
{
    QTest::addColumn<QString>("placeholder");
    QTest::addColumn<QStandardPaths::StandardLocation>("location");

    QTest::newRow("profile") << QStringLiteral("%UserProfile%") << QStandardPaths::HomeLocation;
    QTest::newRow("documents") << QStringLiteral("%MyDocuments%")
                               << QStandardPaths::DocumentsLocation;
    QTest::newRow("music") << QStringLiteral("%MyMusic%") << QStandardPaths::MusicLocation;
    QTest::newRow("pictures") << QStringLiteral("%MyPictures%") << QStandardPaths::PicturesLocation;
    QTest::newRow("videos") << QStringLiteral("%MyVideo%") << QStandardPaths::MoviesLocation;
    QTest::newRow("desktop") << QStringLiteral("%Desktop%") << QStandardPaths::DesktopLocation;
}

void tst_Paths::userFolders()
{
    QFETCH(QString, placeholder);
    QFETCH(QStandardPaths::StandardLocation, location);

    const QString folder = QStandardPaths::writableLocation(location);
    QVERIFY(!folder.isEmpty());
    // The second answer comes from the cache.
    for (int call = 0; call < 2; ++call) {
        QCOMPARE(QDir::fromNativeSeparators(expandPlaceholder(placeholder + QStringLiteral("/x"))),
                 folder + QStringLiteral("/x"));
    }
}

void tst_Paths::everyPlaceholderHasItsSpelling_data()
{
    QTest::addColumn<QString>("spelling");

    for (const char *spelling : {"%SystemDrive%",
                                 "%HomeDrive%",
                                 "%WinDir%",
                                 "%SystemRoot%",
                                 "%CommonProgramFiles%",
                                 "%CommonProgramFiles(x86)%",
                                 "%CommonProgramW6432%",
                                 "%ProgramFiles%",
                                 "%ProgramFiles(x86)%",
                                 "%ProgramW6432%",
                                 "%ProgramData%",
                                 "%AllUsersProfile%",
                                 "%AppData%",
                                 "%LocalAppData%",
                                 "%UserProfile%",
                                 "%HomePath%",
                                 "%MyDocuments%",
                                 "%MyMusic%",
                                 "%MyPictures%",
                                 "%MyVideo%",
                                 "%Desktop%",
                                 "%UserDesktop%",
                                 "%Public%",
                                 "%PublicDocuments%",
                                 "%PublicMusic%",
                                 "%PublicPictures%",
                                 "%PublicVideo%",
                                 "%PublicDesktop%",
                                 "%Temp%",
                                 "%Tmp%"}) {
        QTest::newRow(spelling) << QString::fromLatin1(spelling);
    }
}

void tst_Paths::everyPlaceholderHasItsSpelling()
{
    QFETCH(QString, spelling);

    const QString native = spelling + QDir::separator() + QLatin1Char('x');
    QCOMPARE(normalizePath(spelling.toUpper() + QStringLiteral("/x")), native);
    QCOMPARE(normalizePath(spelling.toLower() + QStringLiteral("/x")), native);
}

void tst_Paths::seededValues_data()
{
    QTest::addColumn<Variables>("variables");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("expanded");

    const auto row = [](const char *name, const Variables &variables, const char *path,
                        const QString &expanded) {
        QTest::newRow(name) << variables << QString::fromLatin1(path) << expanded;
    };
    const auto text = [](const char *latin1) { return QString::fromLatin1(latin1); };

    row("system drive", {{text("SYSTEMDRIVE"), text("S:")}}, "%SystemDrive%/x", text("S:/x"));
    row("home drive", {{text("HOMEDRIVE"), text("H:")}}, "%HomeDrive%/x", text("H:/x"));
    row("temporary", {{text("TEMP"), text("/one")}, {text("TMP"), text("/two")}}, "%Tmp%/x",
        text("/one/x"));
    row("temporary, non-ASCII", {{text("TEMP"), QStringLiteral("/t\u00EBmp")}}, "%TEMP%/x",
        QStringLiteral("/t\u00EBmp/x"));
    row("programs of 64 bits are preferred",
        {{text("PROGRAMW6432"), text("/p64")}, {text("PROGRAMFILES"), text("/p32")}},
        "%ProgramFiles%/x", text("/p64/x"));
    row("other programs otherwise", {{text("PROGRAMFILES"), text("/p32")}}, "%ProgramW6432%/x",
        text("/p32/x"));
    row("common files of 64 bits are preferred",
        {{text("COMMONPROGRAMW6432"), text("/c64")}, {text("COMMONPROGRAMFILES"), text("/c32")}},
        "%CommonProgramFiles%/x", text("/c64/x"));
    row("other common files otherwise", {{text("COMMONPROGRAMFILES"), text("/c32")}},
        "%CommonProgramW6432%/x", text("/c32/x"));
    row("an empty variable is none",
        {{text("PROGRAMW6432"), QString()}, {text("PROGRAMFILES"), text("/p32")}},
        "%ProgramFiles%/x", text("/p32/x"));
    row("a long value", {{text("HOMEDRIVE"), QString(258, QLatin1Char('h'))}}, "%HomeDrive%",
        QString(258, QLatin1Char('h')));
    row("a value of 260 bytes is too long", {{text("HOMEDRIVE"), QString(260, QLatin1Char('h'))}},
        "%HomeDrive%", text("%HomeDrive%"));
    row("no home drive", {}, "%HomeDrive%/x", text("%HomeDrive%/x"));
}

void tst_Paths::seededValues()
{
    QFETCH(Variables, variables);
    QFETCH(QString, path);
    QFETCH(QString, expanded);

    QCOMPARE(expansionsWith(variables, {path}), QStringList(expanded));
}

void tst_Paths::temporaryFolderWithoutAVariable()
{
    const QString path = QStringLiteral("%TEMP%/x");
    const Variables both = {{QStringLiteral("TMP"), QStringLiteral("/tmp-variable")},
                            {QStringLiteral("TMPDIR"), QStringLiteral("/tmpdir-variable")}};
    const QStringList found = {expansionsWith(both, {path}).value(0),
                               expansionsWith(both.mid(1), {path}).value(0),
                               expansionsWith({}, {path}).value(0)};
    // Windows has no other source, so that the path stays as it is.
    const QStringList onWindows = {path, path, path};
    const QByteArray value = qgetenv("TMPDIR");
    qunsetenv("TMPDIR");
    const QStringList elsewhere = {QStringLiteral("/tmp-variable/x"),
                                   QStringLiteral("/tmpdir-variable/x"),
                                   QDir::tempPath() + QStringLiteral("/x")};
    qputenv("TMPDIR", value);
    QCOMPARE(found, isWindows() ? onWindows : elsewhere);
}

void tst_Paths::cacheOutlivesTheEnvironment()
{
    const QString before = expandPlaceholder(QStringLiteral("%TEMP%"));
    const QByteArray value = qgetenv("TEMP");
    qputenv("TEMP", "/elsewhere");
    const QString after = expandPlaceholder(QStringLiteral("%TEMP%"));
    qputenv("TEMP", value);
    QCOMPARE(after, before);
}

void tst_Paths::firstCallsMayBeConcurrent()
{
    const Variables variables = {{QStringLiteral("TEMP"), QStringLiteral("/one")},
                                 {QStringLiteral("HOMEDRIVE"), QStringLiteral("H:")}};
    QStringList paths;
    QStringList expanded;
    for (int i = 0; i < 8; ++i) {
        paths << QStringLiteral("%TEMP%/x") << QStringLiteral("%HOMEDRIVE%/y");
        expanded << QStringLiteral("/one/x") << QStringLiteral("H:/y");
    }
    QCOMPARE(expansionsWith(variables, paths), expanded);
}

void tst_Paths::environmentValues_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QString>("taken");

    QTest::newRow("plain") << QByteArrayLiteral("/a b") << QStringLiteral("/a b");
    QTest::newRow("long") << QByteArray(258, 'x') << QString(258, QLatin1Char('x'));
    QTest::newRow("260 bytes") << QByteArray(260, 'x') << QString();
}

void tst_Paths::environmentValues()
{
    QFETCH(QByteArray, value);
    QFETCH(QString, taken);

    qunsetenv("ZEL_TEST_VALUE");
    QCOMPARE(knownFolders::environmentValue("%ZEL_TEST_VALUE%"), QString());
    qputenv("ZEL_TEST_VALUE", value);
    QCOMPARE(knownFolders::environmentValue("%ZEL_TEST_VALUE%"), taken);
    qunsetenv("ZEL_TEST_VALUE");
}

void tst_Paths::ownFoldersAreUnknownToTheSystem()
{
    for (const KnownFolder folder :
         {KnownFolder::SystemDrive, KnownFolder::HomeDrive, KnownFolder::Temporary}) {
        QCOMPARE(knownFolders::systemPath(folder), QString());
    }
    QVERIFY(!knownFolders::systemPath(KnownFolder::Profile).isEmpty());
}

void tst_Paths::normalized_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("onWindows");
    QTest::addColumn<QString>("elsewhere");

    const auto row = [](const char *name, const char *path, const char *onWindows,
                        const char *elsewhere) {
        QTest::newRow(name) << QString::fromUtf8(path) << QString::fromUtf8(onWindows)
                            << QString::fromUtf8(elsewhere);
    };
    row("empty", "", "", "");
    row("blanks", " \t\r\n ", "", "");
    row("all at once", " C:/a//b/../c ", "C:\\a\\c", "C:/a/c");
    row("inner blanks stay", " /a b / c", "\\a b \\ c", "/a b / c");
    row("this folder", "./a/./b/.", "a\\b", "a/b");
    row("separator at the end", "/a/b/", "\\a\\b", "/a/b");
    row("non-ASCII", "/\xC3\xBC//\xE9\x9B\xBB", "\\\xC3\xBC\\\xE9\x9B\xBB",
        "/\xC3\xBC/\xE9\x9B\xBB");
    row("placeholder", " %TEMP%//x ", "%Temp%\\x", "%Temp%/x");
    row("placeholder alone", "%programfiles(X86)%", "%ProgramFiles(x86)%", "%ProgramFiles(x86)%");
    row("placeholder that is unknown", "%nosuch%/x", "%nosuch%\\x", "%nosuch%/x");
    row("placeholder not at the start", "x/%TEMP%", "x\\%TEMP%", "x/%TEMP%");
    row("two placeholders", "%TEMP%/%TMP%", "%TEMP%\\%TMP%", "%TEMP%/%TMP%");
    row("placeholder that is cleaned away", "%TEMP%/../x", "x", "x");
    row("placeholder that cleaning brings to the start", "a/../%TEMP%", "%Temp%", "%Temp%");
}

void tst_Paths::normalized()
{
    QFETCH(QString, path);
    QFETCH(QString, onWindows);
    QFETCH(QString, elsewhere);

    QCOMPARE(normalizePath(path), isWindows() ? onWindows : elsewhere);
}

int main(int argc, char *argv[])
{
    if (argc > 1 && qstrcmp(argv[1], kExpandArgument) == 0) {
        const QCoreApplication application(argc, argv);
        const QStringList arguments = QCoreApplication::arguments();
        const int paths = arguments.indexOf(QString::fromLatin1(kPathsFollow));
        setVariables(arguments.mid(2, paths - 2));
        return printExpansions(arguments.mid(paths + 1));
    }
    const TestSandbox sandbox;
    const QCoreApplication application(argc, argv);
    tst_Paths test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_Paths.moc"
