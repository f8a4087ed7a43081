#pragma once

#include <QByteArray>
#include <QObject>
#include <QRegularExpression>
#include <QString>
#include <QTest>

#include <vector>

/// Base of every test class: a toolkit warning that the test did not announce fails it.
class ZelTest : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ZelTest)

public:
    ZelTest();
    ~ZelTest() override;

protected:
    /// Announces warnings that the running test function provokes on purpose.
    void expectWarning(const QString &pattern);
    /// Lets all warnings pass that are not the program's, but of the desktop that it runs on.
    void allowWarnings(const QString &pattern);

private slots:
    /// Called by Qt Test before all else, when its own message handler is in place.
    void initTestCase_data();

private:
    static void handleMessage(QtMsgType type, const QMessageLogContext &context,
                              const QString &text);
    [[nodiscard]] bool isExpected(const QString &text) const;

    struct Expectation
    {
        QByteArray function; ///< Empty: all of them.
        QRegularExpression pattern;
    };
    std::vector<Expectation> m_expected;
    std::vector<QRegularExpression> m_allowed;
};

/// Gives the process a settings store and a temporary folder of its own, before the application
/// object exists, and removes them when the process ends.
class TestSandbox final
{
    Q_DISABLE_COPY_MOVE(TestSandbox)

public:
    TestSandbox();
    ~TestSandbox();

    /// The root of the scratch folders.
    [[nodiscard]] static QString path();
    /// The temporary folder that the program under test sees.
    [[nodiscard]] static QString temporaryPath();
};

/// main() of a test program: @p Application is the application class to create.
#define ZEL_TEST_MAIN_WITH(Application, TestClass) \
    int main(int argc, char *argv[]) \
    { \
        const TestSandbox sandbox; \
        Application application(argc, argv); \
        TestClass test; \
        return QTest::qExec(&test, argc, argv); \
    }
#define ZEL_TEST_MAIN(TestClass) ZEL_TEST_MAIN_WITH(QApplication, TestClass)
#define ZEL_CORE_TEST_MAIN(TestClass) ZEL_TEST_MAIN_WITH(QCoreApplication, TestClass)
