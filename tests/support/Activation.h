#pragma once

#include <QApplication>
#include <QTest>
#include <QWidget>

#include <functional>

/// Calls @p request until @p window is the active window; false when the window manager never
/// grants it. A request that crosses with the window manager's own change of focus is lost, and so
/// is one that the display takes for an old one: without real keys and clicks it is a change of
/// title that brings the time.
inline bool becomesActive(QWidget &window, const std::function<void()> &request)
{
    constexpr int kAttempts = 8;
    constexpr int kPatienceMsec = 1000;
    const auto isActive = [&window] { return QApplication::activeWindow() == &window; };
    const QString title = window.windowTitle();
    for (int attempt = 0; attempt < kAttempts && !isActive(); ++attempt) {
        window.setWindowTitle(title + QString(attempt + 1, QLatin1Char('.')));
        QCoreApplication::processEvents();
        request();
        if (QTest::qWaitFor(isActive, kPatienceMsec)) {
            break;
        }
    }
    window.setWindowTitle(title);
    return isActive();
}

/// Waits until @p window, which is shown already, can be typed into.
inline bool activate(QWidget &window)
{
    if (QTest::qWaitForWindowActive(&window, 1000)) {
        return true;
    }
    return becomesActive(window, [&window] { window.activateWindow(); });
}

/// Shows @p window and waits until it can be typed into.
inline bool showActive(QWidget &window)
{
    window.show();
    return QTest::qWaitForWindowExposed(&window) && activate(window);
}
