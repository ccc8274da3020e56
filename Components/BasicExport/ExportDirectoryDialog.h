// The dialog in which the user sets up an export to a directory.
#pragma once

#include "BCGCBProInc.h"
#include "SorvaneBase/StringTypes.h"
#include "SorvaneCommon/ExportUtils/ExportEngineBase.h"
#include "resource.h"

#include <string>
#include <vector>

/// Shown once per object. It opens with the settings the user confirmed last; when DoModal() returns IDOK the
/// members below hold the new ones, they are remembered, and the directory exists.
class ExportDirectoryDialog : public CBCGPDialog {
public:
    enum { IDD = IDD_EXPORT_DIRECTORY };

    /// @param pages  the pages about to be exported; not owned, must outlive the dialog
    ExportDirectoryDialog(CWnd* parent, const ExportUtils::ExportEngineBase::Pages* pages);

    /// Fills the members below with what is remembered; what is not keeps its value.
    void loadFromRegistry();
    /// Remembers the members below, as far as the registry lets it.
    void saveToRegistry() const;

    Sorvane::astring exportPath;
    std::vector<Sorvane::astring> lastExportPaths; ///< most recent first
    CString prefix;
    int firstNumber = 1;
    int digits = 4;
    int appendIndex = 1;         ///< a check state, as is the next
    int useParentFolderName = 0; ///< never remembered: every dialog starts without

protected:
    void DoDataExchange(CDataExchange* pDX) override;
    BOOL OnInitDialog() override;

    DECLARE_MESSAGE_MAP()
    afx_msg void OnBnClickedOk();
    afx_msg void OnBnClickedAppendIndex();
    afx_msg void OnLbnSelchangeLastExports();

private:
    void addAnchors();
    void initTexts();

    const ExportUtils::ExportEngineBase::Pages* pages;

    CBCGPEdit pathEdit;
    CBCGPListBox lastExportsList;
    CBCGPEdit prefixEdit;
    CBCGPButton appendIndexCheck;
    CBCGPEdit firstNumberEdit;
    CBCGPEdit digitsEdit;
    CBCGPButton okButton;
    CBCGPButton cancelButton;
    CBCGPStatic pathLabel;
    CBCGPStatic prefixLabel;
    CBCGPStatic firstNumberLabel;
    CBCGPStatic digitsLabel;
    CBCGPStatic appendIndexLabel;
    CBCGPStatic lastExportsLabel;
    CBCGPButton useParentFolderNameCheck;
    CBCGPStatic useParentFolderNameLabel;
};

/// Where the settings live under HKEY_CURRENT_USER. It is the host's to say, so it is asked every time.
std::wstring getRegistryKeyPath();
