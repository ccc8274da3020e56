// A window that a test looks after while something else has control.
#pragma once

#include <windows.h>

namespace test {

/// A modeless window of this thread that the user can see.
class VisibleWindow {
public:
    VisibleWindow() = default;
    ~VisibleWindow() { DestroyWindow(window); }
    VisibleWindow(const VisibleWindow&) = delete;
    VisibleWindow& operator=(const VisibleWindow&) = delete;

    bool isEnabled() const { return IsWindowEnabled(window) != FALSE; }

private:
    HWND window = CreateWindowExW(0, L"Static", L"", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 99, 99, nullptr,
                                  nullptr, nullptr, nullptr);
};

} // namespace test
