// The export to a ZIP archive, as the console program drives it.
#pragma once

#include "host/ExportTarget.h"

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
    std::string destination() const override;
    std::string reasonForFailure(const FilePage& page, std::size_t index,
                                 std::size_t pageCount) const override;

private:
    ZipOptions options;
    std::wstring archive; ///< what the dialog holds
};

} // namespace host
