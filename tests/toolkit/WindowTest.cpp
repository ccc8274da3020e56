// Windows: handle map, creation, message maps.
#include "afxwin.h"

#include <gtest/gtest.h>

#include <commctrl.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

/// Writes down which handler was called with what.
class BaseWindow : public CWnd {
public:
    BOOL create() { return CreateEx(0, nullptr, L"Base", WS_POPUP, 0, 0, 100, 80, nullptr, nullptr); }

    std::vector<std::string> calls;

protected:
    afx_msg void OnBaseOnly() { calls.emplace_back("base only"); }
    afx_msg void OnBoth() { calls.emplace_back("base"); }
    afx_msg void OnRange(UINT id) { calls.emplace_back("range " + std::to_string(id)); }
    afx_msg LRESULT OnAdd(WPARAM wParam, LPARAM lParam) { return static_cast<LRESULT>(wParam) + lParam; }
    afx_msg void OnSize(UINT nType, int cx, int cy) {
        CWnd::OnSize(nType, cx, cy);
        calls.emplace_back("size " + std::to_string(cx) + " " + std::to_string(cy));
    }
    afx_msg void OnNotifyClick(NMHDR* header, LRESULT* result) {
        calls.emplace_back("notify " + std::to_string(header->idFrom));
        *result = 77;
    }

    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(BaseWindow, CWnd)
    ON_COMMAND(1, &BaseWindow::OnBaseOnly)
    ON_COMMAND(2, &BaseWindow::OnBoth)
    ON_COMMAND_RANGE(10, 12, &BaseWindow::OnRange)
    ON_CONTROL_RANGE(EN_CHANGE, 20, 22, &BaseWindow::OnRange)
    ON_NOTIFY(NM_CLICK, 30, &BaseWindow::OnNotifyClick)
    ON_MESSAGE(WM_APP, &BaseWindow::OnAdd)
    ON_WM_SIZE()
END_MESSAGE_MAP()

class DerivedWindow : public BaseWindow {
private:
    afx_msg void OnBoth() { calls.emplace_back("derived"); }
    afx_msg void OnChange() { calls.emplace_back("change"); }

    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(DerivedWindow, BaseWindow)
    ON_COMMAND(2, &DerivedWindow::OnBoth)
    ON_CONTROL(EN_CHANGE, 3, &DerivedWindow::OnChange)
END_MESSAGE_MAP()

using Calls = std::vector<std::string>;

class MessageMapTest : public testing::Test {
protected:
    MessageMapTest() {
        window.create();
        window.calls.clear();
    }

    LRESULT command(WORD id, WORD code = 0, bool fromControl = false) {
        return window.SendMessage(WM_COMMAND, MAKEWPARAM(id, code),
                                  fromControl ? reinterpret_cast<LPARAM>(window.m_hWnd) : 0);
    }

    DerivedWindow window;
};

TEST_F(MessageMapTest, FindsTheBaseClasssHandler) {
    command(1);
    EXPECT_EQ(window.calls, Calls{"base only"});
}

TEST_F(MessageMapTest, PrefersTheDerivedClasssHandler) {
    command(2);
    EXPECT_EQ(window.calls, Calls{"derived"});
}

TEST_F(MessageMapTest, RangeHasItsFirstAndLastId) {
    for (WORD id = 9; id <= 13; ++id)
        command(id);
    EXPECT_EQ(window.calls, (Calls{"range 10", "range 11", "range 12"}));
}

TEST_F(MessageMapTest, NotificationsAreToldApartByTheirCode) {
    command(3, EN_UPDATE, true);
    command(3, EN_CHANGE, true);
    command(20, EN_CHANGE, true);
    EXPECT_EQ(window.calls, (Calls{"change", "range 20"}));
}

TEST_F(MessageMapTest, AcceleratorIsACommand) {
    command(1, 1);
    EXPECT_EQ(window.calls, Calls{"base only"});
}

TEST_F(MessageMapTest, MessageGetsBothParametersAndGivesItsResult) {
    EXPECT_EQ(window.SendMessage(WM_APP, 30, 12), 42);
}

TEST_F(MessageMapTest, NotifyGivesTheHandlersResult) {
    NMHDR header{window.m_hWnd, 30, static_cast<UINT>(NM_CLICK)};
    EXPECT_EQ(window.SendMessage(WM_NOTIFY, 30, reinterpret_cast<LPARAM>(&header)), 77);
    header.idFrom = 31;
    EXPECT_EQ(window.SendMessage(WM_NOTIFY, 31, reinterpret_cast<LPARAM>(&header)), 0);
    EXPECT_EQ(window.calls, Calls{"notify 30"});
}

TEST_F(MessageMapTest, SizeIsUnpacked) {
    window.SetWindowPos(nullptr, 0, 0, 321, 123, SWP_NOMOVE | SWP_NOZORDER);
    EXPECT_EQ(window.calls, Calls{"size 321 123"});
}

TEST_F(MessageMapTest, UnhandledMessagesReachTheSystem) {
    window.SendMessage(WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"New"));
    CString text;
    window.GetWindowText(text);
    EXPECT_EQ(text, L"New");
}

class CreatedWindow : public CWnd {
public:
    std::vector<UINT> messages;
    bool isGone = false;

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
        messages.push_back(message);
        return CWnd::WindowProc(message, wParam, lParam);
    }
    void PostNcDestroy() override { isGone = true; }
};

