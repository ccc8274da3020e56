// The example of a host as a program, used from outside as a person would.
#include "host/DialogPilot.h"
#include "host/DirectoryDialogControls.h"
#include "host/Text.h"
#include "host/ZipDialogControls.h"
#include "support/ChildProcess.h"
#include "support/MessageLoop.h"
#include "support/ScopedRegistryKey.h"
#include "support/ScopedVariable.h"
#include "support/TempFolder.h"
#include "support/ZipParser.h"

#include <gmock/gmock.h>

#include <windows.h>

#include <algorithm>
#include <functional>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Pair;

namespace {

constexpr wchar_t program[] = L"minimal-host.exe";
constexpr wchar_t toFolder[] = L"com.brellix.sorvane.exportdata-factory.dir.file";
constexpr wchar_t toZip[] = L"com.brellix.sorvane.exportdata-factory.zip.file";

/// Waits for the dialog that has the control, and uses it.
std::function<void(DWORD)> inDialogWith(int control, std::function<void(HWND dialog)> use) {
    return [match = host::dialogWith(control), use = std::move(use)](DWORD processId) {
        HWND dialog = nullptr;
        if (test::handleMessagesUntil([&] { return (dialog = host::windowOf(processId, match)) != nullptr; }))
            use(dialog);
        else
            ADD_FAILURE() << "the settings dialog did not come";
    };
}

/// SetWindowText() does not reach the controls of another process.
void enter(HWND dialog, int control, const std::wstring& text) {
    SendMessageW(GetDlgItem(dialog, control), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
}

class MinimalHostTest : public testing::Test {
protected:
    ChildResult exportTo(const wchar_t* kind, const std::function<void(DWORD)>& meanwhile) {
        return runProgram(program,
                          {kind, images.write(L"front.tif", "first"), images.write(L"back.jpg", "second")},
                          meanwhile);
    }

    ChildResult exportToZip(const std::wstring& path) {
        return exportTo(toZip, inDialogWith(host::zipDialog::pathEdit, [&path](HWND dialog) {
                            enter(dialog, host::zipDialog::pathEdit, path);
                            enter(dialog, host::zipDialog::prefixEdit, L"Scan");
                            host::click(IDOK)(dialog);
                        }));
    }

    /// What a program writes is kept in temporary files, which go with the last process that has got them.
    void waitForOutputFiles() const {
        const auto isOutput = [](const std::wstring& name) { return name.ends_with(L".tmp"); };
        test::handleMessagesUntil([&] { return std::ranges::none_of(temporaryFiles.list(), isOutput); });
    }

    const test::TempFolder images;
    const test::TempFolder target;
    const test::TempFolder temporaryFiles;
    const test::ScopedVariable temp{L"TEMP", temporaryFiles.path()};
    const test::ScopedVariable tmp{L"TMP", temporaryFiles.path()};
    const test::ScopedRegistryKey settings{L"SOFTWARE\\Sorvane\\MinimalHost"};
};

} // namespace

TEST_F(MinimalHostTest, ListsTheKindsOfExport) {
    const ChildResult result = runProgram(program, {});

    EXPECT_EQ(result.exitCode, 0u) << result.errors;
    EXPECT_THAT(result.output, MatchesRegex("com.+dir\\.file\t.+\t\\d+x\\d+\r\n"
                                            "com.+mail\\.file\t.+\t\\d+x\\d+\r\n"
                                            "com.+zip\\.file\t.+\t\\d+x\\d+\r\n"));
}

TEST_F(MinimalHostTest, ExportsItsPagesToAFolderUnderTheNameOfTheBatch) {
    using namespace host::directoryDialog;

    const ChildResult result = exportTo(toFolder, inDialogWith(pathEdit, [this](HWND dialog) {
                                            enter(dialog, pathEdit, target.path());
                                            enter(dialog, firstNumberEdit, L"1");
                                            enter(dialog, digitsEdit, L"3");
                                            host::click(IDOK)(dialog);
                                        }));

    EXPECT_EQ(result.exitCode, 0u) << result.errors;
    EXPECT_THAT(target.list(), ElementsAre(L"Scanned001.tif", L"Scanned002.jpg"));
    EXPECT_EQ(test::readFile(target / L"Scanned001.tif"), "first");
    EXPECT_EQ(test::readFile(target / L"Scanned002.jpg"), "second");
}

TEST_F(MinimalHostTest, ExportsItsPagesToAnArchiveAndLeavesNoCopies) {
    const ChildResult result = exportToZip(target / L"pages.zip");

    EXPECT_EQ(result.exitCode, 0u) << result.errors;
    EXPECT_THAT(test::zipEntries(test::readFile(target / L"pages.zip")),
                ElementsAre(Pair("Scan1.tif", "first"), Pair("Scan2.jpg", "second")));
    waitForOutputFiles();
    EXPECT_THAT(temporaryFiles.filesOfOthers(), ElementsAre());
}

TEST_F(MinimalHostTest, PrintsTheReportsOfAFailedExport) {
    const ChildResult result = exportToZip(target / L"missing\\pages.zip");

    EXPECT_EQ(result.exitCode, 1u);
    EXPECT_EQ(result.errors, "Components/BasicExport/ExportToZip:56: Failed to create zip file\r\n");
    EXPECT_EQ(result.output, "");
}

TEST_F(MinimalHostTest, EndsWith2WhenTheDialogIsCancelled) {
    const ChildResult result =
        exportTo(toFolder, inDialogWith(host::directoryDialog::pathEdit, host::click(IDCANCEL)));

    EXPECT_EQ(result.exitCode, 2u) << result.errors;
    EXPECT_EQ(result.errors, "");
}

TEST_F(MinimalHostTest, TellsOfAnImageThatIsMissing) {
    const ChildResult result = runProgram(program, {toFolder, target / L"missing.tif"});

    EXPECT_EQ(result.exitCode, 1u);
    EXPECT_THAT(result.errors, HasSubstr("missing.tif cannot be read"));
}

TEST_F(MinimalHostTest, TellsOfAKindOfExportThatThereIsNot) {
    const ChildResult result = runProgram(program, {L"com.example.none", target / L"missing.tif"});

    EXPECT_EQ(result.exitCode, 1u);
    EXPECT_THAT(result.errors, HasSubstr("There is no export \"com.example.none\"."));
}
