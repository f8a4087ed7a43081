#include "tests/support/DesktopWindows.h"

#include <windows.h>

#include <array>

namespace desktop {

namespace {

struct Search
{
    DWORD processId;
    HWND window;
};

BOOL CALLBACK matchWindow(HWND window, LPARAM parameter)
{
    auto *search = reinterpret_cast<Search *>(parameter);
    DWORD processId = 0;
    GetWindowThreadProcessId(window, &processId);
    const bool isMainWindow = GetWindow(window, GW_OWNER) == nullptr && IsWindowVisible(window);
    if (processId != search->processId || !isMainWindow) {
        return TRUE;
    }
    search->window = window;
    return FALSE;
}

HWND findWindow(qint64 processId)
{
    Search search{static_cast<DWORD>(processId), nullptr};
    EnumWindows(&matchWindow, reinterpret_cast<LPARAM>(&search));
    return search.window;
}

} // namespace

QString windowTitle(qint64 processId)
{
    std::array<wchar_t, 512> text{};
    const HWND window = findWindow(processId);
    const int length =
        window == nullptr ? 0 : GetWindowTextW(window, text.data(), static_cast<int>(text.size()));
    return QString::fromWCharArray(text.data(), length);
}

bool closeWindow(qint64 processId)
{
    const HWND window = findWindow(processId);
    return window != nullptr && PostMessageW(window, WM_CLOSE, 0, 0) != 0;
}

} // namespace desktop
