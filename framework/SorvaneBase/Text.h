// Short forms of the text conversions. Internal to SorvaneBase.
#pragma once

#include "SorvaneBase/Conversions.h"

#include <string>

namespace Sorvane {

inline std::string utf8(const std::wstring& text) {
    std::string result;
    c_u16u8(result, text);
    return result;
}

inline std::wstring wide(const std::string& text) {
    std::wstring result;
    c_u8u16(result, text);
    return result;
}

} // namespace Sorvane
