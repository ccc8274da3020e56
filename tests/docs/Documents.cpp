// The documents, and the sources that their code is taken from.
#include "docs/Documents.h"

#include "support/TempFolder.h"

#include <algorithm>
#include <sstream>

namespace test {
namespace {

constexpr std::size_t deepestIndentation = 12;

/// Behind a line break, so that it is found at the beginning of a line only.
std::string indented(const std::string& block, std::size_t width) {
    std::istringstream lines(block);
    std::string result = "\n";
    for (std::string line; std::getline(lines, line);)
        result += (line.empty() ? line : std::string(width, ' ') + line) + "\n";
    return result;
}

} // namespace

std::string projectFile(const std::wstring& name) {
    std::wstring path = PROJECT_FOLDER L"/" + name;
    std::replace(path.begin(), path.end(), L'/', L'\\');
    return readFile(path);
}

std::vector<std::string> codeBlocks(const std::string& document, const std::string& language) {
    const std::string begin = "\n```" + language + "\n";
    std::vector<std::string> blocks;
    for (std::size_t from = document.find(begin); from != std::string::npos;
         from = document.find(begin, from)) {
        from += begin.size();
        blocks.push_back(document.substr(from, document.find("```", from) - from));
    }
    return blocks;
}

bool standsIn(const std::string& source, const std::string& block) {
    for (std::size_t width = 0; width <= deepestIndentation; width += 4) {
        if (source.find(indented(block, width)) != std::string::npos)
            return true;
    }
    return false;
}

} // namespace test
