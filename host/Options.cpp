// The command line of scanexport.
#include "host/Options.h"

#include "host/HostError.h"
#include "host/Text.h"

#include <algorithm>
#include <array>
#include <functional>
#include <limits>
#include <set>
#include <string_view>
#include <utility>

namespace host {

const char helpText[] =
    R"(Exports scanned pages through the component BasicExport.

  scanexport --to-dir DIR [options] PAGE...
  scanexport --to-zip FILE [options] PAGE...
  scanexport --to-mail [options] PAGE...
  scanexport --list
  scanexport --register-draft-mail
  scanexport --unregister-draft-mail

A PAGE is a file, a folder (its images and PDF files, sorted so that 2 comes before 10) or @LIST, a text
file in UTF-8 with the path of one file on each line. A file whose name begins with "@" is given as .\@NAME.

Export to a directory:
  --to-dir DIR       writes one file per page into DIR, which is made when it is missing
  --prefix TEXT      starts each name
  --digits N         numbers have at least N digits
  --start N          number of the first page
  --no-number        no number in the name; for a single page only
  --parent-name      puts the name of the page's folder before the prefix

An option that is not given leaves what the dialog offers: what was confirmed last time, and as the prefix
the name of the first page's folder. --digits and --start switch the number on, should it have been off.

Export to a ZIP archive:
  --to-zip FILE      packs all pages into the archive FILE, whose folder must exist
  --prefix TEXT      starts each name in the archive; without it, names are numbers

An archive that exists stays whole until the new one is complete and takes its place. After a failure FILE
holds the pages packed so far, and the archive from before is kept beside it as FILE.bak, or "FILE (2).bak"
and so on where that is taken.

Export to e-mail:
  --to-mail          hands the pages to the mail client, which shows them attached to a new message
  --subject TEXT     subject of the message; without it, that of last time
  --max-size KB      asks before more than this many KB of 1024 bytes are attached; never asks with 0 or less
  --yes              answers that question with yes

You address and send the message in the mail client. To close it there without sending it is no failure. The
question is asked on the console; where there is none the answer is no, and the export ends with exit code 1.
Without --max-size the host's setting Export.ToMail.MaxTotalSizeInKb counts.

A system may have no mail client that programs can hand messages to. DraftMail is one for those: it puts each
message as a file into the folder Drafts among your documents and opens it with the program for such files.
  --register-draft-mail    makes DraftMail your mail client; 32-bit programs have none as long as it is
  --unregister-draft-mail  puts back what was there before

General:
  --overwrite=WHAT   what to do about a file that exists already; not with --to-mail:
                       ask   asks on the console, or does as with no where there is none (default of --to-dir)
                       yes   overwrites it (default of --to-zip)
                       no    ends the export there, with exit code 2
  --show-dialog      fills in the dialog and leaves it to you to change and confirm it
  --lang LANGUAGE    language of the dialogs: cs, de, en, es, fr, it, pl or sk; without it, that of Windows
  --list             prints the identifier, name and icon size of each kind of export
  --                 ends the options; what follows are pages
  --help, --version

Exit codes: 0 done, 1 failed, 2 stopped by the user, 7 wrong usage, 99 crashed.

The log is in %LOCALAPPDATA%\Sorvane\ScanHost\ScanHost.log.
)";

namespace {

/// An option that says what is to be done, and the options that go with it beside --lang.
struct Purpose {
    std::wstring_view option;
    std::array<std::wstring_view, 7> companions;
};

// Where several are given, it is the first of them that the others do not go with.
constexpr std::array<Purpose, 5> purposes{{
    {L"--register-draft-mail", {}},
    {L"--unregister-draft-mail", {}},
    {L"--to-mail", {L"--subject", L"--max-size", L"--yes", L"--show-dialog"}},
    {L"--to-zip", {L"--prefix", L"--overwrite", L"--show-dialog"}},
    {L"--to-dir",
     {L"--prefix", L"--digits", L"--start", L"--no-number", L"--parent-name", L"--overwrite",
      L"--show-dialog"}},
}};

class Parser {
public:
    explicit Parser(const std::vector<std::wstring>& arguments)
        : next(arguments.begin()), end(arguments.end()) {}

