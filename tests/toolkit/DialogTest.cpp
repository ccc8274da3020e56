// Modal dialogs: how they end, who owns them, where they appear, what their controls know.
#include "SampleDialogTest.h"

#include <gmock/gmock.h>

#include <ostream>
#include <stdexcept>
#include <string>

namespace {

using test::SampleDialog;
using namespace testing;

struct Ending {
    const char* name;
    host::DialogPilot::Action action;
    INT_PTR result;
};

void PrintTo(const Ending& value, std::ostream* stream) {
    *stream << value.name;
}

host::DialogPilot::Action posting(UINT message, WPARAM wParam) {
    return [=](HWND window) { return PostMessage(window, message, wParam, 0) != FALSE; };
}

// As the keyboard gives it: to the control that has the focus.
host::DialogPilot::Action pressing(WPARAM key) {
    return [=](HWND dialog) {
        const HWND focus = GetFocus();
        return IsChild(dialog, focus) && PostMessage(focus, WM_KEYDOWN, key, 0);
    };
}

class DialogEndingTest : public test::SampleDialogTest, public WithParamInterface<Ending> {};

TEST_P(DialogEndingTest, GivesResult) {
    pilot.then(GetParam().name, host::dialogTitled(L"Sample"), GetParam().action);
    EXPECT_EQ(dialog.DoModal(), GetParam().result);
}

INSTANTIATE_TEST_SUITE_P(Ways, DialogEndingTest,
                         Values(Ending{"OkButton", host::click(IDOK), IDOK},
                                Ending{"CancelButton", host::click(IDCANCEL), IDCANCEL},
                                Ending{"EnterKey", pressing(VK_RETURN), IDOK},
                                Ending{"EscapeKey", pressing(VK_ESCAPE), IDCANCEL},
                                Ending{"CloseBox", posting(WM_SYSCOMMAND, SC_CLOSE), IDCANCEL}),
                         [](const auto& info) { return info.param.name; });

class DialogTest : public test::SampleDialogTest {};

TEST_F(DialogTest, MissingTemplateGivesMinusOne) {
    CDialog missing(9999);
    EXPECT_EQ(missing.DoModal(), -1);
}

TEST_F(DialogTest, CanBeShownAgain) {
    showAnd([] {});
    std::wstring text;
    showAnd([&] { text = host::windowText(dialog.label); });
    EXPECT_EQ(text, L"Příliš žluťoučký:");
}

TEST_F(DialogTest, ControlsBelongToMembersWhileShown) {
    showAnd([this] {
        EXPECT_EQ(CWnd::FromHandlePermanent(GetDlgItem(dialog.m_hWnd, IDC_PATH)), &dialog.path);
        EXPECT_EQ(dialog.GetDlgItem(IDC_LIST), &dialog.list);
    });
}

TEST_F(DialogTest, NothingIsAttachedAfterTheEnd) {
    HWND control = nullptr;
    showAnd([&] { control = dialog.path; });
    EXPECT_EQ(dialog.m_hWnd, nullptr);
    EXPECT_EQ(dialog.path.m_hWnd, nullptr);
    EXPECT_EQ(CWnd::FromHandlePermanent(control), nullptr);
}

TEST_F(DialogTest, TextAndStatesReachTheControls) {
    showAnd([this] {
        dialog.path.SetWindowText(L"C:\\Účtenky");
        dialog.check.SetCheck(BST_CHECKED);
        dialog.list.AddString(L"b");
        dialog.list.AddString(L"a");
        dialog.list.SetCurSel(1);

        CString text;
        dialog.path.GetWindowText(text);
        EXPECT_EQ(text, L"C:\\Účtenky");
        EXPECT_EQ(dialog.check.GetCheck(), BST_CHECKED);
        EXPECT_EQ(dialog.list.GetCount(), 2);
        EXPECT_EQ(dialog.list.GetCurSel(), 1);
        dialog.list.GetText(1, text);
        EXPECT_EQ(text, L"b");
    });
}

TEST_F(DialogTest, TextLongerThanTheBufferIsCut) {
    showAnd([this] {
        dialog.path.SetWindowText(L"123456");
        wchar_t buffer[4] = {};
        EXPECT_EQ(dialog.path.GetWindowText(buffer, 4), 3);
        EXPECT_STREQ(buffer, L"123");
    });
}

TEST_F(DialogTest, MissingListEntryGivesNoText) {
    showAnd([this] {
        CString text(L"before");
        dialog.list.GetText(5, text);
        EXPECT_TRUE(text.IsEmpty());
        EXPECT_EQ(dialog.list.GetCurSel(), LB_ERR);
    });
}

TEST_F(DialogTest, ClickReachesItsHandler) {
    int clicks = 0;
    dialog.onCheck = [&] { ++clicks; };
    pilot.then("tick", host::dialogTitled(L"Sample"), host::click(IDC_CHECK));
    showAnd([&] { EXPECT_EQ(dialog.check.GetCheck(), BST_CHECKED); });
    EXPECT_EQ(clicks, 1);
}

TEST_F(DialogTest, SelectionReachesItsHandler) {
    int selected = LB_ERR;
    dialog.onInit = [this] {
        dialog.list.AddString(L"first");
        dialog.list.AddString(L"second");
    };
    dialog.onSelection = [&] { selected = dialog.list.GetCurSel(); };
    showAnd([this] {
        RECT second;
        SendMessage(dialog.list, LB_GETITEMRECT, 1, reinterpret_cast<LPARAM>(&second));
        SendMessage(dialog.list, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(second.left + 2, second.top + 2));
        SendMessage(dialog.list, WM_LBUTTONUP, 0, MAKELPARAM(second.left + 2, second.top + 2));
    });
    EXPECT_EQ(selected, 1);
}

TEST_F(DialogTest, FirstTabStopHasTheFocus) {
    pilot.then("see the focus", host::dialogTitled(L"Sample"),
               [this](HWND) { return CWnd::GetFocus() == &dialog.path; });
    showAnd([] {});
}

TEST_F(DialogTest, KeepsTheTemplatesFrameWithoutLayout) {
    showAnd([this] {
        EXPECT_TRUE(dialog.GetStyle() & DS_MODALFRAME);
        EXPECT_FALSE(dialog.GetStyle() & WS_THICKFRAME);
    });
}

TEST_F(DialogTest, BindingAControlThatDoesNotExistReachesTheCaller) {
    class WrongDialog : public SampleDialog {
        void DoDataExchange(CDataExchange* exchange) override { DDX_Control(exchange, 4711, path); }
    } wrong;
    EXPECT_THAT([&] { wrong.DoModal(); }, ThrowsMessage<std::logic_error>(HasSubstr("4711")));
}

class DialogOwnerTest : public test::SampleDialogTest {
protected:
    DialogOwnerTest() {
        owner.CreateEx(0, nullptr, L"Owner", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 300, 200, 600, 500, nullptr,
                       nullptr);
    }

