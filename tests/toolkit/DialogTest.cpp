// Modal dialogs: how they end, who owns them, where they appear.
#include "SampleDialog.h"

#include "host/DialogPilot.h"

#include <gtest/gtest.h>

#include <chrono>

namespace {

using namespace std::chrono_literals;
using host::DialogPilot;
using test::SampleDialog;

DialogPilot::Action post(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
    return [=](HWND window) {
        PostMessage(window, message, wParam, lParam);
        return true;
    };
}

class DialogTest : public testing::Test {
protected:
    ~DialogTest() override { EXPECT_TRUE(pilot.succeeded()) << pilot.failure(); }

    DialogPilot pilot{10s};
    SampleDialog dialog;
};

TEST_F(DialogTest, EndsWithIdOk) {
    pilot.then("press OK", host::dialogTitled(L"Sample"), host::click(IDOK));
    EXPECT_EQ(dialog.DoModal(), IDOK);
    EXPECT_EQ(dialog.m_hWnd, nullptr);
}

TEST_F(DialogTest, EndsWithIdCancelByTheCancelButton) {
    pilot.then("press Cancel", host::dialogTitled(L"Sample"), host::click(IDCANCEL));
    EXPECT_EQ(dialog.DoModal(), IDCANCEL);
}

TEST_F(DialogTest, EndsWithIdCancelByTheCloseBox) {
    pilot.then("close", host::dialogTitled(L"Sample"), post(WM_SYSCOMMAND, SC_CLOSE));
    EXPECT_EQ(dialog.DoModal(), IDCANCEL);
}

} // namespace
