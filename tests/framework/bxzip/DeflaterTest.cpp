// Tests of compressing while the system is short of memory or threads.
#include "SorvaneBase/bxzip/Deflater.h"
#include "support/AllocationFaults.h"
#include "support/MemoryStorage.h"
#include "support/ThreadFaults.h"

#include <gtest/gtest.h>

#include <string>

namespace {

class DeflaterTest : public testing::Test {
protected:
    DeflaterTest() {
        std::string content;
        while (content.size() <= 2 * bxzip::Deflater::chunkSize)
            content += "line " + std::to_string(content.size() % 1000) + "\n";
        storage.put(L"page", content);
        EXPECT_TRUE(storage.openSource(L"page", source).isOk());
        size = content.size();
        stream.reserve(size);
        bxzip::Deflater alone(1);
        EXPECT_TRUE(deflate(alone));
        expected = stream;
    }

    /// Takes no memory of its own.
    bool deflate(bxzip::Deflater& deflater) {
        stream.clear();
        bxzip::Deflater::Result result;
        return deflater.deflate(*source, size, sink, result).isOk() && result.compressedSize == stream.size();
    }

    test::MemoryStorage storage;
    std::unique_ptr<bxzip::Source> source;
    std::uint64_t size = 0;
    std::string stream;
    std::string expected;
    const bxzip::Deflater::Sink sink = [this](const void* bytes, std::size_t count) {
        stream.append(static_cast<const char*>(bytes), count);
        return bxzip::Status();
    };
};

TEST_F(DeflaterTest, GetsByWithTheThreadsThatMemorySufficesFor) {
    for (int number = 1;; ++number) {
        bxzip::Deflater deflater(4);
        test::AllocationFaults faults(number, true);
        faults.arm();
        const bool done = deflate(deflater);
        faults.disarm();
        ASSERT_TRUE(done) << number;
        ASSERT_TRUE(stream == expected) << number;
        ASSERT_TRUE(deflate(deflater) && stream == expected) << number << ", the next file";
        if (!faults.hasStruck()) {
            EXPECT_GT(number, 4 * 5) << "each thread takes memory for itself, a compressor and two chunks";
            break;
        }
    }
}

TEST_F(DeflaterTest, GetsByWithTheThreadsThatTheSystemGives) {
    for (int available = 0; available <= 4; ++available) {
        bxzip::Deflater deflater(4);
        const test::ThreadFaults faults(available);
        ASSERT_TRUE(deflate(deflater)) << available;
        ASSERT_TRUE(stream == expected) << available;
        ASSERT_TRUE(deflate(deflater) && stream == expected) << available << ", the next file";
        EXPECT_EQ(faults.refused(), available < 4 ? 1 : 0);
    }
}

} // namespace
