// Tests of telling compressed pages from others.
#include "SorvaneBase/bxzip/PageKind.h"
#include "support/MemoryStorage.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

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

const KindCase kindCases[] = {
    {"Jpeg", "\xFF\xD8\xFF\xE0"s + rest, true},
    {"JpegOfFourBytes", "\xFF\xD8\xFF\xD9"s, true},
    {"Png", "\x89PNG\r\n\x1A\n"s + rest, true},
    {"Gif87", "GIF87a"s + rest, true},
    {"Gif89", "GIF89a"s + rest, true},
    {"WebP", "RIFF\x10\0\0\0WEBPVP8 "s + rest, true},
    {"Wave", "RIFF\x10\0\0\0WAVEfmt "s + rest, false},
    {"Jpeg2000", "\0\0\0\x0CjP  \r\n\x87\n"s + rest, true},
    {"Jpeg2000Stream", "\xFF\x4F\xFF\x51"s + rest, true},
    {"JpegXl", "\0\0\0\x0CJXL \r\n\x87\n"s + rest, true},
    {"JpegXr", "II\xBC\x01"s + rest, true},
    {"Jbig2", "\x97JB2\r\n\x1A\n"s + rest, true},
    {"DjVu", "AT&TFORM"s + rest, true},
    {"Heic", "\0\0\0\x18"s + "ftypheic" + rest, true},
    {"Heix", "\0\0\0\x18"s + "ftypheix" + rest, true},
    {"Mif1", "\0\0\0\x18"s + "ftypmif1" + rest, true},
    {"Msf1", "\0\0\0\x18"s + "ftypmsf1" + rest, true},
    {"Avif", "\0\0\0\x18"s + "ftypavif" + rest, true},
    {"QuickTime", "\0\0\0\x14"s + "ftypqt  " + rest, false},
    {"Pdf", "%PDF-1.7\n"s + rest, true},
    {"PdfNotAtTheStart", " %PDF-1.7"s + rest, false},
    {"Zip", "PK\x03\x04"s + rest, true},
    {"EmptyZip", "PK\x05\x06"s + std::string(18, '\0'), true},
    {"Gzip", "\x1F\x8B\x08"s + rest, true},
    {"Bzip2", "BZh91AY&SY"s + rest, true},
    {"TextLikeBzip2", "BZh is a name"s + rest, false},
    {"Xz", "\xFD\x37zXZ\0"s + rest, true},
    {"SevenZip", "7z\xBC\xAF\x27\x1C"s + rest, true},
    {"Zstandard", "\x28\xB5\x2F\xFD"s + rest, true},
    {"Rar", "Rar!\x1A\x07"s + rest, true},
    {"Cabinet", "MSCF\0\0\0\0"s + rest, true},
    {"Empty", "", false},
    {"OneByte", "\xFF"s, false},
    {"Text", "The quick brown fox"s, false},
    {"Bitmap", "BM"s + rest, false},
};

INSTANTIATE_TEST_SUITE_P(Formats, PageKindTest, testing::ValuesIn(kindCases),
                         [](const auto& test) { return test.param.name; });

/// Builds TIFF files of images that have nothing but a Compression tag, and maybe images within.
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

    /// An image whose scheme is written as a LONG.
    std::string buildLong(int scheme) const {
        return start() + number(1, big ? 8 : 2) + number(259, 2) + number(4, 2) + number(1, offsetSize()) +
               number(static_cast<std::uint64_t>(scheme), 4) + std::string(big ? 4 : 0, '\0') +
               number(0, offsetSize());
    }

    /// A compressed image with others within it.
    std::string buildWithin(const std::vector<int>& schemes, int type, std::size_t size) const {
        const std::size_t imageSize = (big ? 8 : 2) + 2 * entrySize() + offsetSize();
        const std::size_t listAt = start().size() + imageSize;
        const bool isInline = schemes.size() * size <= offsetSize();
        const std::size_t imagesAt = isInline ? listAt : listAt + schemes.size() * size;
        const std::size_t innerSize = (big ? 8 : 2) + entrySize() + offsetSize();
        std::string list;
        std::string images;
        for (const int scheme : schemes) {
            list += number(imagesAt + images.size(), size);
            images += number(1, big ? 8 : 2) + entry(259, scheme) + number(0, offsetSize());
        }
        EXPECT_EQ(images.size(), innerSize * schemes.size());
        std::string field = isInline ? list : number(listAt, offsetSize());
        field.resize(offsetSize());
        return start() + number(2, big ? 8 : 2) + entry(259, 4) + number(330, 2) +
               number(static_cast<std::uint64_t>(type), 2) + number(schemes.size(), offsetSize()) + field +
               number(0, offsetSize()) + (isInline ? "" : list) + images;
    }

private:
    std::size_t offsetSize() const { return big ? 8 : 4; }
    std::size_t entrySize() const { return big ? 20 : 12; }

    /// All before the first image, which lies behind it.
    std::string start() const {
        const std::string bytes = (bigEndian ? "MM"s : "II"s) + number(big ? 43 : 42, 2) +
                                  (big ? number(8, 2) + number(0, 2) : ""s);
        return bytes + number(bytes.size() + offsetSize(), offsetSize());
    }
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

TEST_P(TiffKindTest, TakesTheSchemeInAnyWidth) {
    EXPECT_TRUE(isCompressed(tiff.buildLong(5)));
    EXPECT_TRUE(isCompressed(tiff.buildLong(34712)));
    EXPECT_FALSE(isCompressed(tiff.buildLong(1)));
}

TEST_P(TiffKindTest, IsNotCompressedWhenAnImageWithinAnotherIsNot) {
    for (const auto& [type, size] : {std::pair(4, 4u), {13, 4u}, {16, 8u}, {18, 8u}}) {
        EXPECT_TRUE(isCompressed(tiff.buildWithin({7}, type, size))) << type;
        EXPECT_FALSE(isCompressed(tiff.buildWithin({1}, type, size))) << type;
        EXPECT_TRUE(isCompressed(tiff.buildWithin({7, 5, 4}, type, size))) << type;
        EXPECT_FALSE(isCompressed(tiff.buildWithin({7, 5, 1}, type, size))) << type;
    }
    EXPECT_FALSE(isCompressed(tiff.buildWithin({7}, 2, 4))) << "no type of an offset";
    EXPECT_FALSE(isCompressed(tiff.buildWithin(std::vector<int>(300, 7), 4, 4))) << "too many";
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
