// The form of a path in which the Windows file functions accept any length.
#include "SorvaneBase/bxdisk/LongPath.h"

#include <windows.h>

namespace bxdisk {

namespace {

/// Directories must leave room for a short file name of 12 characters; one limit for everything keeps a
/// directory and the files in it in the same form.
constexpr std::size_t FIRST_LONG_LENGTH = MAX_PATH - 12;

} // namespace

Sorvane::pstring absolutePath(const Sorvane::pstring& path) {
    Sorvane::pstring full(path.size() + MAX_PATH, L'\0');
    DWORD length = GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
    if (length > full.size()) {
        full.resize(length);
        length = GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
    }
    if (length == 0 || length > full.size())
        return path;
    full.resize(length);
    return full;
}

Sorvane::pstring longPath(const Sorvane::pstring& path) {
    if (path.empty() || path.starts_with(LR"(\\?\)") || path.starts_with(LR"(\\.\)"))
        return path;
    const Sorvane::pstring full = absolutePath(path);
    if (full.size() < FIRST_LONG_LENGTH)
        return path;
    if (full.starts_with(LR"(\\)"))
        return LR"(\\?\UNC\)" + full.substr(2);
    return LR"(\\?\)" + full;
}

} // namespace bxdisk
