// Tells pages that are compressed already from those that are worth compressing.
#include "SorvaneBase/bxzip/PageKind.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

namespace bxzip {
namespace {

using namespace std::string_view_literals;

constexpr std::string_view signatures[] = {
    "\xFF\xD8\xFF"sv,             // JPEG
    "\x89PNG\r\n\x1A\n"sv,        //
    "GIF87a"sv,                   //
    "GIF89a"sv,                   //
    "\0\0\0\x0CjP  \r\n\x87\n"sv, // JPEG 2000
    "\xFF\x4F\xFF\x51"sv,         // JPEG 2000 without a container
    "\0\0\0\x0CJXL \r\n\x87\n"sv, // JPEG XL
    "II\xBC\x01"sv,               // JPEG XR
    "\x97JB2\r\n\x1A\n"sv,        // JBIG2
    "AT&TFORM"sv,                 // DjVu
    "%PDF-"sv,                    //
    "PK\x03\x04"sv,               // ZIP and the office formats in it
    "PK\x05\x06"sv,               // empty ZIP
    "\x1F\x8B\x08"sv,             // gzip
    "BZh"sv,                      // bzip2
    "\xFD\x37zXZ\0"sv,            //
    "7z\xBC\xAF\x27\x1C"sv,       //
    "\x28\xB5\x2F\xFD"sv,         // Zstandard
    "Rar!\x1A\x07"sv,             //
    "MSCF\0\0\0\0"sv,             // cabinet
};

constexpr std::string_view mediaBrands[] = {"heic", "heix", "mif1", "msf1", "avif"};

struct ByteReader {
    bool bigEndian;

    std::uint64_t operator()(const unsigned char* bytes, int count) const {
        std::uint64_t value = 0;
        for (int i = 0; i < count; ++i)
            value = value << 8 | bytes[bigEndian ? i : count - 1 - i];
        return value;
    }
};

// PackBits only shortens runs, and what is not listed may be anything: both are worth a try.
bool isCompressedTiffScheme(std::uint64_t scheme) {
    constexpr std::uint64_t schemes[] = {
        2,     3,     4,            // CCITT
        5,                          // LZW
        6,     7,     34892, 33007, // JPEG
        8,     32946,               // deflate
        9,     10,    34661,        // JBIG
        33003, 33005, 34712,        // JPEG 2000
        34925,                      // LZMA
        50000,                      // Zstandard
        50001,                      // WebP
        50002,                      // JPEG XL
    };
    return std::find(std::begin(schemes), std::end(schemes), scheme) != std::end(schemes);
}

// A directory that cannot be followed ends the walk: the file is not what it seems, so nothing speaks against
// compressing it.
Status isCompressedTiff(Source& source, const unsigned char* header, bool& compressed) {
    const ByteReader number{header[0] == 'M'};
    const bool big = number(header + 2, 2) == 43;
    const int countSize = big ? 8 : 2;
    const int offsetSize = big ? 8 : 4;
    const std::size_t entrySize = big ? 20 : 12;
    constexpr int maxImages = 256;
    constexpr std::uint64_t maxEntries = 512;
    constexpr std::uint64_t compressionTag = 259;
    constexpr std::uint64_t shortType = 3;

    compressed = false;
    std::vector<unsigned char> entries;
    std::uint64_t offset = big ? number(header + 8, 8) : number(header + 4, 4);
    for (int image = 0; offset; ++image) {
        unsigned char countBytes[8];
        std::size_t got = 0;
        const auto countBytesSize = static_cast<std::size_t>(countSize);
        if (Status status = source.read(offset, countBytes, countBytesSize, got); !status.isOk())
            return status;
        const std::uint64_t count = got == countBytesSize ? number(countBytes, countSize) : 0;
        if (count == 0 || count > maxEntries || image == maxImages) {
            compressed = false;
            return {};
        }
        entries.resize(static_cast<std::size_t>(count) * entrySize + static_cast<std::size_t>(offsetSize));
        if (Status status = source.read(offset + countBytesSize, entries.data(), entries.size(), got);
            !status.isOk())
            return status;
        std::uint64_t scheme = 1;
        if (got == entries.size())
            for (const unsigned char* entry = entries.data(); entry < entries.data() + count * entrySize;
                 entry += entrySize)
                if (number(entry, 2) == compressionTag)
                    scheme = number(entry + (big ? 12 : 8), number(entry + 2, 2) == shortType ? 2 : 4);
        compressed = isCompressedTiffScheme(scheme);
        if (!compressed)
            return {};
        offset = number(entries.data() + count * entrySize, offsetSize);
    }
    return {};
}

} // namespace

Status isCompressed(Source& source, bool& compressed) {
    std::array<unsigned char, 16> head{};
    std::size_t count = 0;
    compressed = false;
    if (Status status = source.read(0, head.data(), head.size(), count); !status.isOk())
        return status;
    const std::string_view text(reinterpret_cast<const char*>(head.data()), count);

    for (const std::string_view tiff : {"II*\0"sv, "MM\0*"sv, "II+\0"sv, "MM\0+"sv})
        if (text.starts_with(tiff) && count == head.size())
            return isCompressedTiff(source, head.data(), compressed);

    compressed = std::any_of(std::begin(signatures), std::end(signatures),
                             [&](std::string_view signature) { return text.starts_with(signature); });
    if (count == head.size() && text.starts_with("RIFF"))
        compressed = text.substr(8, 4) == "WEBP";
    if (count == head.size() && text.substr(4, 4) == "ftyp")
        compressed = std::find(std::begin(mediaBrands), std::end(mediaBrands), text.substr(8, 4)) !=
                     std::end(mediaBrands);
    return {};
}

} // namespace bxzip
