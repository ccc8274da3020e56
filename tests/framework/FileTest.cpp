// A path to a file or directory and what can be asked about it.
#include "SorvaneBase/bxdisk/File.h"

#include "host/Text.h"
#include "support/TempFolder.h"

#include <gmock/gmock.h>

#include <windows.h>

namespace {

using bxdisk::File;
using host::utf8;

class FileTest : public testing::Test {
protected:
    /// Makes nested folders until the path is longer than Windows takes it without the long form.
    std::wstring makeDeepFolder() {
        std::wstring deep = folder.path();
        while (deep.size() < 700) {
            deep += L"\\" + std::wstring(60, L'ž');
            EXPECT_TRUE(CreateDirectoryW((L"\\\\?\\" + deep).c_str(), nullptr));
        }
        return deep;
    }

    test::TempFolder folder;
};

TEST_F(FileTest, KnowsFilesFromDirectories) {
    const File file(folder.write(L"page.tif", "12345"));
    EXPECT_TRUE(file.exists());
    EXPECT_FALSE(file.isDirectory());
    EXPECT_EQ(file.getFileSize(), 5);

    const File directory(folder.path());
    EXPECT_TRUE(directory.exists());
    EXPECT_TRUE(directory.isDirectory());
    EXPECT_EQ(directory.getFileSize(), 0);
}

TEST_F(FileTest, ReadsWhatCannotBeLookedAtAsAbsent) {
    folder.write(L"page.tif", "12345");
    for (const std::wstring& path :
         {folder / L"missing", folder / L"page.tif\\inside", folder / L"a<b", std::wstring(L"Q:\\x"),
          std::wstring(), folder / std::wstring(40000, L'x')}) {
        EXPECT_FALSE(File(path).exists()) << path.substr(0, 80);
        EXPECT_FALSE(File(path).isDirectory()) << path.substr(0, 80);
        EXPECT_EQ(File(path).getFileSize(), 0) << path.substr(0, 80);
    }
}

TEST_F(FileTest, AsksTheDiskEachTime) {
    const File file(folder / L"page.tif");
    EXPECT_FALSE(file.exists());
    folder.write(L"page.tif", "1");
    EXPECT_TRUE(file.exists());
    folder.write(L"page.tif", "123");
    EXPECT_EQ(file.getFileSize(), 3);
}

TEST_F(FileTest, TellsSizesOver4GiB) {
    constexpr LONGLONG SIZE = (1LL << 32) + 5;
    HANDLE file = CreateFileW((folder / L"big").c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr);
    ASSERT_NE(file, INVALID_HANDLE_VALUE);
    LARGE_INTEGER end;
    end.QuadPart = SIZE;
    EXPECT_TRUE(SetFilePointerEx(file, end, nullptr, FILE_BEGIN));
    EXPECT_TRUE(SetEndOfFile(file));
    CloseHandle(file);
    EXPECT_EQ(File(folder / L"big").getFileSize(), SIZE);
}

TEST_F(FileTest, TakesPathsInBothKindsOfText) {
    folder.write(L"Účet 漢字 \xD83D\xDE00.tif", "12");
    const std::wstring path = folder / L"Účet 漢字 \xD83D\xDE00.tif";
    EXPECT_EQ(File(path).getFileSize(), 2);
    EXPECT_EQ(File(utf8(path)).getFileSize(), 2);
    EXPECT_EQ(File(utf8(path)).getPath(), path);
}

struct AppendCase {
    const wchar_t* path;
    const char* name;
    const wchar_t* expected;
};

TEST_F(FileTest, AppendsOneComponent) {
    const AppendCase cases[] = {
        {L"C:\\out", "Scan1.tif", L"C:\\out\\Scan1.tif"},
        {L"C:\\out\\", "Scan1.tif", L"C:\\out\\Scan1.tif"},
        {L"C:/out/", "Scan1.tif", L"C:/out/Scan1.tif"},
        {L"C:/out", "Scan1.tif", L"C:/out\\Scan1.tif"},
        {L"C:\\", "\xC5\xBE.tif", L"C:\\ž.tif"},
        {L"D:", "a", L"D:\\a"},
        {L"out", ".tif", L"out\\.tif"},
        {L"", "a", L"a"},
    };
    for (const AppendCase& c : cases) {
        File file{std::wstring(c.path)};
        file.append(c.name);
        EXPECT_EQ(file.getPath(), c.expected);
    }
}

TEST_F(FileTest, KeepsALoneSurrogateOfAName) {
    File file{std::wstring(L"C:\\out")};
    file.append(utf8(L"x\xD800.tif"));
    EXPECT_EQ(file.getPath(), L"C:\\out\\x\xD800.tif");
}

TEST_F(FileTest, KeepsShortPathsAsTheyWereGiven) {
    for (const std::wstring path : {L"C:\\a\\..\\b", L"a/b", L"..\\a", L"\\\\server\\share\\a",
                                    L"\\\\?\\C:\\a", L"C:\\", L"", L"C:\\a\\"})
        EXPECT_EQ(File(path).getPath(), path);
}

TEST_F(FileTest, GivesLongPathsInTheLongForm) {
    const std::wstring name(200, L'n');
    const std::wstring tail = name + L"\\" + name;
    const std::pair<std::wstring, std::wstring> cases[] = {
        {L"C:\\" + tail, L"\\\\?\\C:\\" + tail},
        {L"c:/" + name + L"/" + name, L"\\\\?\\c:\\" + tail},
        {L"C:\\a\\..\\.\\" + tail, L"\\\\?\\C:\\" + tail},
        {L"\\\\server\\share\\" + tail, L"\\\\?\\UNC\\server\\share\\" + tail},
        {L"//server/share/" + tail, L"\\\\?\\UNC\\server\\share\\" + tail},
        {L"\\\\?\\C:\\" + tail, L"\\\\?\\C:\\" + tail},
        {L"\\\\?\\UNC\\server\\share\\" + tail, L"\\\\?\\UNC\\server\\share\\" + tail},
    };
    for (const auto& [path, expected] : cases)
        EXPECT_EQ(File(path).getPath(), expected);
}

TEST_F(FileTest, ResolvesARelativePathWhoseFullPathIsLong) {
    const std::wstring tail(245, L'n');
    std::wstring current(MAX_PATH, L'\0');
    current.resize(GetCurrentDirectoryW(MAX_PATH, current.data()));
    EXPECT_EQ(File(tail).getPath(), L"\\\\?\\" + current + (current.ends_with(L'\\') ? L"" : L"\\") + tail);
}

TEST_F(FileTest, UsesTheLongFormFromTheLengthOnThatDirectoriesNeed) {
    const std::wstring base = L"C:\\";
    EXPECT_EQ(File(base + std::wstring(244, L'd')).getPath(), base + std::wstring(244, L'd'));
    EXPECT_EQ(File(base + std::wstring(245, L'd')).getPath(), L"\\\\?\\" + base + std::wstring(245, L'd'));
}

TEST_F(FileTest, AnswersForPathsOver260Characters) {
    const std::wstring deep = makeDeepFolder();
    EXPECT_TRUE(File(deep).isDirectory());
    File file(utf8(deep));
    file.append("page.tif");
    EXPECT_FALSE(file.exists());

    const std::wstring source = folder.write(L"source.tif", "1234567");
    ASSERT_TRUE(CopyFileW(source.c_str(), file.getPath().c_str(), FALSE));

    EXPECT_TRUE(file.exists());
    EXPECT_FALSE(file.isDirectory());
    EXPECT_EQ(file.getFileSize(), 7);
    EXPECT_EQ(test::readFile(file.getPath()), "1234567");
}

} // namespace
