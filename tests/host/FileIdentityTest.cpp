// Whether two paths lead to one file.
#include "host/FileIdentity.h"

#include "support/TempFolder.h"

#include <gmock/gmock.h>

#include <windows.h>

namespace {

class FileIdentityTest : public testing::Test {
protected:
    test::TempFolder folder;
};

TEST_F(FileIdentityTest, SpellingDoesNotMatter) {
    const std::wstring file = folder.write(L"Page.tif", "x");

    EXPECT_TRUE(host::isSameFile(file, folder / L".\\PAGE.TIF"));
    EXPECT_TRUE(host::isSameFile(folder.path(), folder.path() + L"\\"));
}

TEST_F(FileIdentityTest, ASecondNameOfOneFileIsTheSameFile) {
    const std::wstring file = folder.write(L"Page.tif", "x");
    ASSERT_TRUE(CreateHardLinkW((folder / L"Link.tif").c_str(), file.c_str(), nullptr));

    EXPECT_TRUE(host::isSameFile(file, folder / L"Link.tif"));
    EXPECT_EQ(host::identityOf(file), host::identityOf(folder / L"Link.tif"));
}

TEST_F(FileIdentityTest, FilesOfEqualContentAreDifferent) {
    EXPECT_FALSE(host::isSameFile(folder.write(L"a.tif", "x"), folder.write(L"b.tif", "x")));
}

TEST_F(FileIdentityTest, FoldersHaveIdentitiesToo) {
    ASSERT_TRUE(CreateDirectoryW((folder / L"a").c_str(), nullptr));
    ASSERT_TRUE(CreateDirectoryW((folder / L"b").c_str(), nullptr));

    EXPECT_TRUE(host::isSameFile(folder / L"a", folder / L"b\\..\\A"));
    EXPECT_FALSE(host::isSameFile(folder / L"a", folder / L"b"));
}

TEST_F(FileIdentityTest, WhatDoesNotExistIsNoFile) {
    EXPECT_EQ(host::identityOf(folder / L"a.tif"), std::nullopt);
    EXPECT_FALSE(host::isSameFile(folder / L"a.tif", folder / L"a.tif"));
}

TEST_F(FileIdentityTest, AFileThatSomebodyHasLockedCanBeLookedAt) {
    const std::wstring file = folder.write(L"Page.tif", "x");
    HANDLE lock = CreateFileW(file.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(lock, INVALID_HANDLE_VALUE);

    EXPECT_TRUE(host::isSameFile(file, file));

    CloseHandle(lock);
}

} // namespace
