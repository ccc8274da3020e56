// Tests of telling compressed pages from others.
#include "SorvaneBase/bxzip/PageKind.h"
#include "support/MemoryStorage.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace std::string_literals;

bool isCompressed(const std::string& bytes) {
    test::MemoryStorage storage;
    storage.put(L"page", bytes);
    std::unique_ptr<bxzip::Source> source;
    bool compressed = false;
    EXPECT_TRUE(storage.openSource(L"page", source).isOk());
    EXPECT_TRUE(bxzip::isCompressed(*source, compressed).isOk());
    return compressed;
}

struct KindCase {
    const char* name;
    std::string bytes;
    bool compressed;
};

class PageKindTest : public testing::TestWithParam<KindCase> {};

TEST_P(PageKindTest, IsToldByTheFirstBytes) {
    EXPECT_EQ(isCompressed(GetParam().bytes), GetParam().compressed);
}

const std::string rest(64, 'x');

INSTANTIATE_TEST_SUITE_P(Formats, PageKindTest,
                         testing::Values(KindCase{"Jpeg", "\xFF\xD8\xFF\xE0"s + rest, true},
                                         KindCase{"JpegOfFourBytes", "\xFF\xD8\xFF\xD9"s, true},
                                         KindCase{"Png", "\x89PNG\r\n\x1A\n"s + rest, true},
                                         KindCase{"Gif", "GIF89a"s + rest, true},
                                         KindCase{"WebP", "RIFF\x10\0\0\0WEBPVP8 "s + rest, true},
                                         KindCase{"Wave", "RIFF\x10\0\0\0WAVEfmt "s + rest, false},
                                         KindCase{"Jpeg2000", "\0\0\0\x0CjP  \r\n\x87\n"s + rest, true},
                                         KindCase{"Heic",
                                                  "\0\0\0\x18"
                                                  "ftypheic\0\0\0\0"s +
                                                      rest,
                                                  true},
                                         KindCase{"QuickTime",
                                                  "\0\0\0\x14"
                                                  "ftypqt  \0\0\0\0"s +
                                                      rest,
                                                  false},
                                         KindCase{"Pdf", "%PDF-1.7\n"s + rest, true},
                                         KindCase{"Zip", "PK\x03\x04"s + rest, true},
                                         KindCase{"EmptyZip", "PK\x05\x06"s + std::string(18, '\0'), true},
                                         KindCase{"Gzip", "\x1F\x8B\x08"s + rest, true},
                                         KindCase{"SevenZip", "7z\xBC\xAF\x27\x1C"s + rest, true},
                                         KindCase{"Empty", "", false}, KindCase{"OneByte", "\xFF"s, false},
                                         KindCase{"Text", "The quick brown fox"s, false},
                                         KindCase{"Bitmap", "BM"s + rest, false},
                                         KindCase{"PdfNotAtTheStart", " %PDF-1.7"s + rest, false}),
                         [](const auto& test) { return test.param.name; });

/// Builds TIFF files of images that have nothing but a Compression tag.
class TiffBuilder {
public:
    TiffBuilder(bool bigEndian, bool big) : bigEndian(bigEndian), big(big) {}

    std::string build(const std::vector<int>& schemes, std::uint64_t afterLast = 0) const {
        std::string bytes = (bigEndian ? "MM"s : "II"s) + number(big ? 43 : 42, 2);
        if (big)
            bytes += number(8, 2) + number(0, 2);
        const std::size_t offsetSize = big ? 8 : 4;
        for (std::size_t i = 0; i <= schemes.size(); ++i) {
            const bool last = i == schemes.size();
            bytes += number(last ? afterLast : bytes.size() + offsetSize, offsetSize);
            if (last)
                break;
            const bool hasTag = schemes[i] != 0;
            bytes += number(hasTag ? 2 : 1, big ? 8 : 2);
            bytes += entry(256, 100);
            if (hasTag)
                bytes += entry(259, schemes[i]);
        }
        return bytes;
    }

private:
    std::string number(std::uint64_t value, std::size_t size) const {
        std::string bytes(size, '\0');
        for (std::size_t i = 0; i < size; ++i)
            bytes[bigEndian ? size - 1 - i : i] = static_cast<char>(value >> (8 * i));
        return bytes;
    }
    std::string entry(int tag, int value) const {
        return number(static_cast<std::uint64_t>(tag), 2) + number(3, 2) + number(1, big ? 8 : 4) +
               number(static_cast<std::uint64_t>(value), 2) + std::string(big ? 6 : 2, '\0');
    }

    bool bigEndian;
    bool big;
};

class TiffKindTest : public testing::TestWithParam<std::tuple<bool, bool>> {
protected:
    TiffBuilder tiff{std::get<0>(GetParam()), std::get<1>(GetParam())};
};

TEST_P(TiffKindTest, IsCompressedWhenItsSchemeCompresses) {
    for (const int scheme : {2, 3, 4, 5, 6, 7, 8, 32946, 34712})
        EXPECT_TRUE(isCompressed(tiff.build({scheme}))) << scheme;
    for (const int scheme : {0, 1, 32773, 12345})
        EXPECT_FALSE(isCompressed(tiff.build({scheme}))) << scheme;
}

TEST_P(TiffKindTest, IsNotCompressedWhenOneOfItsImagesIsNot) {
    EXPECT_TRUE(isCompressed(tiff.build({4, 7, 5})));
    EXPECT_FALSE(isCompressed(tiff.build({4, 7, 1})));
    EXPECT_FALSE(isCompressed(tiff.build({1, 4})));
}

TEST_P(TiffKindTest, IsNotCompressedWhenItCannotBeFollowed) {
    EXPECT_FALSE(isCompressed(tiff.build({4}, 100000)));
    EXPECT_FALSE(isCompressed(tiff.build({4}, 0x7FFFFFFF)));
    EXPECT_FALSE(isCompressed(tiff.build({})));
}

TEST_P(TiffKindTest, EndsWhenItsImagesRunInACircle) {
    EXPECT_FALSE(isCompressed(tiff.build({4}, std::get<1>(GetParam()) ? 16 : 8)));
}

INSTANTIATE_TEST_SUITE_P(ByteOrdersAndSizes, TiffKindTest,
                         testing::Combine(testing::Bool(), testing::Bool()));

} // namespace
