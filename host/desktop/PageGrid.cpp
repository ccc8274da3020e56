// The list view that the page view shows its pages in: where each cell lies, and how it scrolls.
#include "host/desktop/PageGrid.h"

#include "host/desktop/PagePainter.h"

#include <algorithm>

namespace host {
namespace {

void setState(const CWnd& list, LRESULT index, UINT state, UINT mask) {
    LVITEMW item{};
    item.state = state;
    item.stateMask = mask;
    list.SendMessage(LVM_SETITEMSTATE, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&item));
}

} // namespace

BOOL PageGrid::create(CWnd& parent, UINT id) {
    INITCOMMONCONTROLSEX classes{sizeof(classes), ICC_LISTVIEW_CLASSES};
    InitCommonControlsEx(&classes);
    if (!CreateEx(0, WC_LISTVIEWW, nullptr,
                  WS_CHILD | WS_VISIBLE | WS_TABSTOP | LVS_ICON | LVS_OWNERDATA | LVS_SHOWSELALWAYS |
                      LVS_AUTOARRANGE | LVS_SHAREIMAGELISTS,
                  0, 0, 0, 0, parent, reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id))))
        return FALSE;
    constexpr DWORD STYLES = LVS_EX_DOUBLEBUFFER | LVS_EX_INFOTIP;
    SendMessage(LVM_SETEXTENDEDLISTVIEWSTYLE, STYLES, STYLES);
    setColours();
    return TRUE;
}

void PageGrid::setColours() {
    // Wine's list view keeps the colour that the system had when the program began.
    SendMessage(LVM_SETBKCOLOR, 0, static_cast<LPARAM>(GetSysColor(COLOR_WINDOW)));
    Invalidate();
}

void PageGrid::setMeasures(const PagePainter& painter) {
    cellSize = painter.cellSize();
    iconSize = painter.iconIn(CRect(0, 0, cellSize.cx, cellSize.cy)).Size();
    // Its images are never drawn; their size is what makes room for the cells.
    std::unique_ptr<std::remove_pointer_t<HIMAGELIST>, ImageListDeleter> sized(
        ImageList_Create(iconSize.cx, iconSize.cy, ILC_COLOR32, 0, 0));
    SendMessage(LVM_SETIMAGELIST, LVSIL_NORMAL, reinterpret_cast<LPARAM>(sized.get()));
    images = std::move(sized);
    SendMessage(LVM_SETICONSPACING, 0, MAKELPARAM(cellSize.cx, cellSize.cy));
    arrange();
}

void PageGrid::arrange() {
    SendMessage(LVM_ARRANGE, LVA_DEFAULT);
    Invalidate();
}

void PageGrid::setCount(std::size_t newCount) {
    const auto set = [&] { SendMessage(LVM_SETITEMCOUNT, newCount, LVSICF_NOSCROLL); };
    set();
    // Wine gives new icons a place only now, and then learns only by being told again how far it can scroll.
    arrange();
    set();
}

std::size_t PageGrid::count() const {
    return static_cast<std::size_t>(SendMessage(LVM_GETITEMCOUNT));
}

CRect PageGrid::icon(std::size_t index) const {
    CRect rect;
    rect.left = LVIR_ICON;
    SendMessage(LVM_GETITEMRECT, index, reinterpret_cast<LPARAM>(&rect));
    return rect;
}

CRect PageGrid::cell(std::size_t index) const {
    const CPoint middle = icon(index).CenterPoint();
    CRect rect(0, 0, cellSize.cx, cellSize.cy);
    rect.OffsetRect(middle.x - cellSize.cx / 2, middle.y - iconSize.cy / 2);
    return rect;
}

std::optional<std::size_t> PageGrid::at(CPoint point) const {
    LVHITTESTINFO hit{};
    hit.pt = point;
    const LRESULT index = SendMessage(LVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit));
    return index < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(index));
}

std::size_t PageGrid::firstBelow(int y) const {
    std::size_t first = 0;
    std::size_t last = count();
    while (first < last) {
        const std::size_t middle = (first + last) / 2;
        if (cell(middle).bottom > y)
            last = middle;
        else
            first = middle + 1;
    }
    return first;
}

std::pair<std::size_t, std::size_t> PageGrid::visible() const {
    CRect client;
    GetClientRect(client);
    const std::size_t first = firstBelow(0);
    std::size_t end = first;
    while (end < count() && cell(end).top < client.bottom)
        ++end;
    return {first, end};
}

bool PageGrid::beginsRow(std::size_t index) const {
    return index == 0 || cell(index - 1).top != cell(index).top;
}

InsertionPlace PageGrid::placeAt(CPoint point) const {
    const std::size_t begin = std::min(firstBelow(point.y), count());
    if (begin == count())
        return {count(), count() > 0};
    const int top = cell(begin).top;
    for (std::size_t index = begin; index < count(); ++index) {
        const CRect rect = cell(index);
        if (rect.top != top)
            return {index, true};
        if (point.x < rect.CenterPoint().x)
            return {index, false};
    }
    return {count(), true};
}

