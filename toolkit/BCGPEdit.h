// CBCGPEdit: an edit that may carry a button to browse for a folder.
#pragma once

#include "afxwin.h"

class TOOLKIT_API CBCGPEdit : public CEdit {
    DECLARE_DYNAMIC(CBCGPEdit)

public:
    /// Puts a button at the right end of the edit; the text gives way to it. Pressing it opens the system's folder
    /// dialog, with the title above the tree and the flags of BROWSEINFO (BIF_...), at the folder that the edit
    /// names; the folder chosen replaces the text, which the parent learns as EN_CHANGE. The control must exist.
    void EnableFolderBrowseButton(LPCTSTR lpszTitle = nullptr, UINT uiFlags = 0);

    /// The button was pressed.
    virtual void OnBrowse();

protected:
    afx_msg void OnNcCalcSize(BOOL bCalcValidRects, NCCALCSIZE_PARAMS* lpncsp);
    afx_msg void OnNcPaint();
    afx_msg LRESULT OnNcHitTest(CPoint point);
    afx_msg void OnNcLButtonDown(UINT nHitTest, CPoint point);
    afx_msg void OnNcLButtonDblClk(UINT nHitTest, CPoint point);
    afx_msg void OnNcMouseMove(UINT nHitTest, CPoint point);
    afx_msg LRESULT OnNcMouseLeave(WPARAM wParam, LPARAM lParam);
    afx_msg void OnMouseMove(UINT nFlags, CPoint point);
    afx_msg void OnLButtonUp(UINT nFlags, CPoint point);
    afx_msg void OnCaptureChanged(CWnd* pWnd);
    afx_msg void OnEnable(BOOL bEnable);

    DECLARE_MESSAGE_MAP()

private:
    int buttonWidth() const;
    /// In screen coordinates; empty without a button.
    CRect buttonRect() const;
    bool isOnButton(CPoint screenPoint) const;
    void setButtonState(bool nowHot, bool nowPressed);
    void drawButton();

    bool hasButton = false;
    bool isHot = false;
    bool isPressed = false;
    /// From the press on the button until its release, wherever the mouse goes meanwhile.
    bool isTracking = false;
    CString browseTitle;
    UINT browseFlags = 0;
};
