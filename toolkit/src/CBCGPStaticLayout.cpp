// Layout of a resizable dialog.
#include "BCGPLayout.h"

IMPLEMENT_DYNCREATE(CBCGPControlsLayout, CObject)
IMPLEMENT_DYNCREATE(CBCGPStaticLayout, CBCGPControlsLayout)

BOOL CBCGPControlsLayout::Create(CWnd* pHostWnd) {
    m_pHostWnd = pHostWnd;
    CRect window;
    pHostWnd->GetWindowRect(window);
    m_sizeMin = window.Size();
    return TRUE;
}

BOOL CBCGPStaticLayout::Create(CWnd* pHostWnd) {
    CRect client;
    pHostWnd->GetClientRect(client);
    originalClient = client.Size();
    anchors.clear();
    return CBCGPControlsLayout::Create(pHostWnd);
}

BOOL CBCGPStaticLayout::AddAnchor(HWND hwnd, XMoveType typeMove, XSizeType typeSize, const CPoint& percMove,
                                  const CPoint& percSize) {
    const CWnd* host = GetHostWnd();
    if (!host || !hwnd || GetAncestor(hwnd, GA_PARENT) != host->GetSafeHwnd())
        return FALSE;
    CRect original;
    GetWindowRect(hwnd, original);
    host->ScreenToClient(static_cast<LPRECT>(original));
    const CPoint move(typeMove & e_MoveTypeHorz ? percMove.x : 0, typeMove & e_MoveTypeVert ? percMove.y : 0);
    const CPoint size(typeSize & e_SizeTypeHorz ? percSize.x : 0, typeSize & e_SizeTypeVert ? percSize.y : 0);
    std::erase_if(anchors, [hwnd](const Anchor& anchor) { return anchor.control == hwnd; });
    anchors.push_back({hwnd, original, move, size});
    return TRUE;
}

void CBCGPStaticLayout::OnResize(UINT nFlags, int cx, int cy) {
    if (nFlags == SIZE_MINIMIZED || anchors.empty())
        return;
    const int growthX = cx - originalClient.cx;
    const int growthY = cy - originalClient.cy;
    HDWP moves = BeginDeferWindowPos(static_cast<int>(anchors.size()));
    for (const Anchor& anchor : anchors) {
        if (!IsWindow(anchor.control))
            continue;
        // Both edges are rounded by themselves: neighbours that follow by the same share keep their distance.
        const int left = anchor.original.left + MulDiv(growthX, anchor.move.x, 100);
        const int top = anchor.original.top + MulDiv(growthY, anchor.move.y, 100);
        const int right = anchor.original.right + MulDiv(growthX, anchor.move.x + anchor.size.x, 100);
        const int bottom = anchor.original.bottom + MulDiv(growthY, anchor.move.y + anchor.size.y, 100);
        if (moves)
            moves = DeferWindowPos(moves, anchor.control, nullptr, left, top, right - left, bottom - top,
                                   SWP_NOZORDER | SWP_NOACTIVATE);
    }
    if (moves)
        EndDeferWindowPos(moves);
    // Labels and the background behind them are drawn for the place they had.
    RedrawWindow(GetHostWnd()->GetSafeHwnd(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}
