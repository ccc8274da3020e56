// Tests of the ZIP writer as the component uses it, on a real disk.
#include "SorvaneBase/bxzip/ZipWriterPtr.h"

#include "SorvaneBase/Text.h"
#include "SorvaneBase/bxutils/SystemLog.h"
#include "SorvaneBase/bxzip/WindowsStorage.h"
#include "support/OpenFile.h"
#include "support/SoundArchives.h"
#include "support/TempFolder.h"
#include "support/ZipParser.h"

#include <gmock/gmock.h>

#include <windows.h>

#include <optional>
#include <stdexcept>
#include <thread>

namespace {

using Sorvane::utf8;
using test::OpenFile;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Key;
using testing::Pair;

/// The program that writes an archive and waits, as a process that a test can kill.
class WaitingWriter {
public:
    explicit WaitingWriter(const std::wstring& arguments) {
        wchar_t self[MAX_PATH];
        GetModuleFileNameW(nullptr, self, MAX_PATH);
        const std::wstring path(self);
        const std::wstring program = path.substr(0, path.rfind(L'\\')) + L"\\zip_files.exe";
        std::wstring command = L"\"" + program + L"\" " + arguments;
        SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
        HANDLE read = nullptr;
        HANDLE write = nullptr;
        EXPECT_TRUE(CreatePipe(&read, &write, &inherited, 0));
        STARTUPINFOW startup{};
        startup.cb = sizeof startup;
        startup.dwFlags = STARTF_USESTDHANDLES;
        startup.hStdOutput = write;
        EXPECT_TRUE(CreateProcessW(program.c_str(), command.data(), nullptr, nullptr, TRUE, 0, nullptr,
                                   nullptr, &startup, &process));
        CloseHandle(write);
        EXPECT_TRUE(hasOutput(read)) << "it has not written";
        CloseHandle(read);
    }
    ~WaitingWriter() {
        kill();
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
    }
    WaitingWriter(const WaitingWriter&) = delete;
    WaitingWriter& operator=(const WaitingWriter&) = delete;

    void kill() {
        TerminateProcess(process.hProcess, 9);
        WaitForSingleObject(process.hProcess, 10000);
    }

private:
    /// Waits until there is some.
    static bool hasOutput(HANDLE pipe) {
        const ULONGLONG deadline = GetTickCount64() + 20000;
        DWORD available = 0;
        while (PeekNamedPipe(pipe, nullptr, 0, nullptr, &available, nullptr) && !available &&
               GetTickCount64() < deadline)
            Sleep(10);
        return available != 0;
    }

    PROCESS_INFORMATION process{};
};

class ZipWriterPtrTest : public testing::Test {
protected:
    ~ZipWriterPtrTest() override { bxutils::setSystemLogFile({}); }

    void TearDown() override {
        close();
        test::expectSoundArchives(folder);
    }

    std::string path(const std::wstring& name) const { return utf8(folder / name); }
    void close() { writer.reset(); }

    /// What an archive in the folder holds.
    test::ZipEntries entriesIn(const std::wstring& name) const {
        return test::zipEntries(test::readFile(folder / name));
    }

