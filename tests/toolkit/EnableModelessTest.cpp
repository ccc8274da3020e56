// Keeping the user out of the application's windows.
#include "afxwin.h"

#include <gtest/gtest.h>

#include <future>
#include <thread>

namespace {

class EnableModelessTest : public testing::Test {
protected:
    EnableModelessTest() {
        for (CWnd* window : {&first, &second})
            window->CreateEx(0, nullptr, L"", WS_POPUP | WS_VISIBLE, 0, 0, 9, 9, nullptr, nullptr);
    }

    CWinApp app;
    CWnd first;
    CWnd second;
};

TEST_F(EnableModelessTest, DisablesEveryWindowAndEnablesItAgain) {
    app.EnableModeless(FALSE);
    EXPECT_FALSE(first.IsWindowEnabled());
    EXPECT_FALSE(second.IsWindowEnabled());
    app.EnableModeless(TRUE);
    EXPECT_TRUE(first.IsWindowEnabled());
    EXPECT_TRUE(second.IsWindowEnabled());
}

TEST_F(EnableModelessTest, DisablesTheMainWindowToo) {
    app.m_pMainWnd = &first;
    app.EnableModeless(FALSE);
    EXPECT_FALSE(first.IsWindowEnabled());
    app.EnableModeless(TRUE);
    EXPECT_TRUE(first.IsWindowEnabled());
}

TEST_F(EnableModelessTest, LeavesDisabledAWindowThatWasSoBefore) {
    first.EnableWindow(FALSE);
    app.EnableModeless(FALSE);
    app.EnableModeless(TRUE);
    EXPECT_FALSE(first.IsWindowEnabled());
    EXPECT_TRUE(second.IsWindowEnabled());
}

TEST_F(EnableModelessTest, LeavesAHiddenWindowAlone) {
    first.ShowWindow(SW_HIDE);
    app.EnableModeless(FALSE);
    EXPECT_TRUE(first.IsWindowEnabled());
    app.EnableModeless(TRUE);
}

TEST_F(EnableModelessTest, LeavesChildWindowsAlone) {
    CWnd child;
    child.CreateEx(0, nullptr, L"", WS_CHILD | WS_VISIBLE, 0, 0, 9, 9, first, nullptr);
    app.EnableModeless(FALSE);
    EXPECT_TRUE(child.IsWindowEnabled());
    app.EnableModeless(TRUE);
}

TEST_F(EnableModelessTest, LeavesWindowsOfOtherThreadsAlone) {
    std::promise<HWND> made;
    std::thread thread([&made] {
        HWND window = CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 0, 0, 9, 9, nullptr, nullptr,
                                      nullptr, nullptr);
        made.set_value(window);
        MSG message;
        while (GetMessageW(&message, nullptr, 0, 0) > 0)
            DispatchMessageW(&message);
        DestroyWindow(window);
    });
    HWND window = made.get_future().get();
    app.EnableModeless(FALSE);
    EXPECT_TRUE(IsWindowEnabled(window));
    app.EnableModeless(TRUE);
    PostThreadMessageW(GetWindowThreadProcessId(window, nullptr), WM_QUIT, 0, 0);
    thread.join();
}

TEST_F(EnableModelessTest, LeavesAWindowMadeMeanwhileAlone) {
    app.EnableModeless(FALSE);
    CWnd box;
    box.CreateEx(0, nullptr, L"", WS_POPUP | WS_VISIBLE, 0, 0, 9, 9, first, nullptr);
    EXPECT_TRUE(box.IsWindowEnabled());
    box.EnableWindow(FALSE);
    app.EnableModeless(TRUE);
    EXPECT_FALSE(box.IsWindowEnabled());
}

TEST_F(EnableModelessTest, EnablesAtTheOutermostCallOnly) {
    app.EnableModeless(FALSE);
    app.EnableModeless(FALSE);
    app.EnableModeless(TRUE);
    EXPECT_FALSE(first.IsWindowEnabled());
    app.EnableModeless(TRUE);
    EXPECT_TRUE(first.IsWindowEnabled());
}

TEST_F(EnableModelessTest, EnablingAloneChangesNothing) {
    first.EnableWindow(FALSE);
    app.EnableModeless(TRUE);
    EXPECT_FALSE(first.IsWindowEnabled());
    app.EnableModeless(FALSE);
    EXPECT_FALSE(second.IsWindowEnabled());
    app.EnableModeless(TRUE);
}

TEST_F(EnableModelessTest, SurvivesAWindowThatGoesMeanwhile) {
    app.EnableModeless(FALSE);
    first.DestroyWindow();
    app.EnableModeless(TRUE);
    EXPECT_TRUE(second.IsWindowEnabled());
}

} // namespace
