// Windows: handle map, message dispatch, creation, geometry.
#include "SystemCall.h"
#include "ThreadState.h"
#include "afxwin.h"

#include <algorithm>
#include <array>
#include <cwchar>
#include <string>
#include <utility>

extern "C" IMAGE_DOS_HEADER __ImageBase;

IMPLEMENT_DYNAMIC(CWnd, CCmdTarget)

BEGIN_MESSAGE_MAP(CWnd, CCmdTarget)
    ON_WM_ENABLE()
    ON_WM_NCDESTROY()
END_MESSAGE_MAP()

CWnd::~CWnd() {
    if (m_hWnd && FromHandlePermanent(m_hWnd) == this)
        CWnd::DestroyWindow();
}

CWnd* CWnd::FromHandlePermanent(HWND hWnd) {
    const auto& windows = threadState().permanentWindows;
    const auto found = windows.find(hWnd);
    return found == windows.end() ? nullptr : found->second;
}

CWnd* CWnd::FromHandle(HWND hWnd) {
    if (!hWnd)
        return nullptr;
    if (CWnd* permanent = FromHandlePermanent(hWnd))
        return permanent;
    auto& temporaries = threadState().temporaryWindows;
    if (const auto found = temporaries.find(hWnd); found != temporaries.end())
        return found->second.get();
    std::erase_if(temporaries, [](const auto& entry) { return !IsWindow(entry.first); });
    auto& temporary = temporaries[hWnd];
    temporary.reset(new CWnd);
    temporary->m_hWnd = hWnd;
    return temporary.get();
}

BOOL CWnd::Attach(HWND hWndNew) {
    if (m_hWnd || !hWndNew || !threadState().permanentWindows.try_emplace(hWndNew, this).second)
        return FALSE;
    m_hWnd = hWndNew;
    return TRUE;
}

HWND CWnd::Detach() {
    threadState().permanentWindows.erase(m_hWnd);
    return std::exchange(m_hWnd, nullptr);
}

BOOL CWnd::SubclassWindow(HWND hWnd) {
    if (!Attach(hWnd))
        return FALSE;
    previousProcedure = reinterpret_cast<WNDPROC>(
        SetWindowLongPtr(hWnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&CWnd::windowProcedure)));
    return TRUE;
}

LPCTSTR AfxRegisterWndClass(UINT nClassStyle, HCURSOR hCursor, HBRUSH hbrBackground, HICON hIcon) {
    static thread_local std::array<wchar_t, 96> name;
    _snwprintf(name.data(), name.size() - 1, L"Afx:%x:%p:%p:%p", nClassStyle, static_cast<void*>(hCursor),
               static_cast<void*>(hbrBackground), static_cast<void*>(hIcon));
    // Global: whichever module is current when the window is made finds it.
    WNDCLASS windowClass{};
    windowClass.style = nClassStyle | CS_GLOBALCLASS;
    windowClass.lpfnWndProc = &CWnd::windowProcedure;
    windowClass.hInstance = reinterpret_cast<HINSTANCE>(&__ImageBase);
    windowClass.hIcon = hIcon;
    windowClass.hCursor = hCursor;
    windowClass.hbrBackground = hbrBackground;
    windowClass.lpszClassName = name.data();
    if (!RegisterClass(&windowClass) && GetLastError() != ERROR_CLASS_ALREADY_EXISTS)
        return nullptr;
    return name.data();
}

BOOL CWnd::Create(LPCTSTR lpszClassName, LPCTSTR lpszWindowName, DWORD dwStyle, const RECT& rect,
                  CWnd* pParentWnd, UINT nID) {
    return CreateEx(0, lpszClassName, lpszWindowName, dwStyle | WS_CHILD, rect.left, rect.top,
                    rect.right - rect.left, rect.bottom - rect.top, pParentWnd->GetSafeHwnd(),
                    reinterpret_cast<HMENU>(static_cast<UINT_PTR>(nID)));
}

BOOL CWnd::CreateEx(DWORD dwExStyle, LPCTSTR lpszClassName, LPCTSTR lpszWindowName, DWORD dwStyle, int x,
                    int y, int nWidth, int nHeight, HWND hWndParent, HMENU nIDorHMenu, LPVOID lpParam) {
    const LPCTSTR className = lpszClassName ? lpszClassName : AfxRegisterWndClass(0);
    WNDCLASS windowClass{};
    const bool ours = GetClassInfo(AfxGetInstanceHandle(), className, &windowClass) &&
                      windowClass.lpfnWndProc == &CWnd::windowProcedure;
    if (ours)
        threadState().windowBeingCreated = this;
    const HWND window = callSystem([&] {
        return CreateWindowEx(dwExStyle, className, lpszWindowName, dwStyle, x, y, nWidth, nHeight,
                              hWndParent, nIDorHMenu, AfxGetInstanceHandle(), lpParam);
    });
    threadState().windowBeingCreated = nullptr;
    return window && (ours || SubclassWindow(window));
}

BOOL CWnd::DestroyWindow() {
    return m_hWnd && ::DestroyWindow(m_hWnd);
}

LRESULT CALLBACK CWnd::windowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    ThreadState& thread = threadState();
    CWnd* object = FromHandlePermanent(window);
    if (!object && thread.windowBeingCreated) {
        object = std::exchange(thread.windowBeingCreated, nullptr);
        object->Attach(window);
    }
    if (!object)
        return ::DefWindowProc(window, message, wParam, lParam);

    const MSG outerMessage =
        std::exchange(thread.currentMessage, MSG{window, message, wParam, lParam, 0, {}});
    const LRESULT result = runCallback([&] {
        AFX_MANAGE_STATE(object->m_pModuleState)
        return object->WindowProc(message, wParam, lParam);
    });
    thread.currentMessage = outerMessage;
    return result;
}

