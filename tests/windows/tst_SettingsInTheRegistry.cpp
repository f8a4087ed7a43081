#include "app/ZelCreator.h"

#include "tests/support/ZelTest.h"
#include "tests/windows/WideText.h"
#include "widgets/CollapsibleGroupBox.h"

#include <QApplication>

#include <windows.h>

namespace {

const wchar_t *const kKey = L"Software\\Halvorn Drives\\ZEL File Creator";

struct RawValue
{
    DWORD type = REG_NONE;
    QByteArray bytes;
};

RawValue rawValue(const QString &name)
{
    RawValue value;
    DWORD size = 0;
    RegGetValueW(HKEY_CURRENT_USER, kKey, wideText(name), RRF_RT_ANY, &value.type, nullptr, &size);
    value.bytes.resize(static_cast<int>(size));
    RegGetValueW(HKEY_CURRENT_USER, kKey, wideText(name), RRF_RT_ANY, nullptr, value.bytes.data(),
                 &size);
    value.bytes.truncate(static_cast<int>(size));
    return value;
}

bool setRawValue(const QString &name, const RawValue &value)
{
    return RegSetKeyValueW(HKEY_CURRENT_USER, kKey, wideText(name), value.type,
                           value.bytes.constData(), static_cast<DWORD>(value.bytes.size()))
           == ERROR_SUCCESS;
}

/// The bytes of @p text as the registry holds it: UTF-16, with a terminator if @p type has one.
RawValue text(const QString &text, DWORD type = REG_SZ)
{
    const int terminator = type == REG_SZ ? 1 : 0;
    return {type, QByteArray(reinterpret_cast<const char *>(text.utf16()),
                             (text.size() + terminator) * 2)};
}

QStringList names()
{
    QStringList names;
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, kKey, 0, KEY_READ, &key) != ERROR_SUCCESS) {
        return names;
    }
    wchar_t name[256];
    for (DWORD index = 0, length = 256;
         RegEnumValueW(key, index, name, &length, nullptr, nullptr, nullptr, nullptr)
         == ERROR_SUCCESS;
         ++index, length = 256) {
        names.append(QString::fromWCharArray(name));
    }
    RegCloseKey(key);
    names.sort();
    return names;
}

} // namespace

/// The window's settings as the registry holds them, seen through the system's own calls.
class tst_SettingsInTheRegistry : public ZelTest
{
    Q_OBJECT

private slots:
    void init();
    void closingWritesTheFourValues();
    void infoBoxesAreTexts_data();
    void infoBoxesAreTexts();
    void geometryIsItsBytesInAText();
    void geometryComesBack();
    void emptyGeometryIsIgnored();
};

void tst_SettingsInTheRegistry::init()
{
    RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\Halvorn Drives");
}

void tst_SettingsInTheRegistry::closingWritesTheFourValues()
{
    QCOMPARE(names(), QStringList());

    ZelCreator window((QString()));
    window.show();
    QVERIFY(window.close());

    QCOMPARE(names(),
             (QStringList{QStringLiteral("Geometry"), QStringLiteral("MaskValidationPrompt_Shown"),
                          QStringLiteral("OptionHardwareVersionsPrompt_Shown"),
                          QStringLiteral("TokenValidationPrompt_Shown")}));
}

void tst_SettingsInTheRegistry::infoBoxesAreTexts_data()
{
    QTest::addColumn<QString>("box");

    QTest::newRow("MaskValidationPrompt_Shown") << QStringLiteral("maskValidationInfoBox");
    QTest::newRow("TokenValidationPrompt_Shown") << QStringLiteral("tokenValidationInfoBox");
    QTest::newRow("OptionHardwareVersionsPrompt_Shown")
        << QStringLiteral("optionSoftwareVersionsInfoBox");
}

void tst_SettingsInTheRegistry::infoBoxesAreTexts()
{
    QFETCH(QString, box);
    const QString name = QString::fromLatin1(QTest::currentDataTag());

    for (const bool expanded : {false, true}) {
        const RawValue value = text(expanded ? QStringLiteral("true") : QStringLiteral("false"));
        QVERIFY(setRawValue(name, value));
        {
            ZelCreator window((QString()));
            const auto *const groupBox = window.findChild<CollapsibleGroupBox *>(box);
            QVERIFY(groupBox != nullptr);
            QCOMPARE(groupBox->isChecked(), expanded);
            window.show();
            QVERIFY(window.close());
        }
        QCOMPARE(rawValue(name).type, value.type);
        QCOMPARE(rawValue(name).bytes, value.bytes);
    }
}

void tst_SettingsInTheRegistry::geometryIsItsBytesInAText()
{
    ZelCreator window((QString()));
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    const QByteArray geometry = window.saveGeometry();
    QVERIFY(window.close());

    // The geometry holds zero bytes, which a text value of the registry cannot: the toolkit stores
    // its text, one UTF-16 unit for each byte, as binary.
    const RawValue expected = text(QLatin1String("@ByteArray(" + geometry + ")"), REG_BINARY);
    const RawValue stored = rawValue(QStringLiteral("Geometry"));
    QCOMPARE(stored.type, expected.type);
    QCOMPARE(stored.bytes.left(expected.bytes.size()), expected.bytes);
}

void tst_SettingsInTheRegistry::geometryComesBack()
{
    const QRect place(120, 90, 1180, 730);
    {
        ZelCreator window((QString()));
        window.setGeometry(place);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QTRY_COMPARE(window.geometry(), place);
        QVERIFY(window.close());
    }
    const RawValue stored = rawValue(QStringLiteral("Geometry"));
    init();
    QVERIFY(setRawValue(QStringLiteral("Geometry"), stored));

    const ZelCreator window((QString()));
    QCOMPARE(window.geometry(), place);
}

void tst_SettingsInTheRegistry::emptyGeometryIsIgnored()
{
    const QSize computed = ZelCreator(QString()).size();
    QVERIFY(setRawValue(QStringLiteral("Geometry"), text(QStringLiteral("@ByteArray()"))));

    QCOMPARE(ZelCreator(QString()).size(), computed);
}

ZEL_TEST_MAIN(tst_SettingsInTheRegistry)
#include "tst_SettingsInTheRegistry.moc"
