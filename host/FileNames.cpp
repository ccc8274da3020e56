// Which names Windows can store.
#include "host/FileNames.h"

#include "SorvaneBase/bxdisk/Disk.h"
#include "host/Text.h"

#include <algorithm>

namespace host {
namespace {

constexpr std::size_t longestFileName = 255;

} // namespace

bool isPossibleFileName(const std::wstring& name) {
    const std::string text = utf8(name);
    return !name.empty() && name.size() <= longestFileName && bxdisk::normalizeFileName(text) == text;
}

bool isPossibleInFileName(const std::wstring& text) {
    // Between letters nothing is a device's name or the end of the name.
    const std::string framed = utf8(L'x' + text + L'x');
    return bxdisk::normalizeFileName(framed) == framed;
}

std::optional<std::wstring> impossiblePartOf(const std::wstring& path) {
    std::size_t begin = 0;
    if (path.starts_with(L"\\\\?\\"))
        begin = 4;
    if (path.size() >= begin + 2 && path[begin + 1] == L':')
        begin += 2;
    while (begin <= path.size()) {
        const std::size_t end = std::min(path.size(), path.find_first_of(L"\\/", begin));
        const std::wstring part = path.substr(begin, end - begin);
        if (!part.empty() && part != L"." && part != L".." && !isPossibleFileName(part))
            return part;
        begin = end + 1;
    }
    return std::nullopt;
}

} // namespace host
