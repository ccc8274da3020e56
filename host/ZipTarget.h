// The export to a ZIP archive, as the console program drives it.
#pragma once

#include "host/ExportTarget.h"
#include "host/FileIdentity.h"

#include <windows.h>

#include <optional>

namespace host {

class ZipTarget : public ExportTarget {
public:
    explicit ZipTarget(ZipOptions options);

    const char* factoryId() const override;
    void checkBefore(const FilePages& pages) const override;
    int tellingControl() const override;
    void fillIn(HWND dialog) const override;
    void observe(HWND dialog) override;
    void checkObserved(const FilePages& pages) const override;
    Overwrite defaultOverwrite() const override;
    std::optional<std::wstring> fileReplacedUnasked() const override;
    void beforeExport() override;
    void checkDone() const override;
    std::string destination() const override;
    std::string reasonForFailure(const FilePage& page, std::size_t index,
                                 std::size_t pageCount) const override;

private:
    /// The file at the archive's path, as opposed to another that takes its place.
    struct FileAtPath {
        std::optional<FileIdentity> identity; ///< not every file system has them
        ULONGLONG lastWrite = 0;
        ULONGLONG size = 0;

        friend bool operator==(const FileAtPath&, const FileAtPath&) = default;
    };
    std::optional<FileAtPath> fileAtPath() const;

    ZipOptions options;
    std::wstring archive; ///< what the dialog holds
    std::optional<FileAtPath> before;
};

} // namespace host
