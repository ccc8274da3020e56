// What file names on Windows cannot hold. Internal to this repository.
#pragma once

#include <string_view>

namespace bxdisk {

/// Whether no file name has the character; those that Windows itself would take but cannot show count too.
constexpr bool isForbidden(wchar_t unit) {
    const bool isControl = unit < 0x20 || (unit >= 0x7F && unit < 0xA0);
    return isControl || std::wstring_view(LR"(<>:"/\|?*)").find(unit) != std::wstring_view::npos;
}

} // namespace bxdisk
