// What the ZIP engine takes from its dialog.
#include "ZipExportFixture.h"

#include "host/DialogPilot.h"
#include "resource.h"
#include "support/DialogInspection.h"
#include "support/RawRegistry.h"
#include "support/TestHost.h"

#include <afxwin.h>

#include <chrono>
#include <vector>

namespace {

using host::click;
using host::enterText;
using testing::ElementsAre;

class ZipShowDialogTest : public ZipExportFixture {
protected:
    using Action = host::DialogPilot::Action;

    ZipShowDialogTest() {
        owner.CreateEx(0, L"Static", L"owner", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 100, 100, nullptr,
                       nullptr);
        engine->setParentWindow(&owner);
    }

    /// Shows the engine's dialog, does the actions in it one by one and gives what showDialog() returned. The last
    /// action must close the dialog.
    bool show(std::vector<Action> actions) {
        host::DialogPilot pilot(std::chrono::seconds(30));
        for (Action& action : actions)
            pilot.then("the ZIP dialog", host::dialogWith(IDC_EXPORT_PATH), std::move(action));
        const bool confirmed = engine->showDialog();
        EXPECT_TRUE(pilot.succeeded()) << pilot.failure();
        return confirmed;
    }

    CWnd owner;
};

TEST_F(ZipShowDialogTest, ConfirmedEntriesAreTheEngines) {
    EXPECT_TRUE(show({enterText(IDC_EXPORT_PATH, L" C:\\Žluťoučký "), enterText(IDC_EXPORT_PREFIX, L"Účet/ "),
                      click(IDOK)}));
    EXPECT_EQ(engine->targetPath, " C:\\Žluťoučký ");
    EXPECT_EQ(engine->prefix, "Účet/ ");
}

TEST_F(ZipShowDialogTest, ConfirmedEmptyFieldsReplaceTheEngines) {
    EXPECT_TRUE(show({click(IDOK)}));
    EXPECT_EQ(engine->targetPath, "");
    EXPECT_EQ(engine->prefix, "");
    EXPECT_EQ(run(), 1);
    expectReport(49, "targetPath is empty");
}

TEST_F(ZipShowDialogTest, CancelledDialogLeavesTheEngineAsItWas) {
    const std::string before = engine->targetPath;
    EXPECT_FALSE(show({enterText(IDC_EXPORT_PATH, L"C:\\other.zip"), enterText(IDC_EXPORT_PREFIX, L"other"),
                       click(IDCANCEL)}));
    EXPECT_EQ(engine->targetPath, before);
    EXPECT_EQ(engine->prefix, "Scan_");
}

TEST_F(ZipShowDialogTest, SecondShowingOfTheSameEngineIsEmpty) {
    EXPECT_TRUE(
        show({enterText(IDC_EXPORT_PATH, L"C:\\a.zip"), enterText(IDC_EXPORT_PREFIX, L"Scan"), click(IDOK)}));
    EXPECT_FALSE(show({test::now([](HWND window) {
                           EXPECT_EQ(test::controlText(window, IDC_EXPORT_PATH), L"");
                           EXPECT_EQ(test::controlText(window, IDC_EXPORT_PREFIX), L"");
                       }),
                       click(IDCANCEL)}));
}

TEST_F(ZipShowDialogTest, BelongsToTheActiveWindowWhateverTheEnginesParent) {
    CWnd active;
    active.CreateEx(0, L"Static", L"active", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 100, 100, nullptr,
                    nullptr);
    SetActiveWindow(active);
    show({test::now([&](HWND window) {
              EXPECT_EQ(GetWindow(window, GW_OWNER), active.m_hWnd);
              EXPECT_TRUE(owner.IsWindowEnabled());
          }),
          click(IDCANCEL)});
}

TEST_F(ZipShowDialogTest, UsesTheComponentsResourcesAndGivesTheStateBack) {
    // A host whose own module, which has no such dialog, is current when it calls.
    AFX_MODULE_STATE hostState(GetModuleHandleW(L"kernel32.dll"));
    const AFX_MAINTAIN_STATE2 hostIsCurrent(&hostState);
    EXPECT_TRUE(show({click(IDOK)}));
    EXPECT_EQ(AfxGetModuleState(), &hostState);
    EXPECT_FALSE(show({click(IDCANCEL)}));
    EXPECT_EQ(AfxGetModuleState(), &hostState);
}

TEST_F(ZipShowDialogTest, NothingOfItIsRememberedInTheRegistry) {
    const test::TestHost host;
    const std::wstring key = L"SOFTWARE\\" + host.getBaseRegistryPath();
    addPages(1);
    EXPECT_TRUE(show({enterText(IDC_EXPORT_PATH, target / L"scans.zip"),
                      enterText(IDC_EXPORT_PREFIX, L"Scan"), click(IDOK)}));
    EXPECT_EQ(run(), 0);
    EXPECT_FALSE(test::keyExists(key));
}

TEST_F(ZipShowDialogTest, ExportFollowsTheConfirmedEntries) {
    addPages(2);
    EXPECT_TRUE(show(
        {enterText(IDC_EXPORT_PATH, target / L"účty"), enterText(IDC_EXPORT_PREFIX, L"Účet "), click(IDOK)}));
    EXPECT_EQ(run(), 0);
    EXPECT_THAT(test::zipEntries(test::readFile(target / L"účty")),
                ElementsAre(testing::Pair("Účet 1.tif", "1"), testing::Pair("Účet 2.tif", "2")));
}

} // namespace
