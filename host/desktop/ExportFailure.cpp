// Finds out why an export failed.
#include "host/desktop/ExportFailure.h"

#include "SorvaneBase/bxdisk/Disk.h"
#include "SorvaneBase/bxdisk/File.h"
#include "host/HostError.h"
#include "host/MailFailure.h"
#include "host/Text.h"
#include "host/UniqueHandle.h"
#include "host/desktop/EngineDialogs.h"
#include "host/desktop/ExportWatch.h"
#include "host/desktop/Reasons.h"
#include "host/desktop/Texts.h"

#include <charconv>
#include <string_view>
#include <system_error>

namespace host {
namespace {

constexpr std::int32_t failureLevel = 0;
constexpr char reportsSection[] = "ScanHost.Reports";

std::wstring folderOf(const std::wstring& path) {
    return path.substr(0, path.find_last_of(L"\\/") + 1);
}

/// Why nothing can be written at a place: a folder, an existing file or a new one.
DWORD errorAgainstWriting(const std::wstring& place) {
    const bool isFolder = bxdisk::File(place).isDirectory();
    const bool isNew = isFolder || !bxdisk::File(place).exists();
    const std::wstring probe =
        isFolder ? place + L"\\ScanHost-" + std::to_wstring(GetCurrentProcessId()) : place;
    const UniqueHandle file(CreateFileW(bxdisk::File(probe).getPath().c_str(), GENERIC_WRITE | DELETE,
                                        FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                        isNew ? CREATE_NEW : OPEN_EXISTING,
                                        isNew ? FILE_FLAG_DELETE_ON_CLOSE : 0, nullptr));
    return file ? ERROR_SUCCESS : GetLastError();
}

bool isDiskTooFull(const std::wstring& folder, std::int64_t size) {
    ULARGE_INTEGER available{};
    return GetDiskFreeSpaceExW(folder.c_str(), &available, nullptr, nullptr) &&
           available.QuadPart < static_cast<ULONGLONG>(size);
}

/// Whether attachments of that size find no room in the folder for temporary files.
bool isTemporaryDiskTooFull(std::int64_t size) {
    std::string folder;
    if (!bxdisk::createTempDir("scanhost", folder))
        return GetLastError() == ERROR_DISK_FULL;
    const bool isFull = isDiskTooFull(wide(folder), size);
    RemoveDirectoryW(wide(folder).c_str());
    return isFull;
}

/// The Windows error at the end of a message of the log.
std::optional<DWORD> errorIn(std::string_view message) {
    constexpr std::string_view before = ", error ";
    const std::size_t place = message.rfind(before);
    if (place == std::string_view::npos)
        return std::nullopt;
    const char* const end = message.data() + message.size();
    DWORD error = 0;
    const auto read = std::from_chars(message.data() + place + before.size(), end, error);
    return read.ec == std::errc() && read.ptr == end ? std::optional(error) : std::nullopt;
}

} // namespace

ExportFailure::ExportFailure(const FilePages& pages, const ExportWatch& watch, const EngineDialogs& dialogs)
    : pages(pages), watch(watch), dialogs(dialogs) {
    bxutils::setSystemLogListener(this);
}

ExportFailure::~ExportFailure() {
    bxutils::setSystemLogListener(nullptr);
}

void ExportFailure::reportError(const Sorvane::u8string& sourceFile, int line,
                                const Sorvane::u8string& message) {
    ExportErrorSink::reportError(sourceFile, line, message);
    bxutils::getSystemLogFormater()->log(failureLevel, message.c_str(), sourceFile.c_str(), line);
    if (localText(reportsSection, message.c_str()) != wide(message))
        explained = explain(message);
}

void ExportFailure::logged(std::int32_t level, const char* message, const char* sourceFile,
                           std::int32_t line) noexcept {
    // What the program does on its other threads has nothing to do with the export.
    if (level != failureLevel || GetCurrentThreadId() != thread)
        return;
    lines +=
        std::string(lines.empty() ? "" : "\n") + sourceFile + ":" + std::to_string(line) + ": " + message;
    if (const auto code = MailFailure::codeIn(message))
        mailCode = code;
    if (const auto error = errorIn(message))
        loggedError = error;
}

Explanation ExportFailure::general() const {
    Explanation explanation;
    explanation.sentence = localText("ScanHost.Export", "Failure.General");
    if (loggedError)
        explanation.reason = localReason(*loggedError);
    return explanation;
}

std::wstring ExportFailure::details() const {
    return wide(lines);
}

Explanation ExportFailure::explain(const std::string& message) const {
    Explanation explanation;
    const std::wstring plain = localText(reportsSection, message.c_str());
    if (plain.find(L"{page}") != std::wstring::npos) {
        explanation.page = watch.current();
        if (!explanation.page)
            return general();
    }
    const std::size_t number = explanation.page.value_or(0) + 1;
    explanation.sentence = localText(reportsSection, message.c_str(), {{L"page", std::to_wstring(number)}});
    findReason(explanation);
    return explanation;
}

void ExportFailure::findReason(Explanation& explanation) const {
    const auto blame = [&explanation](DWORD error, const std::wstring& path) {
        explanation.reason = localReason(error);
        explanation.path = path;
    };
    if (mailCode) {
        explanation.reason = localMailReason(*mailCode);
        return;
    }
    const auto place = dialogs.place();
    std::int64_t size = 0;
    if (explanation.page) {
        const std::wstring& page = pages[*explanation.page]->path();
        explanation.path = page;
        try {
            checkPageFile(page);
        } catch (const FileError& error) {
            return blame(error.code(), page);
        }
        size = bxdisk::File(page).getFileSize();
    }
    if (loggedError)
        return blame(*loggedError, place.value_or(explanation.path));
    if (dialogs.overwritten())
        if (const DWORD error = errorAgainstWriting(*dialogs.overwritten()))
            return blame(error, *dialogs.overwritten());
    if (!place) {
        if (explanation.page && isTemporaryDiskTooFull(size))
            explanation.reason = localReason(ERROR_DISK_FULL);
        return;
    }
    const std::wstring folder = bxdisk::File(*place).isDirectory() ? *place : folderOf(*place);
    if (isDiskTooFull(folder, size))
        return blame(ERROR_DISK_FULL, *place);
    if (const DWORD error = errorAgainstWriting(*place))
        blame(error, *place);
}

} // namespace host
