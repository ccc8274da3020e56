// CBCGPDialog: a dialog with the look of the system's visual style that may be resizable.
#pragma once

#include "afxwin.h"

#include <memory>
#include <vector>

class CBCGPControlsLayout;

class TOOLKIT_API CBCGPDialog : public CDialog {
    DECLARE_DYNAMIC(CBCGPDialog)

public:
    explicit CBCGPDialog(UINT nIDTemplate, CWnd* pParent = nullptr)
        : CBCGPDialog(MAKEINTRESOURCE(nIDTemplate), pParent) {}
    explicit CBCGPDialog(LPCTSTR lpszTemplateName, CWnd* pParent = nullptr);
    ~CBCGPDialog() override;

    /// Makes the dialog resizable, though its template may ask for a fixed frame, down to the template's size. To be
    /// called before DoModal(). pRTC is the class of the layout, CBCGPStaticLayout when null; bResizeBox asks for a
    /// size grip in the lower right corner.
    void EnableLayout(BOOL bEnable = TRUE, CRuntimeClass* pRTC = nullptr, BOOL bResizeBox = TRUE);
    /// Null without layout. Controls can be anchored once CBCGPDialog::OnInitDialog() has run.
    CBCGPControlsLayout* GetLayout() { return m_pLayout.get(); }

    /// Draws the dialog's background, also behind its labels and check boxes, as the visual style draws dialogs;
    /// with visual styles switched off it stays plain. The frame is always the system's, so bNCArea has no effect.
    /// The controls whose ids are listed keep the background they had.
    void EnableVisualManagerStyle(BOOL bEnable = TRUE, BOOL bNCArea = FALSE,
                                  const CList<UINT, UINT>* plstNonSubclassedItems = nullptr);
    BOOL IsVisualManagerStyle() const { return m_bVisualManagerStyle; }

protected:
    BOOL OnInitDialog() override;
    void AdjustTemplateStyle(DWORD& style, DWORD& extendedStyle) const override;

    afx_msg void OnSize(UINT nType, int cx, int cy);
    afx_msg void OnGetMinMaxInfo(MINMAXINFO* lpMMI);
    afx_msg LRESULT OnNcHitTest(CPoint point);
    afx_msg LRESULT OnEraseBackground(WPARAM wParam, LPARAM lParam);
    afx_msg LRESULT OnControlColor(WPARAM wParam, LPARAM lParam);

    DECLARE_MESSAGE_MAP()

private:
    bool showsGrip() const;
    CRect gripRect() const;

    std::unique_ptr<CBCGPControlsLayout> m_pLayout;
    bool m_bResizeBox = false;
    bool m_bVisualManagerStyle = false;
    std::vector<UINT> plainControls;
};
