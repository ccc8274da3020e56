// The host application of a program without windows: it answers questions itself.
#pragma once

#include "host/Console.h"
#include "host/FilePage.h"
#include "host/HostApplication.h"
#include "host/Options.h"
#include "host/SettingsOverlay.h"

#include <string>
#include <vector>

namespace host {

/// Prints messages instead of showing them, and answers the question whether to overwrite a file by the
/// option, or by asking on the console. Whatever the option says, a file that is itself one of the pages is
/// never overwritten.
class ConsoleApplication : public HostApplication {
public:
    /// @param console, pages  not owned; must outlive the application
    /// @param settings        take the place of those that the host remembers, and are not remembered
    ConsoleApplication(std::wstring basePath, Console& console, Overwrite overwrite, const FilePages& pages,
                       SettingValues settings = {});

    SorvaneCommon::SettingsStore* getSettingsStore() override { return &settings; }

    SorvaneCommon::MessageDlgResult showMessage(HWND owner, SorvaneCommon::MessageDlgType type,
                                                const Sorvane::u8string& text,
                                                const Sorvane::u8string& title) override;

    /// Asks on the console. The answer is no where there is nobody to ask.
    bool confirm(const std::string& question);

    /// Whether the file that exists at the path may be overwritten. Says why not.
    bool mayOverwrite(const std::wstring& path);

    /// Whether an answer protected a page; the export has failed then, though the engine calls it stopped.
    bool hasProtectedPage() const noexcept { return protectedPage; }

private:
    bool isPage(const std::wstring& path) const;

    SettingsOverlay settings;
    Console& console;
    Overwrite overwrite;
    /// Sorted by identity.
    std::vector<const FilePage*> pagesByIdentity;
    bool protectedPage = false;
};

} // namespace host
