// Exchange of data between a dialog's members and its controls.
#pragma once

#include "ToolkitApi.h"

#include <windows.h>

class CWnd;

/// One exchange; UpdateData() makes it and hands it to DoDataExchange().
class TOOLKIT_API CDataExchange {
public:
    CDataExchange(CWnd* pDlgWnd, BOOL bSaveAndValidate)
        : m_bSaveAndValidate(bSaveAndValidate), m_pDlgWnd(pDlgWnd) {}

    /// The window of the dialog's control with that id. Throws std::logic_error when there is none: the template and
    /// the class do not belong together.
    HWND PrepareCtrl(int nIDC) const;

    BOOL m_bSaveAndValidate; ///< TRUE: from the controls into the members
    CWnd* m_pDlgWnd;
};

/// Puts the member in charge of the control at the first exchange: the control's messages go through the member's
/// message map from then on. Later exchanges change nothing.
TOOLKIT_API void DDX_Control(CDataExchange* pDX, int nIDC, CWnd& rControl);
