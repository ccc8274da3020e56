// The system's common dialogs.
#pragma once

#include "afxwin.h"

#include <windows.h>

#include <commdlg.h>

/// The system's file dialog in the look that came with Vista, which is the only one here.
class TOOLKIT_API CFileDialog {
public:
    /// @param bOpenFileDialog  TRUE for the kind that opens, FALSE for the one that saves
    /// @param lpszDefExt       added to a name typed without an extension; null adds none
    /// @param lpszFileName     in the edit at first; may be null
    /// @param dwFlags          of OFN_..., those that ask before overwriting and those that insist on an existing
    ///                         path or file; the others mean nothing in this look
    /// @param lpszFilter       "Description|*.ext;*.ex2|...||"; null shows all files
    /// @param pParentWnd       owns the dialog; without one it has no owner, and nothing is disabled meanwhile
    explicit CFileDialog(BOOL bOpenFileDialog, LPCTSTR lpszDefExt = nullptr, LPCTSTR lpszFileName = nullptr,
                         DWORD dwFlags = OFN_HIDEREADONLY | OFN_OVERWRITEPROMPT, LPCTSTR lpszFilter = nullptr,
                         CWnd* pParentWnd = nullptr, DWORD dwSize = 0, BOOL bVistaStyle = TRUE);

    /// IDOK when a file was chosen; IDCANCEL when none was, or the dialog could not be shown.
    INT_PTR DoModal();

    /// The full path of the file chosen; empty until then.
    CString GetPathName() const { return path; }

private:
    BOOL isOpenDialog;
    CString defaultExtension;
    CString fileName;
    DWORD flags;
    CString filter;
    CWnd* parent;
    CString path;
};
