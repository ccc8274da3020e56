// The user's temporary directory as a test wants it.
#pragma once

#include "support/ImportHook.h"

#include <windows.h>

#include <string>

namespace test {

/// For the time of its life a module is told of a temporary directory of any length, as Windows documents it. Wine's
/// own tells of none that is longer than MAX_PATH. One at a time.
class TempPathHook {
public:
    /// @param directory  without "\" at its end. Empty: the system fails to tell.
    /// @param module     the file name of a loaded module, or null for the program
    explicit TempPathHook(const std::wstring& directory, const wchar_t* module = nullptr)
        : hook("GetTempPathW", reinterpret_cast<void*>(tell), module) {
        told = directory.empty() ? directory : directory + L"\\";
    }

private:
    static DWORD WINAPI tell(DWORD size, wchar_t* buffer) {
        const auto length = static_cast<DWORD>(told.size());
        if (length >= size)
            return length + 1;
        told.copy(buffer, length);
        buffer[length] = L'\0';
        SetLastError(length ? ERROR_SUCCESS : ERROR_FILENAME_EXCED_RANGE);
        return length;
    }

    static inline std::wstring told;
    ImportHook hook;
};

} // namespace test
