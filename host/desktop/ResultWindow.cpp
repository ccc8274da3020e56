// Tells how an export has ended.
#include "host/desktop/ResultWindow.h"

#include "host/desktop/ExportControls.h"
#include "host/desktop/Texts.h"

#include <algorithm>
#include <cstring>

namespace host {
namespace {

constexpr char section[] = "ScanHost.Export";

const wchar_t* iconFor(ExportReport::Kind kind) {
    switch (kind) {
    case ExportReport::Kind::Failed:
        return IDI_ERROR;
    case ExportReport::Kind::Stopped:
        return IDI_WARNING;
    default:
        return IDI_INFORMATION;
    }
}

/// With the line breaks that edits and other programs want.
std::wstring inLines(const std::wstring& text) {
    std::wstring result;
    for (wchar_t c : text)
        result += c == L'\n' ? L"\r\n" : std::wstring(1, c);
    return result;
}

void putOnClipboard(HWND owner, const std::wstring& text) {
    const std::size_t size = (text.size() + 1) * sizeof(wchar_t);
    HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, size);
    if (!memory)
        return;
    std::memcpy(GlobalLock(memory), text.c_str(), size);
    GlobalUnlock(memory);
    bool given = false;
    if (OpenClipboard(owner)) {
        EmptyClipboard();
        given = SetClipboardData(CF_UNICODETEXT, memory) != nullptr;
        CloseClipboard();
    }
    if (!given)
        GlobalFree(memory);
}

} // namespace

ResultWindow::ResultWindow(CWnd& owner, const ExportReport& report,
                           const std::function<void(const std::wstring&)>& open)
    : CDialog(IDD_EXPORT_RESULT, &owner), report(report), open(open) {}

BEGIN_MESSAGE_MAP(ResultWindow, CDialog)
    ON_BN_CLICKED(IDC_RESULT_OPEN, &ResultWindow::OnOpen)
    ON_BN_CLICKED(IDC_RESULT_COPY, &ResultWindow::OnCopy)
END_MESSAGE_MAP()

BOOL ResultWindow::OnInitDialog() {
    if (!CDialog::OnInitDialog())
        return FALSE;
    SetWindowText(report.title.c_str());
    SendDlgItemMessageW(m_hWnd, IDC_RESULT_ICON, STM_SETICON,
                        reinterpret_cast<WPARAM>(LoadIconW(nullptr, iconFor(report.kind))), 0);
    const auto set = [this](int control, const std::wstring& text) {
        SetDlgItemTextW(m_hWnd, control, text.c_str());
    };
    set(IDC_RESULT_TEXT, report.text);
    set(IDC_RESULT_PATH_LABEL, report.pathLabel);
    set(IDC_RESULT_PATH, report.path);
    set(IDC_RESULT_DETAILS_LABEL, localText(section, "Result.Details"));
    set(IDC_RESULT_DETAILS, inLines(report.details));
    set(IDC_RESULT_OPEN, localText(section, "Result.Open"));
    set(IDC_RESULT_COPY, localText(section, "Result.Copy"));
    set(IDOK, localText(section, "Result.Close"));

    if (!report.canOpen)
        GetDlgItem(IDC_RESULT_OPEN)->ShowWindow(SW_HIDE);
    if (report.kind != ExportReport::Kind::Failed)
        GetDlgItem(IDC_RESULT_COPY)->ShowWindow(SW_HIDE);
    if (report.details.empty())
        removeBand(IDC_RESULT_DETAILS_LABEL, IDC_RESULT_DETAILS);
    if (report.path.empty())
        removeBand(IDC_RESULT_PATH_LABEL, IDC_RESULT_PATH);
    fitText();
    // Its size differs from the template's, so the system's centring does not do.
    CenterWindow();
    return TRUE;
}

void ResultWindow::OnOpen() {
    open(report.path);
    EndDialog(IDOK);
}

void ResultWindow::OnCopy() {
    std::wstring text = report.text;
    if (!report.path.empty())
        text += L'\n' + report.pathLabel + L' ' + report.path;
    if (!report.details.empty())
        text += L"\n\n" + report.details;
    putOnClipboard(m_hWnd, inLines(text));
}

// The template has room for the longest texts of all languages.
void ResultWindow::fitText() {
    CWnd* const text = GetDlgItem(IDC_RESULT_TEXT);
    const CRect icon = placeOf(IDC_RESULT_ICON);
    const CRect room = placeOf(IDC_RESULT_TEXT);
    CRect needed = room;
    const HDC dc = ::GetDC(m_hWnd);
    const HGDIOBJ previous = SelectObject(dc, reinterpret_cast<HFONT>(text->SendMessage(WM_GETFONT)));
    DrawTextW(dc, report.text.c_str(), -1, needed, DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX);
    SelectObject(dc, previous);
    ::ReleaseDC(m_hWnd, dc);
    const LONG bottom = std::max(needed.bottom, icon.bottom);
    if (bottom >= room.bottom)
        return;
    text->SetWindowPos(nullptr, 0, 0, room.Width(), bottom - room.top, SWP_NOMOVE | SWP_NOZORDER);
    moveUp(room.bottom, room.bottom - bottom);
}

// Everything below moves up to where the label was.
void ResultWindow::removeBand(int label, int field) {
    const CRect top = placeOf(label);
    const CRect bottom = placeOf(field);
    GetDlgItem(label)->ShowWindow(SW_HIDE);
    GetDlgItem(field)->ShowWindow(SW_HIDE);

    LONG next = 0;
    for (HWND control = ::GetWindow(m_hWnd, GW_CHILD); control; control = ::GetWindow(control, GW_HWNDNEXT)) {
        CRect place;
        ::GetWindowRect(control, place);
        if (place.top >= bottom.bottom && (next == 0 || place.top < next))
            next = place.top;
    }
    moveUp(bottom.bottom, next - top.top);
}

void ResultWindow::moveUp(LONG from, LONG distance) {
    for (HWND control = ::GetWindow(m_hWnd, GW_CHILD); control; control = ::GetWindow(control, GW_HWNDNEXT)) {
        CRect place;
        ::GetWindowRect(control, place);
        if (place.top < from)
            continue;
        ScreenToClient(place);
        ::SetWindowPos(control, nullptr, place.left, place.top - distance, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    }
    CRect own;
    GetWindowRect(own);
    SetWindowPos(nullptr, 0, 0, own.Width(), own.Height() - distance, SWP_NOMOVE | SWP_NOZORDER);
}

CRect ResultWindow::placeOf(int control) const {
    CRect place;
    GetDlgItem(control)->GetWindowRect(place);
    return place;
}

} // namespace host
