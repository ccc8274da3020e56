// The pieces of the names that the engines give to pages.
#include "PageName.h"

#include <algorithm>
#include <string>

namespace {

// No file system takes a longer name, so a width beyond it fails when the file is made and must not exhaust the
// memory first.
constexpr std::uint32_t MAX_WIDTH = 256;

} // namespace

std::uint32_t countDecimalDigits(std::size_t number) {
    std::uint32_t count = 0;
    for (; number != 0; number /= 10)
        ++count;
    return count;
}

Sorvane::u8string paddedNumber(std::uint32_t number, std::uint32_t width) {
    Sorvane::u8string text = std::to_string(number);
    const std::size_t filled = std::min(width, MAX_WIDTH);
    if (text.size() < filled)
        text.insert(0, filled - text.size(), '0');
    return text;
}

Sorvane::u8string dottedExtension(const Sorvane::u8string& extension) {
    return extension.empty() || extension.front() == '.' ? extension : '.' + extension;
}
