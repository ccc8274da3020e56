// The dialog in which the user sets up an export to a ZIP archive.
#include "ExportToZipDlg.h"

#include "LocalizedText.h"

#include <afxdlgs.h>

ExportToZipDlg::ExportToZipDlg() : CBCGPDialog(IDD) {}

void ExportToZipDlg::DoDataExchange(CDataExchange* pDX) {
    CBCGPDialog::DoDataExchange(pDX);
    DDX_Control(pDX, IDC_EXPORT_TITLE, titleText);
    DDX_Control(pDX, IDC_EXPORT_DESC, descText);
    DDX_Control(pDX, IDC_EXPORT_PATH_TEXT, pathLabel);
    DDX_Control(pDX, IDC_EXPORT_PATH, pathEdit);
    DDX_Control(pDX, IDC_EXPORT_PREFIX_TEXT, prefixLabel);
    DDX_Control(pDX, IDC_EXPORT_PREFIX, prefixEdit);
    DDX_Control(pDX, IDC_EXPORT_BROWSE, browseButton);
    DDX_Control(pDX, IDOK, okButton);
    DDX_Control(pDX, IDCANCEL, cancelButton);
}

BEGIN_MESSAGE_MAP(ExportToZipDlg, CBCGPDialog)
    ON_BN_CLICKED(IDC_EXPORT_BROWSE, &ExportToZipDlg::OnBnClickedBrowse)
    ON_BN_CLICKED(IDOK, &ExportToZipDlg::OnBnClickedOk)
END_MESSAGE_MAP()

BOOL ExportToZipDlg::OnInitDialog() {
    if (!CBCGPDialog::OnInitDialog())
        return FALSE;
    initTexts();
    return TRUE;
}

void ExportToZipDlg::initTexts() {
    SetWindowText(localizedText("Common", "ExportToZipDlg.ExportToZipFile").c_str());
    titleText.SetWindowText(localizedText("Common", "ExportToZipDlg.ExportToZipFile").c_str());
    descText.SetWindowText(localizedText("Common", "ExportToZipDlg.Desc").c_str());
    pathLabel.SetWindowText(localizedText("Common", "ExportToZipDlg.Path").c_str());
    prefixLabel.SetWindowText(localizedText("Common", "ExportToZipDlg.PagesPrefix").c_str());
    browseButton.SetWindowText(localizedText("Common", "ExportToZipDlg.Browse").c_str());
    cancelButton.SetWindowText(localizedText("Common", "Button.Cancel").c_str());
}

void ExportToZipDlg::OnBnClickedBrowse() {
    // The kind that opens files, not the one that saves: without OFN_FILEMUSTEXIST it takes new names too.
    constexpr DWORD flags = OFN_HIDEREADONLY | OFN_OVERWRITEPROMPT;
    static_assert(flags == 6);
    CFileDialog browse(TRUE, nullptr, nullptr, flags, nullptr, nullptr);
    if (browse.DoModal() == IDOK)
        pathEdit.SetWindowText(browse.GetPathName());
}

void ExportToZipDlg::OnBnClickedOk() {
    CString text;
    pathEdit.GetWindowText(text);
    path = text;
    prefixEdit.GetWindowText(text);
    prefix = text;
    CBCGPDialog::OnOK();
}
