// Folders that keep other users out.
#include "host/PrivateFolder.h"

#include "host/Text.h"
#include "host/UniqueHandle.h"
#include "support/TempFolder.h"
#include "support/UnixName.h"

#include <gmock/gmock.h>

#include <windows.h>

#include <aclapi.h>
#include <sddl.h>

#include <algorithm>
#include <chrono>
#include <string>

namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

/// A part of the folder's security descriptor in words.
std::string described(const std::wstring& folder, SECURITY_INFORMATION part) {
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (GetNamedSecurityInfoW(folder.c_str(), SE_FILE_OBJECT, part, nullptr, nullptr, nullptr, nullptr,
                              &descriptor) != ERROR_SUCCESS)
        return "cannot be read";
    char* text = nullptr;
    ConvertSecurityDescriptorToStringSecurityDescriptorA(descriptor, SDDL_REVISION_1, part, &text, nullptr);
    std::string result = text;
    LocalFree(text);
    LocalFree(descriptor);
    return result;
}

/// The folder's access list; "WD" is everyone.
std::string accessTo(const std::wstring& folder) {
    return described(folder, DACL_SECURITY_INFORMATION);
}

std::string ownerOf(const std::wstring& folder) {
    return described(folder, OWNER_SECURITY_INFORMATION);
}

void openToEveryone(const std::wstring& folder) {
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    ASSERT_TRUE(ConvertStringSecurityDescriptorToSecurityDescriptorW(L"D:(A;OICI;FA;;;WD)", SDDL_REVISION_1,
                                                                     &descriptor, nullptr));
    EXPECT_TRUE(SetFileSecurityW(folder.c_str(), DACL_SECURITY_INFORMATION, descriptor));
    LocalFree(descriptor);
    ASSERT_THAT(accessTo(folder), HasSubstr(";WD)"));
}

class PrivateFolderTest : public testing::Test {
protected:
    const test::TempFolder common;
    const std::wstring own = host::privateFolderBelow(common.path());
};

TEST_F(PrivateFolderTest, IsNamedAfterTheUserInAscii) {
    ASSERT_THAT(own, StartsWith(common.path() + L"\\Sorvane-ScanHost-S-1-"));
    EXPECT_TRUE(std::ranges::all_of(own.substr(common.path().size()), [](wchar_t c) { return c < 0x80; }));
    EXPECT_EQ(host::privateFolderBelow(L""), L"");
}

TEST_F(PrivateFolderTest, AdmitsNobodyElse) {
    EXPECT_FALSE(host::isUsersOwn(own));
    ASSERT_TRUE(host::makePrivateFolder(own));
    EXPECT_TRUE(host::isUsersOwn(own));
    EXPECT_THAT(accessTo(own), Not(HasSubstr(";WD)")));
    EXPECT_THAT(accessTo(own), HasSubstr(";FA;;;S-1-")) << "the user";
    EXPECT_THAT(accessTo(own), HasSubstr(";FA;;;SY)"));
}

TEST_F(PrivateFolderTest, IsClosedAgainWhenItWasOpened) {
    ASSERT_TRUE(host::makePrivateFolder(own));
    openToEveryone(own);
    EXPECT_TRUE(host::makePrivateFolder(own));
    EXPECT_THAT(accessTo(own), Not(HasSubstr(";WD)")));
}

TEST_F(PrivateFolderTest, IsRefusedWhenItIsAFile) {
    common.write(own.substr(common.path().size() + 1), "");
    EXPECT_FALSE(host::isUsersOwn(own));
    EXPECT_FALSE(host::makePrivateFolder(own));
}

TEST_F(PrivateFolderTest, IsRefusedWhenItBelongsToSomebodyElse) {
    ASSERT_TRUE(CreateDirectoryW(own.c_str(), nullptr));
    ASSERT_TRUE(host::isUsersOwn(own));
    const std::string before = ownerOf(own);
    // A folder of somebody else takes a second user. Windows has none for tests; under Wine the program of the system
    // below makes one the owner, for an administrator only and where there is such a program.
    const auto unixName = test::unixName(own);
    if (!unixName)
        GTEST_SKIP() << "it takes two users";
    std::wstring command = L"Z:\\bin\\chown nobody \"" + host::wide(*unixName) + L"\"";
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                        &process))
        GTEST_SKIP() << "there is no chown";
    const host::UniqueHandle thread(process.hThread);
    const host::UniqueHandle running(process.hProcess);
    WaitForSingleObject(running.get(), 10000);
    // The program below may still run when what started it has ended.
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(2);
    while (ownerOf(own) == before && std::chrono::steady_clock::now() < deadline)
        SwitchToThread();
    if (ownerOf(own) == before)
        GTEST_SKIP() << "only an administrator can give files away";

    EXPECT_FALSE(host::isUsersOwn(own));
    EXPECT_FALSE(host::makePrivateFolder(own));
}

} // namespace
