// Short forms of the text conversions, for code that puts sentences together.
#pragma once

#include "SorvaneBase/Conversions.h"

#include <string>

namespace host {

inline std::string utf8(const std::wstring& text) {
    std::string result;
    Sorvane::c_u16u8(result, text);
    return result;
}

inline std::wstring wide(const std::string& text) {
    std::wstring result;
    Sorvane::c_u8u16(result, text);
    return result;
}

} // namespace host
