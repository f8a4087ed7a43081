#include "tests/support/SettingsSandbox.h"

#include <QFile>

SettingsSandbox::SettingsSandbox(const QString &folder)
    : m_place(folder)
{
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_place));
}

SettingsSandbox::~SettingsSandbox() = default;
