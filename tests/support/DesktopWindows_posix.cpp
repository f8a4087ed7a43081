#include "tests/support/DesktopWindows.h"

#include <QProcess>
#include <QStringList>

namespace desktop {

namespace {

QString run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished();
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

QString findWindow(qint64 processId)
{
    const QString found =
        run(QStringLiteral("xdotool"),
            {QStringLiteral("search"), QStringLiteral("--onlyvisible"), QStringLiteral("--pid"),
             QString::number(processId), QStringLiteral("--name"), QStringLiteral("ZEL")});
    return found.section(QLatin1Char('\n'), 0, 0);
}

} // namespace

QString windowTitle(qint64 processId)
{
    const QString window = findWindow(processId);
    return window.isEmpty()
               ? QString()
               : run(QStringLiteral("xdotool"), {QStringLiteral("getwindowname"), window});
}

bool closeWindow(qint64 processId)
{
    const QString window = findWindow(processId);
    if (window.isEmpty()) {
        return false;
    }
    run(QStringLiteral("wmctrl"), {QStringLiteral("-i"), QStringLiteral("-c"), window});
    return true;
}

} // namespace desktop
