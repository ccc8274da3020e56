// The toolkit's main header: windows, dialogs, standard controls, the application object.
#pragma once

#include "afx.h"
#include "afxdd_.h"
#include "afxmsg_.h"
#include "afxres.h"
#include "afxstat_.h"
#include "afxtempl.h"
#include "atltypes.h"

#include <windows.h>

#include <string>
#include <vector>

/// Set in CWnd::m_nFlags of a permanent window object that must stay disabled whoever enables it, as a mail client
/// enables its owner between two windows of its own. It has no effect on a window that is enabled when it is set.
#define WF_STAYDISABLED 0x0004

/// Anything with a message map.
class TOOLKIT_API CCmdTarget : public CObject {
    DECLARE_DYNAMIC(CCmdTarget)

public:
    /// The state that was current when this object was constructed; it is made current for the object's messages.
    AFX_MODULE_STATE* m_pModuleState;

protected:
    CCmdTarget();

    static const AFX_MSGMAP* GetThisMessageMap();
    virtual const AFX_MSGMAP* GetMessageMap() const;

    /// The entry for the message in the class's map or the nearest base's, or null.
    const AFX_MSGMAP_ENTRY* FindEntry(UINT nMessage, UINT nCode, UINT nID) const;
};

/// A window. The object in charge of a window's messages is its permanent one: it was attached, was created with the
/// window, or subclasses it. For other windows FromHandle() makes a temporary object, which only carries the handle.
///
/// What a message handler throws never reaches the system. It is kept, and thrown again by the function of this
/// toolkit through which the program had entered the system: CDialog::DoModal() (which ends the dialog),
/// MessageBox(), SendMessage(). Where there is none, the program ends through std::terminate().
class TOOLKIT_API CWnd : public CCmdTarget {
    DECLARE_DYNAMIC(CWnd)

public:
    CWnd() = default;
    /// Destroys the window if the object is in charge of it.
    ~CWnd() override;

    HWND m_hWnd = nullptr;
    UINT m_nFlags = 0;

    HWND GetSafeHwnd() const { return m_hWnd; }
    operator HWND() const { return m_hWnd; }

    /// The permanent object of the window, otherwise a temporary one that lives at least as long as the window; null
    /// for no handle.
    static CWnd* FromHandle(HWND hWnd);
    /// The permanent object of the window on this thread, or null.
    static CWnd* FromHandlePermanent(HWND hWnd);
    /// Makes this the permanent object of the window. False when it has a window already or the handle is null.
    BOOL Attach(HWND hWndNew);
    /// Ends that; the window goes on without an object.
    HWND Detach();
    /// Attaches and takes the window's messages; Default() hands them to the procedure that had them before.
    BOOL SubclassWindow(HWND hWnd);

    /// A child window. Without a class name it gets a plain one of the toolkit's own.
    BOOL Create(LPCTSTR lpszClassName, LPCTSTR lpszWindowName, DWORD dwStyle, const RECT& rect,
                CWnd* pParentWnd, UINT nID);
    /// Any window. For a class of AfxRegisterWndClass() (and for none) the object sees every message from the first.
    BOOL CreateEx(DWORD dwExStyle, LPCTSTR lpszClassName, LPCTSTR lpszWindowName, DWORD dwStyle, int x, int y,
                  int nWidth, int nHeight, HWND hWndParent, HMENU nIDorHMenu, LPVOID lpParam = nullptr);
    virtual BOOL DestroyWindow();

    void SetWindowText(LPCTSTR lpszString) { ::SetWindowText(m_hWnd, lpszString); }
    /// At most nMaxCount - 1 characters and a NUL.
    int GetWindowText(LPTSTR lpszStringBuf, int nMaxCount) const;
    void GetWindowText(CString& rString) const;
    int GetWindowTextLength() const { return ::GetWindowTextLength(m_hWnd); }

