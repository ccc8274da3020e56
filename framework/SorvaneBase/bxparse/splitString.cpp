// Splits a text at a separator.
#include "SorvaneBase/bxparse/splitString.h"

namespace bxparse {

void splitString(const Sorvane::u8string& text, std::list<Sorvane::u8string>& pieces, char separator) {
    if (text.empty())
        return;
    std::size_t begin = 0;
    for (std::size_t end; (end = text.find(separator, begin)) != Sorvane::u8string::npos; begin = end + 1)
        pieces.push_back(text.substr(begin, end - begin));
    pieces.push_back(text.substr(begin));
}

} // namespace bxparse
