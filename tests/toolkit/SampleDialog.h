// The dialog most tests look at: one of each control.
#pragma once

#include "BCGCBProInc.h"
#include "resource.h"

#include <functional>

namespace test {

/// Its controls are bound; what a test wants to happen inside it is given as functions.
class SampleDialog : public CBCGPDialog {
public:
    explicit SampleDialog(CWnd* parent = nullptr) : CBCGPDialog(IDD_SAMPLE, parent) {}

    CBCGPEdit path;
    CBCGPEdit name;
    CBCGPEdit first;
    CBCGPEdit second;
    CBCGPListBox list;
    CBCGPButton check;
    CBCGPButton ok;
    CBCGPButton cancel;
    CBCGPStatic label;

    std::function<void()> onInit = [] {};
    std::function<void()> onCheck = [] {};
    std::function<void()> onSelection = [] {};
    std::function<void()> onPathChange = [] {};

protected:
    void DoDataExchange(CDataExchange* exchange) override;
    BOOL OnInitDialog() override;

    afx_msg void OnBnClickedCheck() { onCheck(); }
    afx_msg void OnLbnSelchangeList() { onSelection(); }
    afx_msg void OnEnChangePath() { onPathChange(); }

    DECLARE_MESSAGE_MAP()
};

} // namespace test
