// Whose MAPI32.DLL runs when somebody has put one where Windows may look for it.
#include "host/CurrentDirectory.h"
#include "host/ProgramCopy.h"
#include "support/ChildProcess.h"
#include "support/ScopedVariable.h"
#include "support/TempFolder.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <string>

namespace {

constexpr char planted[] = "the planted library";
constexpr char systems[] = "the mail client";

class PlantedMailLibraryTest : public testing::Test {
protected:
    PlantedMailLibraryTest() {
        for (const wchar_t* name : {L"bin", L"current", L"path", L"temp"})
            CreateDirectoryW((folder / name).c_str(), nullptr);
        test::copyPrograms(folder / L"bin", {L"MailingHost.exe"});
    }

    void plant(const std::wstring& name) const {
        ASSERT_TRUE(CopyFileW((host::programFolder() + L"\\planted_mail_library.dll").c_str(),
                              (folder / name + L"\\MAPI32.DLL").c_str(), TRUE));
    }

    /// Exports with the current folder and PATH changed, and says whose code has run.
    std::string run(const std::wstring& mode) const {
        const test::CurrentDirectory current(folder / L"current");
        const test::ScopedVariable path(L"PATH", folder / L"path");
        const ChildResult result = runProgram(folder / L"bin\\MailingHost.exe", {mode, folder / L"temp"});
        EXPECT_EQ(result.exitCode, 0u) << result.errors;
        return result.output;
    }

    const test::TempFolder folder;
};

/// Lets Windows look into the current folder before its own, as it did by default until Windows XP.
class UnsafeSearch {
public:
    UnsafeSearch() {
        const DWORD off = 0;
        isSet = RegSetKeyValueW(HKEY_LOCAL_MACHINE, key, value, REG_DWORD, &off, sizeof off) == ERROR_SUCCESS;
    }
    ~UnsafeSearch() {
        if (isSet)
            RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, key, value);
    }
    UnsafeSearch(const UnsafeSearch&) = delete;
    UnsafeSearch& operator=(const UnsafeSearch&) = delete;

    bool isSet = false;

private:
    static constexpr wchar_t key[] = L"System\\CurrentControlSet\\Control\\Session Manager";
    static constexpr wchar_t value[] = L"SafeDllSearchMode";
};

TEST_F(PlantedMailLibraryTest, InTheProgramsFolderRunsOnlyWithoutTheProtection) {
    plant(L"bin");
    EXPECT_EQ(run(L"bare"), planted) << "these tests need Wine's override mapi32=n,b, which ctest sets";
    EXPECT_EQ(run(L"guarded"), systems);
}

TEST_F(PlantedMailLibraryTest, InTheCurrentFolderRunsOnlyWithoutTheProtection) {
    const UnsafeSearch unsafe;
    // Otherwise the current folder comes after the system's, and the planted file runs neither way.
    if (!unsafe.isSet)
        GTEST_SKIP() << "it takes an administrator to make Windows look there first";
    plant(L"current");
    EXPECT_EQ(run(L"bare"), planted);
    EXPECT_EQ(run(L"guarded"), systems);
}

// Windows looks there after its own folder, so that this one cannot run as long as the system has a library.
TEST_F(PlantedMailLibraryTest, InAFolderOfPathDoesNotRun) {
    plant(L"path");
    EXPECT_EQ(run(L"guarded"), systems);
}

} // namespace
