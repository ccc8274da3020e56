// The language files beside a program.
#include "host/LanguageFile.h"

#include "SorvaneBase/bxdisk/File.h"

namespace host {

std::wstring languageFile(const std::wstring& programFolder, const std::wstring& language) {
    return programFolder + L"\\lang\\" + language + L".ini";
}

std::wstring preferredLanguage(const std::wstring& programFolder, LANGID uiLanguage) {
    wchar_t code[9] = {}; // the longest there are
    GetLocaleInfoW(MAKELCID(uiLanguage, SORT_DEFAULT), LOCALE_SISO639LANGNAME, code, 9);
    return bxdisk::File(languageFile(programFolder, code)).exists() ? code : L"en";
}

} // namespace host