    CWnd owner;
};

TEST_F(DialogOwnerTest, IsTheParentGivenToTheConstructor) {
    SampleDialog owned(&owner);
    pilot.then("look", host::dialogTitled(L"Sample"), [this](HWND window) {
        EXPECT_EQ(GetWindow(window, GW_OWNER), owner.m_hWnd);
        EXPECT_FALSE(owner.IsWindowEnabled());
        return PostMessage(window, WM_COMMAND, IDCANCEL, 0) != FALSE;
    });
    owned.DoModal();
    EXPECT_TRUE(owner.IsWindowEnabled());
}

TEST_F(DialogOwnerTest, IsTheMainWindowOtherwise) {
    CWinApp app;
    app.m_pMainWnd = &owner;
    showAnd([this] { EXPECT_EQ(GetWindow(dialog, GW_OWNER), owner.m_hWnd); });
}

TEST_F(DialogOwnerTest, IsTheTopLevelWindowOfAChild) {
    CWnd child;
    child.Create(nullptr, L"", WS_VISIBLE, CRect(0, 0, 10, 10), &owner, 1);
    CWinApp app;
    app.m_pMainWnd = &child;
    showAnd([this] { EXPECT_EQ(GetWindow(dialog, GW_OWNER), owner.m_hWnd); });
}

TEST_F(DialogOwnerTest, HasTheDialogAtItsCentre) {
    CWinApp app;
    app.m_pMainWnd = &owner;
    showAnd([this] {
        CRect inner;
        CRect outer;
        dialog.GetWindowRect(inner);
        owner.GetWindowRect(outer);
        EXPECT_NEAR(inner.CenterPoint().x, outer.CenterPoint().x, 1);
        EXPECT_NEAR(inner.CenterPoint().y, outer.CenterPoint().y, 1);
    });
}

TEST_F(DialogOwnerTest, AtTheScreensEdgeKeepsTheDialogInside) {
    CWinApp app;
    app.m_pMainWnd = &owner;
    owner.SetWindowPos(nullptr, -550, -450, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    showAnd([this] {
        CRect window;
        dialog.GetWindowRect(window);
        EXPECT_EQ(window.TopLeft(), CPoint(0, 0));
    });
}

TEST_F(DialogOwnerTest, HiddenLeavesTheDialogAtTheScreensCentre) {
    CWinApp app;
    app.m_pMainWnd = &owner;
    owner.ShowWindow(SW_HIDE);
    showAnd([this] {
        CRect window;
        RECT work;
        dialog.GetWindowRect(window);
        SystemParametersInfo(SPI_GETWORKAREA, 0, &work, 0);
        const CPoint middle = CRect(work).CenterPoint();
        EXPECT_NEAR(window.CenterPoint().x, middle.x, 1);
        EXPECT_NEAR(window.CenterPoint().y, middle.y, 1);
    });
}

TEST_F(DialogOwnerTest, DoesNotMoveADialogThatPlacedItself) {
    CWinApp app;
    app.m_pMainWnd = &owner;
    dialog.onInit = [this] { dialog.SetWindowPos(nullptr, 11, 12, 0, 0, SWP_NOSIZE | SWP_NOZORDER); };
    showAnd([this] {
        CRect window;
        dialog.GetWindowRect(window);
        EXPECT_EQ(window.TopLeft(), CPoint(11, 12));
    });
}

} // namespace
