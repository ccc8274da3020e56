// The system's file dialog.
#include "OleSession.h"
#include "SystemCall.h"
#include "afxdlgs.h"

#include <shobjidl.h>

#include <sstream>
#include <string>
#include <vector>

namespace {

struct ComRelease {
    void operator()(IUnknown* object) const { object->Release(); }
};
template <class T> using ComPointer = std::unique_ptr<T, ComRelease>;

// These flags of the older look have the same values in the newer one.
constexpr DWORD mappedFlags = OFN_OVERWRITEPROMPT | OFN_PATHMUSTEXIST | OFN_FILEMUSTEXIST;
static_assert(mappedFlags == static_cast<DWORD>(FOS_OVERWRITEPROMPT | FOS_PATHMUSTEXIST | FOS_FILEMUSTEXIST));

void setFilter(IFileDialog& dialog, const CString& filter) {
    std::vector<std::wstring> parts;
    std::wistringstream text(filter.GetString());
    for (std::wstring part; std::getline(text, part, L'|') && !part.empty();)
        parts.push_back(part);
    std::vector<COMDLG_FILTERSPEC> types;
    for (std::size_t i = 0; i + 1 < parts.size(); i += 2)
        types.push_back({parts[i].c_str(), parts[i + 1].c_str()});
    if (!types.empty())
        dialog.SetFileTypes(static_cast<UINT>(types.size()), types.data());
}

CString chosenPath(IFileDialog& dialog) {
    IShellItem* item = nullptr;
    if (FAILED(dialog.GetResult(&item)))
        return {};
    const ComPointer<IShellItem> owned(item);
    PWSTR name = nullptr;
    if (FAILED(item->GetDisplayName(SIGDN_FILESYSPATH, &name)))
        return {};
    return TaskMemory<wchar_t>(name).get();
}

} // namespace

CFileDialog::CFileDialog(BOOL bOpenFileDialog, LPCTSTR lpszDefExt, LPCTSTR lpszFileName, DWORD dwFlags,
                         LPCTSTR lpszFilter, CWnd* pParentWnd, DWORD /*dwSize*/, BOOL /*bVistaStyle*/)
    : isOpenDialog(bOpenFileDialog), defaultExtension(lpszDefExt), fileName(lpszFileName), flags(dwFlags),
      filter(lpszFilter), parent(pParentWnd) {}

INT_PTR CFileDialog::DoModal() {
    const OleSession ole;
    IFileDialog* created = nullptr;
    if (FAILED(CoCreateInstance(isOpenDialog ? CLSID_FileOpenDialog : CLSID_FileSaveDialog, nullptr,
                                CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&created))))
        return IDCANCEL;
    const ComPointer<IFileDialog> dialog(created);

    // The system would insist on an existing file unasked.
    FILEOPENDIALOGOPTIONS options{};
    dialog->GetOptions(&options);
    dialog->SetOptions((options & ~mappedFlags) | (flags & mappedFlags) | FOS_FORCEFILESYSTEM);
    if (!defaultExtension.IsEmpty())
        dialog->SetDefaultExtension(defaultExtension);
    if (!fileName.IsEmpty())
        dialog->SetFileName(fileName);
    setFilter(*dialog, filter);

    const HWND owner = parent ? parent->GetSafeHwnd() : nullptr;
    if (FAILED(callSystem([&] { return dialog->Show(owner); })))
        return IDCANCEL;
    path = chosenPath(*dialog);
    return path.IsEmpty() ? IDCANCEL : IDOK;
}
