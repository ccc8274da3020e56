// The system's dialogs that ask for files and folders with pages.
#include "host/desktop/OpenDialogs.h"

#include "host/HostError.h"
#include "host/desktop/Texts.h"

#include <shobjidl.h>

#include <memory>

namespace host {
namespace {

constexpr char section[] = "ScanHost.Window";

struct Release {
    void operator()(IUnknown* object) const { object->Release(); }
};
template <class T> using ComPointer = std::unique_ptr<T, Release>;

std::wstring pathOf(IShellItem& item) {
    PWSTR name = nullptr;
    if (FAILED(item.GetDisplayName(SIGDN_FILESYSPATH, &name)))
        return {};
    const std::unique_ptr<wchar_t, decltype(&CoTaskMemFree)> owned(name, CoTaskMemFree);
    return name;
}

std::vector<std::wstring> chosenPaths(IFileOpenDialog& dialog) {
    IShellItemArray* chosen = nullptr;
    if (FAILED(dialog.GetResults(&chosen)))
        return {};
    const ComPointer<IShellItemArray> items(chosen);
    DWORD count = 0;
    items->GetCount(&count);
    std::vector<std::wstring> paths;
    for (DWORD i = 0; i < count; ++i) {
        IShellItem* item = nullptr;
        if (FAILED(items->GetItemAt(i, &item)))
            continue;
        const ComPointer<IShellItem> owned(item);
        if (std::wstring path = pathOf(*item); !path.empty())
            paths.push_back(std::move(path));
    }
    return paths;
}

std::vector<std::wstring> ask(HWND owner, FILEOPENDIALOGOPTIONS kind, const char* title) {
    IFileOpenDialog* created = nullptr;
    const HRESULT result =
        CoCreateInstance(CLSID_FileOpenDialog, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&created));
    if (FAILED(result))
        throw HostError("The dialog cannot be shown: " + reasonFor(static_cast<DWORD>(result)) + ".");
    const ComPointer<IFileOpenDialog> dialog(created);
    FILEOPENDIALOGOPTIONS options{};
    dialog->GetOptions(&options);
    dialog->SetOptions(options | kind | FOS_ALLOWMULTISELECT | FOS_FORCEFILESYSTEM | FOS_PATHMUSTEXIST);
    dialog->SetTitle(localText(section, title).c_str());
    if (!(kind & FOS_PICKFOLDERS)) {
        const std::wstring pages = localText(section, "Files.Pages");
        const std::wstring all = localText(section, "Files.All");
        const COMDLG_FILTERSPEC types[] = {
            {pages.c_str(), L"*.bmp;*.gif;*.jp2;*.jpe;*.jpeg;*.jpg;*.pdf;*.png;*.tif;*.tiff"},
            {all.c_str(), L"*.*"},
        };
        dialog->SetFileTypes(2, types);
    }
    return SUCCEEDED(dialog->Show(owner)) ? chosenPaths(*dialog) : std::vector<std::wstring>();
}

} // namespace

std::vector<std::wstring> askForFiles(HWND owner) {
    return ask(owner, FOS_FILEMUSTEXIST, "Files.Title");
}

std::vector<std::wstring> askForFolders(HWND owner) {
    return ask(owner, FOS_PICKFOLDERS, "Folders.Title");
}

} // namespace host
