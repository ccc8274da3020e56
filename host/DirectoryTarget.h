// The export to a directory, as the console program drives it.
#pragma once

#include "host/ExportTarget.h"

#include <optional>

namespace host {

class DirectoryTarget : public ExportTarget {
public:
    explicit DirectoryTarget(DirectoryOptions options);

    const char* factoryId() const override;
    void checkBefore(const FilePages& pages) const override;
    int tellingControl() const override;
    void fillIn(HWND dialog) const override;
    void observe(HWND dialog) override;
    void checkObserved(const FilePages& pages) const override;
    Overwrite defaultOverwrite() const override;
    std::string destination() const override;
    std::string reasonForFailure(const FilePage& page, std::size_t index,
                                 std::size_t pageCount) const override;
    bool isToldByReason(const std::string& message) const override;

private:
    /// What the dialog holds.
    struct Settings {
        std::wstring directory;
        std::wstring prefix;
        unsigned firstNumber = 1;
        unsigned digits = 0;
        bool appendNumber = true;
        bool useParentFolderName = false;
    };

    void refuseFolderOf(const FilePages& pages, const std::wstring& directory) const;
    std::wstring fileNameFor(const FilePage& page, std::size_t index, std::size_t pageCount) const;

    DirectoryOptions options;
    std::wstring directory;
    Settings settings;
};

} // namespace host
