// The one place for temporary files of a run.
#include "host/TemporaryRoot.h"

#include "SorvaneBase/bxdisk/Disk.h"
#include "host/HostError.h"
#include "host/PrivateFolder.h"
#include "host/Text.h"
#include "host/UniqueHandle.h"
#include "support/OpenFile.h"
#include "support/TempFolder.h"
#include "support/TempPathHook.h"

#include <gmock/gmock.h>

#include <windows.h>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace {

using host::RunName;
using host::TemporaryRoot;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class TemporaryRootTest : public testing::Test {
protected:
    /// A directory such as a run leaves behind.
    void leave(const std::wstring& name, std::chrono::hours age) {
        const std::wstring directory = folder / name;
        ASSERT_TRUE(CreateDirectoryW(directory.c_str(), nullptr));
        folder.write(name + L"\\page.tif", "x");
        setAge(directory, age);
    }

    static void setAge(const std::wstring& directory, std::chrono::hours age) {
        FILETIME now;
        GetSystemTimeAsFileTime(&now);
        ULARGE_INTEGER time{{now.dwLowDateTime, now.dwHighDateTime}};
        time.QuadPart -= static_cast<ULONGLONG>(age / std::chrono::nanoseconds(100));
        const FILETIME then{time.LowPart, time.HighPart};
        const host::UniqueHandle handle(CreateFileW(directory.c_str(), FILE_WRITE_ATTRIBUTES,
                                                    FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                                    OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
        ASSERT_TRUE(SetFileTime(handle.get(), nullptr, nullptr, &then));
    }

    /// The directory of a run whose process number is in use again, by this process.
    static std::wstring endedRun() {
        RunName run = RunName::ofThisProcess();
        --run.startTime;
        return run.text();
    }

    /// A directory with an attachment, as the mail engine makes it in the root that is there now.
    std::wstring addEngineDirectory() const {
        std::string directory;
        EXPECT_TRUE(bxdisk::createTempDir("export-mail", directory));
        folder.write(host::wide(directory).substr(folder.path().size() + 1) + L"\\page.tif", "x");
        return host::wide(directory);
    }

    /// A copy of a page in the root that is there now.
    std::wstring addPageCopy() const {
        std::wstring directory;
        EXPECT_TRUE(host::createPageCopyDirectory(directory));
        return folder.write(directory.substr(folder.path().size() + 1) + L"\\page.tif", "x");
    }

    /// The copy of a page in what a killed run left behind.
    std::wstring leavePageCopy() const {
        const std::wstring left = folder / endedRun();
        // What is moved away does not go with the run.
        const TemporaryRoot root(folder.path());
        const std::wstring copy = addPageCopy();
        EXPECT_TRUE(CreateDirectoryW(left.c_str(), nullptr));
        std::wstring moved = left + copy.substr(root.path().size());
        EXPECT_TRUE(MoveFileW(copy.substr(0, copy.find_last_of(L'\\')).c_str(),
                              moved.substr(0, moved.find_last_of(L'\\')).c_str()));
        return moved;
    }

    static bool exists(const std::wstring& path) {
        return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
    }

    test::TempFolder folder;
};

TEST_F(TemporaryRootTest, IsUnderTheUsersTemporaryDirectory) {
    for (const std::wstring& users : {folder.path(), folder / std::wstring(250, L'a')}) {
        const test::TempPathHook hook(users);
        const TemporaryRoot root;
        EXPECT_TRUE(root.path().starts_with(users + L"\\Sorvane\\ScanHost\\"));
        EXPECT_TRUE(bxdisk::isDirectory(host::utf8(root.path())));
    }
}

TEST_F(TemporaryRootTest, IsNowhereElseWhenTheSystemTellsNoTemporaryDirectory) {
    const test::TempPathHook hook(L"");
    EXPECT_EQ(TemporaryRoot::defaultParent(), L"");
    EXPECT_THROW(TemporaryRoot{}, host::HostError);
}

TEST_F(TemporaryRootTest, TakesTheTemporaryDirectoriesUntilItsEnd) {
    {
        const TemporaryRoot root(folder / L"a\\b");
        EXPECT_TRUE(addEngineDirectory().starts_with(root.path() + L"\\export-mail"));
    }
    std::string directory;
    ASSERT_TRUE(bxdisk::createTempDir("export-mail", directory));
    EXPECT_FALSE(host::wide(directory).starts_with(folder.path()));
    RemoveDirectoryW(host::wide(directory).c_str());
}

TEST_F(TemporaryRootTest, IsGoneAtTheEndWhenNothingIsLeft) {
    {
        const TemporaryRoot root(folder.path());
        addPageCopy();
    }
    EXPECT_THAT(folder.list(), IsEmpty());
}

TEST_F(TemporaryRootTest, LeavesWhatEnginesHaveMade) {
    std::wstring attachments;
    {
        const TemporaryRoot root(folder.path());
        attachments = addEngineDirectory();
        addPageCopy();
    }
    EXPECT_EQ(test::readFile(attachments + L"\\page.tif"), "x");
    EXPECT_THAT(test::namesIn(folder / RunName::ofThisProcess().text()), SizeIs(1)) << "the copy is there";
}

TEST_F(TemporaryRootTest, RemovesWhatEnginesHaveMadeADayAfterTheRun) {
    for (const int hours : {25, 23}) {
        std::wstring attachments;
        {
            const TemporaryRoot root(folder.path());
            attachments = addEngineDirectory();
        }
        const std::wstring ended = folder / endedRun();
        ASSERT_TRUE(MoveFileW((folder / RunName::ofThisProcess().text()).c_str(), ended.c_str()));
        setAge(ended + attachments.substr(attachments.find_last_of(L'\\')), std::chrono::hours(hours));
        setAge(ended, std::chrono::hours(hours));

        { const TemporaryRoot root(folder.path()); }

        EXPECT_EQ(exists(ended), hours < 24) << hours;
    }
}

TEST_F(TemporaryRootTest, RemovesWhatACrashedRunLeftMoreThanADayAgo) {
    leave(endedRun(), std::chrono::hours(25));

    const TemporaryRoot root(folder.path());

    EXPECT_THAT(folder.list(), ElementsAre(RunName::ofThisProcess().text()));
}

TEST_F(TemporaryRootTest, KeepsWhatIsYoungerThanADay) {
    leave(endedRun(), std::chrono::hours(23));

    { const TemporaryRoot root(folder.path()); }

    EXPECT_THAT(folder.list(), ElementsAre(endedRun()));
}

TEST_F(TemporaryRootTest, RemovesCopiesOfPagesAsSoonAsTheirRunHasEnded) {
    leavePageCopy();

    { const TemporaryRoot root(folder.path()); }

    EXPECT_THAT(folder.list(), IsEmpty());
}

TEST_F(TemporaryRootTest, KeepsWhatElseIsYoungBesideCopiesOfPages) {
    const std::wstring copy = leavePageCopy();
    for (const wchar_t* name : {L"\\export-mail-12-2", L"\\page-12-1"})
        leave(endedRun() + name, std::chrono::hours(1));

    { const TemporaryRoot root(folder.path()); }

    EXPECT_EQ(test::readFile(folder / endedRun() + L"\\export-mail-12-2\\page.tif"), "x");
    EXPECT_EQ(test::readFile(folder / endedRun() + L"\\page-12-1\\page.tif"), "x");
    EXPECT_FALSE(exists(copy));
}

TEST_F(TemporaryRootTest, RemovesCopiesOfReadOnlyPages) {
    SetFileAttributesW(leavePageCopy().c_str(), FILE_ATTRIBUTE_READONLY);
    {
        const TemporaryRoot root(folder.path());
        EXPECT_THAT(folder.list(), ElementsAre(RunName::ofThisProcess().text())) << "at the next start";
        SetFileAttributesW(addPageCopy().c_str(), FILE_ATTRIBUTE_READONLY);
    }
    EXPECT_THAT(folder.list(), IsEmpty()) << "at the end";
}

TEST_F(TemporaryRootTest, KeepsNothingButTheFileThatAProgramHoldsOpen) {
    std::vector<std::wstring> copies;
    std::optional<test::OpenFile> reader;
    {
        const TemporaryRoot root(folder.path());
        for (int count = 0; count < 3; ++count)
            copies.push_back(addPageCopy());
        reader.emplace(copies[1], GENERIC_READ, FILE_SHARE_READ);
    }
    EXPECT_FALSE(exists(copies[0]));
    EXPECT_TRUE(exists(copies[1]));
    EXPECT_FALSE(exists(copies[2]));
}

TEST_F(TemporaryRootTest, TriesAgainToRemoveACopyOfAPageThatWasOpen) {
    const std::wstring copy = leavePageCopy();
    leave(endedRun() + L"\\export-mail-12-2", std::chrono::hours(23));
    {
        const test::OpenFile reader(copy, GENERIC_READ, FILE_SHARE_READ);
        const TemporaryRoot root(folder.path());
        EXPECT_TRUE(exists(copy));
    }
    { const TemporaryRoot root(folder.path()); }

    EXPECT_FALSE(exists(copy));
    EXPECT_EQ(test::readFile(folder / endedRun() + L"\\export-mail-12-2\\page.tif"), "x");
}

TEST_F(TemporaryRootTest, LeavesCopiesOfPagesToARunThatStillNeedsThem) {
    const TemporaryRoot root(folder.path());
    std::wstring copies;
    ASSERT_TRUE(host::createPageCopyDirectory(copies));

    host::removeStaleRoots(folder.path());

    EXPECT_NE(GetFileAttributesW(copies.c_str()), INVALID_FILE_ATTRIBUTES);
}

TEST_F(TemporaryRootTest, KeepsAnOldRootIntoWhichSomethingWasPutADayAgoAtMost) {
    leave(endedRun(), std::chrono::hours(100));
    leave(endedRun() + L"\\mail", std::chrono::hours(23));
    setAge(folder / endedRun(), std::chrono::hours(100));

    { const TemporaryRoot root(folder.path()); }

    EXPECT_THAT(folder.list(), ElementsAre(endedRun()));
}

TEST_F(TemporaryRootTest, KeepsTheRootOfARunningProcessHoweverOld) {
    // As another run sees ours.
    const std::wstring own = RunName::ofThisProcess().text();
    leave(own, std::chrono::hours(1000));

    EXPECT_TRUE(RunName::parse(own)->isRunning());
    host::removeStaleRoots(folder.path());

    EXPECT_THAT(folder.list(), ElementsAre(own));
}

TEST_F(TemporaryRootTest, LeavesAloneWhatNoRunHasMade) {
    leave(L"1234", std::chrono::hours(1000));
    leave(L"1234-x", std::chrono::hours(1000));
    leave(L"01234-5", std::chrono::hours(1000));
    leave(L"important", std::chrono::hours(1000));

    { const TemporaryRoot root(folder.path()); }

    EXPECT_THAT(folder.list(), ElementsAre(L"01234-5", L"1234", L"1234-x", L"important"));
}

TEST_F(TemporaryRootTest, IsUnderTheParentAsItIsCalledWhenThatIsAscii) {
    const TemporaryRoot root(folder / L"Temp folder", {[](const std::wstring&) { return L"C:\\SHORT~1"; }});

    EXPECT_EQ(root.path(), folder / L"Temp folder\\" + RunName::ofThisProcess().text());
}

/// A parent whose name is not ASCII, but in the ANSI code page.
class AnsiParentTest : public TemporaryRootTest {
protected:
    void SetUp() override {
        // A letter in all code pages of one byte. Where it is part of a longer one the folder would have no name.
        wchar_t letter = 0;
        if (MultiByteToWideChar(CP_ACP, MB_ERR_INVALID_CHARS, "\xE9", 1, &letter, 1) != 1)
            GTEST_SKIP() << "the code page has characters of several bytes";
        parent = folder / std::wstring(1, letter);
    }

    std::wstring rootWithShortPath(const std::wstring& shortPath) const {
        const TemporaryRoot root(parent,
                                 {[&](const std::wstring&) { return shortPath; }, folder / L"common"});
        return root.path();
    }

    const std::wstring run = L"\\" + RunName::ofThisProcess().text();
    std::wstring parent;
};

TEST_F(AnsiParentTest, IsCalledByItsShortNameBecauseOtherProgramsMayHaveAnotherCodePage) {
    EXPECT_EQ(rootWithShortPath(folder / L"SHORT~1"), folder / L"SHORT~1" + run);
}

TEST_F(AnsiParentTest, IsTakenAsItIsCalledWhereNoShortNamesAreKept) {
    EXPECT_EQ(rootWithShortPath(parent), parent + run);
    EXPECT_EQ(rootWithShortPath(L""), parent + run);
}

/// A parent whose name no ANSI code page has, but for that of programs whose manifest asks for UTF-8.
class ForeignParentTest : public TemporaryRootTest {
protected:
    ForeignParentTest() { CreateDirectoryW(means.commonFolder.c_str(), nullptr); }

    /// Whether a mail client can read an attachment of the engine's.
    bool mailClientReads() const {
        std::string directory;
        EXPECT_TRUE(bxdisk::createTempDir("export-mail", directory));
        std::string ansi;
        Sorvane::c_u8acp(ansi, directory + "\\page.tif");
        const host::UniqueHandle written(CreateFileW(host::wide(directory + "\\page.tif").c_str(),
                                                     GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                                     nullptr, CREATE_NEW, 0, nullptr));
        EXPECT_TRUE(written);
        const host::UniqueHandle read(CreateFileA(ansi.c_str(), GENERIC_READ,
                                                  FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                                                  0, nullptr));
        return static_cast<bool>(read);
    }

    const std::wstring parent = folder / L"\u65E5\u672C\u0159\u03C9";
    host::AnsiPathMeans means{[](const std::wstring& path) { return path; }, folder / L"common"};
};

TEST_F(ForeignParentTest, IsCalledByItsShortName) {
    host::AnsiPathMeans systems;
    systems.commonFolder.clear();
    const TemporaryRoot root(parent, systems);

    EXPECT_TRUE(mailClientReads());
    EXPECT_TRUE(exists(parent + L"\\" + RunName::ofThisProcess().text()));
    EXPECT_NE(root.path(), parent + L"\\" + RunName::ofThisProcess().text());
}

TEST_F(ForeignParentTest, IsReplacedByThePrivateFolderWhereNoShortNamesAreKept) {
    const TemporaryRoot root(parent, means);

    EXPECT_TRUE(mailClientReads());
    EXPECT_EQ(root.path(),
              host::privateFolderBelow(means.commonFolder) + L"\\" + RunName::ofThisProcess().text());
    EXPECT_TRUE(host::isUsersOwn(host::privateFolderBelow(means.commonFolder)));
}

TEST_F(ForeignParentTest, IsTakenAfterAllWhenThePrivateFolderIsRefused) {
    folder.write(L"common\\" + host::privateFolderBelow(L"x").substr(2), "planted");
    const TemporaryRoot root(parent, means);

    EXPECT_EQ(root.path(), parent + L"\\" + RunName::ofThisProcess().text());
    EXPECT_FALSE(mailClientReads());
}

TEST_F(ForeignParentTest, IsTakenAfterAllWhenThereIsNoCommonFolder) {
    means.commonFolder.clear();
    const TemporaryRoot root(parent, means);

    EXPECT_EQ(root.path(), parent + L"\\" + RunName::ofThisProcess().text());
}

TEST_F(ForeignParentTest, IsCleanedWithThePrivateFolderWhicheverTheRunUses) {
    const std::wstring own = host::privateFolderBelow(means.commonFolder).substr(folder.path().size() + 1);
    for (const std::wstring& wanted : {parent, folder / L"plain"}) {
        const std::wstring relative = wanted.substr(folder.path().size() + 1);
        ASSERT_TRUE(bxdisk::createDirectories(wanted));
        ASSERT_TRUE(host::makePrivateFolder(folder / own));
        leave(relative + L"\\" + endedRun(), std::chrono::hours(25));
        leave(own + L"\\" + endedRun(), std::chrono::hours(25));

        { const TemporaryRoot root(wanted, means); }

        EXPECT_THAT(test::namesIn(wanted), IsEmpty());
        EXPECT_THAT(test::namesIn(folder / own), IsEmpty());
    }
}

TEST(AnsiPathMeansTest, NamesAFolderThatIsThere) {
    EXPECT_TRUE(bxdisk::isDirectory(host::utf8(host::AnsiPathMeans::commonFolderOfSystem())));
    EXPECT_EQ(host::AnsiPathMeans::shortPathOfSystem(L"C:\\not there"), L"");
}

TEST_F(TemporaryRootTest, SaysWhereItCannotBeMade) {
    folder.write(L"file", "x");

    try {
        const TemporaryRoot root(folder / L"file");
        FAIL() << "was made";
    } catch (const host::HostError& error) {
        EXPECT_THAT(error.what(),
                    testing::HasSubstr("The folder for temporary files " + host::utf8(folder / L"file\\")));
    }
}

} // namespace
