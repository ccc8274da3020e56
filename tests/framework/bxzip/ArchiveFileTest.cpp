// Tests of what becomes of the file that an archive replaces.
#include "SorvaneBase/bxzip/ArchiveFile.h"
#include "support/FaultyStorage.h"
#include "support/MemoryStorage.h"
#include "support/ZipParser.h"

#include <gmock/gmock.h>

#include <limits>

namespace {

using Operation = test::FaultPlan::Operation;
using testing::ElementsAre;

const std::wstring target = L"C:\\out\\pages.zip";

class ArchiveFileTest : public testing::Test {
protected:
    ArchiveFileTest() { storage.put(L"page", "content"); }

    std::vector<std::wstring> filesInFolder() const {
        std::vector<std::wstring> names;
        for (const auto& [path, file] : storage.files)
            if (path.starts_with(L"C:\\out\\"))
                names.push_back(path.substr(7));
        return names;
    }

    /// The number of entries of an archive, or -1 for anything else.
    int entriesIn(const std::wstring& path) const {
        const test::ZipListing listing = test::parseZip(storage.get(path));
        return listing.error.empty() ? static_cast<int>(listing.items.size()) : -1;
    }

    test::MemoryStorage storage;
    bxzip::ArchiveFile archive{storage};
};

TEST_F(ArchiveFileTest, IsAnArchiveFromItsCreationOn) {
    ASSERT_TRUE(archive.create(target).isOk());
    EXPECT_EQ(entriesIn(target), 0);
}

TEST_F(ArchiveFileTest, IsWrittenInPlaceWhereThereIsNothing) {
    ASSERT_TRUE(archive.create(target).isOk());
    ASSERT_TRUE(archive.add("a", L"page").isOk());
    EXPECT_TRUE(archive.close().status.isOk());
    EXPECT_THAT(filesInFolder(), ElementsAre(L"pages.zip"));
    EXPECT_EQ(entriesIn(target), 1);
}

TEST_F(ArchiveFileTest, LeavesTheExistingFileAloneUntilItIsClosed) {
    storage.put(target, "old");
    ASSERT_TRUE(archive.create(target).isOk());
    ASSERT_TRUE(archive.add("a", L"page").isOk());
    EXPECT_EQ(storage.get(target), "old");
    EXPECT_TRUE(archive.close().status.isOk());
    EXPECT_THAT(filesInFolder(), ElementsAre(L"pages.zip"));
    EXPECT_EQ(entriesIn(target), 1);
}

TEST_F(ArchiveFileTest, LocksTheExistingFile) {
    storage.put(target, "old");
    ASSERT_TRUE(archive.create(target).isOk());
    EXPECT_TRUE(storage.files[target]->isOpenForChange);
    bxzip::ArchiveFile second(storage);
    EXPECT_FALSE(second.create(target).isOk());
}

TEST_F(ArchiveFileTest, KeepsTheExistingFileWhenAnEntryFailed) {
    storage.put(target, "old");
    ASSERT_TRUE(archive.create(target).isOk());
    ASSERT_TRUE(archive.add("a", L"page").isOk());
    EXPECT_FALSE(archive.add("b", L"missing").isOk());
    const auto outcome = archive.close();
    EXPECT_TRUE(outcome.status.isOk());
    EXPECT_EQ(outcome.backup, target + L".bak");
    EXPECT_THAT(filesInFolder(), ElementsAre(L"pages.zip", L"pages.zip.bak"));
    EXPECT_EQ(storage.get(outcome.backup), "old");
    EXPECT_EQ(entriesIn(target), 1);
}

TEST_F(ArchiveFileTest, KeepsTheExistingFileWhenItIsDeclaredIncomplete) {
    storage.put(target, "old");
    ASSERT_TRUE(archive.create(target).isOk());
    archive.setIncomplete();
    EXPECT_EQ(archive.close().backup, target + L".bak");
}

TEST_F(ArchiveFileTest, NumbersTheBackupWhenItsNameIsTaken) {
    storage.put(target, "old");
    storage.put(target + L".bak", "older");
    storage.put(target + L" (2).bak", "oldest");
    ASSERT_TRUE(archive.create(target).isOk());
    archive.setIncomplete();
    EXPECT_EQ(archive.close().backup, target + L" (3).bak");
    EXPECT_EQ(storage.get(target + L".bak"), "older");
    EXPECT_EQ(storage.get(target + L" (2).bak"), "oldest");
    EXPECT_EQ(storage.get(target + L" (3).bak"), "old");
}

TEST_F(ArchiveFileTest, ShortensTheBackupsNameToWhatFileSystemsTake) {
    const std::wstring longest = L"C:\\out\\" + std::wstring(251, L'n') + L".zip";
    storage.put(longest, "old");
    ASSERT_TRUE(archive.create(longest).isOk());
    archive.setIncomplete();
    EXPECT_EQ(archive.close().backup, L"C:\\out\\" + std::wstring(251, L'n') + L".bak");
}

TEST_F(ArchiveFileTest, ShortensTheBackupsNameByWholeCharacters) {
    const std::wstring cut = L"C:\\out\\" + std::wstring(250, L'n');
    storage.put(cut + L"\xD83D\xDCC4.zi", "old");
    ASSERT_TRUE(archive.create(cut + L"\xD83D\xDCC4.zi").isOk());
    archive.setIncomplete();
    EXPECT_EQ(archive.close().backup, cut + L".bak");
}

TEST_F(ArchiveFileTest, RemovesWhatACrashLeftInTheFolder) {
    storage.put(L"C:\\out\\~bxzip-1.tmp", "half an archive");
    storage.put(L"C:\\out\\~bxzip-207.tmp", "half of another one");
    ASSERT_TRUE(archive.create(target).isOk());
    ASSERT_TRUE(archive.close().status.isOk());
    EXPECT_THAT(filesInFolder(), ElementsAre(L"pages.zip"));
}

TEST_F(ArchiveFileTest, RemovesNothingThatAnotherArchiveIsWrittenTo) {
    storage.put(target, "old");
    storage.put(L"C:\\out\\other.zip", "old");
    bxzip::ArchiveFile other(storage);
    ASSERT_TRUE(other.create(L"C:\\out\\other.zip").isOk());
    ASSERT_TRUE(archive.create(target).isOk());
    EXPECT_TRUE(other.close().status.isOk());
    EXPECT_TRUE(archive.close().status.isOk());
    EXPECT_THAT(filesInFolder(), ElementsAre(L"other.zip", L"pages.zip"));
    EXPECT_EQ(entriesIn(L"C:\\out\\other.zip"), 0);
}

TEST_F(ArchiveFileTest, RemovesNothingWithAnotherFormOfName) {
    const std::vector<std::wstring> names = {L"my~bxzip-1.tmp", L"~bxzip-.tmp", L"~bxzip-1.tmp.txt",
                                             L"~bxzip-1a.tmp",  L"~bxzip-1",    L"~bxzip-a1.tmp"};
    for (const std::wstring& name : names)
        storage.put(L"C:\\out\\" + name, "a person's");
    ASSERT_TRUE(archive.create(target).isOk());
    for (const std::wstring& name : names)
        EXPECT_EQ(storage.get(L"C:\\out\\" + name), "a person's");
}

/// Lets nothing be moved to one path.
class StuckStorage : public test::MemoryStorage {
public:
    explicit StuckStorage(std::wstring path) : path(std::move(path)) {}
    bool move(const test::MemoryFile& file, const std::wstring& to, bool replace) override {
        return to != path && MemoryStorage::move(file, to, replace);
    }

private:
    std::wstring path;
};

TEST_F(ArchiveFileTest, IsPutAsideWhenItCannotTakeItsPlace) {
    for (const auto& [incomplete, hasLinks] : {std::pair(false, true), {true, true}, {true, false}}) {
        StuckStorage stuck(target);
        stuck.hasLinks = hasLinks;
        stuck.put(target, "old");
        stuck.put(target + L".new", "from another time");
        stuck.put(L"page", "content");
        bxzip::ArchiveFile stuckArchive(stuck);
        ASSERT_TRUE(stuckArchive.create(target).isOk());
        ASSERT_TRUE(stuckArchive.add("a", L"page").isOk());
        if (incomplete)
            stuckArchive.setIncomplete();
        const auto outcome = stuckArchive.close();
        EXPECT_FALSE(outcome.status.isOk());
        EXPECT_EQ(outcome.aside, target + L" (2).new");
        EXPECT_EQ(test::zipEntries(stuck.get(outcome.aside)).size(), 1u);
        EXPECT_EQ(stuck.get(incomplete ? outcome.backup : target), "old");
        EXPECT_EQ(stuck.get(target + L".new"), "from another time");
    }
}

TEST_F(ArchiveFileTest, SaysWhereItIsWhenItCannotEvenBePutAside) {
    storage.put(target, "old");
    test::FaultPlan plan{Operation::Move, 1, false};
    test::FaultyStorage stuck(storage, plan);
    bxzip::ArchiveFile stuckArchive(stuck);
    ASSERT_TRUE(stuckArchive.create(target).isOk());
    ASSERT_TRUE(stuckArchive.add("a", L"page").isOk());
    const auto outcome = stuckArchive.close();
    EXPECT_FALSE(outcome.status.isOk());
    EXPECT_EQ(storage.get(target), "old");
    EXPECT_EQ(entriesIn(outcome.aside), 1);
}

TEST_F(ArchiveFileTest, KeepsTheExistingFileWhereFilesHaveOneName) {
    storage.hasLinks = false;
    storage.put(target, "old");
    storage.put(target + L".bak", "older");
    ASSERT_TRUE(archive.create(target).isOk());
    archive.setIncomplete();
    EXPECT_EQ(archive.close().backup, target + L" (2).bak");
    EXPECT_THAT(filesInFolder(), ElementsAre(L"pages.zip", L"pages.zip (2).bak", L"pages.zip.bak"));
    EXPECT_EQ(storage.get(target + L" (2).bak"), "old");
    EXPECT_EQ(entriesIn(target), 0);
}

TEST_F(ArchiveFileTest, SaysThatItsTemporaryFileCannotBeRemoved) {
    storage.put(target, "old");
    test::FaultPlan removing{Operation::Remove, 1, false};
    test::FaultyStorage keeping(storage, removing);
    test::FaultPlan writing{Operation::Write, std::numeric_limits<int>::max(), false};
    test::FaultyStorage full(keeping, writing);
    bxzip::ArchiveFile doomed(full);
    ASSERT_TRUE(doomed.create(target).isOk());
    writing.number = writing.seen + 1;
    EXPECT_THAT(doomed.close().status.text(), testing::HasSubstr("its temporary file not be removed"));
    EXPECT_EQ(storage.get(target), "old");
    EXPECT_THAT(filesInFolder(), ElementsAre(L"pages.zip", L"~bxzip-1.tmp"));

    writing.number = 1;
    EXPECT_THAT(doomed.create(target).text(), testing::HasSubstr("the attempt at it not be removed"));
}

TEST_F(ArchiveFileTest, IsFinishedInASecondAttempt) {
    for (const Operation operation : {Operation::Write, Operation::SetSize, Operation::Move}) {
        storage.put(target, "old");
        test::FaultPlan plan{operation, -1};
        test::FaultyStorage faulty(storage, plan);
        bxzip::ArchiveFile hindered(faulty);
        ASSERT_TRUE(hindered.create(target).isOk());
        ASSERT_TRUE(hindered.add("a", L"page").isOk());
        plan.number = plan.seen + 1;
        EXPECT_TRUE(hindered.close().status.isOk());
        EXPECT_THAT(filesInFolder(), ElementsAre(L"pages.zip"));
        EXPECT_EQ(entriesIn(target), 1);
    }
}

TEST_F(ArchiveFileTest, LeavesNothingWhenItCannotBeCreated) {
    for (const Operation operation : {Operation::Write, Operation::SetSize}) {
        test::FaultPlan plan{operation, 1};
        test::FaultyStorage faulty(storage, plan);
        bxzip::ArchiveFile failing(faulty);
        EXPECT_FALSE(failing.create(target).isOk());
        EXPECT_TRUE(filesInFolder().empty());
    }
}

TEST_F(ArchiveFileTest, CannotBeCreatedTwiceOrUsedWhileClosed) {
    EXPECT_FALSE(archive.add("a", L"page").isOk());
    ASSERT_TRUE(archive.create(target).isOk());
    EXPECT_FALSE(archive.create(L"C:\\out\\other.zip").isOk());
    ASSERT_TRUE(archive.close().status.isOk());
    EXPECT_FALSE(archive.add("a", L"page").isOk());
}

} // namespace
