// Dialogs with layout and visual style.
#include "BCGPDialog.h"
#include "BCGPLayout.h"
#include "Theme.h"

#include <vssym32.h>

#include <algorithm>
#include <iterator>

IMPLEMENT_DYNAMIC(CBCGPDialog, CDialog)

BEGIN_MESSAGE_MAP(CBCGPDialog, CDialog)
    ON_WM_SIZE()
    ON_WM_GETMINMAXINFO()
    ON_WM_NCHITTEST()
    ON_MESSAGE(WM_ERASEBKGND, &CBCGPDialog::OnEraseBackground)
    ON_MESSAGE(WM_CTLCOLORSTATIC, &CBCGPDialog::OnControlColor)
    ON_MESSAGE(WM_CTLCOLORBTN, &CBCGPDialog::OnControlColor)
END_MESSAGE_MAP()

CBCGPDialog::CBCGPDialog(LPCTSTR lpszTemplateName, CWnd* pParent) : CDialog(lpszTemplateName, pParent) {}

CBCGPDialog::~CBCGPDialog() = default;

void CBCGPDialog::EnableLayout(BOOL bEnable, CRuntimeClass* pRTC, BOOL bResizeBox) {
    m_pLayout.reset();
    m_bResizeBox = bResizeBox;
    if (!bEnable)
        return;
    CObject* created = (pRTC ? pRTC : RUNTIME_CLASS(CBCGPStaticLayout))->CreateObject();
    m_pLayout.reset(DYNAMIC_DOWNCAST(CBCGPControlsLayout, created));
    if (!m_pLayout)
        delete created;
}

void CBCGPDialog::EnableVisualManagerStyle(BOOL bEnable, BOOL /*bNCArea*/,
                                           const CList<UINT, UINT>* plstNonSubclassedItems) {
    m_bVisualManagerStyle = bEnable;
    plainControls.clear();
    if (plstNonSubclassedItems)
        for (POSITION position = plstNonSubclassedItems->GetHeadPosition(); position;)
            plainControls.push_back(plstNonSubclassedItems->GetNext(position));
    if (GetSafeHwnd())
        Invalidate();
}

BOOL CBCGPDialog::OnInitDialog() {
    if (m_pLayout)
        m_pLayout->Create(this);
    return CDialog::OnInitDialog();
}

void CBCGPDialog::AdjustTemplateStyle(DWORD& style, DWORD& extendedStyle) const {
    if (!m_pLayout)
        return;
    // The modal frame's own extended style keeps the title bar free of an icon; the thick frame has none of it.
    if (style & DS_MODALFRAME)
        extendedStyle |= WS_EX_DLGMODALFRAME;
    style = (style & ~static_cast<DWORD>(DS_MODALFRAME)) | WS_THICKFRAME | WS_CLIPCHILDREN;
}

void CBCGPDialog::OnSize(UINT nType, int cx, int cy) {
    Default();
    if (m_pLayout && m_pLayout->GetHostWnd())
        m_pLayout->OnResize(nType, cx, cy);
}

void CBCGPDialog::OnGetMinMaxInfo(MINMAXINFO* lpMMI) {
    Default();
    if (!m_pLayout || !m_pLayout->GetHostWnd())
        return;
    const CSize size = m_pLayout->GetMinSize();
    lpMMI->ptMinTrackSize = CPoint(size.cx, size.cy);
}

bool CBCGPDialog::showsGrip() const {
    return m_pLayout && m_bResizeBox && !IsZoomed(m_hWnd);
}

CRect CBCGPDialog::gripRect() const {
    CRect client;
    GetClientRect(client);
    return {client.right - GetSystemMetrics(SM_CXVSCROLL), client.bottom - GetSystemMetrics(SM_CYHSCROLL),
            client.right, client.bottom};
}

LRESULT CBCGPDialog::OnNcHitTest(CPoint point) {
    const LRESULT hit = Default();
    if (hit != HTCLIENT || !showsGrip())
        return hit;
    ScreenToClient(&point);
    return gripRect().PtInRect(point) ? HTBOTTOMRIGHT : hit;
}

LRESULT CBCGPDialog::OnEraseBackground(WPARAM wParam, LPARAM /*lParam*/) {
    const HDC dc = reinterpret_cast<HDC>(wParam);
    CRect client;
    GetClientRect(client);
    const Theme theme(m_hWnd, VSCLASS_WINDOW);
    if (!m_bVisualManagerStyle || !theme || !IsThemePartDefined(theme.get(), WP_DIALOG, 0) ||
        FAILED(DrawThemeBackground(theme.get(), dc, WP_DIALOG, 0, client, nullptr)))
        Default();
    if (!showsGrip())
        return TRUE;
    CRect grip = gripRect();
    const Theme status(m_hWnd, VSCLASS_STATUS);
    if (!status || FAILED(DrawThemeBackground(status.get(), dc, SP_GRIPPER, 0, grip, nullptr)))
        DrawFrameControl(dc, grip, DFC_SCROLL, DFCS_SCROLLSIZEGRIP);
    return TRUE;
}

LRESULT CBCGPDialog::OnControlColor(WPARAM wParam, LPARAM lParam) {
    const HWND control = reinterpret_cast<HWND>(lParam);
    wchar_t className[32] = {};
    RealGetWindowClass(control, className, static_cast<UINT>(std::size(className)));
    // A read-only or disabled edit asks in the same way and must keep its own background.
    const bool isTransparent = !_wcsicmp(className, WC_STATIC) || !_wcsicmp(className, WC_BUTTON);
    const auto id = static_cast<UINT>(::GetDlgCtrlID(control));
    const bool isPlain = std::find(plainControls.begin(), plainControls.end(), id) != plainControls.end();
    if (!m_bVisualManagerStyle || !isTransparent || isPlain || !IsThemeActive() || !IsAppThemed())
        return Default();
    const HDC dc = reinterpret_cast<HDC>(wParam);
    Default();
    SetBkMode(dc, TRANSPARENT);
    DrawThemeParentBackground(control, dc, nullptr);
    return reinterpret_cast<LRESULT>(GetStockObject(HOLLOW_BRUSH));
}
