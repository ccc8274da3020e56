// An edit with a button to browse for a folder.
#include "BCGPEdit.h"
#include "OleSession.h"
#include "SystemCall.h"
#include "Theme.h"

#include <shlobj.h>
#include <vssym32.h>

#include <memory>
#include <string>
#include <utility>

namespace {

const wchar_t* const buttonText = L"...";

int CALLBACK startAtFolder(HWND dialog, UINT message, LPARAM /*lParam*/, LPARAM data) {
    const auto* folder = reinterpret_cast<const wchar_t*>(data);
    if (message == BFFM_INITIALIZED && *folder)
        SendMessage(dialog, BFFM_SETSELECTIONW, TRUE, data);
    return 0;
}

/// Empty when the user chose none.
std::wstring askForFolder(HWND owner, const CString& title, UINT flags, const CString& start) {
    const OleSession ole; // for the tree and its drag and drop
    BROWSEINFO info{};
    info.hwndOwner = owner;
    info.lpszTitle = title;
    // The new style is refused without OLE; the old one still works.
    info.ulFlags = ole ? flags : flags & ~static_cast<UINT>(BIF_NEWDIALOGSTYLE);
    info.lpfn = startAtFolder;
    info.lParam = reinterpret_cast<LPARAM>(start.GetString());
    const TaskMemory<ITEMIDLIST> chosen(callSystem([&] { return SHBrowseForFolder(&info); }));
    std::wstring path(32768, L'\0');
    if (!chosen ||
        !SHGetPathFromIDListEx(chosen.get(), path.data(), static_cast<DWORD>(path.size()), GPFIDL_DEFAULT))
        return {};
    return path.c_str();
}

} // namespace

IMPLEMENT_DYNAMIC(CBCGPEdit, CEdit)

BEGIN_MESSAGE_MAP(CBCGPEdit, CEdit)
    ON_WM_NCCALCSIZE()
    ON_WM_NCPAINT()
    ON_WM_NCHITTEST()
    ON_WM_NCLBUTTONDOWN()
    ON_WM_NCLBUTTONDBLCLK()
    ON_WM_NCMOUSEMOVE()
    ON_MESSAGE(WM_NCMOUSELEAVE, &CBCGPEdit::OnNcMouseLeave)
    ON_WM_MOUSEMOVE()
    ON_WM_LBUTTONUP()
    ON_WM_CAPTURECHANGED()
    ON_WM_ENABLE()
END_MESSAGE_MAP()

