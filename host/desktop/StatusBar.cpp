// The line at the bottom of the main window.
#include "host/desktop/StatusBar.h"

#include <commctrl.h>

#include <algorithm>

namespace host {
namespace {

// In pixels at 96 dpi.
constexpr int leastWidth = 160;
constexpr int spaceBesideText = 24;

} // namespace

BOOL StatusBar::create(CWnd& parent, UINT id) {
    return Create(STATUSCLASSNAMEW, nullptr, WS_VISIBLE | WS_CLIPSIBLINGS | SBARS_SIZEGRIP, CRect(), &parent,
                  id);
}

void StatusBar::show(const std::wstring& pages, const std::wstring& exported) {
    const auto scaled = [dpi = static_cast<int>(GetDpiForWindow(m_hWnd))](int pixels) {
        return MulDiv(pixels, dpi, USER_DEFAULT_SCREEN_DPI);
    };
    const int ends[] = {std::max(scaled(leastWidth), widthOf(pages) + scaled(spaceBesideText)), -1};
    SendMessage(SB_SETPARTS, 2, reinterpret_cast<LPARAM>(ends));
    SendMessage(SB_SETTEXTW, 0, reinterpret_cast<LPARAM>(pages.c_str()));
    SendMessage(SB_SETTEXTW, 1, reinterpret_cast<LPARAM>(exported.c_str()));
}

int StatusBar::fitHeight() {
    SendMessage(WM_SIZE);
    CRect rect;
    GetWindowRect(rect);
    return rect.Height();
}

int StatusBar::widthOf(const std::wstring& text) const {
    const HDC dc = GetDC(m_hWnd);
    const HGDIOBJ previous = SelectObject(dc, reinterpret_cast<HFONT>(SendMessage(WM_GETFONT)));
    SIZE size{};
    GetTextExtentPoint32W(dc, text.c_str(), static_cast<int>(text.size()), &size);
    SelectObject(dc, previous);
    ReleaseDC(m_hWnd, dc);
    return size.cx;
}

} // namespace host
