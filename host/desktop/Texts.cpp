// The program's own texts in the user's language.
#include "host/desktop/Texts.h"

#include "SorvaneBase/bxutils/ResourceManager.h"
#include "host/Text.h"

#include <algorithm>

namespace host {
namespace {

const std::wstring* find(std::wstring_view name, TextValues values) {
    const auto* const value =
        std::ranges::find(values, name, &std::pair<std::wstring_view, std::wstring>::first);
    return value == values.end() ? nullptr : &value->second;
}

std::wstring filledIn(std::wstring_view text, TextValues values) {
    std::wstring result;
    for (;;) {
        const std::size_t begin = std::min(text.size(), text.find(L'{'));
        const std::size_t end = text.find(L'}', begin);
        result += text.substr(0, begin);
        if (end == std::wstring_view::npos)
            return result.append(text.substr(begin));
        const std::wstring* const value = find(text.substr(begin + 1, end - begin - 1), values);
        result += value ? std::wstring_view(*value) : text.substr(begin, end - begin + 1);
        text.remove_prefix(end + 1);
    }
}

std::string languageText(const char* section, const char* key) {
    return bxutils::getResourceManager()->getText(section, key);
}

std::size_t formFor(std::size_t count, std::string_view language) {
    if (language == "fr")
        return count > 1;
    if (language == "cs" || language == "sk")
        return count == 1 ? 0 : count >= 2 && count <= 4 ? 1 : 2;
    if (language == "pl") {
        const bool few = count % 10 >= 2 && count % 10 <= 4 && (count % 100 < 12 || count % 100 > 14);
        return count == 1 ? 0 : few ? 1 : 2;
    }
    return count != 1;
}

} // namespace

std::wstring localText(const char* section, const char* key, TextValues values) {
    return filledIn(wide(languageText(section, key)), values);
}

std::wstring localCount(const char* section, const char* key, std::size_t count, TextValues values) {
    const std::wstring forms = wide(languageText(section, key));
    std::size_t begin = 0;
    for (std::size_t form = formFor(count, languageText("Language", "Code")); form > 0; --form) {
        const std::size_t separator = forms.find(L'|', begin);
        if (separator == std::wstring::npos)
            break;
        begin = separator + 1;
    }
    const std::wstring form = forms.substr(begin, std::min(forms.size(), forms.find(L'|', begin)) - begin);
    return filledIn(filledIn(form, {{L"count", std::to_wstring(count)}}), values);
}

std::size_t countForms(std::string_view languageCode) {
    return formFor(5, languageCode) + 1;
}

} // namespace host
