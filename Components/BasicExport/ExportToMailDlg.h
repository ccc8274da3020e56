// The dialog in which the user sets up an export to e-mail.
#pragma once

#include "BCGCBProInc.h"
#include "SorvaneBase/StringTypes.h"
#include "resource.h"

/// Asks for the subject of the message. When DoModal() returns IDOK it holds what the user entered, unchecked.
class ExportToMailDlg : public CBCGPDialog {
public:
    enum { IDD = IDD_SEND_MAIL };

    /// @param subject  what the edit shows at first; copied
    ExportToMailDlg(CWnd* parent, const Sorvane::astring* subject);

    /// The subject as it was confirmed; until then the one given.
    Sorvane::astring getSubject() const { return subject; }

protected:
    void DoDataExchange(CDataExchange* pDX) override;
    BOOL OnInitDialog() override;

    DECLARE_MESSAGE_MAP()
    afx_msg void OnBnClickedOk();

private:
    void initTexts();

    CBCGPStatic titleText;
    CBCGPStatic descText;
    CBCGPStatic subjectLabel;
    CBCGPEdit subjectEdit;
    CBCGPButton okButton;
    CBCGPButton cancelButton;
    Sorvane::astring subject;
};
