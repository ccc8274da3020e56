// What drafts need from the user's desktop.
#include "draftmail/Desktop.h"

#include "draftmail/MapiError.h"
#include "draftmail/resource.h"
#include "host/VisibleDesktop.h"

#include <objbase.h>
#include <shellapi.h>
#include <shlobj.h>

#include <array>
#include <memory>

// The program or DLL that this code and its texts are in.
extern "C" IMAGE_DOS_HEADER __ImageBase;

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

/// Does what a double click on the file does.
DWORD execute(const std::wstring& file, HWND owner) noexcept {
    SHELLEXECUTEINFOW command{};
    command.cbSize = sizeof command;
    // The caller may unload this DLL, or end, as soon as the call returns. The system's message about a failure would
    // not tell where the draft is, and would wait for ever where nobody sees it.
    command.fMask = SEE_MASK_NOASYNC | SEE_MASK_FLAG_NO_UI;
    command.hwnd = owner;
    command.lpFile = file.c_str();
    command.nShow = SW_SHOWNORMAL;
    return ShellExecuteExW(&command) ? ERROR_SUCCESS : GetLastError();
}

/// Lets the user choose a program for the file.
DWORD askForProgram(const std::wstring& file, HWND owner) noexcept {
    const OPENASINFO question{file.c_str(), nullptr, OAIF_EXEC};
    return static_cast<DWORD>(HRESULT_CODE(SHOpenWithDialog(owner, &question)));
}

using Text = std::array<wchar_t, 512>;

Text text(UINT id) noexcept {
    Text result{};
    LoadStringW(reinterpret_cast<HINSTANCE>(&__ImageBase), id, result.data(),
                static_cast<int>(result.size()));
    return result;
}

void tellWhereItIs(const std::wstring& draft, HWND owner) noexcept {
    const Text format = text(IDS_DRAFT_NOT_OPENED);
    auto argument = reinterpret_cast<DWORD_PTR>(draft.c_str());
    wchar_t* message = nullptr;
    FormatMessageW(
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_STRING | FORMAT_MESSAGE_ARGUMENT_ARRAY,
        format.data(), 0, 0, reinterpret_cast<wchar_t*>(&message), 0, reinterpret_cast<va_list*>(&argument));
    MessageBoxW(owner, message ? message : draft.c_str(), text(IDS_DRAFT_TITLE).data(),
                MB_OK | MB_ICONINFORMATION | MB_SETFOREGROUND);
    LocalFree(message);
}

} // namespace

WindowsDesktop::WindowsDesktop() : WindowsDesktop(host::isDesktopVisible()) {}

WindowsDesktop::WindowsDesktop(bool visible) : visible(visible) {}

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
    // A message with an owner that is no window would not appear.
    const HWND window = IsWindow(owner) ? owner : nullptr;
    DWORD error = execute(draft, window);
    if (error == ERROR_SUCCESS || !visible)
        return error;
    if (error != ERROR_CANCELLED)
        error = askForProgram(draft, window);
    if (error != ERROR_SUCCESS)
        tellWhereItIs(draft, window);
    return error;
}

} // namespace draftmail
