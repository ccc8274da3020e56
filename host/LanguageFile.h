// The language files beside a program, and choosing one of them.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace host {

/// Where the texts of a language are, given its ISO 639-1 code; whether there are any is not looked at.
std::wstring languageFile(const std::wstring& programFolder, const std::wstring& language);

/// Whether the program has texts in a language. The code may be any text, as a person or the registry gives it.
bool isLanguageOffered(const std::wstring& programFolder, const std::wstring& language);

/// The code of the language that Windows speaks with the user, in whatever variant, or "en" when the program has no
/// texts in it.
std::wstring preferredLanguage(const std::wstring& programFolder, LANGID uiLanguage);

struct Language {
    std::wstring code;
    std::wstring name; ///< in the language itself
};

/// The languages that the program has texts in, sorted by name.
std::vector<Language> offeredLanguages(const std::wstring& programFolder);

/// Takes all texts from a language's file from now on, and makes the language that of the thread. Throws HostError,
/// with everything as it was, when the file cannot be read.
void useLanguage(const std::wstring& programFolder, const std::wstring& language);

} // namespace host
