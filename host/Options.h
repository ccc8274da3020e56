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

/// What the person wants of the export to e-mail.
struct MailOptions {
    std::optional<std::wstring> subject; ///< without it what the dialog offers
    std::optional<int> maxSizeInKb;      ///< without it the limit that the host remembers
    bool sendAnySize = false;            ///< whether the limit may be exceeded without a question
};

struct Options {
    enum class Command { Export, List, RegisterDraftMail, UnregisterDraftMail, Help, Version };

    Command command = Command::Export;
    DirectoryOptions toDirectory;
    // One is set when it is the kind of export that is wanted instead of that to a directory.
    std::optional<ZipOptions> toZip;
    std::optional<MailOptions> toMail;
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
