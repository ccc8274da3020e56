// Operations on directories and files.
#include "SorvaneBase/bxdisk/Disk.h"

#include "SorvaneBase/bxdisk/File.h"
#include "host/Text.h"
#include "support/TempFolder.h"
#include "support/TempPathHook.h"

#include <gmock/gmock.h>

#include <windows.h>

#include <mutex>
#include <random>
#include <set>
#include <thread>
#include <vector>

namespace {

using bxdisk::createDirectories;
using bxdisk::createTempDir;
using bxdisk::normalizeFileName;
using host::utf8;
using host::wide;

bool isFolder(const std::wstring& path) {
    return bxdisk::File(path).isDirectory();
}

class DiskTest : public testing::Test {
protected:
    test::TempFolder folder;
};

TEST_F(DiskTest, CreatesADirectoryWithAllItsParents) {
    EXPECT_TRUE(createDirectories(folder / L"a\\b\\c"));
    EXPECT_TRUE(isFolder(folder / L"a\\b\\c"));
    EXPECT_TRUE(createDirectories(utf8(folder / L"Účty\\漢字\\\xD83D\xDE00")));
    EXPECT_TRUE(isFolder(folder / L"Účty\\漢字\\\xD83D\xDE00"));
}

TEST_F(DiskTest, IsContentWithADirectoryThatExists) {
    EXPECT_TRUE(createDirectories(folder.path()));
    EXPECT_TRUE(createDirectories(folder.path() + L"\\"));
    EXPECT_TRUE(createDirectories(std::wstring(L"C:\\")));
    EXPECT_TRUE(createDirectories(std::wstring(L"C:\\.")));
}

TEST_F(DiskTest, TakesEveryFormOfPath) {
    const std::pair<std::wstring, const wchar_t*> cases[] = {
        {folder / L"trailing\\one\\", L"trailing\\one"},
        {folder / L"several\\\\one\\\\\\", L"several\\one"},
        {folder / L"slashes/one/two/", L"slashes\\one\\two"},
        {folder / L"dots\\.\\x\\..\\one", L"dots\\one"},
        {L"\\\\?\\" + (folder / L"verbatim\\one\\two"), L"verbatim\\one\\two"},
        {L"\\\\?\\" + (folder / L"closed\\one\\"), L"closed\\one"},
    };
    for (const auto& [path, made] : cases) {
        EXPECT_TRUE(createDirectories(path)) << path;
        EXPECT_TRUE(isFolder(folder / made)) << path;
    }
    EXPECT_FALSE(isFolder(folder / L"dots\\x"));
}

TEST_F(DiskTest, CreatesRelativeToTheCurrentDirectory) {
    wchar_t before[MAX_PATH] = {};
    ASSERT_NE(GetCurrentDirectoryW(MAX_PATH, before), 0u);
    ASSERT_TRUE(SetCurrentDirectoryW(folder.path().c_str()));
    EXPECT_TRUE(createDirectories(std::wstring(L"one\\two")));
    EXPECT_TRUE(createDirectories(std::wstring(L"..")));
    ASSERT_TRUE(SetCurrentDirectoryW(before));
    EXPECT_TRUE(isFolder(folder / L"one\\two"));
}

TEST_F(DiskTest, CreatesDirectoriesThatNeedTheLongForm) {
    std::wstring deep = folder / L"start";
    for (int level = 0; level < 30; ++level)
        deep += L"\\" + std::wstring(50, L'd');
    EXPECT_TRUE(createDirectories(deep));
    EXPECT_TRUE(isFolder(deep));
    EXPECT_TRUE(createDirectories(deep));
    EXPECT_TRUE(createDirectories(utf8(deep) + "/more/"));
    EXPECT_TRUE(bxdisk::isDirectory(utf8(deep + L"\\more")));
}

TEST_F(DiskTest, CreatesDirectoriesOfEveryLengthAroundTheLimits) {
    for (std::size_t length = 240; length <= 265; ++length) {
        const std::wstring path = folder / std::wstring(length - folder.path().size() - 1, L'd');
        EXPECT_TRUE(createDirectories(path + L"\\x")) << length;
        EXPECT_TRUE(isFolder(path + L"\\x")) << length;
    }
}

TEST_F(DiskTest, CannotCreateADirectoryInOrInPlaceOfAFile) {
    const std::wstring file = folder.write(L"file", "x");
    for (const wchar_t* path : {L"file", L"file\\", L"file\\sub", L"file\\sub\\sub"})
        EXPECT_FALSE(createDirectories(folder / path)) << path;
    EXPECT_EQ(test::readFile(file), "x");
    EXPECT_THAT(folder.list(), testing::ElementsAre(L"file"));
}

TEST_F(DiskTest, CannotCreateWhatNoFileSystemTakes) {
    for (const wchar_t* path : {L"", L"Q:\\a\\b", L"Q:\\", L"\\\\no-such-server.invalid\\share\\a\\b",
                                L"\\\\?\\Q:\\a", L"C:\\a<b\\c", L"C:\\a|b"})
        EXPECT_FALSE(createDirectories(std::wstring(path))) << path;
    EXPECT_FALSE(createDirectories(folder / std::wstring(40000, L'x')));
}

TEST_F(DiskTest, TellsWhyADirectoryCannotBeCreated) {
    EXPECT_FALSE(createDirectories(folder.write(L"file", "x")));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_ALREADY_EXISTS));
}

