// Pages whose data are files on the disk.
#include "host/FilePage.h"

#include "SorvaneBase/SorvaneException.h"
#include "SorvaneBase/bxdisk/File.h"
#include "bxbase/ReferencedImpl.h"
#include "host/HostError.h"
#include "host/TemporaryRoot.h"
#include "host/Text.h"
#include "host/UniqueHandle.h"

#include <algorithm>
#include <utility>

namespace host {
namespace {

[[noreturn]] void refuse(const std::wstring& path, DWORD error) {
    throw FileError("The page " + utf8(path) + " cannot be exported", error);
}

} // namespace

PageFile checkPageFile(const std::wstring& path) {
    // With this flag a folder opens too, and is told from a file that may not be read.
    const UniqueHandle file(CreateFileW(bxdisk::File(path).getPath().c_str(), GENERIC_READ,
                                        FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                                        FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    if (!file)
        refuse(path, GetLastError());
    if (GetFileType(file.get()) != FILE_TYPE_DISK)
        refuse(path, ERROR_BAD_FILE_TYPE);
    FILE_BASIC_INFO info{};
    GetFileInformationByHandleEx(file.get(), FileBasicInfo, &info, sizeof info);
    if (info.FileAttributes & FILE_ATTRIBUTE_DIRECTORY)
        refuse(path, ERROR_DIRECTORY_NOT_SUPPORTED);
    // A size alone does not show that somebody has locked the bytes.
    char first = 0;
    DWORD count = 0;
    if (!ReadFile(file.get(), &first, 1, &count, nullptr))
        refuse(path, GetLastError());
    if (count == 0)
        refuse(path, ERROR_HANDLE_EOF);
    LARGE_INTEGER size{};
    GetFileSizeEx(file.get(), &size);
    return {identityOf(file).value_or(FileIdentity{}), info.LastWriteTime.QuadPart, size.QuadPart};
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
    : filePath(std::move(path)), folder(std::move(folder)), watcher(watcher), file(checkPageFile(filePath)) {}

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
    if (watcher && !watcher->mayGiveData())
        return false;
    const bxdisk::File data(filePath);
    if (!data.exists())
        return false;
    path = data.getPath();
    return true;
}

bool FilePage::createDataCopy(std::wstring& path, SorvaneException& error) {
    if (watcher && !watcher->mayGiveData()) {
        error.reportError("host/FilePage", __LINE__, utf8(filePath) + " is withheld: the export was stopped");
        return false;
    }
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

bxbase::Reference<FilePage> PageMaker::make(const std::wstring& path) {
    const std::wstring parent = path.substr(0, std::min(path.size(), path.find_last_of(L'\\')));
    auto& folder = folders[parent];
    if (!folder)
        folder = std::make_shared<FileFolder>(parent);
    return bxbase::Reference<FilePage>(new bxbase::ReferencedImpl<FilePage>(path, folder, watcher));
}

} // namespace host
