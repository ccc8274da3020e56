// Where the running program lies.
#pragma once

#include <windows.h>

#include <string>

namespace host {

/// The folder of the program, without "\" at its end.
inline std::wstring programFolder() {
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
        if (length < path.size())
            return path.substr(0, path.find_last_of(L'\\'));
        path.resize(path.size() * 2);
    }
}

} // namespace host
