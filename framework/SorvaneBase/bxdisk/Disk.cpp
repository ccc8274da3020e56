// Operations on directories and files.
#include "SorvaneBase/bxdisk/Disk.h"

#include "SorvaneBase/Text.h"
#include "SorvaneBase/bxdisk/File.h"
#include "SorvaneBase/bxdisk/ForbiddenCharacters.h"
#include "SorvaneBase/bxdisk/LongPath.h"
#include "SorvaneBase/bxdisk/TempPath.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <mutex>
#include <string_view>

namespace bxdisk {

namespace {

struct TempRoot {
    std::mutex mutex;
    Sorvane::pstring directory;
};

TempRoot& tempRoot() {
    static TempRoot root;
    return root;
}

/// True when the directory exists afterwards.
bool createDirectory(const Sorvane::pstring& path) {
    if (CreateDirectoryW(longPath(path).c_str(), nullptr))
        return true;
    // A drive's root and a share refuse with other codes than that of an existing directory.
    const DWORD error = GetLastError();
    if (File(path).isDirectory())
        return true;
    SetLastError(error);
    return false;
}

bool equalsIgnoringCase(std::wstring_view a, std::wstring_view b) {
    return CompareStringOrdinal(a.data(), static_cast<int>(a.size()), b.data(), static_cast<int>(b.size()),
                                TRUE) == CSTR_EQUAL;
}

bool isDeviceName(std::wstring_view stem) {
    constexpr std::array<std::wstring_view, 6> WHOLE = {L"CON", L"PRN",    L"AUX",
                                                        L"NUL", L"CONIN$", L"CONOUT$"};
    // Windows takes the superscript digits for digits here.
    constexpr std::wstring_view DIGITS = L"0123456789\u00B9\u00B2\u00B3";
    if (std::any_of(WHOLE.begin(), WHOLE.end(),
                    [stem](std::wstring_view device) { return equalsIgnoringCase(stem, device); }))
        return true;
    return stem.size() == 4 &&
           (equalsIgnoringCase(stem.substr(0, 3), L"COM") || equalsIgnoringCase(stem.substr(0, 3), L"LPT")) &&
           DIGITS.find(stem[3]) != std::wstring_view::npos;
}

} // namespace

bool createDirectories(const Sorvane::u8string& path) {
    return createDirectories(Sorvane::wide(path));
}

bool createDirectories(const std::wstring& path) {
    const Sorvane::pstring full = path.empty() ? path : absolutePath(path);
    // Up from the end to the first parent that is there, because those above it may be out of bounds for the
    // user; then down again.
    std::size_t end = full.size();
    while (!createDirectory(full.substr(0, end))) {
        const DWORD error = GetLastError();
        const std::size_t separator = end == 0 ? std::wstring::npos : full.rfind(L'\\', end - 1);
        if (error != ERROR_PATH_NOT_FOUND || separator == std::wstring::npos || separator == 0) {
            SetLastError(error);
            return false;
        }
        end = separator;
    }
    while (end < full.size()) {
        end = std::min(full.find(L'\\', end + 1), full.size());
        if (!createDirectory(full.substr(0, end)))
            return false;
    }
    return true;
}

bool isDirectory(const Sorvane::u8string& path) {
    return File(path).isDirectory();
}

bool deleteFile(const Sorvane::u8string& path) {
    return DeleteFileW(longPath(Sorvane::wide(path)).c_str()) != FALSE;
}

Sorvane::u8string normalizeFileName(const Sorvane::u8string& name) {
    std::wstring text = Sorvane::wide(name);
    std::replace_if(text.begin(), text.end(), isForbidden, L'_');
    text.erase(text.find_last_not_of(L". ") + 1);

    // Windows finds a device by what stands before the first dot, without the spaces there.
    const std::wstring_view beforeDot = std::wstring_view(text).substr(0, text.find(L'.'));
    const std::wstring_view stem = beforeDot.substr(0, beforeDot.find_last_not_of(L' ') + 1);
    if (isDeviceName(stem))
        text.insert(stem.size(), 1, L'_');

    return Sorvane::utf8(text);
}

bool createTempDir(const Sorvane::u8string& prefix, Sorvane::u8string& path) {
    static std::atomic<unsigned> lastNumber = 0;

    Sorvane::pstring stem;
    {
        const std::lock_guard lock(tempRoot().mutex);
        stem = tempRoot().directory;
    }
    if (stem.empty()) {
        stem = usersTempPath();
        if (stem.empty())
            return false;
    }
    if (!stem.ends_with(L'\\'))
        stem += L'\\';
    stem += Sorvane::wide(normalizeFileName(prefix)) + L'-' + std::to_wstring(GetCurrentProcessId()) + L'-';

    // An ended process with the same number may have left its directories behind.
    for (;;) {
        const Sorvane::pstring directory = stem + std::to_wstring(++lastNumber);
        if (CreateDirectoryW(longPath(directory).c_str(), nullptr)) {
            Sorvane::c_u16u8(path, directory);
            return true;
        }
        if (GetLastError() != ERROR_ALREADY_EXISTS)
            return false;
    }
}

void setTempRoot(const Sorvane::pstring& directory) {
    const std::lock_guard lock(tempRoot().mutex);
    tempRoot().directory = directory.empty() ? directory : absolutePath(directory);
}

} // namespace bxdisk
