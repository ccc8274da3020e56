// The one place for temporary files of a run of the host.
#pragma once

#include <windows.h>

#include <functional>
#include <optional>
#include <string>

namespace host {

/// What the system has for a path that mail clients may not be able to take.
struct AnsiPathMeans {
    /// The path in short names; where the system keeps none, in long ones. Empty when it does not exist.
    std::function<std::wstring(const std::wstring&)> shortPath = shortPathOfSystem;
    /// A folder that all users can write to. Empty when there is none.
    std::wstring commonFolder = commonFolderOfSystem();

    static std::wstring shortPathOfSystem(const std::wstring& path);
    /// That for the data of applications, usually C:\ProgramData.
    static std::wstring commonFolderOfSystem();
};

/// A directory of the process's own, made the root of bxdisk's temporary directories.
///
/// It is made under the parent given. Mail clients, though, take the paths of attachments in the ANSI code page of this
/// program and may pass them on to programs that have another one. A parent that is not plain ASCII, say for the name
/// of the user's profile, is therefore called by its short name when that is. Where it is not, the parent stays as long
/// as this program's code page has its characters; otherwise it is replaced by a folder of the user's own below the
/// common one, to which no other user has access. If that cannot be had it is the parent after all, which is good
/// enough for all other exports.
///
/// At the end it loses the copies of pages, and is removed if nothing else is in it. Directories that engines have made
/// stay, because a mail client may read the attachments in them after the export, even after the program. A start that
/// comes more than a day later removes them. A program that runs for long thus gathers the attachments of all its
/// exports: nothing goes before a later start.
class TemporaryRoot {
public:
    /// Sorvane\ScanHost in the user's temporary directory. Empty when the system tells of none.
    static std::wstring defaultParent();

    /// Makes the directory, and removes stale ones of other runs in both places. Throws HostError when it cannot be
    /// made or the parent is empty.
    explicit TemporaryRoot(const std::wstring& parent = defaultParent(), const AnsiPathMeans& means = {});
    ~TemporaryRoot();
    TemporaryRoot(const TemporaryRoot&) = delete;
    TemporaryRoot& operator=(const TemporaryRoot&) = delete;

    const std::wstring& path() const noexcept { return directory; }

private:
    std::wstring directory;
};

/// Makes a directory under the root for the copy of a page. Nobody but the run itself reads it, so it goes with the
/// run. False when it cannot be made; GetLastError() says why.
bool createPageCopyDirectory(std::wstring& path);

/// Removes what ended runs have left: everything where nothing has been put in or taken out for a day, and elsewhere
/// the copies of pages, which only a crashed run leaves.
void removeStaleRoots(const std::wstring& parent);

/// The name of a run's directory: the process and, because process numbers come round again, its start.
struct RunName {
    DWORD processId = 0;
    unsigned long long startTime = 0;

    static RunName ofThisProcess();
    /// None for a text that no run has given its directory.
    static std::optional<RunName> parse(const std::wstring& name);

    std::wstring text() const;
    bool isRunning() const;
};

} // namespace host
