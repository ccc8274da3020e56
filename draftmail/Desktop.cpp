// What drafts need from the user's desktop.
#include "draftmail/Desktop.h"

#include "draftmail/MapiError.h"

#include <objbase.h>
#include <shellapi.h>
#include <shlobj.h>

#include <memory>

namespace draftmail {
namespace {

/// The shell may have to call on COM, which the calling program need not use.
class ComApartment {
public:
    ComApartment() noexcept
        : entered(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE))) {}
    ~ComApartment() {
        if (entered)
            CoUninitialize();
    }
    ComApartment(const ComApartment&) = delete;
    ComApartment& operator=(const ComApartment&) = delete;

private:
    bool entered;
};

} // namespace

std::wstring WindowsDesktop::draftsFolder() {
    wchar_t* documents = nullptr;
    const HRESULT result = SHGetKnownFolderPath(FOLDERID_Documents, KF_FLAG_CREATE, nullptr, &documents);
    const std::unique_ptr<wchar_t, decltype(&CoTaskMemFree)> owned(documents, CoTaskMemFree);
    if (FAILED(result))
        throw draftError(static_cast<DWORD>(HRESULT_CODE(result)));
    return std::wstring(documents) + L"\\Drafts";
}

DWORD WindowsDesktop::open(const std::wstring& draft, HWND owner) noexcept {
    const ComApartment com;
    SHELLEXECUTEINFOW command{};
    command.cbSize = sizeof command;
    // The caller may unload this DLL, or end, as soon as the call returns.
    command.fMask = SEE_MASK_NOASYNC;
    command.hwnd = owner;
    command.lpFile = draft.c_str();
    command.nShow = SW_SHOWNORMAL;
    return ShellExecuteExW(&command) ? ERROR_SUCCESS : GetLastError();
}

} // namespace draftmail
