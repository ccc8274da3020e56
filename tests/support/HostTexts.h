// The host's texts in its languages.
#pragma once

#include <string>
#include <vector>

namespace test {

/// The names of the host's language files.
std::vector<std::wstring> languageFiles();

/// Makes the texts of a language file of the host current.
void loadLanguage(const std::wstring& fileName);

/// A text of the current language.
std::wstring hostText(const char* section, const char* key);

} // namespace test
