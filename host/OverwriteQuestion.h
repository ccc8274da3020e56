// Recognises the question whether a file may be overwritten.
#pragma once

#include <optional>
#include <string>

namespace host {

/// The path that a question asks to overwrite, or none when it asks something else. The question's wording is
/// the host's own, in the current language.
std::optional<std::wstring> pathToOverwrite(const std::string& question);

} // namespace host
