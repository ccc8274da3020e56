// The host application, as its components see it.
#include "host/HostApplication.h"

#include <utility>

namespace host {

HostApplication::HostApplication(std::wstring path)
    : basePath(std::move(path)), settings(L"SOFTWARE\\" + basePath + L"\\" + version + L"\\Settings") {
    SorvaneCommon::SetApplication(this);
}

HostApplication::~HostApplication() {
    SorvaneCommon::SetApplication(nullptr);
}

} // namespace host