LRESULT CWnd::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    LRESULT result = 0;
    return OnWndMsg(message, wParam, lParam, &result) ? result : DefWindowProc(message, wParam, lParam);
}

BOOL CWnd::OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* pResult) {
    if (message == WM_COMMAND)
        return OnCommand(wParam, lParam);
    if (message == WM_NOTIFY)
        return OnNotify(wParam, lParam, pResult);
    const AFX_MSGMAP_ENTRY* entry = FindEntry(message, 0, 0);
    if (entry)
        *pResult = entry->pfn(this, wParam, lParam);
    return entry != nullptr;
}

BOOL CWnd::OnCommand(WPARAM wParam, LPARAM lParam) {
    // An accelerator's code of 1 is no notification: menus and accelerators give the same command.
    const UINT code = lParam ? HIWORD(wParam) : 0;
    const AFX_MSGMAP_ENTRY* entry = FindEntry(WM_COMMAND, code, LOWORD(wParam));
    if (entry)
        entry->pfn(this, wParam, lParam);
    return entry != nullptr;
}

BOOL CWnd::OnNotify(WPARAM wParam, LPARAM lParam, LRESULT* pResult) {
    const auto* header = reinterpret_cast<const NMHDR*>(lParam);
    const AFX_MSGMAP_ENTRY* entry = FindEntry(WM_NOTIFY, header->code, static_cast<UINT>(header->idFrom));
    if (entry)
        *pResult = entry->pfn(this, wParam, lParam);
    return entry != nullptr;
}

LRESULT CWnd::DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    return previousProcedure ? CallWindowProc(previousProcedure, m_hWnd, message, wParam, lParam)
                             : ::DefWindowProc(m_hWnd, message, wParam, lParam);
}

LRESULT CWnd::Default() {
    const MSG& current = threadState().currentMessage;
    return DefWindowProc(current.message, current.wParam, current.lParam);
}

void CWnd::OnEnable(BOOL bEnable) {
    if (bEnable && (m_nFlags & WF_STAYDISABLED)) {
        EnableWindow(FALSE);
        ::SetFocus(nullptr);
        return;
    }
    Default();
}

void CWnd::OnNcDestroy() {
    if (const WNDPROC previous = previousProcedure)
        SetWindowLongPtr(m_hWnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(previous));
    Default();
    Detach();
    previousProcedure = nullptr;
    PostNcDestroy();
}

int CWnd::GetWindowText(LPTSTR lpszStringBuf, int nMaxCount) const {
    return ::GetWindowText(m_hWnd, lpszStringBuf, nMaxCount);
}

void CWnd::GetWindowText(CString& rString) const {
    const int length = GetWindowTextLength();
    GetWindowText(rString.GetBuffer(length), length + 1);
    rString.ReleaseBuffer();
}

void CWnd::MoveWindow(LPCRECT lpRect, BOOL bRepaint) {
    ::MoveWindow(m_hWnd, lpRect->left, lpRect->top, lpRect->right - lpRect->left,
                 lpRect->bottom - lpRect->top, bRepaint);
}

BOOL CWnd::SetWindowPos(const CWnd* pWndInsertAfter, int x, int y, int cx, int cy, UINT nFlags) {
    return ::SetWindowPos(m_hWnd, pWndInsertAfter ? pWndInsertAfter->GetSafeHwnd() : nullptr, x, y, cx, cy,
                          nFlags);
}

void CWnd::ScreenToClient(LPRECT lpRect) const {
    ::MapWindowPoints(nullptr, m_hWnd, reinterpret_cast<LPPOINT>(lpRect), 2);
}

void CWnd::CenterWindow() {
    CRect window;
    GetWindowRect(window);
    const HWND owner = ::GetWindow(m_hWnd, GW_OWNER);
    const bool onOwner = owner && ::IsWindowVisible(owner) && !::IsIconic(owner);

    MONITORINFO monitor{};
    monitor.cbSize = sizeof(monitor);
    GetMonitorInfo(MonitorFromWindow(onOwner ? owner : m_hWnd, MONITOR_DEFAULTTONEAREST), &monitor);
    const CRect work = monitor.rcWork;
    CRect around = work;
    if (onOwner)
        ::GetWindowRect(owner, around);

    // When the window is larger than the screen, its upper left part is the one to see.
    const auto place = [](int middle, int size, int low, int high) {
        return std::max(low, std::min(middle - size / 2, high - size));
    };
    const CPoint middle = around.CenterPoint();
    SetWindowPos(nullptr, place(middle.x, window.Width(), work.left, work.right),
                 place(middle.y, window.Height(), work.top, work.bottom), 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

LRESULT CWnd::SendMessage(UINT message, WPARAM wParam, LPARAM lParam) const {
    return callSystem([&] { return ::SendMessage(m_hWnd, message, wParam, lParam); });
}

int CWnd::MessageBox(LPCTSTR lpszText, LPCTSTR lpszCaption, UINT nType) {
    return callSystem(
        [&] { return ::MessageBox(m_hWnd, lpszText, lpszCaption ? lpszCaption : AfxGetAppName(), nType); });
}

BOOL CWnd::UpdateData(BOOL bSaveAndValidate) {
    CDataExchange exchange(this, bSaveAndValidate);
    DoDataExchange(&exchange);
    return TRUE;
}
