// A file that somebody has open.
#pragma once

#include "host/UniqueHandle.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <string>

namespace test {

/// Has an existing file open as another program would, by default one that admits nobody beside it. A file that
/// cannot be opened fails the test.
class OpenFile {
public:
    static constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

    explicit OpenFile(const std::wstring& path, DWORD access = GENERIC_READ, DWORD share = 0)
        : file(CreateFileW(path.c_str(), access, share, nullptr, OPEN_EXISTING, 0, nullptr)) {
        EXPECT_TRUE(file) << "cannot be opened, error " << GetLastError();
    }

    HANDLE get() const { return file.get(); }

private:
    host::UniqueHandle file;
};

} // namespace test