    BOOL EnableWindow(BOOL bEnable = TRUE) { return ::EnableWindow(m_hWnd, bEnable); }
    BOOL IsWindowEnabled() const { return ::IsWindowEnabled(m_hWnd); }
    BOOL ShowWindow(int nCmdShow) { return ::ShowWindow(m_hWnd, nCmdShow); }
    BOOL IsWindowVisible() const { return ::IsWindowVisible(m_hWnd); }

    // Each of these gives the window that had the focus, activation or capture before, or null.
    CWnd* SetFocus() { return FromHandle(::SetFocus(m_hWnd)); }
    CWnd* SetActiveWindow() { return FromHandle(::SetActiveWindow(m_hWnd)); }
    CWnd* SetCapture() { return FromHandle(::SetCapture(m_hWnd)); }
    static CWnd* GetFocus() { return FromHandle(::GetFocus()); }
    static CWnd* GetActiveWindow() { return FromHandle(::GetActiveWindow()); }
    static CWnd* GetCapture() { return FromHandle(::GetCapture()); }

    CWnd* GetParent() const { return FromHandle(::GetParent(m_hWnd)); }
    CWnd* GetLastActivePopup() const { return FromHandle(::GetLastActivePopup(m_hWnd)); }
    CWnd* GetDlgItem(int nID) const { return FromHandle(::GetDlgItem(m_hWnd, nID)); }
    int GetDlgCtrlID() const { return ::GetDlgCtrlID(m_hWnd); }

    DWORD GetStyle() const { return static_cast<DWORD>(::GetWindowLongPtr(m_hWnd, GWL_STYLE)); }

    void GetWindowRect(LPRECT lpRect) const { ::GetWindowRect(m_hWnd, lpRect); }
    void GetClientRect(LPRECT lpRect) const { ::GetClientRect(m_hWnd, lpRect); }
    void MoveWindow(LPCRECT lpRect, BOOL bRepaint = TRUE);
    BOOL SetWindowPos(const CWnd* pWndInsertAfter, int x, int y, int cx, int cy, UINT nFlags);
    void ScreenToClient(LPPOINT lpPoint) const { ::ScreenToClient(m_hWnd, lpPoint); }
    void ScreenToClient(LPRECT lpRect) const;
    void ClientToScreen(LPPOINT lpPoint) const { ::ClientToScreen(m_hWnd, lpPoint); }
    /// Centres a top-level window on its owner when that can be seen, otherwise on the screen; never beyond the
    /// edges of the screen's work area.
    void CenterWindow();

    UINT_PTR SetTimer(UINT_PTR nIDEvent, UINT nElapse, TIMERPROC lpfnTimer) {
        return ::SetTimer(m_hWnd, nIDEvent, nElapse, lpfnTimer);
    }
    BOOL KillTimer(UINT_PTR nIDEvent) { return ::KillTimer(m_hWnd, nIDEvent); }
    LRESULT SendMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const;
    BOOL PostMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
        return ::PostMessage(m_hWnd, message, wParam, lParam);
    }
    void Invalidate(BOOL bErase = TRUE) { ::InvalidateRect(m_hWnd, nullptr, bErase); }
    void UpdateWindow() { ::UpdateWindow(m_hWnd); }

    /// A message box owned by this window.
    int MessageBox(LPCTSTR lpszText, LPCTSTR lpszCaption = nullptr, UINT nType = MB_OK);

    /// Runs DoDataExchange(). False when saving was refused.
    BOOL UpdateData(BOOL bSaveAndValidate = TRUE);

