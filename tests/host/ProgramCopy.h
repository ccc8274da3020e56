// Programs of the tests in a folder of the test's own.
#pragma once

#include "host/ProgramFolder.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <string>
#include <vector>

namespace test {

/// Copies files from beside the running program, and all DLLs that are there: whatever this build consists of.
inline void copyPrograms(const std::wstring& folder, std::vector<std::wstring> files) {
    WIN32_FIND_DATAW entry;
    HANDLE search = FindFirstFileW((host::programFolder() + L"\\*.dll").c_str(), &entry);
    ASSERT_NE(search, INVALID_HANDLE_VALUE);
    do {
        files.emplace_back(entry.cFileName);
    } while (FindNextFileW(search, &entry));
    FindClose(search);
    const std::wstring source = host::programFolder() + L'\\';
    const std::wstring target = folder + L'\\';
    for (const std::wstring& file : files)
        ASSERT_TRUE(CopyFileW((source + file).c_str(), (target + file).c_str(), FALSE));
}

} // namespace test
