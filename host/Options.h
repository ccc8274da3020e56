// The command line of scanexport.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace host {

/// What is done about a file that exists already.
enum class Overwrite { Ask, Yes, No };

/// What the person wants entered in the dialog of the export to a directory. What is not given here stays as
/// the dialog offers it.
struct DirectoryOptions {
    std::wstring directory; ///< as typed
    std::optional<std::wstring> prefix;
    std::optional<int> digits;
    std::optional<int> firstNumber;
    bool noNumber = false;
    bool useParentFolderName = false;
};

/// What the person wants entered in the dialog of the export to a ZIP archive.
struct ZipOptions {
    std::wstring archive; ///< as typed
    std::wstring prefix;
};

struct Options {
    enum class Command { Export, List, Help, Version };

    Command command = Command::Export;
    DirectoryOptions toDirectory;
    /// Set when this is the kind of export that is wanted.
    std::optional<ZipOptions> toZip;
    std::optional<Overwrite> overwrite; ///< the kind of export decides otherwise
    std::optional<std::wstring> language;
    bool showDialog = false;
    std::vector<std::wstring> pages; ///< files, folders and "@" lists, as typed
};

/// Reads the arguments, the program's own name not among them. Throws UsageError.
Options parseOptions(const std::vector<std::wstring>& arguments);

/// What --help prints.
extern const char helpText[];

} // namespace host
