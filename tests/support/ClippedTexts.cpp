// Finds texts that do not fit into the window that shows them.
#include "support/ClippedTexts.h"

#include "host/DialogPilot.h"
#include "host/Text.h"

#include <algorithm>
#include <optional>

namespace test {
namespace {

/// Where a control draws its text, and how.
struct TextRoom {
    SIZE size;
    UINT format;        ///< of DrawText
    UINT alignment = 0; ///< of DrawText; measuring goes without
};

UINT alignmentInStatic(LONG_PTR style) {
    switch (style & SS_TYPEMASK) {
    case SS_CENTER:
        return DT_CENTER;
    case SS_RIGHT:
        return DT_RIGHT;
    default:
        return DT_LEFT;
    }
}

std::optional<TextRoom> roomInStatic(SIZE client, LONG_PTR style) {
    const UINT prefix = style & SS_NOPREFIX ? DT_NOPREFIX : 0;
    switch (style & SS_TYPEMASK) {
    case SS_LEFT:
    case SS_CENTER:
    case SS_RIGHT:
        // An ellipsis instead of the rest is a clipped text too, and it comes without wrapping.
        return TextRoom{client,
                        prefix | DT_EXPANDTABS | (style & SS_ELLIPSISMASK ? DT_SINGLELINE : DT_WORDBREAK),
                        alignmentInStatic(style)};
    case SS_LEFTNOWORDWRAP:
        return TextRoom{client, prefix | DT_EXPANDTABS};
    case SS_SIMPLE:
        return TextRoom{client, prefix | DT_SINGLELINE};
    default:
        return std::nullopt; // pictures, lines and boxes
    }
}

std::optional<TextRoom> roomInButton(SIZE client, LONG_PTR style) {
    // The edges that the classic look and the themes draw, and the frame of the focus inside them.
    constexpr LONG edge = 3;
    constexpr LONG focus = 1;
    constexpr LONG boxGap = 4;
    constexpr LONG groupIndent = 9;
    const UINT lines = style & BS_MULTILINE ? DT_WORDBREAK : DT_SINGLELINE;
    switch (style & BS_TYPEMASK) {
    case BS_PUSHBUTTON:
    case BS_DEFPUSHBUTTON:
    case BS_OWNERDRAW:
        return TextRoom{{client.cx - 2 * (edge + focus), client.cy - 2 * (edge + focus)}, lines, DT_CENTER};
    case BS_GROUPBOX:
        return TextRoom{{client.cx - 2 * groupIndent, client.cy}, DT_SINGLELINE};
    default:
        return TextRoom{{client.cx - GetSystemMetrics(SM_CXMENUCHECK) - boxGap, client.cy}, lines};
    }
}

std::optional<TextRoom> textRoom(HWND control) {
    RECT client;
    GetClientRect(control, &client);
    const SIZE size = {client.right, client.bottom};
    const LONG_PTR style = GetWindowLongPtrW(control, GWL_STYLE);
    const std::wstring type = host::windowClass(control);
    if (type == L"Static")
        return roomInStatic(size, style);
    if (type == L"Button")
        return roomInButton(size, style);
    return std::nullopt;
}

SIZE measure(HWND window, HFONT font, const std::wstring& text, LONG width, UINT format) {
    HDC dc = GetDC(window);
    const HGDIOBJ previous = SelectObject(dc, font ? font : GetStockObject(SYSTEM_FONT));
    RECT needed = {0, 0, std::max(width, 0L), 0};
    DrawTextW(dc, text.c_str(), -1, &needed, format | DT_CALCRECT);
    SelectObject(dc, previous);
    ReleaseDC(window, dc);
    return {needed.right, needed.bottom};
}

bool isDark(RGBQUAD pixel) {
    return std::min({pixel.rgbRed, pixel.rgbGreen, pixel.rgbBlue}) < 128;
}

/// Whether glyphs reach over the right edge, as they may though the text measures less than the room. At the left
/// one some letters do so in any font, by the tip of a stroke.
bool isDrawnOverTheEdge(HFONT font, const std::wstring& text, const TextRoom& room) {
    constexpr LONG margin = 16;
    const LONG width = room.size.cx + margin;
    const LONG height = room.size.cy;
    BITMAPINFO format = {};
    format.bmiHeader = {sizeof format.bmiHeader, width, height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    HDC dc = CreateCompatibleDC(nullptr);
    void* bits = nullptr;
    HBITMAP bitmap = CreateDIBSection(dc, &format, DIB_RGB_COLORS, &bits, nullptr, 0);
    const HGDIOBJ previousBitmap = SelectObject(dc, bitmap);
    const HGDIOBJ previousFont = SelectObject(dc, font ? font : GetStockObject(SYSTEM_FONT));
    PatBlt(dc, 0, 0, width, height, WHITENESS);
    RECT area = {0, 0, room.size.cx, height};
    DrawTextW(dc, text.c_str(), -1, &area, room.format | room.alignment | DT_NOCLIP);
    GdiFlush();
    bool found = false;
    const auto* row = static_cast<const RGBQUAD*>(bits);
    for (LONG y = 0; y < height; ++y, row += width)
        found |= std::any_of(row + room.size.cx, row + width, isDark);
    SelectObject(dc, previousFont);
    SelectObject(dc, previousBitmap);
    DeleteObject(bitmap);
    DeleteDC(dc);
    return found;
}

std::string describe(const std::string& what, const std::wstring& text, SIZE needed, SIZE room) {
    return what + " \"" + host::utf8(text) + "\" needs " + std::to_string(needed.cx) + "x" +
           std::to_string(needed.cy) + ", has " + std::to_string(room.cx) + "x" + std::to_string(room.cy);
}

void checkControl(HWND control, std::vector<std::string>& clipped) {
    const std::wstring text = host::windowText(control);
    const std::optional<TextRoom> room = textRoom(control);
    if (text.empty() || !room)
        return;
    auto font = reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0));
    const SIZE needed = measure(control, font, text, room->size.cx, room->format);
    const std::string id = std::to_string(GetDlgCtrlID(control));
    if (needed.cx > room->size.cx || needed.cy > room->size.cy)
        clipped.push_back(describe(id, text, needed, room->size));
    else if (isDrawnOverTheEdge(font, text, *room))
        clipped.push_back(id + " \"" + host::utf8(text) + "\" is drawn over the edge");
}

void checkTitle(HWND window, std::vector<std::string>& clipped) {
    const LONG_PTR style = GetWindowLongPtrW(window, GWL_STYLE);
    if ((style & WS_CAPTION) != WS_CAPTION)
        return;
    NONCLIENTMETRICSW metrics = {};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    HFONT font = CreateFontIndirectW(&metrics.lfCaptionFont);
    const std::wstring title = host::windowText(window);
    const SIZE needed = measure(window, font, title, 0, DT_SINGLELINE | DT_NOPREFIX);
    DeleteObject(font);

    RECT client;
    GetClientRect(window, &client);
    LONG buttons = 0;
    if (style & WS_SYSMENU)
        buttons = style & (WS_MINIMIZEBOX | WS_MAXIMIZEBOX) ? 3 : 1;
    const bool hasIcon = (style & WS_SYSMENU) && SendMessageW(window, WM_GETICON, ICON_SMALL, 0);
    const SIZE room = {client.right - buttons * metrics.iCaptionWidth -
                           (hasIcon ? GetSystemMetrics(SM_CXSMICON) : 0) - 2 * GetSystemMetrics(SM_CXEDGE),
                       metrics.iCaptionHeight};
    if (needed.cx > room.cx)
        clipped.push_back(describe("title", title, needed, room));
}

} // namespace

std::vector<std::string> clippedTexts(HWND window) {
    std::vector<std::string> clipped;
    checkTitle(window, clipped);
    EnumChildWindows(
        window,
        [](HWND control, LPARAM list) -> BOOL {
            if (GetWindowLongPtrW(control, GWL_STYLE) & WS_VISIBLE)
                checkControl(control, *reinterpret_cast<std::vector<std::string>*>(list));
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&clipped));
    return clipped;
}

} // namespace test
