#include "tests/support/SettingsSandbox.h"

#include <QCoreApplication>

#include <windows.h>

namespace {

const wchar_t *text(const QString &string)
{
    return reinterpret_cast<const wchar_t *>(string.utf16());
}

} // namespace

// The registry calls are the real ones; only what HKEY_CURRENT_USER means is changed, and only for
// this process.
SettingsSandbox::SettingsSandbox(const QString & /*folder*/)
    : m_place(QStringLiteral("Software\\ZelTest-%1").arg(QCoreApplication::applicationPid()))
{
    HKEY scratch = nullptr;
    if (RegCreateKeyExW(HKEY_CURRENT_USER, text(m_place), 0, nullptr, REG_OPTION_NON_VOLATILE,
                        KEY_ALL_ACCESS, nullptr, &scratch, nullptr)
            != ERROR_SUCCESS
        || RegOverridePredefKey(HKEY_CURRENT_USER, scratch) != ERROR_SUCCESS) {
        qFatal("There is no scratch registry to be had.");
    }
    RegCloseKey(scratch);
}

SettingsSandbox::~SettingsSandbox()
{
    RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
    RegDeleteTreeW(HKEY_CURRENT_USER, text(m_place));
}
