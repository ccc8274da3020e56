// Pages whose data are files on the disk.
#include "host/FilePage.h"

#include "SorvaneBase/SorvaneException.h"
#include "SorvaneBase/bxdisk/File.h"
#include "host/HostError.h"
#include "host/TemporaryRoot.h"
#include "host/Text.h"
#include "host/UniqueHandle.h"

#include <utility>

namespace host {
namespace {

[[noreturn]] void refuse(const std::wstring& path, const std::string& reason) {
    throw HostError("The page " + utf8(path) + " cannot be exported: " + reason + ".");
}

} // namespace

void checkPageFile(const std::wstring& path) {
    const std::wstring openable = bxdisk::File(path).getPath();
    const DWORD attributes = GetFileAttributesW(openable.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES)
        refuse(path, reasonFor(GetLastError()));
    if (attributes & FILE_ATTRIBUTE_DIRECTORY)
        refuse(path, "it is a folder");
    const UniqueHandle file(CreateFileW(openable.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                        nullptr, OPEN_EXISTING, 0, nullptr));
    if (!file)
        refuse(path, reasonFor(GetLastError()));
    if (GetFileType(file.get()) != FILE_TYPE_DISK)
        refuse(path, "it is not a file but a device");
    LARGE_INTEGER size{};
    GetFileSizeEx(file.get(), &size);
    if (size.QuadPart == 0)
        refuse(path, "it is empty");
    char first = 0;
    DWORD count = 0;
    if (!ReadFile(file.get(), &first, 1, &count, nullptr))
        refuse(path, reasonFor(GetLastError()));
}

FileFolder::FileFolder(std::wstring path) : folderPath(std::move(path)) {
    // "Z:" and "\\server\share" are no folders with a name.
    const std::size_t separator = folderPath.find_last_of(L'\\');
    const bool root = separator == std::wstring::npos ||
                      (folderPath.starts_with(L"\\\\") && folderPath.find(L'\\', 2) == separator);
    if (!root)
        name = folderPath.substr(separator + 1);
}

const wchar_t* FileFolder::getFolderName() const {
    return name.empty() ? nullptr : name.c_str();
}

FilePage::FilePage(std::wstring path, std::shared_ptr<FileFolder> folder, PageWatcher* watcher)
    : filePath(std::move(path)), folder(std::move(folder)), watcher(watcher) {
    checkPageFile(filePath);
    fileIdentity = identityOf(filePath).value_or(FileIdentity{});
}

std::wstring FilePage::fileName() const {
    return filePath.substr(filePath.find_last_of(L'\\') + 1);
}

void FilePage::getFileName(Sorvane::u8string& name) {
    if (watcher)
        watcher->pageAsked(*this);
    name = utf8(fileName());
}

bool FilePage::getFilePath(std::wstring& path) {
    if (watcher)
        watcher->pageAsked(*this);
    const bxdisk::File file(filePath);
    if (!file.exists())
        return false;
    path = file.getPath();
    return true;
}

bool FilePage::createDataCopy(std::wstring& path, SorvaneException& error) {
    DWORD reason = ERROR_SUCCESS;
    std::wstring directory;
    if (createPageCopyDirectory(directory)) {
        const std::wstring copy = directory + L"\\" + fileName();
        if (CopyFileW(bxdisk::File(filePath).getPath().c_str(), copy.c_str(), TRUE)) {
            path = copy;
            return true;
        }
        reason = GetLastError();
        DeleteFileW(copy.c_str());
        RemoveDirectoryW(directory.c_str());
    } else {
        reason = GetLastError();
    }
    error.reportError("host/FilePage", __LINE__, utf8(filePath) + " cannot be copied: " + reasonFor(reason));
    return false;
}

} // namespace host