    Options parse() {
        while (next != end) {
            const std::wstring argument = *next++;
            if (argument == L"--") {
                options.pages.insert(options.pages.end(), next, end);
                next = end;
            } else if (argument.starts_with(L"-")) {
                readOption(argument);
            } else {
                options.pages.push_back(argument);
            }
        }
        check();
        return std::move(options);
    }

private:
    void readOption(const std::wstring& argument) {
        const std::size_t equals = argument.find(L'=');
        name = argument.substr(0, equals);
        attached.reset();
        if (equals != std::wstring::npos)
            attached = argument.substr(equals + 1);
        if (!given.insert(name).second)
            throw UsageError(utf8(name) + " is given twice.");

        DirectoryOptions& directory = options.toDirectory;
        if (name == L"--to-dir")
            directory.directory = nonEmptyValue();
        else if (name == L"--to-zip")
            archive = nonEmptyValue();
        else if (name == L"--to-mail")
            flag();
        else if (name == L"--prefix")
            directory.prefix = value();
        else if (name == L"--digits")
            directory.digits = number();
        else if (name == L"--start")
            directory.firstNumber = number();
        else if (name == L"--no-number")
            directory.noNumber = flag();
        else if (name == L"--parent-name")
            directory.useParentFolderName = flag();
        else if (name == L"--subject")
            mail.subject = value();
        else if (name == L"--max-size")
            mail.maxSizeInKb = number(std::numeric_limits<int>::min());
        else if (name == L"--yes")
            mail.sendAnySize = flag();
        else if (name == L"--overwrite")
            options.overwrite = overwrite();
        else if (name == L"--lang")
            options.language = nonEmptyValue();
        else if (name == L"--show-dialog")
            options.showDialog = flag();
        else if (name == L"--list")
            choose(Options::Command::List);
        else if (name == L"--register-draft-mail")
            choose(Options::Command::RegisterDraftMail);
        else if (name == L"--unregister-draft-mail")
            choose(Options::Command::UnregisterDraftMail);
        else if (name == L"--help")
            choose(Options::Command::Help);
        else if (name == L"--version")
            choose(Options::Command::Version);
        else
            throw UsageError("There is no option " + utf8(name) + ".");
    }

    std::wstring value() {
        if (attached)
            return *attached;
        if (next == end)
            throw UsageError(utf8(name) + " needs a value.");
        return *next++;
    }

    std::wstring nonEmptyValue() {
        std::wstring text = value();
        if (text.empty())
            throw UsageError(utf8(name) + " needs a value that is not empty.");
        return text;
    }

    bool flag() const {
        if (attached)
            throw UsageError(utf8(name) + " takes no value.");
        return true;
    }

    void choose(Options::Command command) {
        flag();
        // Whoever asks for help gets it, whatever else stands there.
        options.command = std::max(options.command, command);
    }

    int number(int smallest = 0) {
        const std::wstring text = value();
        const std::size_t sign = text.starts_with(L'-') && smallest < 0 ? 1 : 0;
        bool ok = std::all_of(text.begin() + static_cast<std::ptrdiff_t>(sign), text.end(),
                              [](wchar_t c) { return c >= L'0' && c <= L'9'; });
        int result = 0;
        if (ok)
            result = Sorvane::string2Int(utf8(text), ok);
        if (!ok)
            throw UsageError(utf8(name) + " needs a number from " + std::to_string(smallest) + " to " +
                             std::to_string(std::numeric_limits<int>::max()) + ", not \"" + utf8(text) +
                             "\".");
        return result;
    }

    Overwrite overwrite() {
        const std::wstring text = value();
        if (text == L"ask")
            return Overwrite::Ask;
        if (text == L"yes")
            return Overwrite::Yes;
        if (text == L"no")
            return Overwrite::No;
        throw UsageError("--overwrite is ask, yes or no, not \"" + utf8(text) + "\".");
    }

    void check() {
        switch (options.command) {
        case Options::Command::Export:
            refuseOptionsBeside(purpose());
            checkExport();
            break;
        case Options::Command::RegisterDraftMail:
        case Options::Command::UnregisterDraftMail:
            refuseOptionsBeside(purpose());
            if (!options.pages.empty())
                throw UsageError("Pages do not go with " + utf8(std::wstring(purpose().option)) + ".");
            break;
        case Options::Command::List:
        case Options::Command::Help:
        case Options::Command::Version:
            break;
        }
    }

    void checkExport() {
        if (given.contains(L"--to-mail"))
            options.toMail = mail;
        else if (!archive.empty())
            options.toZip = {archive, std::exchange(options.toDirectory.prefix, {}).value_or(L"")};
        if (options.pages.empty())
            throw UsageError("There are no pages to export.");
    }

    const Purpose& purpose() const {
        for (const Purpose& candidate : purposes) {
            if (given.contains(candidate.option))
                return candidate;
        }
        throw UsageError("Say where to export to with --to-dir, --to-zip or --to-mail.");
    }

    void refuseOptionsBeside(const Purpose& purpose) const {
        for (const std::wstring& option : given) {
            if (option != L"--lang" && option != purpose.option &&
                std::ranges::find(purpose.companions, option) == purpose.companions.end())
                throw UsageError(utf8(option) + " does not go with " + utf8(std::wstring(purpose.option)) +
                                 ".");
        }
    }

    std::vector<std::wstring>::const_iterator next;
    std::vector<std::wstring>::const_iterator end;
    Options options;
    std::wstring archive;
    MailOptions mail;
    std::wstring name;
    std::optional<std::wstring> attached;
    std::set<std::wstring, std::less<>> given;
};

} // namespace

Options parseOptions(const std::vector<std::wstring>& arguments) {
    return Parser(arguments).parse();
}

} // namespace host
