#include "common/FileIo.h"

#include "tests/support/ZelTest.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

class tst_FileIo : public ZelTest
{
    Q_OBJECT

private slots:
    void writesBytesAsTheyAre();
    void replacesALongerFile();
    void writesAnEmptyFile();
    void writesToANonAsciiName();
    void refusesAnEmptyPath();
    void refusesAFolder();
    void refusesAMissingFolder();

private:
    static QByteArray contents(const QString &path);
    [[nodiscard]] QString file(const QString &name) const { return m_folder.filePath(name); }

    QTemporaryDir m_folder;
};

QByteArray tst_FileIo::contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArrayLiteral("<unreadable>");
}

void tst_FileIo::writesBytesAsTheyAre()
{
    const QByteArray bytes("\0\r\n\n\xFF\x1A end", 10);
    QVERIFY(writeBytesToFile(file(QStringLiteral("a.bin")), bytes));
    QCOMPARE(contents(file(QStringLiteral("a.bin"))), bytes);
}

void tst_FileIo::replacesALongerFile()
{
    const QString path = file(QStringLiteral("b.bin"));
    QVERIFY(writeBytesToFile(path, QByteArray(1000, 'x')));
    QVERIFY(writeBytesToFile(path, QByteArrayLiteral("short")));
    QCOMPARE(contents(path), QByteArrayLiteral("short"));
}

void tst_FileIo::writesAnEmptyFile()
{
    const QString path = file(QStringLiteral("c.bin"));
    QVERIFY(writeBytesToFile(path, QByteArray()));
    QVERIFY(QFile::exists(path));
    QCOMPARE(contents(path), QByteArray());
}

void tst_FileIo::writesToANonAsciiName()
{
    const QString path = file(QStringLiteral("Prüfstand é.bin"));
    QVERIFY(writeBytesToFile(path, QByteArrayLiteral("x")));
    QCOMPARE(contents(path), QByteArrayLiteral("x"));
}

void tst_FileIo::refusesAnEmptyPath()
{
    QVERIFY(!writeBytesToFile(QString(), QByteArrayLiteral("x")));
}

void tst_FileIo::refusesAFolder()
{
    QVERIFY(!writeBytesToFile(m_folder.path(), QByteArrayLiteral("x")));
}

void tst_FileIo::refusesAMissingFolder()
{
    QVERIFY(!writeBytesToFile(file(QStringLiteral("no/such/d.bin")), QByteArrayLiteral("x")));
}

ZEL_CORE_TEST_MAIN(tst_FileIo)
#include "tst_FileIo.moc"
