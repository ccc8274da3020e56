// Tests of joining deflate streams.
#include "SorvaneBase/bxzip/DeflateJoin.h"

#include <gtest/gtest.h>

#include <zlib.h>

#include <cstddef>
#include <random>
#include <string>
#include <vector>

namespace {

using bxzip::openDeflateStream;

/// A whole stream by another compressor than the product's, so that blocks of every kind come up.
std::vector<std::byte> deflated(const std::string& text, int level, int strategy) {
    z_stream stream{};
    EXPECT_EQ(deflateInit2(&stream, level, Z_DEFLATED, -MAX_WBITS, 8, strategy), Z_OK);
    std::vector<std::byte> bytes(deflateBound(&stream, static_cast<uLong>(text.size())) +
                                 bxzip::deflateJoinSize);
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
    stream.avail_in = static_cast<uInt>(text.size());
    stream.next_out = reinterpret_cast<Bytef*>(bytes.data());
    stream.avail_out = static_cast<uInt>(bytes.size());
    EXPECT_EQ(deflate(&stream, Z_FINISH), Z_STREAM_END);
    bytes.resize(stream.total_out);
    deflateEnd(&stream);
    return bytes;
}

std::string inflated(const std::vector<std::byte>& bytes, std::size_t expectedSize) {
    std::string text(expectedSize + 1, '\0');
    z_stream stream{};
    inflateInit2(&stream, -MAX_WBITS);
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<std::byte*>(bytes.data()));
    stream.avail_in = static_cast<uInt>(bytes.size());
    stream.next_out = reinterpret_cast<Bytef*>(text.data());
    stream.avail_out = static_cast<uInt>(text.size());
    const int result = inflate(&stream, Z_FINISH);
    EXPECT_EQ(result, Z_STREAM_END) << (stream.msg ? stream.msg : "");
    EXPECT_EQ(stream.avail_in, 0u);
    text.resize(stream.total_out);
    inflateEnd(&stream);
    return text;
}

std::string makeText(std::mt19937& random, int kind, std::size_t size) {
    std::string text;
    while (text.size() < size) {
        const auto value = random();
        if (kind == 0)
            text.push_back(static_cast<char>(value));
        else if (kind == 1)
            text.push_back(static_cast<char>(240 + value % 9));
        else if (kind == 2)
            text += "line " + std::to_string(value % 50) + "\n";
        else if (kind == 3) // matches of the greatest length
            text.append(1 + value % 1000, static_cast<char>(value >> 20));
        else // very uneven, for long codes
            text.push_back(static_cast<char>(std::min(__builtin_ctz(value | 1u << 30) * 7, 255)));
    }
    text.resize(size);
    return text;
}

bool open(std::vector<std::byte>& stream) {
    std::size_t size = stream.size();
    stream.resize(size + bxzip::deflateJoinSize);
    const bool ok = openDeflateStream(stream.data(), size);
    stream.resize(size);
    return ok;
}

TEST(DeflateJoinTest, JoinedStreamsInflateToTheJoinedTexts) {
    std::mt19937 random(7);
    for (int round = 0; round < 400; ++round) {
        std::string all;
        std::vector<std::byte> joined;
        const std::size_t parts = 2 + random() % 4;
        for (std::size_t part = 0; part < parts; ++part) {
            const int kind = static_cast<int>(random() % 5);
            const std::string text = makeText(random, kind, random() % (part % 2 ? 70000 : 300));
            const int level = static_cast<int>(random() % 10);
            constexpr int strategies[] = {Z_DEFAULT_STRATEGY, Z_HUFFMAN_ONLY, Z_RLE, Z_FIXED};
            std::vector<std::byte> stream = deflated(text, level, strategies[random() % 4]);
            if (part + 1 < parts) {
                ASSERT_TRUE(open(stream)) << "round " << round;
            }
            joined.insert(joined.end(), stream.begin(), stream.end());
            all += text;
        }
        ASSERT_EQ(inflated(joined, all.size()), all) << "round " << round;
    }
}

TEST(DeflateJoinTest, RefusesStreamsThatAreCutShort) {
    std::mt19937 random(8);
    for (const int level : {0, 1, 6, 9}) {
        const std::vector<std::byte> whole = deflated(makeText(random, 2, 5000), level, Z_DEFAULT_STRATEGY);
        for (std::size_t size = 0; size < whole.size(); ++size) {
            std::vector<std::byte> part(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
            const std::vector<std::byte> before = part;
            ASSERT_FALSE(open(part)) << size << " of " << whole.size();
            ASSERT_EQ(part, before);
        }
    }
}

TEST(DeflateJoinTest, RefusesBytesBehindTheStream) {
    std::vector<std::byte> stream = deflated("some text", 6, Z_DEFAULT_STRATEGY);
    stream.push_back(std::byte{0});
    EXPECT_FALSE(open(stream));
}

TEST(DeflateJoinTest, ReadsRandomBytesWithoutHarm) {
    std::mt19937 random(9);
    for (int round = 0; round < 20000; ++round) {
        std::vector<std::byte> bytes(random() % 200);
        for (std::byte& byte : bytes)
            byte = static_cast<std::byte>(random());
        if (open(bytes)) {
            EXPECT_EQ(bytes[bytes.size() - 1], std::byte{0xFF});
        }
    }
}

} // namespace
