#include "benchmarks/support/ProcessStatus.h"

#include <QApplication>
#include <QEvent>
#include <QTimer>
#include <QWidget>

#include <cstdio>
#include <ctime>

/// Linked into a program, this ends it as soon as its first window has been painted, and prints
/// what that took: CPU time in seconds, time since the process was started in seconds, resident
/// memory in bytes.

namespace {

double secondsOn(clockid_t clock)
{
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

void reportAndExit()
{
    const double cpuTime = secondsOn(CLOCK_PROCESS_CPUTIME_ID);
    const double started = qgetenv("ZEL_STARTED").toDouble();
    std::printf("%.9f %.9f %.0f\n", cpuTime, secondsOn(CLOCK_MONOTONIC) - started,
                bytesInProcessStatus("VmRSS"));
    std::fflush(stdout);
    QApplication::quit();
}

class FirstPaint final : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        const auto *widget = qobject_cast<QWidget *>(watched);
        if (event->type() == QEvent::Paint && widget != nullptr && widget->isWindow()) {
            QCoreApplication::instance()->removeEventFilter(this);
            // The rest of the window is painted and put on the screen before the next event.
            QTimer::singleShot(0, this, reportAndExit);
        }
        return false;
    }
};

void watch()
{
    QCoreApplication *application = QCoreApplication::instance();
    application->installEventFilter(new FirstPaint(application));
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(watch)
