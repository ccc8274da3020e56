// The pages as the user sees them.
#include "host/desktop/PageView.h"

#include "host/desktop/PageCollection.h"
#include "host/desktop/Texts.h"

#include <algorithm>
#include <cwchar>
#include <map>

namespace host {
namespace {

constexpr UINT GRID = 1;
constexpr UINT SELECTION_SETTLED = WM_APP;
constexpr UINT_PTR SCROLL_TIMER = 1;
constexpr UINT SCROLL_INTERVAL = 30;
constexpr int SCROLL_EDGE = 32; ///< in pixels at 96 dpi, where dragging scrolls

void copyText(const std::wstring& text, wchar_t* buffer, int size) {
    if (!buffer || size <= 0)
        return;
    const std::size_t length = std::min(text.size(), static_cast<std::size_t>(size) - 1);
    std::wmemcpy(buffer, text.data(), length);
    buffer[length] = L'\0';
}

bool isDown(int virtualKey) {
    return GetKeyState(virtualKey) < 0;
}

} // namespace

BEGIN_MESSAGE_MAP(PageView, CWnd)
    ON_MESSAGE(WM_SIZE, &PageView::OnSize)
    ON_MESSAGE(WM_SETFOCUS, &PageView::OnSetFocus)
    ON_MESSAGE(WM_CONTEXTMENU, &PageView::OnContextMenu)
    ON_MESSAGE(WM_TIMER, &PageView::OnTimer)
    ON_MESSAGE(WM_DPICHANGED_AFTERPARENT, &PageView::OnDpiChanged)
    ON_MESSAGE(WM_SYSCOLORCHANGE, &PageView::OnColoursChanged)
    ON_MESSAGE(SELECTION_SETTLED, &PageView::OnSelectionSettled)
    ON_MESSAGE(WM_DESTROY, &PageView::OnDestroy)
END_MESSAGE_MAP()

PageView::PageView(PageCollection& pages, ThumbnailSource& thumbnails)
    : pages(pages), thumbnails(thumbnails) {}

PageView::~PageView() {
    DestroyWindow();
}

BOOL PageView::create(CWnd& parent, UINT id) {
    if (!Create(nullptr, nullptr, WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN, CRect(), &parent, id) ||
        !grid.create(*this, GRID))
        return FALSE;
    grid.whenKey = [this](UINT virtualKey) { return pressed(virtualKey); };
    measure();
    PageDropReceiver& receiver = *this;
    dropTarget.emplace(m_hWnd, receiver);
    pagesChanged();
    return TRUE;
}

void PageView::measure() {
    painter.emplace(GetDpiForWindow(m_hWnd));
    thumbnails.setSize(painter->thumbnailSize());
    grid.setMeasures(*painter);
    requested = {};
}

void PageView::pagesChanged() {
    std::map<const FilePage*, std::size_t> places;
    for (std::size_t i = 0; i < pages.size(); ++i)
        places[pages[i].get()] = i;
    const auto placeNow = [&](std::size_t index) -> std::optional<std::size_t> {
        if (index < shown.size())
            if (const auto place = places.find(shown[index].get()); place != places.end())
                return place->second;
        return std::nullopt;
    };
    std::vector<std::size_t> selected;
    for (std::size_t index : grid.selection())
        if (const auto place = placeNow(index))
            selected.push_back(*place);
    std::ranges::sort(selected);
    const std::size_t focus = placeNow(grid.focused()).value_or(grid.focused());
    const auto selectionBegin = placeNow(grid.selectionBegin());

    shown = pages.pages();
    runs.assign(shown.size(), 0);
    for (std::size_t i = 1; i < shown.size(); ++i)
        runs[i] = runs[i - 1] + (sameFolder(i, i - 1) ? 0 : 1);

    grid.setCount(shown.size());
    if (selected != grid.selection())
        grid.select(selected);
    if (!shown.empty())
        grid.setFocused(std::min(focus, shown.size() - 1));
    if (selectionBegin)
        grid.setSelectionBegin(*selectionBegin);
    requested = {};
    grid.Invalidate(FALSE);
}

void PageView::thumbnailsLoaded() {
    grid.Invalidate(FALSE);
}

void PageView::setTexts() {
    grid.Invalidate(FALSE);
}

void PageView::select(const std::vector<std::size_t>& indices) {
    grid.select(indices);
    if (indices.empty())
        return;
    grid.setFocused(indices.front());
    grid.show(indices.back());
    grid.show(indices.front());
}

std::size_t PageView::insertPosition() const {
    const auto selected = grid.selection();
    return selected.empty() ? shown.size() : selected.back() + 1;
}

void PageView::moveSelectionBack() {
    const auto selected = grid.selection();
    if (!selected.empty())
        moveSelection(std::max<std::size_t>(selected.front(), 1) - 1);
}

void PageView::moveSelectionForward() {
    const auto selected = grid.selection();
    if (!selected.empty())
        moveSelection(std::min(selected.back() + 2, shown.size()));
}

void PageView::moveSelection(std::size_t position) {
    const auto selected = grid.selection();
    const auto moved = pages.move(selected, position);
    if (moved == selected)
        return;
    pagesChanged();
    select(moved);
    if (whenReordered)
        whenReordered();
}

LRESULT PageView::OnSize(WPARAM, LPARAM lParam) {
    grid.MoveWindow(CRect(0, 0, LOWORD(lParam), HIWORD(lParam)));
    // The hint stands in the middle.
    if (shown.empty())
        grid.Invalidate(FALSE);
    return 0;
}

LRESULT PageView::OnSetFocus(WPARAM, LPARAM) {
    grid.SetFocus();
    return 0;
}

LRESULT PageView::OnContextMenu(WPARAM, LPARAM lParam) {
    CPoint screen(lParam);
    if (lParam == -1) {
        const std::size_t focus = grid.focused();
        if (focus < shown.size()) {
            grid.show(focus);
            screen = grid.cell(focus).CenterPoint();
        } else {
            screen = CPoint();
        }
        grid.ClientToScreen(&screen);
    }
    if (whenMenuWanted)
        whenMenuWanted(screen);
    return 0;
}

LRESULT PageView::OnTimer(WPARAM wParam, LPARAM) {
    if (wParam == SCROLL_TIMER)
        scrollNearEdge();
    return 0;
}

LRESULT PageView::OnDpiChanged(WPARAM, LPARAM) {
    measure();
    return 0;
}

LRESULT PageView::OnColoursChanged(WPARAM wParam, LPARAM lParam) {
    grid.SendMessage(WM_SYSCOLORCHANGE, wParam, lParam);
    grid.setColours();
    return 0;
}

LRESULT PageView::OnSelectionSettled(WPARAM, LPARAM) {
    selectionIsSettling = false;
    if (whenSelectionChanges)
        whenSelectionChanges();
    return 0;
}

LRESULT PageView::OnDestroy(WPARAM, LPARAM) {
    dropTarget.reset();
    return Default();
}

BOOL PageView::OnNotify(WPARAM, LPARAM lParam, LRESULT* pResult) {
    auto* const header = reinterpret_cast<NMHDR*>(lParam);
    if (header->hwndFrom != grid.m_hWnd)
        return FALSE;
    *pResult = 0;
    switch (header->code) {
    case NM_CUSTOMDRAW:
        *pResult = draw(*reinterpret_cast<NMLVCUSTOMDRAW*>(header));
        return TRUE;
    case LVN_GETDISPINFOW:
        tell(*reinterpret_cast<NMLVDISPINFOW*>(header));
        return TRUE;
    case LVN_GETINFOTIPW:
        tellPath(*reinterpret_cast<NMLVGETINFOTIPW*>(header));
        return TRUE;
    case LVN_ODFINDITEMW:
        *pResult = find(*reinterpret_cast<NMLVFINDITEMW*>(header));
        return TRUE;
    case LVN_ITEMCHANGED:
        if (const auto& change = *reinterpret_cast<NMLISTVIEW*>(header); change.iItem >= 0)
            // The control itself draws only the icon and the label anew.
            grid.redraw(static_cast<std::size_t>(change.iItem));
        selectionChanged();
        return TRUE;
    case LVN_ODSTATECHANGED:
        grid.Invalidate(FALSE);
        selectionChanged();
        return TRUE;
    case LVN_ITEMACTIVATE:
        if (whenOpened)
            whenOpened();
        return TRUE;
    case LVN_BEGINDRAG:
        dropTarget->dragPages();
        return TRUE;
    case NM_SETFOCUS:
    case NM_KILLFOCUS:
        grid.Invalidate(FALSE);
        return TRUE;
    }
    return FALSE;
}

void PageView::selectionChanged() {
    if (!selectionIsSettling)
        selectionIsSettling = PostMessage(SELECTION_SETTLED) != FALSE;
}

LRESULT PageView::draw(const NMLVCUSTOMDRAW& drawing) {
    switch (drawing.nmcd.dwDrawStage) {
    case CDDS_PREPAINT:
        requestVisible();
        return CDRF_NOTIFYITEMDRAW | CDRF_NOTIFYPOSTPAINT;
    case CDDS_ITEMPREPAINT:
        drawPage(drawing.nmcd.hdc, drawing.nmcd.dwItemSpec);
        return CDRF_SKIPDEFAULT;
    case CDDS_POSTPAINT:
        drawFolders(drawing.nmcd.hdc);
        drawMark(drawing.nmcd.hdc);
        return CDRF_DODEFAULT;
    }
    return CDRF_DODEFAULT;
}

void PageView::drawPage(HDC dc, std::size_t index) {
    if (index >= shown.size())
        return;
    const FilePage& page = *shown[index];
    const auto thumbnail = thumbnails.find({page.path(), page.written()});
    PageCell cell;
    cell.number = index + 1;
    cell.name = page.fileName();
    cell.run = runs[index];
    cell.beginsRun = beginsRun(index);
    cell.endsRun = index + 1 == shown.size() || beginsRun(index + 1);
    cell.thumbnail = thumbnail.get();
    const auto state =
        static_cast<UINT>(grid.SendMessage(LVM_GETITEMSTATE, index, LVIS_SELECTED | LVIS_FOCUSED));
    cell.viewIsActive = GetFocus() == &grid;
    cell.selected = state & LVIS_SELECTED;
    cell.focused = (state & LVIS_FOCUSED) && cell.viewIsActive;
    painter->paint(dc, grid.cell(index), cell);
}

void PageView::drawFolders(HDC dc) {
    const auto [begin, end] = grid.visible();
    for (std::size_t first = begin, next = begin; first < end; first = next) {
        do
            ++next;
        while (next < end && !beginsRun(next) && !grid.beginsRow(next));
        painter->paintFolder(dc, grid.cell(first), grid.cell(next - 1),
                             shown[first]->parentFolder().getFolderName(), beginsRun(first));
    }
}

void PageView::drawMark(HDC dc) {
    if (shown.empty()) {
        CRect client;
        grid.GetClientRect(client);
        painter->paintHint(dc, client, localText("ScanHost.Pages", "PagesEmpty"));
    }
    if (insertion)
        painter->paintInsertionMark(dc, markRect());
}

CRect PageView::markRect() const {
    if (shown.empty())
        return {};
    return insertion->afterPrevious ? painter->insertionMark(grid.cell(insertion->position - 1), true)
                                    : painter->insertionMark(grid.cell(insertion->position), false);
}

void PageView::requestVisible() {
    const auto seen = grid.visible();
    if (seen == requested)
        return;
    requested = seen;
    thumbnails.forgetRequests();
    // The loader begins with the newest request: the first page is asked for last.
    for (std::size_t i = seen.second; i-- > seen.first;)
        thumbnails.find({shown[i]->path(), shown[i]->written()});
}

bool PageView::pressed(UINT virtualKey) {
    const bool control = isDown(VK_CONTROL);
    const bool shift = isDown(VK_SHIFT);
    if (control && !shift && virtualKey == 'A') {
        selectAll();
        return true;
    }
    if (control && shift && (virtualKey == VK_LEFT || virtualKey == VK_UP)) {
        moveSelectionBack();
        return true;
    }
    if (control && shift && (virtualKey == VK_RIGHT || virtualKey == VK_DOWN)) {
        moveSelectionForward();
        return true;
    }
    return grid.go(virtualKey, shift ? Going::Extend : control ? Going::Leave : Going::Select);
}

std::wstring PageView::itemText(std::size_t index) const {
    const FilePage& page = *shown[index];
    const std::wstring number = std::to_wstring(index + 1);
    const std::wstring folder = page.parentFolder().getFolderName();
    if (folder.empty())
        return localText("ScanHost.Pages", "PageItem", {{L"number", number}, {L"name", page.fileName()}});
    return localText("ScanHost.Pages", "PageItemInFolder",
                     {{L"number", number}, {L"name", page.fileName()}, {L"folder", folder}});
}

bool PageView::beginsRun(std::size_t index) const {
    return index == 0 || runs[index - 1] != runs[index];
}

bool PageView::sameFolder(std::size_t index, std::size_t other) const {
    return shown[index]->parentFolder().path() == shown[other]->parentFolder().path();
}

void PageView::tell(NMLVDISPINFOW& info) const {
    const auto index = static_cast<std::size_t>(info.item.iItem);
    if (info.item.mask & LVIF_IMAGE)
        info.item.iImage = 0;
    if (info.item.mask & LVIF_TEXT)
        copyText(index < shown.size() ? itemText(index) : std::wstring(), info.item.pszText,
                 info.item.cchTextMax);
}

void PageView::tellPath(NMLVGETINFOTIPW& tip) const {
    const auto index = static_cast<std::size_t>(tip.iItem);
    if (index < shown.size())
        copyText(shown[index]->path(), tip.pszText, tip.cchTextMax);
}

LRESULT PageView::find(const NMLVFINDITEMW& wanted) const {
    if (!(wanted.lvfi.flags & (LVFI_STRING | LVFI_PARTIAL)) || !wanted.lvfi.psz)
        return -1;
    const std::wstring typed = wanted.lvfi.psz;
    const auto begins = [&typed](const std::wstring& text) {
        return text.size() >= typed.size() &&
               CompareStringOrdinal(text.c_str(), static_cast<int>(typed.size()), typed.c_str(),
                                    static_cast<int>(typed.size()), TRUE) == CSTR_EQUAL;
    };
    const auto start = static_cast<std::size_t>(std::max(wanted.iStart, 0));
    for (std::size_t i = 0; i < shown.size(); ++i) {
        const std::size_t index = (start + i) % shown.size();
        if (begins(std::to_wstring(index + 1)) || begins(shown[index]->fileName()))
            return static_cast<LRESULT>(index);
    }
    return -1;
}

void PageView::draggedOver(CPoint screen) {
    grid.ScreenToClient(&screen);
    mark(grid.placeAt(screen));
    SetTimer(SCROLL_TIMER, SCROLL_INTERVAL, nullptr);
}

void PageView::dragEnded() {
    KillTimer(SCROLL_TIMER);
    mark(std::nullopt);
}

void PageView::filesDropped(std::vector<std::wstring> paths, CPoint screen) {
    grid.ScreenToClient(&screen);
    if (whenDropped && !paths.empty())
        whenDropped(std::move(paths), grid.placeAt(screen).position);
}

void PageView::pagesDropped(CPoint screen) {
    grid.ScreenToClient(&screen);
    moveSelection(grid.placeAt(screen).position);
}

void PageView::mark(std::optional<InsertionPlace> place) {
    if (place == insertion)
        return;
    const auto redraw = [this] {
        if (insertion)
            InvalidateRect(grid.m_hWnd, markRect(), FALSE);
    };
    redraw();
    insertion = place;
    redraw();
}

void PageView::scrollNearEdge() {
    CPoint mouse;
    GetCursorPos(&mouse);
    grid.ScreenToClient(&mouse);
    CRect client;
    grid.GetClientRect(client);
    const int edge = MulDiv(SCROLL_EDGE, static_cast<int>(GetDpiForWindow(m_hWnd)), USER_DEFAULT_SCREEN_DPI);
    int pixels = 0;
    if (mouse.y < client.top + edge)
        pixels = std::max<int>(mouse.y - (client.top + edge), -edge);
    else if (mouse.y > client.bottom - edge)
        pixels = std::min<int>(mouse.y - (client.bottom - edge), edge);
    if (pixels == 0)
        return;
    mark(std::nullopt);
    grid.scroll(pixels);
    mark(grid.placeAt(mouse));
}

} // namespace host
