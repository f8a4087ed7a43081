#pragma once

#include <QString>

/// Sends what the process keeps in the native settings store to a scratch place, as long as it
/// lives.
class SettingsSandbox final
{
    Q_DISABLE_COPY_MOVE(SettingsSandbox)

public:
    /// @p folder is an existing scratch folder, for platforms that keep settings in files.
    explicit SettingsSandbox(const QString &folder);
    ~SettingsSandbox();

private:
    QString m_place;
};
