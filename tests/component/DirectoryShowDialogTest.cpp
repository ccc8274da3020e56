// What the directory engine takes from its dialog.
#include "DirectoryExportFixture.h"

#include "host/DialogPilot.h"
#include "resource.h"

#include <vector>

namespace {

using host::click;
using host::enterText;

class DirectoryShowDialogTest : public DirectoryExportFixture {
protected:
    using Action = host::DialogPilot::Action;

    /// Shows the engine's dialog, does the actions in it one by one and gives what showDialog() returned. The last
    /// action must close the dialog.
    bool show(std::vector<Action> actions) {
        host::DialogPilot pilot(std::chrono::seconds(10));
        for (Action& action : actions)
            pilot.then("the directory dialog", host::dialogWith(IDC_EXPORT_DIRECTORY_PATH),
                       std::move(action));
        const bool confirmed = engine->showDialog();
        EXPECT_TRUE(pilot.succeeded()) << pilot.failure();
        return confirmed;
    }

    Action enterTarget() { return enterText(IDC_EXPORT_DIRECTORY_PATH, target.path()); }
};

TEST_F(DirectoryShowDialogTest, ConfirmedSettingsAreTheEngines) {
    engine->targetPath.clear();
    EXPECT_TRUE(show({enterText(IDC_EXPORT_DIRECTORY_PATH, target / L"Žluťoučký"),
                      enterText(IDC_EXPORT_DIRECTORY_PREFIX, L"Účet"),
                      enterText(IDC_EXPORT_DIRECTORY_FIRST_NUMBER, L"7"),
                      enterText(IDC_EXPORT_DIRECTORY_DIGITS, L"5"), click(IDC_EXPORT_DIRECTORY_APPEND_INDEX),
                      click(IDC_EXPORT_DIRECTORY_USE_FOLDER_NAME), click(IDOK)}));
    EXPECT_EQ(engine->targetPath, target.utf8() + "\\Žluťoučký");
    EXPECT_EQ(engine->prefix, "Účet");
    EXPECT_EQ(engine->firstNumber, 7U);
    EXPECT_EQ(engine->digits, 5U);
    EXPECT_FALSE(engine->appendIndex);
    EXPECT_TRUE(engine->useParentFolderName);
}

TEST_F(DirectoryShowDialogTest, DialogsDefaultsReplaceTheEngines) {
    engine->firstNumber = 9;
    engine->appendIndex = false;
    engine->useParentFolderName = true;
    EXPECT_TRUE(show({enterTarget(), click(IDOK)}));
    EXPECT_EQ(engine->prefix, "");
    EXPECT_EQ(engine->firstNumber, 1U);
    EXPECT_EQ(engine->digits, 4U);
    EXPECT_TRUE(engine->appendIndex);
    EXPECT_FALSE(engine->useParentFolderName);
}

TEST_F(DirectoryShowDialogTest, NegativeNumbersAreTakenAsUnsigned) {
    EXPECT_TRUE(show({enterTarget(), enterText(IDC_EXPORT_DIRECTORY_FIRST_NUMBER, L"-2"),
                      enterText(IDC_EXPORT_DIRECTORY_DIGITS, L"-1"), click(IDOK)}));
    EXPECT_EQ(engine->firstNumber, 4294967294U);
    EXPECT_EQ(engine->digits, 4294967295U);
}

TEST_F(DirectoryShowDialogTest, CancelledDialogLeavesTheEngineAsItWas) {
    engine->firstNumber = 9;
    EXPECT_FALSE(show({enterText(IDC_EXPORT_DIRECTORY_PATH, target / L"other"),
                       enterText(IDC_EXPORT_DIRECTORY_PREFIX, L"other"),
                       enterText(IDC_EXPORT_DIRECTORY_FIRST_NUMBER, L"7"),
                       enterText(IDC_EXPORT_DIRECTORY_DIGITS, L"5"), click(IDC_EXPORT_DIRECTORY_APPEND_INDEX),
                       click(IDC_EXPORT_DIRECTORY_USE_FOLDER_NAME), click(IDCANCEL)}));
    EXPECT_EQ(engine->targetPath, target.utf8());
    EXPECT_EQ(engine->prefix, "Scan");
    EXPECT_EQ(engine->firstNumber, 9U);
    EXPECT_EQ(engine->digits, 3U);
    EXPECT_TRUE(engine->appendIndex);
    EXPECT_FALSE(engine->useParentFolderName);
}

TEST_F(DirectoryShowDialogTest, IsModalToTheParentWindow) {
    HWND dialogOwner = nullptr;
    bool ownerEnabled = true;
    show({[&](HWND dialog) {
              dialogOwner = GetWindow(dialog, GW_OWNER);
              ownerEnabled = owner.IsWindowEnabled() != FALSE;
              return true;
          },
          click(IDCANCEL)});
    EXPECT_EQ(dialogOwner, owner.GetSafeHwnd());
    EXPECT_FALSE(ownerEnabled);
    EXPECT_TRUE(owner.IsWindowEnabled());
}

TEST_F(DirectoryShowDialogTest, UsesTheComponentsResourcesAndGivesTheStateBack) {
    // A host whose own module, which has no such dialog, is current when it calls.
    AFX_MODULE_STATE hostState(GetModuleHandleW(L"kernel32.dll"));
    const AFX_MAINTAIN_STATE2 hostIsCurrent(&hostState);
    EXPECT_TRUE(show({enterTarget(), click(IDOK)}));
    EXPECT_EQ(AfxGetModuleState(), &hostState);
    EXPECT_FALSE(show({click(IDCANCEL)}));
    EXPECT_EQ(AfxGetModuleState(), &hostState);
}

TEST_F(DirectoryShowDialogTest, OffersTheFirstPagesFolderAsPrefix) {
    test::TestFolder invoices(L"Faktury č. 7");
    addPage(L"a.tif", "a").folder = &invoices;
    EXPECT_TRUE(show({enterTarget(), click(IDOK)}));
    EXPECT_EQ(engine->prefix, "Faktury č. 7");
}

TEST_F(DirectoryShowDialogTest, EveryShowingStartsFromTheRememberedSettings) {
    EXPECT_TRUE(show({enterTarget(), enterText(IDC_EXPORT_DIRECTORY_DIGITS, L"6"),
                      click(IDC_EXPORT_DIRECTORY_USE_FOLDER_NAME), click(IDOK)}));
    EXPECT_TRUE(show({click(IDOK)}));
    EXPECT_EQ(engine->targetPath, target.utf8());
    EXPECT_EQ(engine->digits, 6U);
    EXPECT_FALSE(engine->useParentFolderName);
}

TEST_F(DirectoryShowDialogTest, ExportFollowsTheConfirmedSettings) {
    addPages(2);
    EXPECT_TRUE(show({enterText(IDC_EXPORT_DIRECTORY_PATH, target / L"new"),
                      enterText(IDC_EXPORT_DIRECTORY_PREFIX, L"Faktura"),
                      enterText(IDC_EXPORT_DIRECTORY_FIRST_NUMBER, L"9"),
                      enterText(IDC_EXPORT_DIRECTORY_DIGITS, L"3"), click(IDOK)}));
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(written(L"new\\Faktura009.tif"), "1");
    EXPECT_EQ(written(L"new\\Faktura010.tif"), "2");
}

} // namespace
