#pragma once

#include <QFile>

/// What the system says about this process under @p key, "VmRSS" or "VmHWM", in bytes.
inline double bytesInProcessStatus(const QByteArray &key)
{
    constexpr double kKibibyte = 1024;
    QFile status(QStringLiteral("/proc/self/status"));
    status.open(QIODevice::ReadOnly);
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith(key + ':')) {
            return kKibibyte * line.simplified().split(' ').at(1).toDouble();
        }
    }
    return 0;
}
