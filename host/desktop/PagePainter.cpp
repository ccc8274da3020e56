// Draws one page of the page view, and what the view shows around the pages.
#include "host/desktop/PagePainter.h"

#include <algorithm>
#include <array>
#include <utility>

namespace host {
namespace {

// In pixels at 96 dpi.
constexpr int THUMBNAIL = 136;
constexpr int GAP = 12; ///< between the selections of two neighbours
constexpr int PADDING = 8;
constexpr int RUN_LINE = 3;
constexpr int MARK = 3;

class Selected {
public:
    Selected(HDC dc, HGDIOBJ object) : dc(dc), previous(SelectObject(dc, object)) {}
    ~Selected() { SelectObject(dc, previous); }
    Selected(const Selected&) = delete;
    Selected& operator=(const Selected&) = delete;

private:
    HDC dc;
    HGDIOBJ previous;
};

bool isHighContrast() {
    HIGHCONTRASTW contrast{};
    contrast.cbSize = sizeof(contrast);
    return SystemParametersInfoW(SPI_GETHIGHCONTRAST, sizeof(contrast), &contrast, 0) &&
           (contrast.dwFlags & HCF_HIGHCONTRASTON);
}

/// On a dark ground too a colour mixed with it could hardly be told from it.
bool isPlain() {
    const COLORREF ground = GetSysColor(COLOR_WINDOW);
    return isHighContrast() || std::max({GetRValue(ground), GetGValue(ground), GetBValue(ground)}) < 128;
}

COLORREF blend(COLORREF colour, COLORREF ground, int percent) {
    const auto mixed = [percent](int part, int under) {
        return static_cast<BYTE>((part * percent + under * (100 - percent)) / 100);
    };
    return RGB(mixed(GetRValue(colour), GetRValue(ground)), mixed(GetGValue(colour), GetGValue(ground)),
               mixed(GetBValue(colour), GetBValue(ground)));
}

/// Between a colour of the system's texts and its window's, nearer to the window the smaller the percentage. Plain
/// colours are never mixed.
COLORREF shade(int systemColour, int percent) {
    const COLORREF full = GetSysColor(systemColour);
    return isPlain() ? full : blend(full, GetSysColor(COLOR_WINDOW), percent);
}

int selectionColour(const PageCell& page) {
    return page.viewIsActive || isPlain() ? COLOR_HIGHLIGHT : COLOR_GRAYTEXT;
}

/// What the page lies on.
COLORREF groundOf(const PageCell& page) {
    return page.selected ? shade(selectionColour(page), 28) : GetSysColor(COLOR_WINDOW);
}

COLORREF runColour(std::size_t run) {
    constexpr std::array COLOURS{RGB(46, 117, 182), RGB(67, 140, 80), RGB(196, 118, 30), RGB(128, 90, 166)};
    return isHighContrast() ? GetSysColor(COLOR_WINDOWTEXT) : COLOURS[run % COLOURS.size()];
}

void fill(HDC dc, const CRect& rect, COLORREF colour) {
    SetDCBrushColor(dc, colour);
    FillRect(dc, rect, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
}

void frame(HDC dc, const CRect& rect, COLORREF colour) {
    SetDCBrushColor(dc, colour);
    FrameRect(dc, rect, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
}

void fillRounded(HDC dc, const CRect& rect, COLORREF inside, COLORREF border, int diameter) {
    const Selected pen(dc, GetStockObject(DC_PEN));
    const Selected brush(dc, GetStockObject(DC_BRUSH));
    SetDCPenColor(dc, border);
    SetDCBrushColor(dc, inside);
    RoundRect(dc, rect.left, rect.top, rect.right, rect.bottom, diameter, diameter);
}

int widthOf(HDC dc, const std::wstring& text) {
    SIZE size{};
    GetTextExtentPoint32W(dc, text.data(), static_cast<int>(text.size()), &size);
    return size.cx;
}

void drawLine(HDC dc, const std::wstring& text, CRect rect, UINT alignment) {
    const std::wstring fitting = shortened(dc, text, rect.Width());
    DrawTextW(dc, fitting.data(), static_cast<int>(fitting.size()), rect,
              alignment | DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX);
}

bool isHighSurrogate(wchar_t c) {
    return c >= 0xD800 && c < 0xDC00;
}

std::wstring withoutMiddle(const std::wstring& text, std::size_t kept) {
    std::size_t begin = kept / 2;
    std::size_t end = text.size() - (kept - begin);
    if (begin > 0 && isHighSurrogate(text[begin - 1]))
        --begin;
    if (end > 0 && end < text.size() && isHighSurrogate(text[end - 1]))
        ++end;
    return text.substr(0, begin) + L'…' + text.substr(end);
}

} // namespace

std::wstring shortened(HDC dc, const std::wstring& text, int width) {
    if (widthOf(dc, text) <= width)
        return text;
    std::size_t fits = 0;
    std::size_t tooMany = text.size();
    while (tooMany - fits > 1) {
        const std::size_t kept = (fits + tooMany) / 2;
        (widthOf(dc, withoutMiddle(text, kept)) <= width ? fits : tooMany) = kept;
    }
    return withoutMiddle(text, fits);
}

PagePainter::PagePainter(UINT dpi) : dpi(dpi), font(messageFont(dpi)), boldFont(messageFont(dpi, true)) {
    HDC screen = GetDC(nullptr);
    {
        const Selected selected(screen, boldFont.get());
        TEXTMETRICW text{};
        GetTextMetricsW(screen, &text);
        lineHeight = text.tmHeight + scaled(1);
    }
    ReleaseDC(nullptr, screen);

    thumbnail = scaled(THUMBNAIL);
    stripHeight = lineHeight + 2 * scaled(RUN_LINE) + scaled(PADDING);
    cell = {thumbnail + 2 * scaled(PADDING) + scaled(GAP),
            stripHeight + thumbnail + 2 * lineHeight + 3 * scaled(PADDING) + scaled(GAP)};
}

int PagePainter::scaled(int pixelsAt96) const {
    return MulDiv(pixelsAt96, static_cast<int>(dpi), USER_DEFAULT_SCREEN_DPI);
}

CRect PagePainter::iconIn(const CRect& cellRect) const {
    const int margin = scaled(GAP) / 2;
    return {cellRect.left + margin, cellRect.top, cellRect.right - margin,
            cellRect.top + stripHeight + scaled(PADDING) + thumbnail};
}

void PagePainter::paint(HDC dc, const CRect& cellRect, const PageCell& page) const {
    const int state = SaveDC(dc);
    SetBkMode(dc, TRANSPARENT);
    SelectObject(dc, font.get());
    fill(dc, cellRect, GetSysColor(COLOR_WINDOW));
    paintStrip(dc, cellRect, page);

    const CRect icon = iconIn(cellRect);
    CRect around(icon.left, cellRect.top + stripHeight, icon.right, cellRect.bottom - scaled(GAP));
    paintSelection(dc, around, page);
    CRect square(0, 0, thumbnail, thumbnail);
    square.OffsetRect(icon.left + scaled(PADDING), around.top + scaled(PADDING));
    paintPage(dc, square, page);
    paintTexts(dc, {square.left, square.bottom + scaled(PADDING), square.right, around.bottom}, page);
    RestoreDC(dc, state);
}

void PagePainter::paintStrip(HDC dc, const CRect& cellRect, const PageCell& page) const {
    const int margin = scaled(GAP) / 2;
    const int bottom = cellRect.top + stripHeight - scaled(PADDING);
    fill(dc,
         {cellRect.left + (page.beginsRun ? margin : 0), bottom - scaled(RUN_LINE),
          cellRect.right - (page.endsRun ? margin : 0), bottom},
         runColour(page.run));
}

void PagePainter::paintFolder(HDC dc, const CRect& first, const CRect& last, const std::wstring& name,
                              bool beginsRun) const {
    const int margin = scaled(GAP) / 2;
    const int state = SaveDC(dc);
    SelectObject(dc, font.get());
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, beginsRun ? GetSysColor(COLOR_WINDOWTEXT) : shade(COLOR_WINDOWTEXT, 65));
    drawLine(dc, name, {first.left + margin, first.top, last.right - margin, first.top + lineHeight},
             DT_LEFT);
    RestoreDC(dc, state);
}

void PagePainter::paintSelection(HDC dc, const CRect& around, const PageCell& page) const {
    if (page.selected)
        fillRounded(dc, around, groundOf(page), shade(selectionColour(page), 75), scaled(6));
    if (page.focused) {
        CRect inside(around.left + scaled(2), around.top + scaled(2), around.right - scaled(2),
                     around.bottom - scaled(2));
        SetTextColor(dc, GetSysColor(COLOR_WINDOWTEXT));
        SetBkColor(dc, GetSysColor(COLOR_WINDOW));
        DrawFocusRect(dc, inside);
    }
}

void PagePainter::paintPage(HDC dc, const CRect& square, const PageCell& page) const {
    // A page that is not there yet has the shape of most.
    CSize size(thumbnail * 5 / 7, thumbnail);
    if (page.thumbnail)
        size = page.thumbnail->size;
    CRect sheet(0, 0, std::min<int>(size.cx, thumbnail), std::min<int>(size.cy, thumbnail));
    sheet.OffsetRect(square.left + (thumbnail - sheet.Width()) / 2, square.top + thumbnail - sheet.Height());

    const bool isSheet = !page.thumbnail || page.thumbnail->kind == Thumbnail::Kind::Picture;
    if (page.thumbnail && page.thumbnail->frames > 1) {
        CRect behind = sheet;
        behind.OffsetRect(scaled(4), -scaled(4));
        paintSheet(dc, behind, groundOf(page));
    }
    if (isSheet)
        paintSheet(dc, sheet, groundOf(page));
    if (!page.thumbnail)
        return;
    drawThumbnail(dc, sheet, *page.thumbnail);
    if (isSheet)
        frame(dc, sheet, shade(COLOR_WINDOWTEXT, 40));
    if (page.thumbnail->frames > 1)
        paintFrameCount(dc, sheet, page.thumbnail->frames);
}

void PagePainter::paintSheet(HDC dc, const CRect& sheet, COLORREF ground) const {
    if (!isPlain()) {
        for (const auto& [distance, strength] : {std::pair(2, 10), std::pair(1, 24)}) {
            CRect shadow = sheet;
            shadow.OffsetRect(scaled(distance), scaled(distance));
            fill(dc, shadow, blend(GetSysColor(COLOR_WINDOWTEXT), ground, strength));
        }
    }
    fill(dc, sheet, GetSysColor(COLOR_WINDOW));
    frame(dc, sheet, shade(COLOR_WINDOWTEXT, 40));
}

void PagePainter::paintFrameCount(HDC dc, const CRect& sheet, unsigned frames) const {
    const Selected bold(dc, boldFont.get());
    const std::wstring text = std::to_wstring(frames);
    const int width = std::max(widthOf(dc, text) + 2 * scaled(5), lineHeight + scaled(2));
    const CRect badge(sheet.right - scaled(4) - width, sheet.bottom - scaled(4) - lineHeight - scaled(2),
                      sheet.right - scaled(4), sheet.bottom - scaled(4));
    fillRounded(dc, badge, shade(COLOR_WINDOWTEXT, 75), GetSysColor(COLOR_WINDOW), lineHeight);
    SetTextColor(dc, GetSysColor(COLOR_WINDOW));
    drawLine(dc, text, badge, DT_CENTER);
}

void PagePainter::paintTexts(HDC dc, const CRect& texts, const PageCell& page) const {
    const bool onHighlight = page.selected && isPlain();
    SetTextColor(dc, GetSysColor(onHighlight ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT));
    CRect line(texts.left, texts.top, texts.right, texts.top + lineHeight);
    {
        const Selected bold(dc, boldFont.get());
        drawLine(dc, std::to_wstring(page.number), line, DT_CENTER);
    }
    line.OffsetRect(0, lineHeight);
    drawLine(dc, page.name, line, DT_CENTER);
}

CRect PagePainter::insertionMark(const CRect& cellRect, bool after) const {
    const int middle = after ? cellRect.right : cellRect.left;
    // Never outside a view that the cell touches the edge of.
    const int left = std::max(0, middle - scaled(GAP) / 2 + (scaled(GAP) - scaled(MARK)) / 2);
    return {left, cellRect.top + stripHeight, left + scaled(MARK), cellRect.bottom - scaled(GAP)};
}

void PagePainter::paintInsertionMark(HDC dc, const CRect& mark) const {
    fill(dc, mark, GetSysColor(COLOR_HIGHLIGHT));
}

void PagePainter::paintHint(HDC dc, const CRect& view, const std::wstring& text) const {
    const int state = SaveDC(dc);
    SelectObject(dc, font.get());
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, shade(COLOR_WINDOWTEXT, 65));
    CRect room(view.left + scaled(24), 0, view.right - scaled(24), 0);
    CRect needed = room;
    DrawTextW(dc, text.data(), static_cast<int>(text.size()), needed, DT_CALCRECT | DT_WORDBREAK);
    room.top = std::max(view.top + scaled(PADDING), view.top + (view.Height() - needed.Height()) / 2);
    room.bottom = view.bottom;
    DrawTextW(dc, text.data(), static_cast<int>(text.size()), room, DT_CENTER | DT_WORDBREAK | DT_NOPREFIX);
    RestoreDC(dc, state);
}

} // namespace host
