// Pages whose data are files on the disk.
#pragma once

#include "SorvaneCommon/ExportDataItem.h"
#include "SorvaneCommon/ExportFolder.h"
#include "bxbase/Reference.h"
#include "host/FileIdentity.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace host {

class FilePage;

/// What a look at a page's file gave.
struct PageFile {
    FileIdentity identity;
    /// When it was last written to, as a FILETIME counts.
    LONGLONG written = 0;
    LONGLONG size = 0;
};

/// Looks a file over as a page. Throws FileError, with the file's path and what is wrong with it, when it does not
/// exist, is a folder or a device, is empty or cannot be read.
PageFile checkPageFile(const std::wstring& path);

/// The folder that a page's file lies in, by the last part of its path; nameless for the root of a drive.
class FileFolder : public ExportFolder {
public:
    explicit FileFolder(std::wstring path);

    const wchar_t* getFolderName() const override;
    using ExportFolder::getFolderName;

    const std::wstring& path() const noexcept { return folderPath; }

private:
    std::wstring folderPath;
    std::wstring name;
};

/// Is told which page an engine is at.
class PageWatcher {
public:
    /// The engine asks for the page's data or for the name of their form. Comes more than once for a page.
    virtual void pageAsked(const FilePage& page) = 0;

    /// Whether the page may give its data. A page that may not has none for the engine, which then fails.
    virtual bool mayGiveData() { return true; }

protected:
    ~PageWatcher() = default;
};

/// A page that is an existing file, given by its full path.
///
/// A file that vanishes after the page has been made is reported when the engine asks for it.
class FilePage : public ExportDataItem {
public:
    /// Looks the file over, and throws FileError as checkPageFile() does.
    /// @param path     the full path
    /// @param folder   the folder it lies in; pages of one folder share it
    /// @param watcher  not owned; must outlive the page's use; may be null
    FilePage(std::wstring path, std::shared_ptr<FileFolder> folder, PageWatcher* watcher);

    ExportFolder* getParentFolder() override { return folder.get(); }
    void getFileName(Sorvane::u8string& name) override;
    bool getFilePath(std::wstring& path) override;
    bool createDataCopy(std::wstring& path, SorvaneException& error) override;

    const std::wstring& path() const noexcept { return filePath; }
    std::wstring fileName() const;
    const FileFolder& parentFolder() const noexcept { return *folder; }
    /// The identity that the file had when it was looked over.
    const FileIdentity& identity() const noexcept { return file.identity; }
    /// When it had last been written to then.
    LONGLONG written() const noexcept { return file.written; }
    /// How many bytes it had then.
    LONGLONG size() const noexcept { return file.size; }

private:
    std::wstring filePath;
    std::shared_ptr<FileFolder> folder;
    PageWatcher* watcher;
    PageFile file;
};

using FilePages = std::vector<bxbase::Reference<FilePage>>;

/// Makes pages, of which those in one folder share it.
class PageMaker {
public:
    /// @param watcher  given to each page; not owned; may be null
    explicit PageMaker(PageWatcher* watcher) : watcher(watcher) {}

    /// Throws FileError as FilePage's constructor does.
    /// @param path  the full path
    bxbase::Reference<FilePage> make(const std::wstring& path);

private:
    PageWatcher* watcher;
    std::map<std::wstring, std::shared_ptr<FileFolder>> folders;
};

} // namespace host
