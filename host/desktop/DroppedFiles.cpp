// Files and folders that come from other programs, by the clipboard or by drag and drop.
#include "host/desktop/DroppedFiles.h"

#include <ole2.h>
#include <shellapi.h>

namespace host {
namespace {

const FORMATETC FILES{CF_HDROP, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};

std::vector<std::wstring> pathsIn(HDROP files) {
    std::vector<std::wstring> paths(DragQueryFileW(files, UINT_MAX, nullptr, 0));
    for (UINT i = 0; i < paths.size(); ++i) {
        paths[i].resize(DragQueryFileW(files, i, nullptr, 0));
        DragQueryFileW(files, i, paths[i].data(), static_cast<UINT>(paths[i].size()) + 1);
    }
    return paths;
}

} // namespace

bool carriesPaths(IDataObject& data) {
    FORMATETC files = FILES;
    return data.QueryGetData(&files) == S_OK;
}

std::vector<std::wstring> pathsIn(IDataObject& data) {
    FORMATETC files = FILES;
    STGMEDIUM medium{};
    if (FAILED(data.GetData(&files, &medium)))
        return {};
    auto paths = pathsIn(static_cast<HDROP>(medium.hGlobal));
    ReleaseStgMedium(&medium);
    return paths;
}

std::vector<std::wstring> pathsOnClipboard(HWND window) {
    if (!OpenClipboard(window))
        return {};
    std::vector<std::wstring> paths;
    if (HANDLE files = GetClipboardData(CF_HDROP))
        paths = pathsIn(static_cast<HDROP>(files));
    CloseClipboard();
    return paths;
}

} // namespace host
