// What the program with a window remembers, beside what its components do.
#pragma once

#include "SorvaneCommon/SettingsStore.h"
#include "host/desktop/PageOrder.h"
#include "host/desktop/WindowPlace.h"

#include <optional>
#include <string>

namespace host {

/// Reads and writes the host's settings store each time it is asked. What the store has no sensible value for counts
/// as never set. Nothing is written that is so already.
class DesktopSettings {
public:
    /// The largest limit for mail that the engine takes for what it is.
    static constexpr int largestMailLimit = 2 * 1024 * 1024 - 1;

    /// @param store  not owned
    explicit DesktopSettings(SorvaneCommon::SettingsStore& store) : store(store) {}

    /// The code of the language that the person chose, or "" for that of Windows. The program need not have it.
    std::wstring language() const;
    /// Of the main window.
    std::optional<WindowPlace> windowPlace() const;
    /// In which the pages are kept.
    PageOrder pageOrder() const;
    /// From which size of all attachments, in KB, the person is asked before they are sent; without it, never.
    std::optional<int> mailLimit() const;

    // False when it cannot be stored.
    bool setLanguage(const std::wstring& code);
    bool setWindowPlace(const WindowPlace& place);
    bool setPageOrder(PageOrder order);
    /// @param limit  up to largestMailLimit
    bool setMailLimit(std::optional<int> limit);

private:
    std::string read(const char* key) const;

    SorvaneCommon::SettingsStore& store;
};

} // namespace host
