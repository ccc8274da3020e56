// Exchange of data between a dialog's members and its controls.
#include "afxwin.h"

#include <stdexcept>
#include <string>

HWND CDataExchange::PrepareCtrl(int nIDC) const {
    const HWND control = ::GetDlgItem(m_pDlgWnd->GetSafeHwnd(), nIDC);
    if (!control)
        throw std::logic_error("the dialog has no control " + std::to_string(nIDC));
    return control;
}

void DDX_Control(CDataExchange* pDX, int nIDC, CWnd& rControl) {
    if (!rControl.GetSafeHwnd())
        rControl.SubclassWindow(pDX->PrepareCtrl(nIDC));
}
