// Tests of archives at the size limits of the 32-bit format. They take minutes and are a target of their own.
#include "SorvaneBase/bxzip/ArchiveWriter.h"
#include "framework/bxzip/MemoryPeak.h"
#include "support/MemoryStorage.h"
#include "support/ZipParser.h"

#include <gtest/gtest.h>

#include <optional>
#include <string_view>

namespace {

constexpr std::uint64_t limit = 0xFFFFFFFF;

/// Zeros of any length behind a start.
class HugeSource : public bxzip::Source {
public:
    HugeSource(std::string_view start, std::uint64_t size) : start(start), size(size) {}

    bxzip::Status getState(bxzip::SourceState& state) override {
        state = {size, 0, {}};
        return {};
    }
    bool excludesWriters() const override { return true; }
    bxzip::Status read(std::uint64_t offset, void* buffer, std::size_t wanted, std::size_t& count) override {
        memory.look();
        count = offset < size ? static_cast<std::size_t>(std::min<std::uint64_t>(wanted, size - offset)) : 0;
        std::fill_n(static_cast<char*>(buffer), count, '\0');
        if (offset < start.size())
            start.copy(static_cast<char*>(buffer), count, static_cast<std::size_t>(offset));
        return {};
    }

    MemoryPeak memory;

private:
    std::string_view start;
    std::uint64_t size;
};

constexpr std::string_view jpeg = "\xFF\xD8\xFF\xE0";

class Zip64Test : public testing::Test {
protected:
    Zip64Test() {
        EXPECT_TRUE(storage.create(L"archive", output).isOk());
        writer.emplace(*output);
    }

    void add(const std::string& name, std::string_view start, std::uint64_t size) {
        HugeSource source(start, size);
        ASSERT_TRUE(writer->add(name, source).isOk());
        EXPECT_LT(source.memory.growthInMb(), 70u);
    }

    const test::ZipListing& finish() {
        EXPECT_TRUE(writer->finish().isOk());
        const auto& file = *storage.files[L"archive"];
        listing = test::parseZip({file.size(), [&](std::uint64_t offset, void* buffer, std::size_t size) {
                                      file.read(offset, buffer, size);
                                  }});
        EXPECT_EQ(listing.error, "");
        return listing;
    }

    test::MemoryStorage storage;
    std::unique_ptr<bxzip::Output> output;
    std::optional<bxzip::ArchiveWriter> writer;
    test::ZipListing listing;
};

class StoredSizeTest : public Zip64Test, public testing::WithParamInterface<std::uint64_t> {};

TEST_P(StoredSizeTest, NeedsLongSizesFromTheMarkerOn) {
    add("huge.jpg", jpeg, GetParam());
    ASSERT_EQ(finish().items.size(), 1u);
    EXPECT_EQ(listing.items[0].method, 0);
    EXPECT_EQ(listing.items[0].size, GetParam());
    EXPECT_EQ(listing.items[0].isZip64, GetParam() >= limit);
}

INSTANTIATE_TEST_SUITE_P(AroundTheLimit, StoredSizeTest, testing::Values(limit - 1, limit, limit + 1));

class DeflatedSizeTest : public Zip64Test, public testing::WithParamInterface<std::uint64_t> {};

TEST_P(DeflatedSizeTest, NeedsLongSizesFromTheMarkerOn) {
    add("huge.bmp", "BM", GetParam());
    ASSERT_EQ(finish().items.size(), 1u);
    EXPECT_EQ(listing.items[0].method, 8);
    EXPECT_EQ(listing.items[0].size, GetParam());
    EXPECT_EQ(listing.items[0].isZip64, GetParam() >= limit);
    EXPECT_FALSE(listing.isZip64);
}

INSTANTIATE_TEST_SUITE_P(AroundTheLimit, DeflatedSizeTest, testing::Values(limit - 1, limit, limit + 1));

class OffsetTest : public Zip64Test, public testing::WithParamInterface<std::uint64_t> {};

TEST_P(OffsetTest, NeedsLongOffsetsFromTheMarkerOn) {
    constexpr std::uint64_t header = 30 + 1;
    constexpr std::uint64_t first = 3u << 30;
    add("a", jpeg, first);
    add("b", jpeg, GetParam() - first - 2 * header);
    add("c", "", 0);
    add("d", "text text text text text text", 29);
    ASSERT_EQ(finish().items.size(), 4u);
    EXPECT_EQ(listing.items[2].offset, GetParam());
    EXPECT_FALSE(listing.items[1].isZip64);
    EXPECT_EQ(listing.items[2].isZip64, GetParam() >= limit);
    EXPECT_TRUE(listing.items[3].isZip64);
    EXPECT_TRUE(listing.isZip64);
}

INSTANTIATE_TEST_SUITE_P(AroundTheLimit, OffsetTest, testing::Values(limit - 1, limit, limit + 1));

class DirectoryOffsetTest : public Zip64Test, public testing::WithParamInterface<std::uint64_t> {};

TEST_P(DirectoryOffsetTest, NeedsTheLongEndRecordFromTheMarkerOn) {
    constexpr std::uint64_t header = 30 + 1;
    constexpr std::uint64_t first = 3u << 30;
    add("a", jpeg, first);
    add("b", jpeg, GetParam() - first - 2 * header);
    finish();
    EXPECT_EQ(listing.isZip64, GetParam() >= limit);
    EXPECT_FALSE(listing.items[1].isZip64);
}

INSTANTIATE_TEST_SUITE_P(AroundTheLimit, DirectoryOffsetTest, testing::Values(limit - 1, limit, limit + 1));

} // namespace
