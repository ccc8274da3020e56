// A fresh, empty folder for one test.
#include "support/TempFolder.h"

#include "host/Text.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>
#include <stdexcept>

namespace test {
namespace {

// The long form, because tests make paths that are too long for the plain one.
std::wstring longForm(const std::wstring& path) {
    return path.starts_with(L"\\\\") ? path : L"\\\\?\\" + path;
}

std::vector<WIN32_FIND_DATAW> entries(const std::wstring& folder) {
    std::vector<WIN32_FIND_DATAW> found;
    WIN32_FIND_DATAW data;
    HANDLE search = FindFirstFileW((longForm(folder) + L"\\*").c_str(), &data);
    if (search == INVALID_HANDLE_VALUE)
        return found;
    do {
        if (std::wstring name = data.cFileName; name != L"." && name != L"..")
            found.push_back(data);
    } while (FindNextFileW(search, &data));
    FindClose(search);
    return found;
}

/// Adds the full paths of all files in a folder and below.
void collectFiles(const std::wstring& folder, std::vector<std::wstring>& files) {
    for (const WIN32_FIND_DATAW& entry : entries(folder)) {
        const std::wstring path = folder + L"\\" + entry.cFileName;
        if (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)
            collectFiles(path, files);
        else
            files.push_back(path);
    }
}

void removeTree(const std::wstring& folder) {
    for (const WIN32_FIND_DATAW& entry : entries(folder)) {
        const std::wstring path = folder + L"\\" + entry.cFileName;
        SetFileAttributesW(longForm(path).c_str(), FILE_ATTRIBUTE_NORMAL);
        if (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)
            removeTree(path);
        else
            DeleteFileW(longForm(path).c_str());
    }
    RemoveDirectoryW(longForm(folder).c_str());
}

} // namespace

TempFolder::TempFolder() {
    wchar_t root[MAX_PATH + 1] = {};
    GetTempPathW(MAX_PATH + 1, root);
    static int count = 0;
    folder = std::wstring(root) + L"bxtest-" + std::to_wstring(GetCurrentProcessId()) + L"-" +
             std::to_wstring(++count);
    removeTree(folder);
    if (!CreateDirectoryW(folder.c_str(), nullptr))
        throw std::runtime_error("cannot make a temporary folder");
}

TempFolder::~TempFolder() {
    removeTree(folder);
}

std::string TempFolder::utf8() const {
    return host::utf8(folder);
}

std::wstring TempFolder::write(const std::wstring& name, const std::string& bytes) const {
    std::wstring path = *this / name;
    HANDLE file = CreateFileW(longForm(path).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    DWORD written = 0;
    const bool ok = file != INVALID_HANDLE_VALUE &&
                    WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) &&
                    written == bytes.size();
    CloseHandle(file);
    if (!ok)
        throw std::runtime_error("cannot write a test file");
    ownContents.insert(bytes);
    return path;
}

std::vector<std::wstring> TempFolder::list() const {
    return namesIn(folder);
}

std::vector<std::wstring> namesIn(const std::wstring& folder) {
    std::vector<std::wstring> names;
    for (const WIN32_FIND_DATAW& entry : entries(folder))
        names.emplace_back(entry.cFileName);
    std::sort(names.begin(), names.end());
    return names;
}

std::vector<std::wstring> TempFolder::filesOfOthers() const {
    std::vector<std::wstring> files;
    collectFiles(folder, files);
    std::erase_if(files, [this](const std::wstring& path) { return ownContents.contains(readFile(path)); });
    return files;
}

std::string readFile(const std::wstring& path) {
    HANDLE file = CreateFileW(longForm(path).c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                              nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        ADD_FAILURE() << "cannot open the file, error " << GetLastError();
        return {};
    }
    std::string bytes;
    char buffer[65536];
    DWORD count = 0;
    while (ReadFile(file, buffer, sizeof buffer, &count, nullptr) && count)
        bytes.append(buffer, count);
    CloseHandle(file);
    return bytes;
}

} // namespace test
