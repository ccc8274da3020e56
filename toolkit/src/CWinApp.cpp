// The application object of a module.
#include "AfxModule.h"
#include "Owner.h"
#include "SystemCall.h"
#include "afxwin.h"

#include <filesystem>
#include <utility>
#include <vector>

namespace {

std::wstring moduleTitle(HINSTANCE module) {
    std::wstring path(MAX_PATH, L'\0');
    DWORD length = 0;
    while ((length = GetModuleFileName(module, path.data(), static_cast<DWORD>(path.size()))) == path.size())
        path.resize(path.size() * 2);
    path.resize(length);
    return std::filesystem::path(path).stem().wstring();
}

BOOL CALLBACK collectWindow(HWND window, LPARAM windows) {
    if (IsWindowVisible(window) && IsWindowEnabled(window))
        reinterpret_cast<std::vector<HWND>*>(windows)->push_back(window);
    return TRUE;
}

UINT withDefaultIcon(UINT type) {
    if (type & MB_ICONMASK)
        return type;
    switch (type & MB_TYPEMASK) {
    case MB_OK:
    case MB_OKCANCEL:
        return type | MB_ICONEXCLAMATION;
    case MB_YESNO:
    case MB_YESNOCANCEL:
        return type | MB_ICONQUESTION;
    default:
        return type;
    }
}

} // namespace

IMPLEMENT_DYNAMIC(CWinThread, CCmdTarget)
IMPLEMENT_DYNAMIC(CWinApp, CWinThread)

CWnd* CWinThread::GetMainWnd() {
    return m_pMainWnd ? m_pMainWnd : CWnd::GetActiveWindow();
}

CWinApp::CWinApp(LPCTSTR lpszAppName)
    : m_hInstance(m_pModuleState->m_hCurrentInstanceHandle),
      name(lpszAppName ? lpszAppName : moduleTitle(m_hInstance)) {
    m_pszAppName = name.c_str();
    m_pModuleState->m_pCurrentWinApp = this;
}

CWinApp::~CWinApp() {
    if (m_pModuleState->m_pCurrentWinApp == this)
        m_pModuleState->m_pCurrentWinApp = nullptr;
}

void CWinApp::EnableModeless(BOOL bEnable) {
    if (bEnable) {
        if (modelessDepth > 0 && --modelessDepth == 0)
            for (const HWND window : std::exchange(modelessWindows, {}))
                EnableWindow(window, TRUE);
        return;
    }
    if (modelessDepth++ > 0)
        return;
    // First all, then each: a window may make or destroy others when it is disabled.
    EnumThreadWindows(GetCurrentThreadId(), &collectWindow, reinterpret_cast<LPARAM>(&modelessWindows));
    for (const HWND window : std::vector(modelessWindows))
        EnableWindow(window, FALSE);
}

CWnd* AfxGetMainWnd() {
    CWinApp* own = AfxGetApp();
    if (CWnd* window = own ? own->GetMainWnd() : CWnd::GetActiveWindow())
        return window;
    CWinApp* program = AfxFindModuleApp(GetModuleHandle(nullptr));
    return program ? program->GetMainWnd() : nullptr;
}

LPCTSTR AfxGetAppName() {
    const CWinApp* app = AfxGetApp();
    return app ? app->m_pszAppName : L"";
}

HWND ownerOf(const CWnd* parent) {
    if (parent && parent->GetSafeHwnd())
        return GetAncestor(parent->GetSafeHwnd(), GA_ROOT);
    const CWnd* mainWindow = AfxGetMainWnd();
    return mainWindow ? GetLastActivePopup(GetAncestor(mainWindow->GetSafeHwnd(), GA_ROOT)) : nullptr;
}

int AfxMessageBox(LPCTSTR lpszText, UINT nType, UINT /*nIDHelp*/) {
    const HWND owner = ownerOf(nullptr);
    return callSystem([&] { return ::MessageBox(owner, lpszText, AfxGetAppName(), withDefaultIcon(nType)); });
}

int AfxMessageBox(UINT nIDPrompt, UINT nType, UINT nIDHelp) {
    CString prompt;
    prompt.LoadString(nIDPrompt);
    return AfxMessageBox(prompt.GetString(), nType, nIDHelp);
}
