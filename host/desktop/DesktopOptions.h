// The command line of the program with a window.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace host {

struct DesktopOptions {
    /// For this run, whatever the settings say.
    std::optional<std::wstring> language;
    /// Full paths of the files and folders to begin with.
    std::vector<std::wstring> paths;
};

/// [--lang XX] [--] [FILE|FOLDER]... Throws UsageError for options that there are not.
/// @param arguments  without the program's name
DesktopOptions parseDesktopOptions(const std::vector<std::wstring>& arguments);

} // namespace host
