// Why something failed, in the person's language.
#include "host/desktop/Reasons.h"

#include "host/HostError.h"
#include "host/MailFailure.h"
#include "host/desktop/Texts.h"

namespace host {
namespace {

constexpr char section[] = "ScanHost.Export";

} // namespace

std::wstring localReason(DWORD error) {
    if (const char* key = fileReason(error).textKey)
        return localText(section, key);
    return localText(section, "Reason.Windows", {{L"code", std::to_wstring(error)}});
}

std::wstring localMailReason(int code) {
    if (const char* key = MailFailure::textKey(code))
        return localText(section, key);
    return localText(section, "Reason.Mail", {{L"code", std::to_wstring(code)}});
}

} // namespace host
