// The host application, as its components see it.
#include "host/HostApplication.h"

#include "host/Text.h"

#include <afxwin.h>

#include <utility>

namespace host {

HostApplication::HostApplication(std::wstring path)
    : basePath(std::move(path)), settings(L"SOFTWARE\\" + basePath + L"\\" + version + L"\\Settings") {
    SorvaneCommon::SetApplication(this);
}

HostApplication::~HostApplication() {
    SorvaneCommon::SetApplication(nullptr);
}

SorvaneCommon::MessageDlgResult HostApplication::showMessage(HWND owner, SorvaneCommon::MessageDlgType type,
                                                             const Sorvane::u8string& text,
                                                             const Sorvane::u8string& title) {
    return Application::showMessage(owner, type, text, title.empty() ? utf8(AfxGetAppName()) : title);
}

} // namespace host