void CBCGPEdit::EnableFolderBrowseButton(LPCTSTR lpszTitle, UINT uiFlags) {
    browseTitle = lpszTitle;
    browseFlags = uiFlags;
    hasButton = true;
    SetWindowPos(nullptr, 0, 0, 0, 0,
                 SWP_FRAMECHANGED | SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void CBCGPEdit::OnBrowse() {
    CString current;
    GetWindowText(current);
    const std::wstring folder = askForFolder(GetAncestor(m_hWnd, GA_ROOT), browseTitle, browseFlags, current);
    if (!folder.empty())
        SetWindowText(folder.c_str());
}

int CBCGPEdit::buttonWidth() const {
    return hasButton ? GetSystemMetrics(SM_CXVSCROLL) * 3 / 2 : 0;
}

CRect CBCGPEdit::buttonRect() const {
    if (!hasButton)
        return {};
    // The button stands where the text area ends, inside the border.
    CRect client;
    GetClientRect(client);
    CRect button(client.right, client.top, client.right + buttonWidth(), client.bottom);
    MapWindowPoints(m_hWnd, nullptr, reinterpret_cast<POINT*>(&button), 2);
    return button;
}

bool CBCGPEdit::isOnButton(CPoint screenPoint) const {
    return buttonRect().PtInRect(screenPoint);
}

void CBCGPEdit::setButtonState(bool nowHot, bool nowPressed) {
    const bool wasHot = std::exchange(isHot, nowHot);
    const bool wasPressed = std::exchange(isPressed, nowPressed);
    if (wasHot != isHot || wasPressed != isPressed)
        drawButton();
}

void CBCGPEdit::drawButton() {
    CRect button = buttonRect();
    CRect window;
    GetWindowRect(window);
    button.OffsetRect(-window.left, -window.top);

    const std::unique_ptr<HDC__, void (*)(HDC)> dc(
        GetWindowDC(m_hWnd), [](HDC handle) { ReleaseDC(WindowFromDC(handle), handle); });
    const bool isEnabled = IsWindowEnabled();
    const int state = !isEnabled ? PBS_DISABLED : isPressed ? PBS_PRESSED : isHot ? PBS_HOT : PBS_NORMAL;
    const HGDIOBJ oldFont = SelectObject(dc.get(), reinterpret_cast<HFONT>(SendMessage(WM_GETFONT)));
    constexpr UINT centred = DT_CENTER | DT_VCENTER | DT_SINGLELINE;
    if (const Theme theme(m_hWnd, VSCLASS_BUTTON); theme) {
        FillRect(dc.get(), button, GetSysColorBrush(COLOR_WINDOW));
        DrawThemeBackground(theme.get(), dc.get(), BP_PUSHBUTTON, state, button, nullptr);
        DrawThemeText(theme.get(), dc.get(), BP_PUSHBUTTON, state, buttonText, -1, centred, 0, button);
    } else {
        const UINT look = !isEnabled ? DFCS_INACTIVE : isPressed ? DFCS_PUSHED : 0;
        DrawFrameControl(dc.get(), button, DFC_BUTTON, DFCS_BUTTONPUSH | look);
        SetBkMode(dc.get(), TRANSPARENT);
        SetTextColor(dc.get(), GetSysColor(isEnabled ? COLOR_BTNTEXT : COLOR_GRAYTEXT));
        DrawText(dc.get(), buttonText, -1, button, centred);
    }
    SelectObject(dc.get(), oldFont);
}

void CBCGPEdit::OnNcCalcSize(BOOL /*bCalcValidRects*/, NCCALCSIZE_PARAMS* lpncsp) {
    Default();
    lpncsp->rgrc[0].right -= buttonWidth();
}

void CBCGPEdit::OnNcPaint() {
    Default();
    if (hasButton)
        drawButton();
}

LRESULT CBCGPEdit::OnNcHitTest(CPoint point) {
    // The border does nothing on its own and shows the arrow, as a button does.
    return isOnButton(point) ? HTBORDER : Default();
}

void CBCGPEdit::OnNcLButtonDown(UINT /*nHitTest*/, CPoint point) {
    if (!isOnButton(point)) {
        Default();
        return;
    }
    SetFocus();
    SetCapture();
    isTracking = true;
    setButtonState(true, true);
}

// A quick second press is one more press.
void CBCGPEdit::OnNcLButtonDblClk(UINT nHitTest, CPoint point) {
    OnNcLButtonDown(nHitTest, point);
}

void CBCGPEdit::OnNcMouseMove(UINT /*nHitTest*/, CPoint point) {
    Default();
    if (!hasButton)
        return;
    TRACKMOUSEEVENT track{sizeof(track), TME_LEAVE | TME_NONCLIENT, m_hWnd, 0};
    TrackMouseEvent(&track);
    setButtonState(isOnButton(point), false);
}

LRESULT CBCGPEdit::OnNcMouseLeave(WPARAM /*wParam*/, LPARAM /*lParam*/) {
    if (!isTracking)
        setButtonState(false, false);
    return Default();
}

void CBCGPEdit::OnMouseMove(UINT /*nFlags*/, CPoint point) {
    if (!isTracking) {
        Default();
        return;
    }
    ClientToScreen(&point);
    setButtonState(true, isOnButton(point));
}

void CBCGPEdit::OnLButtonUp(UINT /*nFlags*/, CPoint point) {
    if (!isTracking) {
        Default();
        return;
    }
    ReleaseCapture();
    ClientToScreen(&point);
    if (isOnButton(point))
        OnBrowse();
}

void CBCGPEdit::OnCaptureChanged(CWnd* /*pWnd*/) {
    Default();
    isTracking = false;
    setButtonState(false, false);
}

void CBCGPEdit::OnEnable(BOOL bEnable) {
    CEdit::OnEnable(bEnable);
    if (hasButton)
        drawButton();
}
