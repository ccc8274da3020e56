// A directory dialog on the screen, operated as a user would.
#pragma once

#include "ExportDirectoryDialog.h"
#include "host/DialogPilot.h"
#include "support/RawRegistry.h"
#include "support/TempFolder.h"
#include "support/TestHost.h"
#include "support/TestPage.h"

#include <gmock/gmock.h>

#include <chrono>
#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class DirectoryDialogFixture : public testing::Test {
protected:
    using Action = host::DialogPilot::Action;

    /// How long a pilot waits; far more than anything takes on a machine that many tests share.
    static constexpr std::chrono::seconds patience{30};

    void SetUp() override;

    void addPage(std::optional<std::wstring> folderName = std::nullopt);

    /// Opens a new dialog, does the actions one by one on it, and gives what DoModal() returned. The actions
    /// must close the dialog.
    INT_PTR show(std::vector<Action> actions);
    /// Opens a new dialog, does something in it, and cancels it.
    void inspect(std::vector<Action> actions);
    /// Opens a new dialog, does the actions, presses OK and expects the dialog to close.
    void confirm(std::vector<Action> actions);

    /// Stores a value as it would be remembered from an earlier dialog.
    void store(const wchar_t* name, DWORD type, const std::string& bytes);
    std::optional<test::RawValue> stored(const wchar_t* name);
    /// The stored history; fails the test if it is not a terminated text.
    std::wstring storedHistory();

    test::TestHost host;
    test::TempFolder folder;
    std::wstring key; ///< where the settings are expected
    std::list<test::TestFolder> folders;
    std::list<test::TestPage> pageObjects;
    ExportUtils::ExportEngineBase::Pages pages;
    std::unique_ptr<ExportDirectoryDialog> dialog; ///< of the last show()
};
