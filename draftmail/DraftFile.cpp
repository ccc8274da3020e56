// A draft on its way into the drafts folder.
#include "draftmail/DraftFile.h"

#include "SorvaneBase/bxdisk/LongPath.h"
#include "draftmail/FileNameText.h"
#include "draftmail/MapiError.h"

#include <algorithm>
#include <array>
#include <cwchar>
#include <memory>

namespace draftmail {
namespace {

// Drafts that are being written; no other program's files are named so.
constexpr wchar_t temporaryStart[] = L"\\~DraftMail-";
constexpr wchar_t temporaryEnd[] = L".tmp";

LONGLONG ticks(const FILETIME& time) {
    return static_cast<LONGLONG>(ULARGE_INTEGER{{time.dwLowDateTime, time.dwHighDateTime}}.QuadPart);
}

/// Removes what programs left behind that were ended while they wrote a draft. A day is longer than any of them writes.
void removeLeftovers(const std::wstring& folder) {
    constexpr LONGLONG day = 24LL * 60 * 60 * 10'000'000;
    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    WIN32_FIND_DATAW found;
    const HANDLE handle =
        FindFirstFileW(bxdisk::longPath(folder + temporaryStart + L"*" + temporaryEnd).c_str(), &found);
    if (handle == INVALID_HANDLE_VALUE)
        return;
    const std::unique_ptr<void, decltype(&FindClose)> search(handle, FindClose);
    do {
        if (ticks(now) - ticks(found.ftLastWriteTime) > day)
            DeleteFileW(bxdisk::longPath(folder + L"\\" + found.cFileName).c_str());
    } while (FindNextFileW(handle, &found));
}

/// Scanners and indexers open a new file for a moment, and some do not let it be renamed meanwhile.
DWORD rename(const std::wstring& from, const std::wstring& to) {
    constexpr ULONGLONG patience = 700; // milliseconds
    const ULONGLONG start = GetTickCount64();
    while (!MoveFileExW(from.c_str(), to.c_str(), 0)) {
        const DWORD error = GetLastError();
        if (error != ERROR_SHARING_VIOLATION || GetTickCount64() - start >= patience)
            return error;
        Sleep(20);
    }
    return ERROR_SUCCESS;
}

/// @param path  in the folder, in the form for any length
host::UniqueHandle createIn(const std::wstring& folder, const std::wstring& path) {
    if (!CreateDirectoryW(bxdisk::longPath(folder).c_str(), nullptr) &&
        GetLastError() != ERROR_ALREADY_EXISTS)
        throw draftError(GetLastError());
    removeLeftovers(folder);
    host::UniqueHandle file(CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_NEW,
                                        FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file)
        throw draftError(GetLastError());
    return file;
}

} // namespace

std::wstring draftName(std::wstring_view subject, const SYSTEMTIME& local) {
    // Leaves room for time and number within the 255 bytes or characters that file systems give a name.
    constexpr std::size_t longest = 60;
    std::wstring_view start = subject.substr(0, longest);
    if (start.size() < subject.size() && IS_HIGH_SURROGATE(start.back()))
        start.remove_suffix(1);
    std::wstring name = fileNameText(start);
    name.erase(0, std::min(name.find_first_not_of(L' '), name.size()));
    name.erase(name.find_last_not_of(L" .") + 1);
    if (name.empty())
        name = L"Draft";
    std::array<wchar_t, 64> time{};
    std::swprintf(time.data(), time.size(), L" %04d-%02d-%02d %02d.%02d.%02d", local.wYear, local.wMonth,
                  local.wDay, local.wHour, local.wMinute, local.wSecond);
    return name + time.data();
}

DraftFile::DraftFile(const std::wstring& folder, const std::string& id)
    : folder(folder),
      path(bxdisk::longPath(folder + temporaryStart + std::wstring(id.begin(), id.end()) + temporaryEnd)),
      file(createIn(folder, path)) {}

DraftFile::~DraftFile() {
    if (path.empty())
        return;
    file = host::UniqueHandle(INVALID_HANDLE_VALUE);
    DeleteFileW(path.c_str());
}

void DraftFile::write(std::string_view bytes) {
    DWORD written = 0;
    if (!WriteFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr))
        throw draftError(GetLastError());
    if (written != bytes.size())
        throw MapiError(MAPI_E_DISK_FULL);
}

std::wstring DraftFile::publish(const std::wstring& name) {
    if (!FlushFileBuffers(file.get()))
        throw draftError(GetLastError());
    file = host::UniqueHandle(INVALID_HANDLE_VALUE);
    std::wstring published = folder + L"\\" + name + L".eml";
    DWORD error = ERROR_SUCCESS;
    for (unsigned number = 2; (error = rename(path, bxdisk::longPath(published))) != ERROR_SUCCESS;
         ++number) {
        if (error != ERROR_ALREADY_EXISTS && error != ERROR_FILE_EXISTS)
            throw draftError(error);
        published = folder + L"\\" + name + L" (" + std::to_wstring(number) + L").eml";
    }
    path.clear();
    return published;
}

} // namespace draftmail
