// The standard controls.
#include "afxwin.h"

IMPLEMENT_DYNAMIC(CStatic, CWnd)
IMPLEMENT_DYNAMIC(CEdit, CWnd)
IMPLEMENT_DYNAMIC(CButton, CWnd)
IMPLEMENT_DYNAMIC(CListBox, CWnd)

void CListBox::GetText(int nIndex, CString& rString) const {
    const int length = GetTextLen(nIndex);
    rString.Empty();
    if (length == LB_ERR)
        return;
    SendMessage(LB_GETTEXT, static_cast<WPARAM>(nIndex), reinterpret_cast<LPARAM>(rString.GetBuffer(length)));
    rString.ReleaseBuffer();
}
