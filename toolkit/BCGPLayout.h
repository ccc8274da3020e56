// Layout of a resizable dialog: which control follows the dialog's growth, how and by how much.
#pragma once

#include "afxwin.h"

#include <vector>

/// Keeps a dialog from becoming smaller than its template. Moves nothing by itself.
class TOOLKIT_API CBCGPControlsLayout : public CObject {
    DECLARE_DYNCREATE(CBCGPControlsLayout)

public:
    CBCGPControlsLayout() = default;

    /// Takes the window's present size as the one that everything is laid out for and the smallest one.
    virtual BOOL Create(CWnd* pHostWnd);
    CWnd* GetHostWnd() const { return m_pHostWnd; }

    /// Of the whole window, with its frame.
    CSize GetMinSize() const { return m_sizeMin; }

    /// The window's client area has a new size.
    virtual void OnResize(UINT /*nFlags*/, int /*cx*/, int /*cy*/) {}

private:
    CWnd* m_pHostWnd = nullptr;
    CSize m_sizeMin;
};

/// Moves and sizes controls by fixed shares of the dialog's growth. Positions are always computed from those the
/// controls had when they were anchored, so any number of resizings leaves no rounding behind.
class TOOLKIT_API CBCGPStaticLayout : public CBCGPControlsLayout {
    DECLARE_DYNCREATE(CBCGPStaticLayout)

public:
    enum XMoveType { e_MoveTypeNone = 0, e_MoveTypeHorz = 1, e_MoveTypeVert = 2, e_MoveTypeBoth = 3 };
    enum XSizeType { e_SizeTypeNone = 0, e_SizeTypeHorz = 1, e_SizeTypeVert = 2, e_SizeTypeBoth = 3 };

    CBCGPStaticLayout() = default;

    BOOL Create(CWnd* pHostWnd) override;
    /// Lets the control follow. percMove and percSize are the percentages of the dialog's growth that its position
    /// and its size take part in, per axis; an axis that the type does not name stays as it is. False for a window
    /// that is no child of the dialog. Anchoring a control again replaces its former anchor.
    BOOL AddAnchor(HWND hwnd, XMoveType typeMove, XSizeType typeSize,
                   const CPoint& percMove = CPoint(100, 100), const CPoint& percSize = CPoint(100, 100));
    void OnResize(UINT nFlags, int cx, int cy) override;

private:
    struct Anchor {
        HWND control;
        CRect original;
        CPoint move;
        CPoint size;
    };

    CSize originalClient;
    std::vector<Anchor> anchors;
};