TEST_F(DiskTest, CreatesOneDirectoryFromSeveralThreads) {
    std::vector<char> results(8);
    {
        std::vector<std::jthread> threads;
        for (char& result : results)
            threads.emplace_back(
                [this, &result] { result = createDirectories(folder / L"a\\b\\c\\d\\e\\f\\g\\h"); });
    }
    EXPECT_THAT(results, testing::Each(1));
}

TEST_F(DiskTest, KnowsDirectories) {
    folder.write(L"file", "x");
    EXPECT_TRUE(bxdisk::isDirectory(folder.utf8()));
    EXPECT_TRUE(bxdisk::isDirectory(folder.utf8() + "\\"));
    EXPECT_FALSE(bxdisk::isDirectory(utf8(folder / L"file")));
    EXPECT_FALSE(bxdisk::isDirectory(utf8(folder / L"missing")));
    EXPECT_FALSE(bxdisk::isDirectory(""));
}

TEST_F(DiskTest, DeletesFilesOnly) {
    folder.write(L"ž漢.tif", "x");
    EXPECT_TRUE(bxdisk::deleteFile(utf8(folder / L"ž漢.tif")));
    EXPECT_THAT(folder.list(), testing::IsEmpty());
    EXPECT_FALSE(bxdisk::deleteFile(utf8(folder / L"ž漢.tif")));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
    EXPECT_FALSE(bxdisk::deleteFile(folder.utf8()));
    EXPECT_FALSE(bxdisk::deleteFile(""));
    EXPECT_TRUE(isFolder(folder.path()));
}

TEST_F(DiskTest, DeletesAFileUnderALongPath) {
    const std::wstring deep = folder / (std::wstring(200, L'a') + L"\\" + std::wstring(200, L'b'));
    ASSERT_TRUE(createDirectories(deep));
    const std::wstring file = folder.write(deep.substr(folder.path().size() + 1) + L"\\f", "x");
    EXPECT_TRUE(bxdisk::deleteFile(utf8(file)));
    EXPECT_FALSE(bxdisk::File(file).exists());
}

TEST_F(DiskTest, CannotDeleteAFileThatIsInUse) {
    const std::wstring path = folder.write(L"used", "x");
    HANDLE user = CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    EXPECT_FALSE(bxdisk::deleteFile(utf8(path)));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_SHARING_VIOLATION));
    CloseHandle(user);
    EXPECT_TRUE(bxdisk::File(path).exists());
}

struct NameCase {
    std::wstring name;
    std::wstring expected;
};

