// Localised texts by section and key.
#include "SorvaneBase/bxutils/ResourceManager.h"

#include "SorvaneBase/bxdisk/LongPath.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>

namespace bxutils {

namespace {

std::string_view trim(std::string_view text) {
    constexpr std::string_view BLANKS = " \t\r";
    const std::size_t first = text.find_first_not_of(BLANKS);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(BLANKS) + 1 - first);
}

Sorvane::u8string unescape(std::string_view text) {
    Sorvane::u8string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char next = text[i] == '\\' && i + 1 < text.size() ? text[i + 1] : '\0';
        if (next == 'n' || next == '\\') {
            result += next == 'n' ? '\n' : '\\';
            ++i;
        } else {
            result += text[i];
        }
    }
    return result;
}

} // namespace

bool ResourceManager::loadLanguageFile(const Sorvane::pstring& path) {
    std::ifstream file(std::filesystem::path(bxdisk::longPath(path)), std::ios::binary);
    if (!file)
        return false;
    const std::string content{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    if (file.bad())
        return false;

    constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF";
    std::string_view rest = content;
    if (rest.starts_with(BYTE_ORDER_MARK))
        rest.remove_prefix(BYTE_ORDER_MARK.size());

    texts.clear();
    Sorvane::u8string section;
    while (!rest.empty()) {
        const std::size_t end = rest.find('\n');
        const std::string_view line = trim(rest.substr(0, end));
        rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);

        const std::size_t equals = line.find('=');
        if (line.starts_with(';'))
            continue;
        if (line.starts_with('[') && line.ends_with(']'))
            section = trim(line.substr(1, line.size() - 2));
        else if (equals != std::string_view::npos)
            texts[{section, Sorvane::u8string(trim(line.substr(0, equals)))}] =
                unescape(trim(line.substr(equals + 1)));
    }
    return true;
}

Sorvane::u8string ResourceManager::getText(const Sorvane::u8string& section,
                                           const Sorvane::u8string& key) const {
    const auto found = texts.find({section, key});
    return found == texts.end() ? key : found->second;
}

ResourceManager* getResourceManager() {
    static ResourceManager manager;
    return &manager;
}

} // namespace bxutils