    test::TempFolder folder;
    test::TempFolder pages;
    const std::string page = utf8(pages.write(L"page.txt", std::string(3000, 'p')));
    std::optional<bxzip::ZipWriterPtr> writer{std::in_place, nullptr};
};

TEST_F(ZipWriterPtrTest, WritesAnArchive) {
    ASSERT_TRUE(writer->createZipFile(path(L"a.zip")));
    ASSERT_TRUE(writer->addItemFromFile("Str\xC3\xA1nka_1.txt", page));
    ASSERT_TRUE(writer->addItemFromFile("Str\xC3\xA1nka_2.txt", page));
    close();
    EXPECT_THAT(entriesIn(L"a.zip"), ElementsAre(Key("Str\xC3\xA1nka_1.txt"), Key("Str\xC3\xA1nka_2.txt")));
    EXPECT_THAT(folder.list(), ElementsAre(L"a.zip"));
}

TEST_F(ZipWriterPtrTest, WritesAnArchiveWithoutEntries) {
    ASSERT_TRUE(writer->createZipFile(path(L"a.zip")));
    close();
    EXPECT_TRUE(entriesIn(L"a.zip").empty());
}

TEST_F(ZipWriterPtrTest, ReplacesAnExistingFileWhenItIsClosed) {
    folder.write(L"a.zip", "old");
    ASSERT_TRUE(writer->createZipFile(path(L"a.zip")));
    ASSERT_TRUE(writer->addItemFromFile("1", page));
    {
        // The lock of the existing file admits only readers that admit everything.
        const OpenFile old(folder / L"a.zip", GENERIC_READ, OpenFile::shareAll);
        char bytes[8] = {};
        DWORD count = 0;
        EXPECT_TRUE(ReadFile(old.get(), bytes, sizeof bytes, &count, nullptr));
        EXPECT_STREQ(bytes, "old");
    }
    close();
    EXPECT_THAT(entriesIn(L"a.zip"), ElementsAre(Key("1")));
    EXPECT_THAT(folder.list(), ElementsAre(L"a.zip"));
}

TEST_F(ZipWriterPtrTest, ReplacesItsOwnArchive) {
    for (int round = 0; round < 2; ++round) {
        writer.emplace(nullptr);
        ASSERT_TRUE(writer->createZipFile(path(L"a.zip")));
        ASSERT_TRUE(writer->addItemFromFile("1", page));
        close();
    }
    EXPECT_THAT(folder.list(), ElementsAre(L"a.zip"));
}

TEST_F(ZipWriterPtrTest, KeepsTheOldFileAfterAFailureAndLogsItsName) {
    ASSERT_TRUE(bxutils::setSystemLogFile(pages / L"log.txt"));
    folder.write(L"a.zip", "old");
    ASSERT_TRUE(writer->createZipFile(path(L"a.zip")));
    ASSERT_TRUE(writer->addItemFromFile("1", page));
    ASSERT_FALSE(writer->addItemFromFile("2", page + ".missing"));
    close();
    EXPECT_THAT(entriesIn(L"a.zip"), ElementsAre(Key("1")));
    EXPECT_EQ(test::readFile(folder / L"a.zip.bak"), "old");
    EXPECT_THAT(folder.list(), ElementsAre(L"a.zip", L"a.zip.bak"));
    bxutils::setSystemLogFile({});
    const std::string log = test::readFile(pages / L"log.txt");
    EXPECT_THAT(log, HasSubstr("kept as \"" + path(L"a.zip.bak") + "\""));
    EXPECT_THAT(log, HasSubstr("page.txt.missing\" cannot be added"));
}

TEST_F(ZipWriterPtrTest, KeepsTheOldFileWhenAnEntryHasNoFile) {
    folder.write(L"a.zip", "old");
    ASSERT_TRUE(writer->createZipFile(path(L"a.zip")));
    EXPECT_FALSE(writer->addItemFromFile("1", {}));
    close();
    EXPECT_EQ(test::readFile(folder / L"a.zip.bak"), "old");
}

TEST_F(ZipWriterPtrTest, KeepsTheOldFileWhenAnExceptionEndsTheExport) {
    folder.write(L"a.zip", "old");
    close();
    try {
        bxzip::ZipWriterPtr unwound(nullptr);
        ASSERT_TRUE(unwound.createZipFile(path(L"a.zip")));
        ASSERT_TRUE(unwound.addItemFromFile("1", page));
        throw std::runtime_error("a page failed");
    } catch (const std::runtime_error&) {
    }
    EXPECT_THAT(entriesIn(L"a.zip"), ElementsAre(Key("1")));
    EXPECT_EQ(test::readFile(folder / L"a.zip.bak"), "old");
}

TEST_F(ZipWriterPtrTest, IsCompleteWhenItIsMadeWhileAnExceptionUnwinds) {
    struct Exporter {
        const std::string target;
        ~Exporter() {
            bxzip::ZipWriterPtr last(nullptr);
            EXPECT_TRUE(last.createZipFile(target));
        }
    };
    folder.write(L"a.zip", "old");
    try {
        const Exporter exporter{path(L"a.zip")};
        throw std::runtime_error("an export failed");
    } catch (const std::runtime_error&) {
    }
    EXPECT_THAT(folder.list(), ElementsAre(L"a.zip"));
}

TEST_F(ZipWriterPtrTest, WaitsForAProgramThatHoldsTheOldFileForAMoment) {
    folder.write(L"a.zip", "old");
    ASSERT_TRUE(writer->createZipFile(path(L"a.zip")));
    std::optional<OpenFile> held(std::in_place, folder / L"a.zip", GENERIC_READ, OpenFile::shareAll);
    std::thread other([&] {
        Sleep(200);
        held.reset();
    });
    close();
    other.join();
    EXPECT_TRUE(entriesIn(L"a.zip").empty());
    EXPECT_THAT(folder.list(), ElementsAre(L"a.zip"));
}

TEST_F(ZipWriterPtrTest, LogsWhereTheArchiveIsThatCannotTakeItsPlace) {
    ASSERT_TRUE(bxutils::setSystemLogFile(pages / L"log.txt"));
    folder.write(L"a.zip", "old");
    ASSERT_TRUE(writer->createZipFile(path(L"a.zip")));
    ASSERT_TRUE(writer->addItemFromFile("1", page));
    {
        const OpenFile held(folder / L"a.zip", GENERIC_READ, OpenFile::shareAll);
        close();
    }
    EXPECT_EQ(test::readFile(folder / L"a.zip"), "old");
    EXPECT_THAT(entriesIn(L"a.zip.new"), ElementsAre(Key("1")));
    EXPECT_THAT(folder.list(), ElementsAre(L"a.zip", L"a.zip.new"));
    bxutils::setSystemLogFile({});
    const std::string log = test::readFile(pages / L"log.txt");
    EXPECT_THAT(log, HasSubstr("Closing \"" + path(L"a.zip") + "\" failed: a file cannot be renamed"));
    EXPECT_THAT(log, HasSubstr("left as \"" + path(L"a.zip.new") + "\""));
}

TEST_F(ZipWriterPtrTest, CannotCreateWhereAFileCannotBe) {
    CreateDirectoryW((folder / L"folder.zip").c_str(), nullptr);
    EXPECT_FALSE(writer->createZipFile(path(L"folder.zip")));
    EXPECT_FALSE(writer->createZipFile(path(L"folder.zip\\")));
    EXPECT_FALSE(writer->createZipFile(path(L"missing\\a.zip")));
    EXPECT_FALSE(writer->createZipFile(""));
    EXPECT_FALSE(writer->createZipFile("NUL"));
    EXPECT_THAT(folder.list(), ElementsAre(L"folder.zip"));
}

TEST_F(ZipWriterPtrTest, CannotReplaceALockedFile) {
    folder.write(L"a.zip", "old");
    {
        const OpenFile lock(folder / L"a.zip", GENERIC_READ, FILE_SHARE_READ);
        EXPECT_FALSE(writer->createZipFile(path(L"a.zip")));
    }
    EXPECT_EQ(test::readFile(folder / L"a.zip"), "old");
    EXPECT_THAT(folder.list(), ElementsAre(L"a.zip"));
}

TEST_F(ZipWriterPtrTest, CannotReplaceAReadOnlyFile) {
    folder.write(L"a.zip", "old");
    SetFileAttributesW((folder / L"a.zip").c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_FALSE(writer->createZipFile(path(L"a.zip")));
    EXPECT_THAT(folder.list(), ElementsAre(L"a.zip"));
}

TEST_F(ZipWriterPtrTest, CanCreateAfterAFailedAttempt) {
    EXPECT_FALSE(writer->createZipFile(path(L"missing\\a.zip")));
    EXPECT_TRUE(writer->createZipFile(path(L"a.zip")));
}

TEST_F(ZipWriterPtrTest, CannotCreateTwiceOrAddToNothing) {
    EXPECT_FALSE(writer->addItemFromFile("1", page));
    ASSERT_TRUE(writer->createZipFile(path(L"a.zip")));
    EXPECT_FALSE(writer->createZipFile(path(L"b.zip")));
    EXPECT_THAT(folder.list(), ElementsAre(L"a.zip"));
}

TEST_F(ZipWriterPtrTest, TakesPathsOfAnyLength) {
    std::wstring deep = folder.path();
    while (deep.size() < 300) {
        deep += L"\\a folder with a long name";
        CreateDirectoryW((L"\\\\?\\" + deep).c_str(), nullptr);
    }
    const std::wstring longPage =
        folder.write(deep.substr(folder.path().size() + 1) + L"\\page.txt", "content");
    const std::wstring target = deep + L"\\" + std::wstring(240, L'n') + L".zip";
    for (int round = 0; round < 2; ++round) {
        writer.emplace(nullptr);
        ASSERT_TRUE(writer->createZipFile(utf8(target)));
        ASSERT_TRUE(writer->addItemFromFile("1", utf8(longPage)));
        close();
        EXPECT_THAT(test::zipEntries(test::readFile(target)), ElementsAre(Key("1")));
    }
}

TEST_F(ZipWriterPtrTest, AddsAFileThatIsOpenForWriting) {
    const OpenFile open(pages / L"page.txt", GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE);
    ASSERT_TRUE(writer->createZipFile(path(L"a.zip")));
    EXPECT_TRUE(writer->addItemFromFile("1", page));
    close();
    EXPECT_THAT(entriesIn(L"a.zip"), ElementsAre(Pair("1", std::string(3000, 'p'))));
}

TEST_F(ZipWriterPtrTest, CannotAddWhatIsNoReadableFile) {
    const OpenFile lock(pages / L"page.txt", GENERIC_READ, 0);
    ASSERT_TRUE(writer->createZipFile(path(L"a.zip")));
    EXPECT_FALSE(writer->addItemFromFile("1", page));
    EXPECT_FALSE(writer->addItemFromFile("2", pages.utf8()));
    EXPECT_FALSE(writer->addItemFromFile("3", "NUL"));
    EXPECT_FALSE(writer->addItemFromFile("4", ""));
    close();
    EXPECT_TRUE(entriesIn(L"a.zip").empty());
}

TEST_F(ZipWriterPtrTest, GivesEntriesTheLocalTimeOfTheirFiles) {
    SYSTEMTIME local{2023, 7, 0, 14, 15, 16, 18, 0};
    SYSTEMTIME utc;
    FILETIME time;
    ASSERT_TRUE(TzSpecificLocalTimeToSystemTime(nullptr, &local, &utc));
    ASSERT_TRUE(SystemTimeToFileTime(&utc, &time));
    {
        const OpenFile open(pages / L"page.txt", FILE_WRITE_ATTRIBUTES, 0);
        ASSERT_TRUE(SetFileTime(open.get(), nullptr, nullptr, &time));
    }
    ASSERT_TRUE(writer->createZipFile(path(L"a.zip")));
    ASSERT_TRUE(writer->addItemFromFile("1", page));
    close();
    const test::ZipListing listing = test::parseZip(test::readFile(folder / L"a.zip"));
    ASSERT_EQ(listing.error, "");
    EXPECT_EQ(listing.items[0].dosTime, (43u << 9 | 7 << 5 | 14) << 16 | 15 << 11 | 16 << 5 | 9);
}

TEST_F(ZipWriterPtrTest, LeavesTheOldFileAloneWhenItIsKilled) {
    folder.write(L"a.zip", "old");
    {
        WaitingWriter other(L"\"" + (folder / L"a.zip") + L"\" --wait 1 \"" + (pages / L"page.txt") + L"\"");
        EXPECT_FALSE(writer->createZipFile(path(L"a.zip"))) << "another process writes it";
        EXPECT_EQ(folder.list().size(), 2u);
        other.kill();
    }
    EXPECT_EQ(test::readFile(folder / L"a.zip"), "old");

    ASSERT_TRUE(writer->createZipFile(path(L"a.zip")));
    close();
    EXPECT_THAT(folder.list(), ElementsAre(L"a.zip")) << "what the killed process left is gone";
}

TEST(WindowsStorageTest, SeesThatASourceWasRewritten) {
    const test::TempFolder folder;
    const std::wstring path = folder.write(L"page", "content");
    {
        const FILETIME longAgo{0, 30000000};
        const OpenFile file(path, FILE_WRITE_ATTRIBUTES, 0);
        ASSERT_TRUE(SetFileTime(file.get(), nullptr, nullptr, &longAgo));
    }
    std::optional<OpenFile> other(std::in_place, path, GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE);
    bxzip::WindowsStorage storage;
    std::unique_ptr<bxzip::Source> source;
    ASSERT_TRUE(storage.openSource(path, source).isOk());
    bxzip::SourceState before;
    bxzip::SourceState after;
    ASSERT_TRUE(source->getState(before).isOk());
    DWORD written = 0;
    ASSERT_TRUE(WriteFile(other->get(), "another", 7, &written, nullptr));
    other.reset();
    ASSERT_TRUE(source->getState(after).isOk());
    EXPECT_EQ(before.size, after.size);
    EXPECT_NE(before.changeMark, after.changeMark);
}

TEST(WindowsStorageTest, TellsWhetherOthersCanWriteToASource) {
    const test::TempFolder folder;
    const std::wstring path = folder.write(L"page", "content");
    bxzip::WindowsStorage storage;
    std::unique_ptr<bxzip::Source> source;
    ASSERT_TRUE(storage.openSource(path, source).isOk());
    EXPECT_TRUE(source->excludesWriters());
    source.reset();
    const OpenFile writer(path, GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE);
    ASSERT_TRUE(storage.openSource(path, source).isOk());
    EXPECT_FALSE(source->excludesWriters());
}

TEST(WindowsStorageTest, LetsNobodyWriteToASourceMeanwhile) {
    const test::TempFolder folder;
    const std::wstring path = folder.write(L"page", "content");
    bxzip::WindowsStorage storage;
    std::unique_ptr<bxzip::Source> source;
    ASSERT_TRUE(storage.openSource(path, source).isOk());
    EXPECT_EQ(CreateFileW(path.c_str(), GENERIC_WRITE, 7, nullptr, OPEN_EXISTING, 0, nullptr),
              INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_SHARING_VIOLATION));
}

} // namespace