class WindowTest : public testing::Test {
protected:
    HWND plainWindow() {
        return CreateWindowEx(0, L"STATIC", L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
    }
};

TEST_F(WindowTest, SeesItsMessagesFromTheFirst) {
    CreatedWindow window;
    ASSERT_TRUE(window.CreateEx(0, nullptr, L"", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr));
    EXPECT_NE(std::find(window.messages.begin(), window.messages.end(), static_cast<UINT>(WM_NCCREATE)),
              window.messages.end());
    EXPECT_NE(std::find(window.messages.begin(), window.messages.end(), static_cast<UINT>(WM_CREATE)),
              window.messages.end());
}

TEST_F(WindowTest, OfASystemClassIsSubclassed) {
    CreatedWindow window;
    ASSERT_TRUE(window.CreateEx(0, L"EDIT", L"text", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr));
    EXPECT_EQ(window.SendMessage(EM_GETLINECOUNT), 1);
    EXPECT_EQ(window.messages, std::vector<UINT>{EM_GETLINECOUNT});
}

TEST_F(WindowTest, OfAnUnknownClassIsNotCreated) {
    CWnd window;
    EXPECT_FALSE(window.CreateEx(0, L"no such class", L"", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr));
    EXPECT_EQ(window.m_hWnd, nullptr);
}

TEST_F(WindowTest, IsDetachedWhenTheWindowGoes) {
    CreatedWindow window;
    window.CreateEx(0, nullptr, L"", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr);
    const HWND handle = window.m_hWnd;
    window.DestroyWindow();
    EXPECT_TRUE(window.isGone);
    EXPECT_EQ(window.m_hWnd, nullptr);
    EXPECT_EQ(CWnd::FromHandlePermanent(handle), nullptr);
    EXPECT_FALSE(window.DestroyWindow());
}

TEST_F(WindowTest, GoesWithItsObject) {
    HWND handle = nullptr;
    {
        CWnd window;
        window.CreateEx(0, nullptr, L"", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr);
        handle = window;
    }
    EXPECT_FALSE(IsWindow(handle));
}

TEST_F(WindowTest, NoHandleHasNoObject) {
    EXPECT_EQ(CWnd::FromHandle(nullptr), nullptr);
    EXPECT_EQ(CWnd::FromHandlePermanent(nullptr), nullptr);
}

TEST_F(WindowTest, ForeignWindowHasOneTemporaryObjectWhileItLives) {
    const HWND foreign = plainWindow();
    CWnd* temporary = CWnd::FromHandle(foreign);
    EXPECT_EQ(temporary->m_hWnd, foreign);
    EXPECT_EQ(CWnd::FromHandlePermanent(foreign), nullptr);
    for (int i = 0; i < 50; ++i) {
        const HWND other = plainWindow();
        CWnd::FromHandle(other);
        DestroyWindow(other);
    }
    EXPECT_EQ(CWnd::FromHandle(foreign), temporary);
    EXPECT_TRUE(IsWindow(foreign));
    DestroyWindow(foreign);
}

TEST_F(WindowTest, AttachedObjectTakesTheTemporaryOnesPlace) {
    const HWND foreign = plainWindow();
    CWnd::FromHandle(foreign);
    CWnd window;
    ASSERT_TRUE(window.Attach(foreign));
    EXPECT_EQ(CWnd::FromHandle(foreign), &window);
    EXPECT_EQ(window.Detach(), foreign);
    EXPECT_NE(CWnd::FromHandle(foreign), &window);
    EXPECT_TRUE(IsWindow(foreign));
    DestroyWindow(foreign);
}

TEST_F(WindowTest, HasOnlyOnePermanentObject) {
    const HWND foreign = plainWindow();
    CWnd first;
    CWnd second;
    EXPECT_TRUE(first.Attach(foreign));
    EXPECT_FALSE(second.Attach(foreign));
    EXPECT_FALSE(first.Attach(foreign));
    EXPECT_FALSE(second.SubclassWindow(nullptr));
    EXPECT_EQ(second.m_hWnd, nullptr);
}

TEST_F(WindowTest, SubclassedKeepsItsOwnBehaviour) {
    CreatedWindow window;
    const HWND edit =
        CreateWindowEx(0, L"EDIT", L"abc", WS_POPUP, 0, 0, 50, 20, nullptr, nullptr, nullptr, nullptr);
    ASSERT_TRUE(window.SubclassWindow(edit));
    SendMessage(edit, EM_SETSEL, 1, 2);
    EXPECT_EQ(window.messages, std::vector<UINT>{EM_SETSEL});
    EXPECT_EQ(window.SendMessage(EM_GETSEL), MAKELONG(1, 2));
}

TEST_F(WindowTest, StaysDisabledWhileItsFlagSaysSo) {
    CWnd window;
    window.CreateEx(0, nullptr, L"", WS_POPUP | WS_VISIBLE, 0, 0, 9, 9, nullptr, nullptr);
    window.EnableWindow(FALSE);
    window.m_nFlags |= WF_STAYDISABLED;
    ::EnableWindow(window, TRUE);
    EXPECT_FALSE(window.IsWindowEnabled());
    window.m_nFlags &= ~static_cast<UINT>(WF_STAYDISABLED);
    ::EnableWindow(window, TRUE);
    EXPECT_TRUE(window.IsWindowEnabled());
}

TEST_F(WindowTest, SubclassedStaysDisabledWhileItsFlagSaysSo) {
    CEdit edit;
    edit.CreateEx(0, L"EDIT", L"", WS_POPUP | WS_VISIBLE | WS_DISABLED, 0, 0, 9, 9, nullptr, nullptr);
    edit.m_nFlags |= WF_STAYDISABLED;
    ::EnableWindow(edit, TRUE);
    EXPECT_FALSE(edit.IsWindowEnabled());
}

TEST_F(WindowTest, KeptDisabledItGivesTheFocusToNoWindow) {
    CWnd window;
    window.CreateEx(0, nullptr, L"", WS_POPUP | WS_VISIBLE, 0, 0, 9, 9, nullptr, nullptr);
    CWnd other;
    other.CreateEx(0, nullptr, L"", WS_POPUP | WS_VISIBLE, 0, 0, 9, 9, nullptr, nullptr);
    other.SetFocus();
    ASSERT_EQ(::GetFocus(), other.m_hWnd);
    window.EnableWindow(FALSE);
    window.m_nFlags |= WF_STAYDISABLED;
    ::EnableWindow(window, TRUE);
    EXPECT_EQ(::GetFocus(), nullptr);
}

TEST_F(WindowTest, FlagToStayDisabledDoesNotDisable) {
    CWnd window;
    window.CreateEx(0, nullptr, L"", WS_POPUP | WS_VISIBLE, 0, 0, 9, 9, nullptr, nullptr);
    window.m_nFlags |= WF_STAYDISABLED;
    EXPECT_TRUE(window.IsWindowEnabled());
    window.EnableWindow(FALSE);
    EXPECT_FALSE(window.IsWindowEnabled());
}

TEST_F(WindowTest, SameArgumentsGiveTheSameClass) {
    const std::wstring plain = AfxRegisterWndClass(0);
    EXPECT_EQ(plain, AfxRegisterWndClass(0));
    EXPECT_NE(plain, AfxRegisterWndClass(CS_DBLCLKS));
}

TEST_F(WindowTest, KnowsItsClass) {
    CButton button;
    CWnd* window = &button;
    EXPECT_EQ(DYNAMIC_DOWNCAST(CButton, window), &button);
    EXPECT_EQ(DYNAMIC_DOWNCAST(CEdit, window), nullptr);
    EXPECT_EQ(DYNAMIC_DOWNCAST(CEdit, static_cast<CWnd*>(nullptr)), nullptr);
    EXPECT_TRUE(window->IsKindOf(RUNTIME_CLASS(CObject)));
    EXPECT_STREQ(window->GetRuntimeClass()->m_lpszClassName, "CButton");
}

} // namespace
