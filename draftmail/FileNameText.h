// Texts as parts of file names.
#pragma once

#include <string>
#include <string_view>

namespace draftmail {

/// The text with "_" in the place of each character that a file name cannot hold, and of half surrogate pairs.
std::wstring fileNameText(std::wstring_view text);

} // namespace draftmail
