// The documents, and the sources that their code is taken from.
#pragma once

#include <string>
#include <vector>

namespace test {

/// A file of the project by its path in it, with "/".
std::string projectFile(const std::wstring& name);

/// The blocks of a document that are marked with a language ("cpp"), in order.
std::vector<std::string> codeBlocks(const std::string& document, const std::string& language);

/// Whether the block stands in the source, line by line, however far it is indented there.
bool standsIn(const std::string& source, const std::string& block);

} // namespace test
