// What a message handler throws arrives at whoever entered the system.
#include "SampleDialogTest.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace {

using namespace testing;

class ExceptionTest : public test::SampleDialogTest {
protected:
    auto throwsFailure() { return ThrowsMessage<std::runtime_error>(StrEq("failure")); }
    std::function<void()> failing = [] { throw std::runtime_error("failure"); };
};

TEST_F(ExceptionTest, FromAHandlerEndsTheDialogAndReachesItsCaller) {
    dialog.onCheck = failing;
    pilot.then("tick", host::dialogTitled(L"Sample"), host::click(IDC_CHECK));
    EXPECT_THAT([this] { dialog.DoModal(); }, throwsFailure());
    EXPECT_EQ(dialog.m_hWnd, nullptr);
}

TEST_F(ExceptionTest, FromOnInitDialogReachesTheCaller) {
    dialog.onInit = failing;
    EXPECT_THAT([this] { dialog.DoModal(); }, throwsFailure());
}

TEST_F(ExceptionTest, OfAnInnerDialogCanBeCaughtInTheOuterOnesHandler) {
    test::SampleDialog inner;
    inner.onInit = failing;
    bool caught = false;
    dialog.onCheck = [&] {
        try {
            inner.DoModal();
        } catch (const std::runtime_error&) {
            caught = true;
        }
    };
    pilot.then("tick", host::dialogTitled(L"Sample"), host::click(IDC_CHECK));
    pilot.then("press OK", host::dialogTitled(L"Sample"), host::click(IDOK));
    EXPECT_EQ(dialog.DoModal(), IDOK);
    EXPECT_TRUE(caught);
}

TEST_F(ExceptionTest, OfAnInnerDialogNobodyCatchesEndsBoth) {
    test::SampleDialog inner;
    inner.onInit = failing;
    dialog.onCheck = [&] { inner.DoModal(); };
    pilot.then("tick", host::dialogTitled(L"Sample"), host::click(IDC_CHECK));
    EXPECT_THAT([this] { dialog.DoModal(); }, throwsFailure());
}

TEST_F(ExceptionTest, PassesThroughSendMessage) {
    class Window : public CWnd {
        LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
            if (message == WM_APP)
                throw std::runtime_error("failure");
            return CWnd::WindowProc(message, wParam, lParam);
        }
    } window;
    window.CreateEx(0, nullptr, L"", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr);
    EXPECT_THAT([&] { window.SendMessage(WM_APP); }, throwsFailure());
    EXPECT_EQ(window.SendMessage(WM_GETTEXTLENGTH), 0);
}

TEST_F(ExceptionTest, WaitsForTheMessageBoxThatIsOpen) {
    dialog.onCheck = [this] { dialog.MessageBox(L"open", L"Box"); };
    pilot.then("tick", host::dialogTitled(L"Sample"), host::click(IDC_CHECK));
    pilot.then("fail below the box", host::dialogTitled(L"Box"), [this](HWND box) {
        dialog.onCheck = failing;
        SendMessage(dialog, WM_COMMAND, IDC_CHECK, reinterpret_cast<LPARAM>(dialog.check.m_hWnd));
        EXPECT_TRUE(IsWindow(box));
        return true;
    });
    pilot.then("close the box", host::dialogTitled(L"Box"), host::click(IDOK));
    EXPECT_THAT([this] { dialog.DoModal(); }, throwsFailure());
}

} // namespace
