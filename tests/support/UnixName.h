// The name that a file has in the system below Wine.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

namespace test {

/// The path's Unix name in UTF-8; none on Windows, which has nothing below.
inline std::optional<std::string> unixName(const std::wstring& path) {
    using GetUnixFileName = char*(CDECL*)(const wchar_t*);
    const auto getUnixFileName = reinterpret_cast<GetUnixFileName>(reinterpret_cast<void*>(
        GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "wine_get_unix_file_name")));
    if (!getUnixFileName)
        return std::nullopt;
    char* const allocated = getUnixFileName(path.c_str());
    if (!allocated)
        return std::nullopt;
    std::string name = allocated;
    HeapFree(GetProcessHeap(), 0, allocated);
    return name;
}

} // namespace test
