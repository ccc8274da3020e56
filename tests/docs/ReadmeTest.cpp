// The README's example of a host: it works, and the README shows it as it is.
#include "docs/ReadmeHost.h"

#include "docs/Documents.h"
#include "host/DialogPilot.h"
#include "host/DirectoryDialogControls.h"
#include "host/Options.h"
#include "host/ProgramFolder.h"
#include "support/ScopedRegistryKey.h"
#include "support/ScopedVariable.h"
#include "support/TempFolder.h"

#include "afxwin.h"

#include <gmock/gmock.h>

#include <windows.h>

using testing::ElementsAre;
using testing::HasSubstr;

TEST(ReadmeTest, ShowsTheExampleAsItIsCompiled) {
    const auto blocks = test::codeBlocks(test::projectFile(L"README.md"), "cpp");

    ASSERT_EQ(blocks.size(), 1u);
    EXPECT_THAT(blocks[0], HasSubstr("exportScans"));
    EXPECT_PRED2(test::standsIn, test::projectFile(L"tests/docs/ReadmeHost.cpp"), blocks[0]);
}

TEST(ReadmeTest, ShowsTheHelpAsItIsPrinted) {
    EXPECT_THAT(test::codeBlocks(test::projectFile(L"README.md"), "text"), ElementsAre(host::helpText));
}

TEST(ReadmeTest, ItsExampleExportsTheScansOfAFolder) {
    using namespace host::directoryDialog;
    const test::TempFolder temporaryFiles;
    // What GetTempPath looks at first.
    const test::ScopedVariable temporaryPath(L"TMP", temporaryFiles.path());
    const test::ScopedRegistryKey rememberedSettings(L"SOFTWARE\\Example");
    const test::TempFolder scans;
    scans.write(L"Page 2.tif", "second");
    scans.write(L"Page 10.tif", "tenth");
    const test::TempFolder target;
    host::DialogPilot pilot(std::chrono::seconds(20));
    pilot.then("the settings dialog", host::dialogWith(pathEdit),
               host::inOrder({host::enterText(pathEdit, target.path()), host::enterText(prefixEdit, L"Scan"),
                              host::enterText(firstNumberEdit, L"1"), host::enterText(digitsEdit, L"3"),
                              host::click(IDOK)}));
    const HWND owner = CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr);

    EXPECT_EQ(exportScans(host::programFolder(), scans.path(), CWnd::FromHandle(owner)), 0);

    EXPECT_EQ(pilot.failure(), "");
    EXPECT_THAT(target.list(), ElementsAre(L"Scan001.tif", L"Scan002.tif"));
    EXPECT_EQ(test::readFile(target / L"Scan002.tif"), "tenth");
    EXPECT_TRUE(RemoveDirectoryW((temporaryFiles / L"Sorvane\\ScanHost").c_str())) << "not made or not empty";
    DestroyWindow(owner);
}
