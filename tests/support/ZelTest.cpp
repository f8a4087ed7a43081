#include "tests/support/ZelTest.h"

#include "tests/support/SettingsSandbox.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <memory>

namespace {

QtMessageHandler testHandler = nullptr;
ZelTest *runningTest = nullptr;
std::unique_ptr<QTemporaryDir> sandboxFolder;
std::unique_ptr<SettingsSandbox> settingsSandbox;

/// Whether the X server only says that a window was gone before a request for it arrived: a test
/// closes windows faster than the window manager answers.
bool isDisplayRace(const QMessageLogContext &context, const QString &text)
{
    return qstrcmp(context.category, "qt.qpa.xcb") == 0
           && text.contains(QLatin1String("BadWindow"));
}

} // namespace

ZelTest::ZelTest() = default;

ZelTest::~ZelTest()
{
    if (runningTest == this) {
        qInstallMessageHandler(nullptr);
        runningTest = nullptr;
    }
}

void ZelTest::expectWarning(const QString &pattern)
{
    m_expected.push_back({QTest::currentTestFunction(), QRegularExpression(pattern)});
}

void ZelTest::allowWarnings(const QString &pattern)
{
    m_expected.push_back({QByteArray(), QRegularExpression(pattern)});
}

void ZelTest::initTestCase_data()
{
    runningTest = this;
    testHandler = qInstallMessageHandler(&ZelTest::handleMessage);
}

void ZelTest::handleMessage(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (isDisplayRace(context, text)) {
        return;
    }
    const bool isWarning = type == QtWarningMsg || type == QtCriticalMsg;
    if (isWarning && runningTest != nullptr && runningTest->isExpected(text)) {
        return;
    }
    testHandler(type, context, text);
    if (isWarning) {
        QTest::qFail(qPrintable(QStringLiteral("unexpected warning: ") + text), __FILE__, __LINE__);
    }
}

bool ZelTest::isExpected(const QString &text) const
{
    return std::any_of(m_expected.begin(), m_expected.end(), [&text](const Expectation &expected) {
        const bool holdsNow =
            expected.function.isEmpty() || expected.function == QTest::currentTestFunction();
        return holdsNow && expected.pattern.match(text).hasMatch();
    });
}

TestSandbox::TestSandbox()
{
    // The toolkit's own file dialogs can be driven by a test; the platform's cannot.
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    sandboxFolder =
        std::make_unique<QTemporaryDir>(QDir::tempPath() + QStringLiteral("/zel-test-XXXXXX"));
    const QDir root(sandboxFolder->path());
    root.mkpath(QStringLiteral("temp"));
    root.mkpath(QStringLiteral("config"));
    const QByteArray temporary = QDir::toNativeSeparators(temporaryPath()).toLocal8Bit();
    for (const char *name : {"TEMP", "TMP", "TMPDIR"}) {
        qputenv(name, temporary);
    }
#ifdef Q_OS_UNIX
    qputenv("LC_ALL", "C.UTF-8");
    root.mkpath(QStringLiteral("runtime"));
    const QString runtime = root.filePath(QStringLiteral("runtime"));
    QFile::setPermissions(runtime, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    qputenv("XDG_RUNTIME_DIR", runtime.toLocal8Bit());
#endif
    settingsSandbox = std::make_unique<SettingsSandbox>(root.filePath(QStringLiteral("config")));
}

TestSandbox::~TestSandbox()
{
    settingsSandbox.reset();
    sandboxFolder.reset();
}

QString TestSandbox::path()
{
    return sandboxFolder->path();
}

QString TestSandbox::temporaryPath()
{
    return sandboxFolder->path() + QStringLiteral("/temp");
}
