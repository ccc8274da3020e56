// The export to a ZIP archive, as the console program drives it.
#include "host/ZipTarget.h"

#include "SorvaneBase/bxdisk/File.h"
#include "host/CommandLinePath.h"
#include "host/FileNames.h"
#include "host/HostError.h"
#include "host/Text.h"
#include "host/UniqueHandle.h"
#include "host/ZipDialogControls.h"

#include <windows.h>

#include <string_view>
#include <utility>

namespace host {
namespace {

using namespace zipDialog;

std::wstring folderOf(const std::wstring& path) {
    const std::wstring full = fullPathOf(path);
    return full.substr(0, full.find_last_of(L'\\') + 1);
}

/// Whether the file ends with the record that readers look for first and that is written last.
bool endsAsArchive(const std::wstring& path) {
    constexpr LONG recordSize = 22;
    const UniqueHandle file(CreateFileW(path.c_str(), GENERIC_READ,
                                        FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                        OPEN_EXISTING, 0, nullptr));
    char signature[4] = {};
    DWORD count = 0;
    return file && SetFilePointer(file.get(), -recordSize, nullptr, FILE_END) != INVALID_SET_FILE_POINTER &&
           ReadFile(file.get(), signature, sizeof signature, &count, nullptr) &&
           std::string_view(signature, count) == "PK\x05\x06";
}

} // namespace

ZipTarget::ZipTarget(ZipOptions given) : options(std::move(given)), archive(fullPathOf(options.archive)) {}

const char* ZipTarget::factoryId() const {
    return "com.brellix.sorvane.exportdata-factory.zip.file";
}

void ZipTarget::checkBefore(const FilePages& pages) const {
    if (const auto part = impossiblePartOf(options.archive))
        throw UsageError("--to-zip " + utf8(options.archive) + ": Windows cannot have a file named \"" +
                         utf8(*part) + "\".");
    checkObserved(pages);
}

int ZipTarget::tellingControl() const {
    return pathEdit;
}

void ZipTarget::fillIn(HWND dialog) const {
    SetDlgItemTextW(dialog, pathEdit, archive.c_str());
    SetDlgItemTextW(dialog, prefixEdit, options.prefix.c_str());
}

void ZipTarget::observe(HWND dialog) {
    archive = windowText(GetDlgItem(dialog, pathEdit));
}

// The engine reports no more than that it failed.
void ZipTarget::checkObserved(const FilePages&) const {
    if (archive.empty())
        throw HostError("The dialog was confirmed without the path of an archive.");
    if (const auto part = impossiblePartOf(archive))
        throw HostError("Windows cannot have a file named \"" + utf8(*part) + "\".");
    const bxdisk::File target(archive);
    if (target.isDirectory() || archive.ends_with(L'\\'))
        throw HostError("The target " + utf8(archive) + " is a folder, not a file.");
    const std::wstring folder = folderOf(archive);
    if (!bxdisk::File(folder).isDirectory())
        throw HostError("The folder " + utf8(folder) + " of the target does not exist.");
    if (!target.exists())
        return;
    // An administrator may be let past the mark, but the ZIP writer heeds it.
    if (GetFileAttributesW(target.getPath().c_str()) & FILE_ATTRIBUTE_READONLY)
        throw HostError("The target " + utf8(archive) + " cannot be replaced: it is read-only.");
    const UniqueHandle file(CreateFileW(target.getPath().c_str(), GENERIC_WRITE | DELETE,
                                        FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                        OPEN_EXISTING, 0, nullptr));
    if (!file)
        throw HostError("The target " + utf8(archive) + " cannot be replaced: " + reasonFor(GetLastError()) +
                        ".");
}

// The old archive stays whole until the new one is complete.
Overwrite ZipTarget::defaultOverwrite() const {
    return Overwrite::Yes;
}

std::optional<std::wstring> ZipTarget::fileReplacedUnasked() const {
    return bxdisk::File(archive).exists() ? std::optional(archive) : std::nullopt;
}

void ZipTarget::beforeExport() {
    before = fileAtPath();
}

// The archive is closed after the engine's last word, so a failure to do it does not reach the result.
void ZipTarget::checkDone() const {
    const auto now = fileAtPath();
    if (!now || now == before)
        throw HostError("The new archive could not be put at " + destination() + "; the log says why.");
    if (!endsAsArchive(bxdisk::File(archive).getPath()))
        throw HostError("The archive " + destination() + " could not be finished; the log says why.");
}

std::optional<ZipTarget::FileAtPath> ZipTarget::fileAtPath() const {
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (!GetFileAttributesExW(bxdisk::File(archive).getPath().c_str(), GetFileExInfoStandard, &data))
        return std::nullopt;
    const ULARGE_INTEGER time{{data.ftLastWriteTime.dwLowDateTime, data.ftLastWriteTime.dwHighDateTime}};
    const ULARGE_INTEGER size{{data.nFileSizeLow, data.nFileSizeHigh}};
    return FileAtPath{identityOf(archive), time.QuadPart, size.QuadPart};
}

std::string ZipTarget::destination() const {
    return utf8(archive);
}

// The engine does not tell whether the page or the archive failed, and what was there of either is gone by now.
std::string ZipTarget::reasonForFailure(const FilePage&, std::size_t, std::size_t) const {
    return "it could not be added to " + destination() + "; the log says why";
}

} // namespace host
