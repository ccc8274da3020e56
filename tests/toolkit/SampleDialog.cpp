// The dialog most tests look at.
#include "SampleDialog.h"

namespace test {

BEGIN_MESSAGE_MAP(SampleDialog, CBCGPDialog)
    ON_BN_CLICKED(IDC_CHECK, &SampleDialog::OnBnClickedCheck)
    ON_LBN_SELCHANGE(IDC_LIST, &SampleDialog::OnLbnSelchangeList)
    ON_CONTROL(EN_CHANGE, IDC_PATH, &SampleDialog::OnEnChangePath)
END_MESSAGE_MAP()

void SampleDialog::DoDataExchange(CDataExchange* exchange) {
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

BOOL SampleDialog::OnInitDialog() {
    CBCGPDialog::OnInitDialog();
    onInit();
    return TRUE;
}

} // namespace test