std::vector<std::size_t> PageGrid::selection() const {
    std::vector<std::size_t> selected;
    LRESULT index = -1;
    while ((index = SendMessage(LVM_GETNEXTITEM, static_cast<WPARAM>(index), LVNI_SELECTED)) >= 0)
        selected.push_back(static_cast<std::size_t>(index));
    return selected;
}

std::size_t PageGrid::selectedCount() const {
    return static_cast<std::size_t>(SendMessage(LVM_GETSELECTEDCOUNT));
}

void PageGrid::select(const std::vector<std::size_t>& indices) {
    setState(*this, -1, 0, LVIS_SELECTED);
    for (std::size_t index : indices)
        setState(*this, static_cast<LRESULT>(index), LVIS_SELECTED, LVIS_SELECTED);
}

void PageGrid::selectAll() {
    setState(*this, -1, LVIS_SELECTED, LVIS_SELECTED);
}

std::size_t PageGrid::focused() const {
    const LRESULT index = SendMessage(LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_FOCUSED);
    return index < 0 ? count() : static_cast<std::size_t>(index);
}

void PageGrid::setFocused(std::size_t index) {
    if (index >= count())
        return;
    setState(*this, static_cast<LRESULT>(index), LVIS_FOCUSED, LVIS_FOCUSED);
    setSelectionBegin(index);
}

std::size_t PageGrid::selectionBegin() const {
    const LRESULT index = SendMessage(LVM_GETSELECTIONMARK);
    return index < 0 ? count() : static_cast<std::size_t>(index);
}

void PageGrid::setSelectionBegin(std::size_t index) {
    SendMessage(LVM_SETSELECTIONMARK, 0, static_cast<LPARAM>(index));
}

std::size_t PageGrid::columns() const {
    std::size_t result = 1;
    while (result < count() && !beginsRow(result))
        ++result;
    return result;
}

std::optional<std::size_t> PageGrid::reachedBy(UINT virtualKey) const {
    if (count() == 0)
        return std::nullopt;
    CRect client;
    GetClientRect(client);
    const std::size_t rows = std::max(1L, client.Height() / cellSize.cy);
    const std::size_t here = std::min(focused(), count() - 1);
    const auto back = [here](std::size_t pages) { return here - std::min(here, pages); };
    const auto forward = [this, here](std::size_t pages) { return std::min(here + pages, count() - 1); };
    switch (virtualKey) {
    case VK_LEFT:
        return back(1);
    case VK_RIGHT:
        return forward(1);
    case VK_UP:
        return here < columns() ? here : here - columns();
    case VK_DOWN:
        return forward(columns());
    case VK_PRIOR:
        return back(rows * columns());
    case VK_NEXT:
        return forward(rows * columns());
    case VK_HOME:
        return 0;
    case VK_END:
        return count() - 1;
    default:
        return std::nullopt;
    }
}

bool PageGrid::go(UINT virtualKey, Going going) {
    const auto index = reachedBy(virtualKey);
    if (index)
        goTo(*index, going);
    return index.has_value();
}

void PageGrid::goTo(std::size_t index, Going going) {
    if (going == Going::Select) {
        select({index});
        setFocused(index);
    } else {
        setState(*this, static_cast<LRESULT>(index), LVIS_FOCUSED, LVIS_FOCUSED);
    }
    if (going == Going::Extend || going == Going::Add) {
        const std::size_t begin = selectionBegin();
        const auto [first, last] = std::minmax(begin < count() ? begin : index, index);
        for (std::size_t selected : selection())
            if (going == Going::Extend && (selected < first || selected > last))
                setState(*this, static_cast<LRESULT>(selected), 0, LVIS_SELECTED);
        for (std::size_t i = first; i <= last; ++i)
            setState(*this, static_cast<LRESULT>(i), LVIS_SELECTED, LVIS_SELECTED);
    }
    show(index);
}

void PageGrid::show(std::size_t index) {
    if (index < count())
        SendMessage(LVM_ENSUREVISIBLE, index, FALSE);
}

void PageGrid::scroll(int pixels) {
    SendMessage(LVM_SCROLL, 0, pixels);
}

void PageGrid::redraw(std::size_t index) {
    InvalidateRect(m_hWnd, cell(index), FALSE);
}

LRESULT PageGrid::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_KEYDOWN && whenKey && whenKey(static_cast<UINT>(wParam)))
        return 0;
    if (message == WM_LBUTTONDOWN && (wParam & MK_SHIFT)) {
        if (const auto index = at(CPoint(lParam))) {
            SetFocus();
            goTo(*index, wParam & MK_CONTROL ? Going::Add : Going::Extend);
            return 0;
        }
    }
    return CWnd::WindowProc(message, wParam, lParam);
}

} // namespace host
