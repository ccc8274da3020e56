// Keeping the user out of the application's windows.
#include "afxwin.h"

#include <gtest/gtest.h>

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