TEST(NormalizeFileNameTest, MakesNamesThatWindowsTakes) {
    const std::vector<NameCase> cases = {
        {L"Invoices", L"Invoices"},
        {L"", L""},
        {L"Účty 漢字 \xD83D\xDE00", L"Účty 漢字 \xD83D\xDE00"},
        {L"a<b>c:d\"e/f\\g|h?i*j", L"a_b_c_d_e_f_g_h_i_j"},
        {std::wstring(L"a\0b\t\n\x1F\x7F\x80\x9F\xA0", 10), L"a_b______\xA0"},
        {L"trailing. . ", L"trailing"},
        {L"...", L""},
        {L" . ", L""},
        {L" leading", L" leading"},
        {L".hidden", L".hidden"},
        {L"a.b.c", L"a.b.c"},
        {L"x\xD800y", L"x\xD800y"},
        {L"CON", L"CON_"},
        {L"con", L"con_"},
        {L"PRN", L"PRN_"},
        {L"Aux", L"Aux_"},
        {L"NUL.txt", L"NUL_.txt"},
        {L"nul.tar.gz", L"nul_.tar.gz"},
        {L"NUL .txt", L"NUL_ .txt"},
        {L"NUL. ", L"NUL_"},
        {L"NUL:", L"NUL_"},
        {L"COM1", L"COM1_"},
        {L"com0", L"com0_"},
        {L"LPT9.jpg", L"LPT9_.jpg"},
        {L"COM\u00B9", L"COM\u00B9_"},
        {L"lpt\u00B2", L"lpt\u00B2_"},
        {L"LPT\u00B3.x", L"LPT\u00B3_.x"},
        {L"CONIN$", L"CONIN$_"},
        {L"conout$.txt", L"conout$_.txt"},
        {L"COM", L"COM"},
        {L"COM10", L"COM10"},
        {L"COMx", L"COMx"},
        {L"CONSOLE", L"CONSOLE"},
        {L" CON", L" CON"},
        {L"a.CON", L"a.CON"},
        {L".NUL", L".NUL"},
    };
    for (const NameCase& c : cases)
        EXPECT_EQ(normalizeFileName(utf8(c.name)), utf8(c.expected)) << utf8(c.name);
}

TEST(NormalizeFileNameTest, GivesReadableTextForMalformedUtf8) {
    EXPECT_EQ(normalizeFileName("a\xFF"), "a\xEF\xBF\xBD");
}

TEST(NormalizeFileNameTest, LeavesItsOwnResultsAlone) {
    std::mt19937 random(3);
    constexpr std::wstring_view PARTS[] = {L"CON", L"nul", L"COM", L"1", L"\u00B2", L".",
                                           L" ",   L":",   L"_",   L"$", L"CONIN",  L"x"};
    for (int round = 0; round < 20000; ++round) {
        std::wstring name;
        for (unsigned parts = random() % 6; parts > 0; --parts)
            name += PARTS[random() % std::size(PARTS)];
        const std::string once = normalizeFileName(utf8(name));
        ASSERT_EQ(normalizeFileName(once), once) << utf8(name);
    }
}

TEST(NormalizeFileNameTest, ResultsNameRealFiles) {
    const test::TempFolder folder;
    std::vector<std::wstring> expected;
    for (const wchar_t* name : {L"NUL", L"aux.tif", L"a:b", L"tail. ", L"COM\u00B9", L"q?"}) {
        expected.push_back(wide(normalizeFileName(utf8(name))));
        folder.write(expected.back(), "x");
    }
    EXPECT_THAT(folder.list(), testing::UnorderedElementsAreArray(expected));
}

class TempDirTest : public DiskTest {
protected:
    TempDirTest() { bxdisk::setTempRoot(folder.path()); }
    ~TempDirTest() override { bxdisk::setTempRoot(L""); }
};

TEST_F(TempDirTest, MakesAnEmptyDirectoryUnderTheRoot) {
    std::string path;
    ASSERT_TRUE(createTempDir("export-mail", path));
    EXPECT_TRUE(bxdisk::isDirectory(path));
    ASSERT_EQ(folder.list().size(), 1u);
    EXPECT_THAT(utf8(folder.list()[0]), testing::StartsWith("export-mail"));
    EXPECT_EQ(path, utf8(folder / folder.list()[0]));
    EXPECT_TRUE(RemoveDirectoryW(wide(path).c_str())) << "not empty";
}

TEST_F(TempDirTest, MakesADifferentDirectoryEachTimeAndFromEveryThread) {
    std::mutex mutex;
    std::multiset<std::string> paths;
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < 6; ++i)
            threads.emplace_back([&] {
                for (int j = 0; j < 20; ++j) {
                    std::string path;
                    EXPECT_TRUE(createTempDir("t", path));
                    const std::lock_guard lock(mutex);
                    paths.insert(path);
                }
            });
    }
    EXPECT_EQ(paths.size(), 120u);
    EXPECT_EQ(std::set<std::string>(paths.begin(), paths.end()).size(), 120u);
    EXPECT_EQ(folder.list().size(), 120u);
}

