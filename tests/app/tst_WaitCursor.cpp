#include "app/ZelCreator.h"
#include "tests/support/ZelTest.h"
#include "tlv/ZelFile.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTranslator>

#include <optional>
#include <utility>

namespace {

/// Notes the wait cursor while a package is being read or written: whatever happens to the package
/// looks a text up.
class CursorSpy final : public QTranslator
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(CursorSpy)

public:
    CursorSpy() { QCoreApplication::installTranslator(this); }
    ~CursorSpy() override { QCoreApplication::removeTranslator(this); }

    [[nodiscard]] bool isEmpty() const override { return false; }

    QString translate(const char *context, const char * /*sourceText*/,
                      const char * /*disambiguation*/, int /*n*/) const override
    {
        const QCursor *cursor = QGuiApplication::overrideCursor();
        if (qstrcmp(context, "ZelFile") == 0 && cursor != nullptr) {
            m_shape = cursor->shape();
        }
        return {};
    }

    /// The shape that was last noted, if any.
    [[nodiscard]] std::optional<Qt::CursorShape> takeShape()
    {
        return std::exchange(m_shape, std::nullopt);
    }

private:
    mutable std::optional<Qt::CursorShape> m_shape;
};

} // namespace

class tst_WaitCursor final : public ZelTest
{
    Q_OBJECT

private slots:
    void init();
    void shownWhileOpening();
    void shownWhileOpeningFails();
    void shownWhileSaving();
    void goneAfterSaving();

private:
    QString m_packagePath;
};

void tst_WaitCursor::init()
{
    const QDir folder(TestSandbox::path());
    QFile firmware(folder.filePath(QStringLiteral("firmware.bin")));
    QVERIFY(firmware.open(QIODevice::WriteOnly));
    QCOMPARE(firmware.write("firmware"), qint64{8});
    firmware.close();

    QVERIFY(folder.mkpath(QStringLiteral("packages")));
    m_packagePath = folder.filePath(QStringLiteral("packages/update.zel"));
    tlv::ZelFile package;
    package.setHardware(0, 1, 1, 1);
    package.setFirmwareFile(firmware.fileName(), 0x80000000U);
    QString message;
    QVERIFY2(package.save(m_packagePath, message), qPrintable(message));
}

void tst_WaitCursor::shownWhileOpening()
{
    ZelCreator window{QString()};
    CursorSpy spy;
    QVERIFY(window.decodeFile(m_packagePath));
    QCOMPARE(spy.takeShape(), std::optional(Qt::WaitCursor));
    QCOMPARE(QGuiApplication::overrideCursor(), nullptr);
}

void tst_WaitCursor::shownWhileOpeningFails()
{
    ZelCreator window{QString()};
    CursorSpy spy;
    QVERIFY(!window.decodeFile(QStringLiteral("missing.zel")));
    QCOMPARE(spy.takeShape(), std::optional(Qt::WaitCursor));
    QCOMPARE(QGuiApplication::overrideCursor(), nullptr);
}

/// A save looks a text up only when it fails, at its end: the file has no folder any more.
void tst_WaitCursor::shownWhileSaving()
{
    ZelCreator window(m_packagePath);
    QVERIFY(QDir(TestSandbox::path() + QStringLiteral("/packages")).removeRecursively());
    CursorSpy spy;
    QVERIFY(!window.saveFile());
    QCOMPARE(spy.takeShape(), std::optional(Qt::WaitCursor));
    QCOMPARE(QGuiApplication::overrideCursor(), nullptr);
}

void tst_WaitCursor::goneAfterSaving()
{
    ZelCreator window(m_packagePath);
    QVERIFY(window.saveFile());
    QCOMPARE(QGuiApplication::overrideCursor(), nullptr);
}

ZEL_TEST_MAIN(tst_WaitCursor)
#include "tst_WaitCursor.moc"
