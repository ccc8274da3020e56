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

protected:
    void DoDataExchange(CDataExchange* exchange) override {
        CBCGPDialog::DoDataExchange(exchange);
        DDX_Control(exchange, IDC_PATH, path);
        DDX_Control(exchange, IDC_LIST, list);
        DDX_Control(exchange, IDC_NAME, name);
        DDX_Control(exchange, IDC_CHECK, check);
        DDX_Control(exchange, IDC_FIRST, first);
        DDX_Control(exchange, IDC_SECOND, second);
        DDX_Control(exchange, IDOK, ok);
        DDX_Control(exchange, IDCANCEL, cancel);
        DDX_Control(exchange, IDC_LABEL, label);
    }

    BOOL OnInitDialog() override {
        CBCGPDialog::OnInitDialog();
        onInit();
        return TRUE;
    }
};

} // namespace test
