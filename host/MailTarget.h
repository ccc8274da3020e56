// The export to e-mail, as the console program drives it.
#pragma once

#include "host/ExportTarget.h"
#include "host/MailFailure.h"

#include <windows.h>

#include <optional>

namespace host {

class MailTarget : public ExportTarget {
public:
    explicit MailTarget(MailOptions options);

    const char* factoryId() const override;
    SettingValues settings() const override;
    void checkBefore(const FilePages& /*pages*/) const override {}
    int tellingControl() const override;
    void fillIn(HWND dialog) const override;
    void observe(HWND /*dialog*/) override {}
    void checkObserved(const FilePages& /*pages*/) const override {}
    Overwrite defaultOverwrite() const override;
    void beforeExport() override;
    std::string destination() const override;
    const char* outcome() const override;
    bool concernsPage(const std::string& report) const override;
    std::string sentenceFor(const std::string& report) const override;
    std::string reasonForFailure(const FilePage& page, std::size_t index,
                                 std::size_t pageCount) const override;
    bool answer(HWND box, const std::function<bool(const std::string&)>& ask) override;
    bool isForeign(HWND window) const override;

private:
    MailOptions options;
    std::optional<MailFailure> failure;
    bool isTooLarge = false; ///< the limit is exceeded and the answer was no
};

} // namespace host
