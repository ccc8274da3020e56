// Working in another directory for a while.
#pragma once

#include <windows.h>

#include <string>

namespace test {

/// Makes a directory the current one for the time of its life.
class CurrentDirectory {
public:
    explicit CurrentDirectory(const std::wstring& path) {
        GetCurrentDirectoryW(MAX_PATH, before);
        SetCurrentDirectoryW(path.c_str());
    }
    ~CurrentDirectory() { SetCurrentDirectoryW(before); }
    CurrentDirectory(const CurrentDirectory&) = delete;
    CurrentDirectory& operator=(const CurrentDirectory&) = delete;

private:
    wchar_t before[MAX_PATH] = {};
};

} // namespace test
