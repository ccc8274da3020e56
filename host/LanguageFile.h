// The language files beside a program.
#pragma once

#include <windows.h>

#include <string>

namespace host {

/// Where the texts of a language are, given its ISO 639-1 code; whether there are any is not looked at.
std::wstring languageFile(const std::wstring& programFolder, const std::wstring& language);

/// The code of the language that Windows speaks with the user, in whatever variant, or "en" when the program has no
/// texts in it.
std::wstring preferredLanguage(const std::wstring& programFolder, LANGID uiLanguage);

} // namespace host
