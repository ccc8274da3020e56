// The one place for temporary files of a run of the host.
#include "host/TemporaryRoot.h"

#include "SorvaneBase/bxdisk/Disk.h"
#include "host/HostError.h"
#include "host/Text.h"

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
constexpr char pageCopyPrefix[] = "page";

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

// Leaves what another program might read, and the root for as long as there is any of it.
void removePageCopies(const fs::path& root) {
    const std::wstring start = wide(pageCopyPrefix) + L"-";
    std::vector<fs::path> copies;
    std::error_code error;
    for (fs::directory_iterator entry(root, error), end; !error && entry != end; entry.increment(error)) {
        if (entry->path().filename().wstring().starts_with(start))
            copies.push_back(entry->path());
    }
    std::error_code ignored;
    for (const fs::path& copy : copies)
        fs::remove_all(copy, ignored);
    fs::remove(root, ignored);
}

} // namespace

bool createPageCopyDirectory(std::wstring& path) {
    std::string directory;
    if (!bxdisk::createTempDir(pageCopyPrefix, directory))
        return false;
    path = wide(directory);
    return true;
}

void removeStaleRoots(const std::wstring& parent) {
    std::error_code error;
    for (fs::directory_iterator entry(parent, error), end; !error && entry != end; entry.increment(error)) {
        const auto run = RunName::parse(entry->path().filename().wstring());
        if (!run || run->isRunning())
            continue;
        if (fs::file_time_type::clock::now() - newestDirectoryTime(entry->path()) < staleAge) {
            removePageCopies(entry->path());
            continue;
        }
        // What a program still holds open stays for the start after this one.
        std::error_code ignored;
        fs::remove_all(entry->path(), ignored);
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
    wchar_t temp[MAX_PATH + 1] = {};
    GetTempPathW(MAX_PATH + 1, temp);
    return std::wstring(temp) + L"Sorvane\\ScanHost";
}

TemporaryRoot::TemporaryRoot(const std::wstring& parent)
    : directory(parent + L"\\" + RunName::ofThisProcess().text()) {
    removeStaleRoots(parent);
    if (!bxdisk::createDirectories(directory))
        throw HostError("The folder for temporary files " + utf8(directory) +
                        " cannot be made: " + reasonFor(GetLastError()) + ".");
    bxdisk::setTempRoot(directory);
}

TemporaryRoot::~TemporaryRoot() {
    bxdisk::setTempRoot({});
    std::error_code ignored;
    fs::remove_all(directory, ignored);
}

} // namespace host
