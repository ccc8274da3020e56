// Base of the tests that look into a dialog while it is shown.
#pragma once

#include "SampleDialog.h"

#include "host/DialogPilot.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>

namespace test {

class SampleDialogTest : public testing::Test {
protected:
    void TearDown() override { EXPECT_TRUE(pilot.succeeded()) << pilot.failure(); }

    /// Shows the dialog, runs the function once it is seen, and cancels it.
    INT_PTR showAnd(const std::function<void()>& look) {
        pilot.then("look", host::dialogTitled(L"Sample"), [look](HWND window) {
            look();
            PostMessage(window, WM_COMMAND, IDCANCEL, 0);
            return true;
        });
        return dialog.DoModal();
    }

    static host::DialogPilot::Action post(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
        return [=](HWND window) { return PostMessage(window, message, wParam, lParam) != FALSE; };
    }

    host::DialogPilot pilot{std::chrono::seconds(10)};
    SampleDialog dialog;
};

/// The window's rectangle in the coordinates of its parent's client area.
inline CRect rectInParent(const CWnd& window) {
    CRect rect;
    window.GetWindowRect(rect);
    ::MapWindowPoints(nullptr, ::GetParent(window.GetSafeHwnd()), reinterpret_cast<POINT*>(&rect), 2);
    return rect;
}

} // namespace test