protected:
    /// Every message passes here: to its handler in the map, or to DefWindowProc().
    virtual LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    /// False when the map has no handler.
    virtual BOOL OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* pResult);
    virtual BOOL OnCommand(WPARAM wParam, LPARAM lParam);
    virtual BOOL OnNotify(WPARAM wParam, LPARAM lParam, LRESULT* pResult);
    /// The procedure the window had before, or the system's.
    virtual LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    /// Hands the message that is handled now to DefWindowProc(), unchanged.
    LRESULT Default();
    /// The window is gone and the object detached. An object that owns itself deletes itself here.
    virtual void PostNcDestroy() {}
    virtual void DoDataExchange(CDataExchange* /*pDX*/) {}

    afx_msg void OnCaptureChanged(CWnd* /*pWnd*/) { Default(); }
    afx_msg void OnEnable(BOOL bEnable);
    afx_msg void OnGetMinMaxInfo(MINMAXINFO* /*lpMMI*/) { Default(); }
    afx_msg void OnLButtonUp(UINT /*nFlags*/, CPoint /*point*/) { Default(); }
    afx_msg void OnMouseMove(UINT /*nFlags*/, CPoint /*point*/) { Default(); }
    afx_msg void OnNcCalcSize(BOOL /*bCalcValidRects*/, NCCALCSIZE_PARAMS* /*lpncsp*/) { Default(); }
    afx_msg void OnNcDestroy();
    afx_msg LRESULT OnNcHitTest(CPoint /*point*/) { return Default(); }
    afx_msg void OnNcLButtonDown(UINT /*nHitTest*/, CPoint /*point*/) { Default(); }
    afx_msg void OnNcLButtonDblClk(UINT /*nHitTest*/, CPoint /*point*/) { Default(); }
    afx_msg void OnNcMouseMove(UINT /*nHitTest*/, CPoint /*point*/) { Default(); }
    afx_msg void OnNcPaint() { Default(); }
    afx_msg void OnSize(UINT /*nType*/, int /*cx*/, int /*cy*/) { Default(); }

    DECLARE_MESSAGE_MAP()

private:
    static LRESULT CALLBACK windowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    friend LPCTSTR AfxRegisterWndClass(UINT, HCURSOR, HBRUSH, HICON);

    WNDPROC previousProcedure = nullptr;
};

/// A window class for CWnd::CreateEx(); the same arguments give the same class.
TOOLKIT_API LPCTSTR AfxRegisterWndClass(UINT nClassStyle, HCURSOR hCursor = nullptr,
                                        HBRUSH hbrBackground = nullptr, HICON hIcon = nullptr);

class TOOLKIT_API CStatic : public CWnd {
    DECLARE_DYNAMIC(CStatic)
};

class TOOLKIT_API CEdit : public CWnd {
    DECLARE_DYNAMIC(CEdit)
};

/// A push button, check box or radio button.
class TOOLKIT_API CButton : public CWnd {
    DECLARE_DYNAMIC(CButton)

public:
    int GetCheck() const { return static_cast<int>(SendMessage(BM_GETCHECK)); }
    void SetCheck(int nCheck) { SendMessage(BM_SETCHECK, static_cast<WPARAM>(nCheck)); }
};

class TOOLKIT_API CListBox : public CWnd {
    DECLARE_DYNAMIC(CListBox)

public:
    int GetCount() const { return static_cast<int>(SendMessage(LB_GETCOUNT)); }
    /// LB_ERR when nothing is selected.
    int GetCurSel() const { return static_cast<int>(SendMessage(LB_GETCURSEL)); }
    int SetCurSel(int nSelect) {
        return static_cast<int>(SendMessage(LB_SETCURSEL, static_cast<WPARAM>(nSelect)));
    }
    /// The index at which the entry stands now, which in a sorted list need not be the last.
    int AddString(LPCTSTR lpszItem) {
        return static_cast<int>(SendMessage(LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(lpszItem)));
    }
    int GetTextLen(int nIndex) const {
        return static_cast<int>(SendMessage(LB_GETTEXTLEN, static_cast<WPARAM>(nIndex)));
    }
    /// Empty when there is no such entry.
    void GetText(int nIndex, CString& rString) const;
};

