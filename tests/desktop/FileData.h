// Files as other programs hand them over.
#pragma once

#include <windows.h>

#include <shlobj.h>

#include <cstring>
#include <string>
#include <vector>

namespace test {

/// What CF_HDROP stands for; the caller's.
inline HGLOBAL fileData(const std::vector<std::wstring>& paths) {
    std::wstring list;
    for (const std::wstring& path : paths)
        list += path + L'\0';
    list += L'\0';
    HGLOBAL memory =
        GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, sizeof(DROPFILES) + list.size() * sizeof(wchar_t));
    auto* const files = static_cast<DROPFILES*>(GlobalLock(memory));
    files->pFiles = sizeof(DROPFILES);
    files->fWide = TRUE;
    std::memcpy(files + 1, list.data(), list.size() * sizeof(wchar_t));
    GlobalUnlock(memory);
    return memory;
}

} // namespace test
