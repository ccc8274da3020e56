// The pages that lie in a folder.
#include "host/FolderFiles.h"

#include "SorvaneBase/bxdisk/File.h"
#include "SorvaneCommon/ExportUtils/Extension.h"
#include "host/HostError.h"
#include "host/Text.h"

#include <shlwapi.h>

#include <algorithm>
#include <string_view>

namespace host {
namespace {

constexpr std::wstring_view pageExtensions[] = {L"bmp", L"gif", L"jp2", L"jpe", L"jpeg",
                                                L"jpg", L"pdf", L"png", L"tif", L"tiff"};

bool looksLikePage(const std::wstring& name) {
    const std::wstring extension = wide(ExportUtils::getExtension(utf8(name)));
    return std::any_of(std::begin(pageExtensions), std::end(pageExtensions), [&](std::wstring_view known) {
        return CompareStringOrdinal(extension.data(), static_cast<int>(extension.size()), known.data(),
                                    static_cast<int>(known.size()), TRUE) == CSTR_EQUAL;
    });
}

} // namespace

FolderFiles filesOfFolder(const std::wstring& path) {
    const std::wstring folder = path.ends_with(L'\\') ? path.substr(0, path.size() - 1) : path;
    FolderFiles files;
    WIN32_FIND_DATAW entry;
    HANDLE search = FindFirstFileW((bxdisk::File(folder).getPath() + L"\\*").c_str(), &entry);
    if (search == INVALID_HANDLE_VALUE)
        throw FileError("The folder " + utf8(folder) + " cannot be read", GetLastError());
    do {
        constexpr DWORD leftAlone = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
        if (!(entry.dwFileAttributes & leftAlone))
            (looksLikePage(entry.cFileName) ? files.pages : files.others)
                .push_back(folder + L'\\' + entry.cFileName);
    } while (FindNextFileW(search, &entry));
    FindClose(search);
    std::stable_sort(files.pages.begin(), files.pages.end(), comesBefore);
    std::stable_sort(files.others.begin(), files.others.end(), comesBefore);
    return files;
}

bool comesBefore(const std::wstring& a, const std::wstring& b) {
    const int order = StrCmpLogicalW(a.c_str(), b.c_str());
    return order ? order < 0 : a < b;
}

} // namespace host
