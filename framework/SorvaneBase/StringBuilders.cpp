// Builders that put texts together piece by piece.
#include "SorvaneBase/StringBuilders.h"

#include "SorvaneBase/Conversions.h"

namespace Sorvane {

U8StringBuilder& U8StringBuilder::append(const char* utf8) {
    if (utf8)
        text += utf8;
    return *this;
}

U8StringBuilder& U8StringBuilder::append(const u8string& utf8) {
    text += utf8;
    return *this;
}

U8StringBuilder& U8StringBuilder::append(int number) {
    text += std::to_string(number);
    return *this;
}

U8StringBuilder& U8StringBuilder::appendInAcp(const wchar_t* utf16) {
    u8string utf8;
    c_u16u8(utf8, utf16);
    text += utf8;
    return *this;
}

AStringBuilder& AStringBuilder::append(const wchar_t* utf16) {
    if (utf16)
        text += utf16;
    return *this;
}

AStringBuilder& AStringBuilder::append(const astring& utf16) {
    text += utf16;
    return *this;
}

} // namespace Sorvane
