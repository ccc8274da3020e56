// The language files beside a program, and choosing one of them.
#include "host/LanguageFile.h"

#include "SorvaneBase/bxdisk/File.h"
#include "SorvaneBase/bxutils/ResourceManager.h"
#include "host/HostError.h"
#include "host/Text.h"
#include "host/ThreadLanguage.h"

#include <algorithm>

namespace host {
namespace {

// One that is a path would lead elsewhere.
bool isCode(const std::wstring& text) {
    return !text.empty() &&
           std::ranges::all_of(text, [](wchar_t c) { return (c >= L'a' && c <= L'z') || c == L'-'; });
}

std::vector<std::wstring> codesOfFiles(const std::wstring& programFolder) {
    std::vector<std::wstring> codes;
    WIN32_FIND_DATAW found;
    HANDLE search = FindFirstFileW(languageFile(programFolder, L"*").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE)
        return codes;
    do {
        const std::wstring name = found.cFileName;
        codes.push_back(name.substr(0, name.find(L'.')));
    } while (FindNextFileW(search, &found));
    FindClose(search);
    return codes;
}

bool comesBefore(const Language& one, const Language& other) {
    return CompareStringEx(LOCALE_NAME_USER_DEFAULT, 0, one.name.c_str(), -1, other.name.c_str(), -1, nullptr,
                           nullptr, 0) == CSTR_LESS_THAN;
}

} // namespace

std::wstring languageFile(const std::wstring& programFolder, const std::wstring& language) {
    return programFolder + L"\\lang\\" + language + L".ini";
}

bool isLanguageOffered(const std::wstring& programFolder, const std::wstring& language) {
    return isCode(language) && bxdisk::File(languageFile(programFolder, language)).exists();
}

std::wstring preferredLanguage(const std::wstring& programFolder, LANGID uiLanguage) {
    wchar_t code[9] = {}; // the longest there are
    GetLocaleInfoW(MAKELCID(uiLanguage, SORT_DEFAULT), LOCALE_SISO639LANGNAME, code, 9);
    return isLanguageOffered(programFolder, code) ? code : L"en";
}

std::vector<Language> offeredLanguages(const std::wstring& programFolder) {
    std::vector<Language> languages;
    for (const std::wstring& code : codesOfFiles(programFolder)) {
        bxutils::ResourceManager texts;
        if (!isCode(code) || !texts.loadLanguageFile(languageFile(programFolder, code)))
            continue;
        if (const auto name = texts.getTexts().find({"Language", "Name"}); name != texts.getTexts().end())
            languages.push_back({code, wide(name->second)});
    }
    std::ranges::sort(languages, comesBefore);
    return languages;
}

void useLanguage(const std::wstring& programFolder, const std::wstring& language) {
    const std::wstring file = languageFile(programFolder, language);
    if (!bxutils::getResourceManager()->loadLanguageFile(file))
        throw HostError("The language file " + utf8(file) + " cannot be read.");
    setThreadLanguage(language);
}

} // namespace host
