// A draft on its way into the drafts folder.
#include "draftmail/DraftFile.h"

#include "SorvaneBase/bxdisk/LongPath.h"
#include "draftmail/FileNameText.h"
#include "draftmail/MapiError.h"

#include <algorithm>
#include <array>
#include <cwchar>

namespace draftmail {
namespace {

/// @param path  in the folder, in the form for any length
host::UniqueHandle createIn(const std::wstring& folder, const std::wstring& path) {
    if (!CreateDirectoryW(bxdisk::longPath(folder).c_str(), nullptr) &&
        GetLastError() != ERROR_ALREADY_EXISTS)
        throw draftError(GetLastError());
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
    : folder(folder), path(bxdisk::longPath(folder + L"\\~" + std::wstring(id.begin(), id.end()) + L".tmp")),
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
    for (unsigned number = 2; !MoveFileExW(path.c_str(), bxdisk::longPath(published).c_str(), 0); ++number) {
        const DWORD error = GetLastError();
        if (error != ERROR_ALREADY_EXISTS && error != ERROR_FILE_EXISTS)
            throw draftError(error);
        published = folder + L"\\" + name + L" (" + std::to_wstring(number) + L").eml";
    }
    path.clear();
    return published;
}

} // namespace draftmail