TEST_F(TempDirTest, PassesOverWhatAnEarlierProcessLeftBehind) {
    std::string path;
    ASSERT_TRUE(createTempDir("t", path));
    const std::size_t digits = path.rfind('-') + 1;
    const std::string next = path.substr(0, digits) + std::to_string(std::stoul(path.substr(digits)) + 1);
    ASSERT_TRUE(createDirectories(next));
    ASSERT_TRUE(createTempDir("t", path));
    EXPECT_NE(path, next);
    EXPECT_EQ(folder.list().size(), 3u);
}

TEST_F(TempDirTest, StaysUnderTheRootWhateverThePrefix) {
    std::string path;
    for (const char* prefix : {"..\\x", "a/b", "C:\\y", "", "\xC5\xBE", "NUL", ". "})
        EXPECT_TRUE(createTempDir(prefix, path)) << prefix;
    EXPECT_EQ(folder.list().size(), 7u);
}

TEST_F(TempDirTest, WorksUnderALongRoot) {
    const std::wstring root = folder / (std::wstring(120, L'ž') + L"\\" + std::wstring(120, L'r'));
    ASSERT_TRUE(createDirectories(root));
    bxdisk::setTempRoot(root);
    std::string path;
    ASSERT_TRUE(createTempDir("t", path));
    EXPECT_TRUE(bxdisk::isDirectory(path));
    EXPECT_THAT(path, testing::StartsWith(utf8(root)));
}

TEST_F(TempDirTest, GivesAFullPathUnderARelativeRoot) {
    wchar_t before[MAX_PATH] = {};
    ASSERT_NE(GetCurrentDirectoryW(MAX_PATH, before), 0u);
    ASSERT_TRUE(SetCurrentDirectoryW(folder.path().c_str()));
    ASSERT_TRUE(createDirectories(std::wstring(L"root")));
    bxdisk::setTempRoot(L"root");
    ASSERT_TRUE(SetCurrentDirectoryW(before));
    std::string path;
    ASSERT_TRUE(createTempDir("t", path));
    EXPECT_THAT(path, testing::StartsWith(utf8(folder / L"root\\t")));
}

TEST_F(TempDirTest, FailsUnderAMissingRootAndLeavesThePath) {
    bxdisk::setTempRoot(folder / L"missing");
    std::string path = "old";
    EXPECT_FALSE(createTempDir("t", path));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_PATH_NOT_FOUND));
    EXPECT_EQ(path, "old");
}

TEST_F(TempDirTest, ReturnsToTheUsersDirectoryWithAnEmptyRoot) {
    bxdisk::setTempRoot(L"");
    wchar_t root[MAX_PATH + 1] = {};
    ASSERT_NE(GetTempPathW(MAX_PATH + 1, root), 0u);
    std::string path;
    ASSERT_TRUE(createTempDir("bxtest", path));
    EXPECT_THAT(path, testing::StartsWith(utf8(root)));
    EXPECT_TRUE(RemoveDirectoryW(wide(path).c_str()));
}

TEST_F(TempDirTest, TakesAUsersDirectoryWithALongPath) {
    bxdisk::setTempRoot(L"");
    const std::wstring users = folder / std::wstring(150, L'a') + L"\\" + std::wstring(150, L'b');
    ASSERT_TRUE(createDirectories(users));
    const test::TempPathHook hook(users, L"SorvaneBase.dll");
    std::string path;
    ASSERT_TRUE(createTempDir("t", path));
    EXPECT_THAT(path, testing::StartsWith(utf8(users + L"\\t")));
    EXPECT_TRUE(isFolder(wide(path)));
}

TEST_F(TempDirTest, FailsWithoutAUsersDirectoryAndLeavesThePath) {
    bxdisk::setTempRoot(L"");
    const test::TempPathHook hook(L"", L"SorvaneBase.dll");
    std::string path = "old";
    EXPECT_FALSE(createTempDir("t", path));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILENAME_EXCED_RANGE));
    EXPECT_EQ(path, "old");
}

} // namespace
