// A path to a file or directory and what can be asked about it.
#include "SorvaneBase/bxdisk/File.h"

#include "SorvaneBase/Conversions.h"
#include "SorvaneBase/bxdisk/LongPath.h"

#include <windows.h>

namespace bxdisk {

namespace {

bool readAttributes(const Sorvane::pstring& path, WIN32_FILE_ATTRIBUTE_DATA& attributes) {
    return GetFileAttributesExW(longPath(path).c_str(), GetFileExInfoStandard, &attributes) != FALSE;
}

} // namespace

File::File(const Sorvane::pstring& path) : path(path) {}

File::File(const Sorvane::u8string& utf8Path) {
    Sorvane::c_u8u16(path, utf8Path);
}

void File::append(const Sorvane::u8string& name) {
    std::wstring wideName;
    Sorvane::c_u8u16(wideName, name);
    if (!path.empty() && path.back() != L'\\' && path.back() != L'/')
        path += L'\\';
    path += wideName;
}

bool File::exists() const {
    WIN32_FILE_ATTRIBUTE_DATA attributes;
    return readAttributes(path, attributes);
}

bool File::isDirectory() const {
    WIN32_FILE_ATTRIBUTE_DATA attributes;
    return readAttributes(path, attributes) && (attributes.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

std::int64_t File::getFileSize() const {
    WIN32_FILE_ATTRIBUTE_DATA attributes;
    if (!readAttributes(path, attributes) || (attributes.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
        return 0;
    return static_cast<std::int64_t>((std::uint64_t{attributes.nFileSizeHigh} << 32) |
                                     attributes.nFileSizeLow);
}

Sorvane::pstring File::getPath() const {
    return longPath(path);
}

} // namespace bxdisk
