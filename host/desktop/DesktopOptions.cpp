// The command line of the program with a window.
#include "host/desktop/DesktopOptions.h"

#include "host/CommandLinePath.h"
#include "host/HostError.h"
#include "host/Text.h"

#include <string_view>

namespace host {

DesktopOptions parseDesktopOptions(const std::vector<std::wstring>& arguments) {
    constexpr std::wstring_view languageOption = L"--lang";
    constexpr std::wstring_view languageOptionWithValue = L"--lang=";
    DesktopOptions options;
    bool onlyPaths = false;
    for (auto argument = arguments.begin(); argument != arguments.end(); ++argument) {
        if (onlyPaths || !argument->starts_with(L"--")) {
            options.paths.push_back(fullPathOf(*argument));
        } else if (*argument == L"--") {
            onlyPaths = true;
        } else if (argument->starts_with(languageOptionWithValue)) {
            options.language = argument->substr(languageOptionWithValue.size());
        } else if (*argument == languageOption && argument + 1 != arguments.end()) {
            options.language = *++argument;
        } else if (*argument == languageOption) {
            throw UsageError("The option --lang needs a language.");
        } else {
            throw UsageError("There is no option " + utf8(*argument) + ".");
        }
    }
    return options;
}

} // namespace host
