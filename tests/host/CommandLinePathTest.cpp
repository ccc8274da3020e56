// Paths as a person types them.
#include "host/CommandLinePath.h"

#include "host/CurrentDirectory.h"
#include "support/TempFolder.h"
#include "support/UnixName.h"

#include <gmock/gmock.h>

#include <windows.h>

namespace {

TEST(CommandLinePathTest, RelativePathsStartAtTheCurrentDirectory) {
    const test::TempFolder folder;
    const test::CurrentDirectory here(folder.path());

    EXPECT_EQ(host::fullPathOf(L"a\\..\\b/č.tif"), folder / L"b\\č.tif");
}

TEST(CommandLinePathTest, LongPathsAreComplete) {
    const std::wstring path = L"C:\\" + std::wstring(200, L'a') + L"\\" + std::wstring(200, L'b');

    EXPECT_EQ(host::fullPathOf(path), path);
}

TEST(CommandLinePathTest, UnixPathsMeanTheUnixFileWhateverTheCurrentDrive) {
    // Windows takes such a path for one on the current drive, and no person there would write it.
    if (!test::unixName(L"C:\\windows"))
        GTEST_SKIP() << "there are no Unix paths on Windows";
    const test::CurrentDirectory here(L"C:\\windows");

    EXPECT_EQ(host::fullPathOf(L"/proc/self"), L"Z:\\proc\\self");
    EXPECT_EQ(host::fullPathOf(L"/not there/č/x.tif"), L"Z:\\not there\\č\\x.tif");
}

} // namespace
