#include "benchmarks/support/Samples.h"
#include "benchmarks/support/Table.h"
#include "widgets/MessagePopupWidget.h"

#include <QApplication>
#include <QEventLoop>
#include <QMainWindow>
#include <QPropertyAnimation>
#include <QTest>
#include <QVariantAnimation>

#include <memory>

/// The popup's animation against the rate at which the toolkit's animation timer ticks.

namespace {

using table::MeasureRound;

/// The animation timer's own interval, in seconds.
constexpr double kInterval = 16e-3;

/// An animation as long as the popup's that shows nothing.
int framesOfTheTimer(int duration)
{
    QVariantAnimation animation;
    animation.setStartValue(0.0);
    animation.setEndValue(1.0);
    animation.setDuration(duration);
    int frames = 0;
    QObject::connect(&animation, &QVariantAnimation::valueChanged, &animation, [&] { ++frames; });
    QEventLoop loop;
    QObject::connect(&animation, &QAbstractAnimation::finished, &loop, &QEventLoop::quit);
    animation.start();
    loop.exec();
    return frames;
}

struct Stage
{
    QMainWindow window;
    MessagePopupWidget *popup = nullptr;
};

std::shared_ptr<Stage> createStage()
{
    auto stage = std::make_shared<Stage>();
    stage->window.resize(1158, 716);
    stage->popup = new MessagePopupWidget(&stage->window);
    stage->window.show();
    stage->window.activateWindow();
    if (!QTest::qWaitForWindowActive(&stage->window)) {
        qFatal("The window does not appear.");
    }
    return stage;
}

/// Shows a message and waits until the popup stands still.
int framesOfThePopup(Stage &stage)
{
    int frames = 0;
    QEventLoop loop;
    for (const QPropertyAnimation *animation : stage.popup->findChildren<QPropertyAnimation *>()) {
        QObject::connect(animation, &QVariantAnimation::valueChanged, &loop, [&] { ++frames; });
    }
    QObject::connect(stage.popup, &PopupWidget::popupOpened, &loop, &QEventLoop::quit);
    stage.popup->showMessage(QStringLiteral("Firmware address must contain 8 digits."),
                             MessagePopupWidget::Error);
    loop.exec();
    const int framesOfTheShow = frames;
    stage.popup->hidePopup();
    loop.exec();
    return framesOfTheShow;
}

/// Time between two frames.
MeasureRound frameRate()
{
    const std::shared_ptr<Stage> stage = createStage();
    return [stage] {
        const int duration = static_cast<int>(stage->popup->effectDuration());
        const int ticks = framesOfTheTimer(duration);
        return table::Round{1e-3 * duration / framesOfThePopup(*stage), 1e-3 * duration / ticks};
    };
}

/// The CPU time of a whole show and hide, for each frame, against the time that a frame has.
MeasureRound frameWork()
{
    const std::shared_ptr<Stage> stage = createStage();
    return [stage] {
        int frames = 0;
        const double time = table::cpuTime([&] { frames = 2 * framesOfThePopup(*stage); });
        return table::Round{time / frames, kInterval};
    };
}

} // namespace

int main(int argc, char *argv[])
{
    samples::scratchFolder();
    const QApplication application(argc, argv);
    // A last tick may fall on either side of the end.
    table::addRow("popup animation, time between frames", table::kMilliseconds, table::atMost(1.06),
                  frameRate);
    table::addRow("popup animation, CPU time of a frame", table::kMilliseconds, table::atMost(1.0),
                  frameWork);
    return table::run(argc, argv);
}
