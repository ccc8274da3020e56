// Tests of the entries and the directory of an archive.
#include "SorvaneBase/bxzip/ArchiveWriter.h"
#include "framework/bxzip/MemoryPeak.h"
#include "support/FaultyStorage.h"
#include "support/MemoryStorage.h"
#include "support/ZipParser.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <optional>
#include <random>

namespace {

using bxzip::Status;
using testing::ElementsAre;
using testing::Pair;

std::string noise(std::size_t size, unsigned range = 256) {
    std::mt19937 random(static_cast<unsigned>(size));
    std::string bytes(size, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(random() % range);
    return bytes;
}

class ArchiveWriterTest : public testing::Test {
protected:
    ArchiveWriterTest() {
        EXPECT_TRUE(storage.create(L"archive", output).isOk());
        writer.emplace(*output);
    }

    bool add(const std::string& name, const std::string& content) {
        storage.put(L"page", content);
        std::unique_ptr<bxzip::Source> source;
        return storage.openSource(L"page", source).isOk() && writer->add(name, *source).isOk();
    }

    /// Finishes the archive and reads it.
    const test::ZipListing& finish() {
        EXPECT_TRUE(writer->finish().isOk());
        entries = test::zipEntries(storage.get(L"archive"));
        listing = test::parseZip(storage.get(L"archive"));
        return listing;
    }

    test::MemoryStorage storage;
    std::unique_ptr<bxzip::Output> output;
    std::optional<bxzip::ArchiveWriter> writer;
    test::ZipListing listing;
    test::ZipEntries entries;
};

TEST_F(ArchiveWriterTest, WithoutEntriesIsAnEndRecord) {
    EXPECT_TRUE(finish().items.empty());
    EXPECT_EQ(storage.get(L"archive").size(), 22u);
}

TEST_F(ArchiveWriterTest, KeepsOrderNamesAndContents) {
    ASSERT_TRUE(add("b.txt", "second comes first"));
    ASSERT_TRUE(add("a.txt", std::string(5000, 'a')));
    ASSERT_TRUE(add("empty", ""));
    finish();
    EXPECT_THAT(entries, ElementsAre(Pair("b.txt", "second comes first"),
                                     Pair("a.txt", std::string(5000, 'a')), Pair("empty", "")));
}

TEST_F(ArchiveWriterTest, DeflatesWhatGetsSmaller) {
    ASSERT_TRUE(add("page", std::string(5000, 'a')));
    EXPECT_EQ(finish().items[0].method, 8);
}

TEST_F(ArchiveWriterTest, StoresWhatIsCompressedAlready) {
    ASSERT_TRUE(add("page.tif", "\xFF\xD8\xFF" + std::string(5000, 'a')));
    EXPECT_EQ(finish().items[0].method, 0);
}

TEST_F(ArchiveWriterTest, StoresWhatDoesNotGetSmaller) {
    ASSERT_TRUE(add("small", noise(100)));
    ASSERT_TRUE(add("one", "x"));
    ASSERT_TRUE(add("large", noise(3 * bxzip::Deflater::chunkSize + 17)));
    for (const test::ZipItem& item : finish().items)
        EXPECT_EQ(item.method, 0) << item.name;
    EXPECT_EQ(entries[2].second, noise(3 * bxzip::Deflater::chunkSize + 17));
}

TEST_F(ArchiveWriterTest, NeedsNoMoreRoomThanAStoredPageTakes) {
    // Room for the directory is taken in steps of 64 KiB, of which one ends where the page and its record do.
    constexpr std::size_t records = (30 + 4) + (46 + 4) + bxzip::maxEndRecordsSize;
    constexpr std::size_t archiveSize = std::size_t{4} << 20;
    storage.capacity = archiveSize;
    const std::string content = noise(archiveSize - records);
    storage.put(L"page", content);
    storage.capacity += content.size();
    std::unique_ptr<bxzip::Source> source;
    ASSERT_TRUE(storage.openSource(L"page", source).isOk());
    ASSERT_TRUE(writer->add("page", *source).isOk());
    EXPECT_EQ(finish().items[0].method, 0);
}

TEST_F(ArchiveWriterTest, JoinsTheChunksOfLargePages) {
    constexpr std::size_t chunk = bxzip::Deflater::chunkSize;
    const std::size_t sizes[] = {chunk - 1, chunk, chunk + 1, 2 * chunk, 5 * chunk + 4711};
    for (const std::size_t size : sizes)
        ASSERT_TRUE(add(std::to_string(size), noise(size, 9)));
    finish();
    for (std::size_t i = 0; i < std::size(sizes); ++i) {
        EXPECT_EQ(listing.items[i].method, 8);
        EXPECT_EQ(entries[i].second, noise(sizes[i], 9));
    }
}

TEST_F(ArchiveWriterTest, MakesTheSameBytesWithAnyNumberOfThreads) {
    std::string first;
    for (const unsigned threads : {1u, 2u, 3u, 16u}) {
        storage.remove(*storage.files[L"archive"]);
        ASSERT_TRUE(storage.create(L"archive", output).isOk());
        writer.emplace(*output, threads);
        ASSERT_TRUE(add("large", noise(7 * bxzip::Deflater::chunkSize, 5)));
        ASSERT_TRUE(add("again", noise(3 * bxzip::Deflater::chunkSize, 6)));
        finish();
        if (first.empty())
            first = storage.get(L"archive");
        EXPECT_TRUE(first == storage.get(L"archive")) << threads;
    }
}

TEST_F(ArchiveWriterTest, PassesSeparatorsOfNamesUnchanged) {
    ASSERT_TRUE(add("Scans/2024\\Page_1.tif", "1"));
    ASSERT_TRUE(add("C:\\x\\..\\Page_2.tif", "2"));
    EXPECT_EQ(finish().items[0].name, "Scans/2024\\Page_1.tif");
    EXPECT_EQ(listing.items[1].name, "C:\\x\\..\\Page_2.tif");
}

TEST_F(ArchiveWriterTest, KeepsNamesInUtf8) {
    ASSERT_TRUE(add("Str\xC3\xA1nka_\xF0\x9F\x93\x84.tif", "1"));
    EXPECT_EQ(finish().items[0].name, "Str\xC3\xA1nka_\xF0\x9F\x93\x84.tif");
}

TEST_F(ArchiveWriterTest, ReplacesWhatIsNoUtf8InNames) {
    ASSERT_TRUE(add("surrogate\xED\xA0\x80.tif", "1"));
    ASSERT_TRUE(add("cut\xC3", "2"));
    ASSERT_TRUE(add("overlong\xC0\x80", "3"));
    ASSERT_TRUE(add("beyond\xF4\x90\x80\x80", "4"));
    finish();
    EXPECT_EQ(listing.items[0].name, "surrogate\xEF\xBF\xBD.tif");
    EXPECT_EQ(listing.items[1].name, "cut\xEF\xBF\xBD");
}

TEST_F(ArchiveWriterTest, RefusesNamesThatReadersWouldLose) {
    ASSERT_TRUE(add("page", "1"));
    EXPECT_FALSE(add("page", "2"));
    EXPECT_FALSE(add("", "3"));
    EXPECT_FALSE(add("folder/", "4"));
    EXPECT_FALSE(add("folder\\", "5"));
    EXPECT_FALSE(add(std::string("nul\0.txt", 8), "6"));
    EXPECT_FALSE(add(std::string(65536, 'n'), "7"));
    ASSERT_TRUE(add(std::string(65535, 'n'), "8"));
    finish();
    EXPECT_THAT(entries, ElementsAre(Pair("page", "1"), Pair(std::string(65535, 'n'), "8")));
}

TEST_F(ArchiveWriterTest, CanGoOnAfterBeingFinished) {
    ASSERT_TRUE(add("a", std::string(1000, 'a')));
    finish();
    ASSERT_TRUE(add("b", std::string(1000, 'b')));
    finish();
    EXPECT_EQ(entries.size(), 2u);
}

TEST_F(ArchiveWriterTest, LeavesNoTraceOfAFailedEntry) {
    ASSERT_TRUE(add("a", noise(100000, 7)));
    finish();
    const std::string before = storage.get(L"archive");
    storage.put(L"page", noise(2000000, 7));
    test::FaultPlan plan{test::FaultPlan::Operation::Read, 4};
    test::FaultyStorage faulty(storage, plan);
    std::unique_ptr<bxzip::Source> source;
    ASSERT_TRUE(faulty.openSource(L"page", source).isOk());
    EXPECT_FALSE(writer->add("b", *source).isOk());
    finish();
    EXPECT_TRUE(before == storage.get(L"archive"));
}

/// A page that somebody changes between two looks at it.
class ChangingSource : public bxzip::Source {
public:
    Status getState(bxzip::SourceState& state) override {
        state = looks++ ? after : before;
        return {};
    }
    Status read(std::uint64_t offset, void* buffer, std::size_t size, std::size_t& count) override {
        count = offset < available ? std::min<std::size_t>(size, available - offset) : 0;
        std::fill_n(static_cast<char*>(buffer), count, ++reads < changesAtRead ? 'c' : 'd');
        return {};
    }
    bool excludesWriters() const override { return isLocked; }

    bxzip::SourceState before{1000, 1, {}};
    bxzip::SourceState after = before;
    std::size_t available = 1000;
    bool isLocked = true;
    int changesAtRead = std::numeric_limits<int>::max();
    int looks = 0;
    int reads = 0;
};

TEST_F(ArchiveWriterTest, RefusesAPageThatGrows) {
    ChangingSource source;
    source.after.size = 1001;
    EXPECT_FALSE(writer->add("page", source).isOk());
    EXPECT_TRUE(finish().items.empty());
}

TEST_F(ArchiveWriterTest, RefusesAPageThatIsWrittenTo) {
    ChangingSource source;
    source.after.changeMark = 2;
    EXPECT_FALSE(writer->add("page", source).isOk());
    EXPECT_TRUE(finish().items.empty());
}

TEST_F(ArchiveWriterTest, RefusesAPageThatShrinks) {
    ChangingSource source;
    source.available = 999;
    EXPECT_FALSE(writer->add("page", source).isOk());
    EXPECT_TRUE(finish().items.empty());
}

TEST_F(ArchiveWriterTest, RefusesAPageThatIsWrittenToWithoutATrace) {
    ChangingSource source;
    source.isLocked = false;
    source.changesAtRead = 3; // the first two are the look at its kind and the packing
    EXPECT_FALSE(writer->add("page", source).isOk());
    EXPECT_EQ(source.reads, 3);
    EXPECT_TRUE(finish().items.empty());
}

TEST_F(ArchiveWriterTest, TakesAPageThatOthersMayWriteToAndDoNot) {
    ChangingSource source;
    source.isLocked = false;
    EXPECT_TRUE(writer->add("page", source).isOk());
    EXPECT_EQ(finish().items.size(), 1u);
}

TEST_F(ArchiveWriterTest, ReadsAPageThatNobodyCanWriteToOnlyOnce) {
    ChangingSource source;
    EXPECT_TRUE(writer->add("page", source).isOk());
    EXPECT_EQ(source.reads, 2);
}

struct TimeCase {
    const char* name;
    bxzip::LocalTime time;
    std::uint32_t date;
    std::uint32_t timeOfDay;
};

class EntryTimeTest : public ArchiveWriterTest, public testing::WithParamInterface<TimeCase> {};

TEST_P(EntryTimeTest, IsWrittenInDosForm) {
    ChangingSource source;
    source.before.modified = source.after.modified = GetParam().time;
    ASSERT_TRUE(writer->add("page", source).isOk());
    const std::uint32_t time = finish().items[0].dosTime;
    EXPECT_EQ(time >> 16, GetParam().date);
    EXPECT_EQ(time & 0xFFFF, GetParam().timeOfDay);
}

INSTANTIATE_TEST_SUITE_P(
    Times, EntryTimeTest,
    testing::Values(
        TimeCase{"Usual", {2024, 2, 29, 13, 14, 17}, 44 << 9 | 2 << 5 | 29, 13 << 11 | 14 << 5 | 8},
        TimeCase{"First", {1980, 1, 1, 0, 0, 0}, 1 << 5 | 1, 0},
        TimeCase{"TooEarly", {1979, 12, 31, 23, 59, 59}, 1 << 5 | 1, 0},
        TimeCase{"Last", {2107, 12, 31, 23, 59, 59}, 127 << 9 | 12 << 5 | 31, 23 << 11 | 59 << 5 | 29},
        TimeCase{"TooLate", {2108, 1, 1, 0, 0, 0}, 127 << 9 | 12 << 5 | 31, 23 << 11 | 59 << 5 | 29}),
    [](const auto& test) { return test.param.name; });

class EntryCountTest : public ArchiveWriterTest, public testing::WithParamInterface<std::size_t> {};

TEST_P(EntryCountTest, NeedsTheLongEndRecordFromTheMarkerOn) {
    for (std::size_t i = 0; i < GetParam(); ++i) {
        ChangingSource source;
        source.before.size = source.after.size = 0;
        ASSERT_TRUE(writer->add(std::to_string(i), source).isOk());
    }
    EXPECT_EQ(finish().items.size(), GetParam());
    EXPECT_EQ(listing.isZip64, GetParam() >= 65535);
}

INSTANTIATE_TEST_SUITE_P(AroundTheLimit, EntryCountTest, testing::Values(65534, 65535, 65536));

/// Noise of any length, which fills the buffers of whoever packs it.
class NoiseSource : public bxzip::Source {
public:
    explicit NoiseSource(std::uint64_t size) : size(size) {}

    Status getState(bxzip::SourceState& state) override {
        state = {size, 0, {}};
        return {};
    }
    bool excludesWriters() const override { return true; }
    Status read(std::uint64_t offset, void* buffer, std::size_t wanted, std::size_t& count) override {
        memory.look();
        count = static_cast<std::size_t>(std::min<std::uint64_t>(wanted, size - offset));
        std::minstd_rand random(static_cast<unsigned>(offset) + 1);
        std::generate_n(static_cast<char*>(buffer), count, [&] { return static_cast<char>(random() >> 8); });
        return {};
    }

    MemoryPeak memory;

private:
    std::uint64_t size;
};

/// Takes everything and keeps nothing.
class BottomlessOutput : public bxzip::Output {
public:
    Status write(std::uint64_t, const void*, std::size_t) override { return {}; }
    Status setSize(std::uint64_t) override { return {}; }
    Status flush() override { return {}; }
    Status moveTo(const std::wstring&, bool) override { return {}; }
    Status remove() override { return {}; }
};

TEST(ArchiveWriterMemoryTest, IsBoundedWhateverThePagesSize) {
    BottomlessOutput nowhere;
    bxzip::ArchiveWriter packing(nowhere, bxzip::Deflater::maxThreads);
    constexpr std::uint64_t allBuffers = 2ull * bxzip::Deflater::maxThreads * bxzip::Deflater::chunkSize;
    NoiseSource page(2 * allBuffers);
    EXPECT_TRUE(packing.add("page", page).isOk());
    EXPECT_GT(page.memory.growthInMb(), 16u) << "the buffers were not seen";
    EXPECT_LT(page.memory.growthInMb(), 70u);
}

TEST_F(ArchiveWriterTest, SecuresRoomForTheDirectoryBeforeAnEntryCounts) {
    std::vector<std::string> added;
    const auto addUntilFull = [&] {
        for (int i = 0; i < 10000; ++i) {
            const std::string name = "a rather long name, so that the directory grows " + std::to_string(i);
            if (!add(name, noise(300)))
                return;
            added.push_back(name);
        }
    };
    storage.capacity = 1000000;
    addUntilFull();
    storage.capacity = storage.used();
    EXPECT_LT(added.size(), 10000u);
    EXPECT_GT(added.size(), 1000u);
    EXPECT_EQ(finish().items.size(), added.size());
}

} // namespace
