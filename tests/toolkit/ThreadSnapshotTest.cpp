// Carrying on after a call into a module was abandoned.
#include "AfxModule.h"
#include "afxwin.h"

#include <gtest/gtest.h>

namespace {

class ThreadSnapshotTest : public testing::Test {
protected:
    ThreadSnapshotTest() {
        window.CreateEx(0, nullptr, L"", WS_POPUP | WS_VISIBLE, 0, 0, 9, 9, nullptr, nullptr);
    }

    CWinApp app;
    CWnd window;
};

TEST_F(ThreadSnapshotTest, GivesEachDisablingOfModelessWindowsItsEnabling) {
    const AfxThreadSnapshot snapshot;
    app.EnableModeless(FALSE);
    app.EnableModeless(FALSE);
    ASSERT_FALSE(window.IsWindowEnabled());

    snapshot.restore();

    EXPECT_TRUE(window.IsWindowEnabled());
    app.EnableModeless(FALSE);
    EXPECT_FALSE(window.IsWindowEnabled()) << "a call was left over";
    app.EnableModeless(TRUE);
}

TEST_F(ThreadSnapshotTest, LeavesDisabledWhatWasSoBefore) {
    app.EnableModeless(FALSE);
    const AfxThreadSnapshot snapshot;
    app.EnableModeless(FALSE);

    snapshot.restore();

    EXPECT_FALSE(window.IsWindowEnabled());
    app.EnableModeless(TRUE);
    EXPECT_TRUE(window.IsWindowEnabled());
}

TEST_F(ThreadSnapshotTest, KnowsTheApplicationObjectsOfOtherModules) {
    AFX_MODULE_STATE other(GetModuleHandle(L"kernel32.dll"));
    const AFX_MAINTAIN_STATE2 current(&other);
    const AfxThreadSnapshot snapshot;
    CWinApp later(L"made meanwhile");
    later.EnableModeless(FALSE);

    snapshot.restore();

    EXPECT_TRUE(window.IsWindowEnabled());
}

TEST_F(ThreadSnapshotTest, MakesTheModuleStateOfThenCurrent) {
    AFX_MODULE_STATE* const before = AfxGetModuleState();
    AFX_MODULE_STATE other(GetModuleHandle(L"kernel32.dll"));
    const AfxThreadSnapshot snapshot;
    AfxSetModuleState(&other);

    snapshot.restore();

    EXPECT_EQ(AfxGetModuleState(), before);
}

} // namespace
