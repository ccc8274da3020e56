// The program's own texts in the user's language.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

namespace host {

/// What takes the place of "{name}" in a text, by name.
using TextValues = std::initializer_list<std::pair<std::wstring_view, std::wstring>>;

/// A text of the language file that is loaded, filled in. A placeholder without a value stays as it is, and so does
/// what looks like one in a value.
std::wstring localText(const char* section, const char* key, TextValues values = {});

/// The same for a text that depends on a count, which takes the place of "{count}". The text holds a form for each
/// class of numbers that the language tells apart, as in "{count} page|{count} pages":
/// - one, others: English, German, Spanish and Italian;
/// - none or one, others: French;
/// - one, two to four, others: Czech and Slovak;
/// - one, those that end in two to four but not in twelve to fourteen, others: Polish.
/// A language of which nothing is known here is taken for one like English.
std::wstring localCount(const char* section, const char* key, std::size_t count, TextValues values = {});

/// How many forms a counting text has in a language, given its ISO 639-1 code.
std::size_t countForms(std::string_view languageCode);

} // namespace host
