// The one place for temporary files of a run of the host.
#include "host/TemporaryRoot.h"

#include "SorvaneBase/bxdisk/Disk.h"
#include "SorvaneBase/bxdisk/TempPath.h"
#include "host/HostError.h"
#include "host/PrivateFolder.h"
#include "host/Text.h"

#include <knownfolders.h>
#include <objbase.h>
#include <shlobj.h>

#include <algorithm>
#include <chrono>
#include <cwchar>
#include <filesystem>
#include <system_error>
#include <vector>

namespace host {
namespace {

namespace fs = std::filesystem;

constexpr std::chrono::hours staleAge{24};
// A component chooses the names of its own directories, and none should come upon this one.
constexpr char pageCopyPrefix[] = "scanhost-page-copy";

unsigned long long startTimeOf(HANDLE process) {
    FILETIME start{};
    FILETIME end{};
    FILETIME kernel{};
    FILETIME user{};
    GetProcessTimes(process, &start, &end, &kernel, &user);
    return ULARGE_INTEGER{{start.dwLowDateTime, start.dwHighDateTime}}.QuadPart;
}

// Putting a file into a directory changes the directory's time, while a copied file keeps its original's.
fs::file_time_type newestDirectoryTime(const fs::path& directory) {
    std::error_code error;
    fs::file_time_type newest = fs::last_write_time(directory, error);
    for (fs::recursive_directory_iterator entry(directory, error), end; !error && entry != end;
         entry.increment(error)) {
        std::error_code entryError;
        if (entry->is_directory(entryError))
            newest = std::max(newest, entry->last_write_time(entryError));
    }
    return newest;
}

std::vector<fs::path> entriesOf(const fs::path& directory) {
    std::vector<fs::path> entries;
    std::error_code error;
    for (fs::directory_iterator entry(directory, error), end; !error && entry != end; entry.increment(error))
        entries.push_back(entry->path());
    return entries;
}

// Entry by entry: a file that a program holds open keeps nothing but itself and the directories above it.
void removeTree(const fs::path& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES)
        return;
    // What a link leads to is somebody else's.
    if ((attributes & FILE_ATTRIBUTE_DIRECTORY) && !(attributes & FILE_ATTRIBUTE_REPARSE_POINT)) {
        for (const fs::path& entry : entriesOf(path))
            removeTree(entry);
    }
    // The copy of a read-only page is read-only too.
    if (attributes & FILE_ATTRIBUTE_READONLY)
        SetFileAttributesW(path.c_str(), attributes & ~static_cast<DWORD>(FILE_ATTRIBUTE_READONLY));
    std::error_code ignored;
    fs::remove(path, ignored);
}

// Leaves what another program might read, and the root for as long as there is any of it.
void removePageCopies(const fs::path& root) {
    const std::wstring start = wide(pageCopyPrefix) + L"-";
    for (const fs::path& entry : entriesOf(root)) {
        if (entry.filename().wstring().starts_with(start))
            removeTree(entry);
    }
    std::error_code ignored;
    fs::remove(root, ignored);
}

bool isAscii(const std::wstring& path) {
    return !path.empty() && std::ranges::all_of(path, [](wchar_t c) { return c < 0x80; });
}

// In the code page of this program, which may be another than that of a mail client's own.
bool isAnsi(const std::wstring& path) {
    std::string ansi;
    return Sorvane::c_u8acp(ansi, utf8(path));
}

/// The parent itself or what stands in for it.
std::wstring ansiParent(const std::wstring& parent, const AnsiPathMeans& means) {
    if (parent.empty())
        throw HostError("Windows tells of no folder for temporary files; the path in TMP may be too long.");
    // Only what exists has a short name.
    if (isAscii(parent) || !bxdisk::createDirectories(parent))
        return parent;
    std::wstring shortPath = means.shortPath(parent);
    if (isAscii(shortPath))
        return shortPath;
    for (const std::wstring& path : {parent, shortPath}) {
        if (!path.empty() && isAnsi(path))
            return path;
    }
    const std::wstring own = privateFolderBelow(means.commonFolder);
    return isAnsi(own) && makePrivateFolder(own) ? own : parent;
}

} // namespace

std::wstring AnsiPathMeans::shortPathOfSystem(const std::wstring& path) {
    std::wstring result(GetShortPathNameW(path.c_str(), nullptr, 0), L'\0');
    result.resize(GetShortPathNameW(path.c_str(), result.data(), static_cast<DWORD>(result.size())));
    return result;
}

std::wstring AnsiPathMeans::commonFolderOfSystem() {
    wchar_t* folder = nullptr;
    const HRESULT result = SHGetKnownFolderPath(FOLDERID_ProgramData, KF_FLAG_DEFAULT, nullptr, &folder);
    std::wstring path = SUCCEEDED(result) ? folder : L"";
    CoTaskMemFree(folder);
    return path;
}

bool createPageCopyDirectory(std::wstring& path) {
    std::string directory;
    if (!bxdisk::createTempDir(pageCopyPrefix, directory))
        return false;
    path = wide(directory);
    return true;
}

void removeStaleRoots(const std::wstring& parent) {
    for (const fs::path& entry : entriesOf(parent)) {
        const auto run = RunName::parse(entry.filename().wstring());
        if (!run || run->isRunning())
            continue;
        // What a program still holds open stays for the start after this one.
        if (fs::file_time_type::clock::now() - newestDirectoryTime(entry) < staleAge)
            removePageCopies(entry);
        else
            removeTree(entry);
    }
}

RunName RunName::ofThisProcess() {
    return {GetCurrentProcessId(), startTimeOf(GetCurrentProcess())};
}

std::optional<RunName> RunName::parse(const std::wstring& name) {
    RunName run;
    wchar_t* end = nullptr;
    run.processId = std::wcstoul(name.c_str(), &end, 10);
    if (*end != L'-')
        return std::nullopt;
    run.startTime = std::wcstoull(end + 1, nullptr, 10);
    if (run.text() != name)
        return std::nullopt;
    return run;
}

std::wstring RunName::text() const {
    return std::to_wstring(processId) + L"-" + std::to_wstring(startTime);
}

bool RunName::isRunning() const {
    HANDLE process = OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION | SYNCHRONIZE, FALSE, processId);
    if (!process)
        return GetLastError() == ERROR_ACCESS_DENIED;
    const bool running = WaitForSingleObject(process, 0) == WAIT_TIMEOUT && startTimeOf(process) == startTime;
    CloseHandle(process);
    return running;
}

std::wstring TemporaryRoot::defaultParent() {
    const std::wstring temp = bxdisk::usersTempPath();
    return temp.empty() ? temp : temp + L"Sorvane\\ScanHost";
}

TemporaryRoot::TemporaryRoot(const std::wstring& parent, const AnsiPathMeans& means)
    : directory(ansiParent(parent, means) + L"\\" + RunName::ofThisProcess().text()) {
    removeStaleRoots(parent);
    // Another run may have had another code page or no short names.
    if (const std::wstring own = privateFolderBelow(means.commonFolder); isUsersOwn(own))
        removeStaleRoots(own);
    if (!bxdisk::createDirectories(directory))
        throw HostError("The folder for temporary files " + utf8(directory) +
                        " cannot be made: " + reasonFor(GetLastError()) + ".");
    bxdisk::setTempRoot(directory);
}

TemporaryRoot::~TemporaryRoot() {
    bxdisk::setTempRoot({});
    removePageCopies(directory);
}

} // namespace host