/// A modal dialog on a template of the module whose state is current when DoModal() is called.
class TOOLKIT_API CDialog : public CWnd {
    DECLARE_DYNAMIC(CDialog)

public:
    explicit CDialog(UINT nIDTemplate, CWnd* pParentWnd = nullptr)
        : CDialog(MAKEINTRESOURCE(nIDTemplate), pParentWnd) {}
    explicit CDialog(LPCTSTR lpszTemplateName, CWnd* pParentWnd = nullptr);

    /// Shows the dialog and returns what EndDialog() was given, or -1 when it could not be made. Its owner is the
    /// parent given to the constructor or the top-level window that one lies in; without a parent, the window on
    /// top of the application's main window. A template that names no position is centred on the owner, unless
    /// OnInitDialog() moves or sizes it.
    virtual INT_PTR DoModal();
    void EndDialog(int nResult) { ::EndDialog(m_hWnd, nResult); }

protected:
    /// Connects the members with the controls. TRUE: the system gives the focus to the first tab stop.
    virtual BOOL OnInitDialog();
    virtual void OnOK();
    virtual void OnCancel();

    /// Lets a derived class change the styles of the template before the window is made from it.
    virtual void AdjustTemplateStyle(DWORD& /*style*/, DWORD& /*extendedStyle*/) const {}

    CWnd* m_pParentWnd;

    DECLARE_MESSAGE_MAP()

private:
    static INT_PTR CALLBACK dialogProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    LPCTSTR templateName;
    bool centre = false;
};

class TOOLKIT_API CWinThread : public CCmdTarget {
    DECLARE_DYNAMIC(CWinThread)

public:
    /// Not owned; null until the program or its host sets it.
    CWnd* m_pMainWnd = nullptr;

    /// Zero: what started the module gives up on it.
    virtual BOOL InitInstance() { return TRUE; }
    virtual int ExitInstance() { return 0; }
    /// m_pMainWnd, otherwise the window of this thread that is active, otherwise null.
    virtual CWnd* GetMainWnd();
};

/// The one application object of a module, a global. Constructing it makes it the current state's.
class TOOLKIT_API CWinApp : public CWinThread {
    DECLARE_DYNAMIC(CWinApp)

public:
    /// Without a name it is called after its module's file.
    explicit CWinApp(LPCTSTR lpszAppName = nullptr);
    ~CWinApp() override;

    /// FALSE keeps the user out of the application while somebody else shows a modal window: every visible and
    /// enabled top-level window of this thread is disabled. TRUE enables these again, and no others. Calls nest.
    virtual void EnableModeless(BOOL bEnable);

    HINSTANCE m_hInstance;
    LPCTSTR m_pszAppName;

private:
    friend class AfxThreadSnapshot;

    std::wstring name;
    std::vector<HWND> modelessWindows; ///< disabled by EnableModeless()
    int modelessDepth = 0;
};

// Of the current module. AfxGetApp() is null when it has no application object; AfxGetMainWnd() then, and where that
// knows no window, is the program's.
TOOLKIT_API CWinApp* AfxGetApp();
TOOLKIT_API CWnd* AfxGetMainWnd();
TOOLKIT_API HINSTANCE AfxGetInstanceHandle();
TOOLKIT_API HINSTANCE AfxGetResourceHandle();
TOOLKIT_API LPCTSTR AfxGetAppName();

/// A message box under the application's name, owned by the dialog or window that the user sees on top. Where the
/// type names no icon, questions with Yes get the question mark, those with OK the exclamation mark.
TOOLKIT_API int AfxMessageBox(LPCTSTR lpszText, UINT nType = MB_OK, UINT nIDHelp = 0);
/// The same with a text of the current module's string table or, under a number of afxres.h, the toolkit's.
TOOLKIT_API int AfxMessageBox(UINT nIDPrompt, UINT nType = MB_OK, UINT nIDHelp = static_cast<UINT>(-1));
