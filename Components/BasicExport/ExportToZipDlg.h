// The dialog in which the user sets up an export to a ZIP archive.
#pragma once

#include "BCGCBProInc.h"
#include "SorvaneBase/StringTypes.h"
#include "resource.h"

/// Opens empty every time. When DoModal() returns IDOK it holds what the user entered, unchecked.
class ExportToZipDlg : public CBCGPDialog {
public:
    enum { IDD = IDD_EXPORT_ZIP };

    ExportToZipDlg();

    /// The archive's path as it was typed.
    Sorvane::astring getPath() const { return path; }
    /// What the names of the entries begin with.
    Sorvane::astring getPrefix() const { return prefix; }

protected:
    void DoDataExchange(CDataExchange* pDX) override;
    BOOL OnInitDialog() override;

    DECLARE_MESSAGE_MAP()
    afx_msg void OnBnClickedBrowse();
    afx_msg void OnBnClickedOk();

private:
    void initTexts();

    CBCGPStatic titleText;
    CBCGPStatic descText;
    CBCGPStatic pathLabel;
    CBCGPEdit pathEdit;
    CBCGPStatic prefixLabel;
    CBCGPEdit prefixEdit;
    CBCGPButton browseButton;
    CBCGPButton okButton;
    CBCGPButton cancelButton;
    Sorvane::astring path;
    Sorvane::astring prefix;
};
