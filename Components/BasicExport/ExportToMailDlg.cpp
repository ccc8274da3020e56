// The dialog in which the user sets up an export to e-mail.
#include "ExportToMailDlg.h"

#include "LocalizedText.h"

ExportToMailDlg::ExportToMailDlg(CWnd* parent, const Sorvane::astring* subject)
    : CBCGPDialog(IDD, parent), subject(*subject) {}

void ExportToMailDlg::DoDataExchange(CDataExchange* pDX) {
    CBCGPDialog::DoDataExchange(pDX);
    DDX_Control(pDX, IDC_SEND_MAIL_TITLE, titleText);
    DDX_Control(pDX, IDC_SEND_MAIL_PATH_TEXT, descText);
    DDX_Control(pDX, IDC_SEND_MAIL_SUBJECT_TEXT, subjectLabel);
    DDX_Control(pDX, IDC_SEND_MAIL_SUBJECT, subjectEdit);
    DDX_Control(pDX, IDOK, okButton);
    DDX_Control(pDX, IDCANCEL, cancelButton);
}

BEGIN_MESSAGE_MAP(ExportToMailDlg, CBCGPDialog)
    ON_BN_CLICKED(IDOK, &ExportToMailDlg::OnBnClickedOk)
END_MESSAGE_MAP()

BOOL ExportToMailDlg::OnInitDialog() {
    if (!CBCGPDialog::OnInitDialog())
        return FALSE;
    initTexts();
    subjectEdit.SetWindowText(subject.c_str());
    return TRUE;
}

void ExportToMailDlg::initTexts() {
    SetWindowText(localizedText("Common", "ExportToMailDlg.ExportToMail").c_str());
    titleText.SetWindowText(localizedText("Common", "ExportToMailDlg.ExportToMail").c_str());
    descText.SetWindowText(localizedText("Common", "ExportToMailDlg.Desc").c_str());
    subjectLabel.SetWindowText(localizedText("Common", "ExportToMailDlg.Subject").c_str());
    cancelButton.SetWindowText(localizedText("Common", "Button.Cancel").c_str());
}

void ExportToMailDlg::OnBnClickedOk() {
    CString text;
    subjectEdit.GetWindowText(text);
    subject = text;
    CBCGPDialog::OnOK();
}
