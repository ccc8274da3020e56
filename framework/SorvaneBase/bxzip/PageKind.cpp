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
    "\xFD\x37zXZ\0"sv,            //
    "7z\xBC\xAF\x27\x1C"sv,       //
    "\x28\xB5\x2F\xFD"sv,         // Zstandard
    "Rar!\x1A\x07"sv,             //
    "MSCF\0\0\0\0"sv,             // cabinet
};

constexpr std::string_view mediaBrands[] = {"heic", "heix", "mif1", "msf1", "avif"};

struct ByteReader {
    bool bigEndian;

    std::uint64_t operator()(const unsigned char* bytes, std::size_t count) const {
        std::uint64_t value = 0;
        for (std::size_t i = 0; i < count; ++i)
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

/// Looks at the images of a TIFF file, those within others included.
class TiffWalker {
public:
    TiffWalker(Source& source, const unsigned char* header)
        : source(source), number{header[0] == 'M'},
          big(number(header + 2, 2) == 43), directories{big ? number(header + 8, 8) : number(header + 4, 4)} {
    }

    /// Whether each image is compressed. One that cannot be followed ends the walk: the file is not what it
    /// seems, so nothing speaks against compressing it.
    Status walk(bool& compressed) {
        compressed = true;
        for (std::size_t image = 0; compressed && !directories.empty(); ++image) {
            const std::uint64_t offset = directories.back();
            directories.pop_back();
            compressed = false;
            if (image < maxImages)
                if (Status status = readImage(offset, compressed); !status.isOk())
                    return status;
        }
        return {};
    }

private:
    static constexpr std::size_t maxImages = 256;
    static constexpr std::uint64_t maxEntries = 512;

    Status readImage(std::uint64_t offset, bool& compressed) {
        constexpr std::uint64_t compressionTag = 259;
        constexpr std::uint64_t imagesWithinTag = 330;
        constexpr std::uint64_t shortType = 3;

        unsigned char countBytes[8];
        const std::size_t countSize = big ? 8 : 2;
        bool isComplete = false;
        if (Status status = read(offset, countBytes, countSize, isComplete); !status.isOk())
            return status;
        const std::uint64_t count = isComplete ? number(countBytes, countSize) : 0;
        if (count == 0 || count > maxEntries)
            return {};
        const std::size_t entrySize = big ? 20 : 12;
        entries.resize(static_cast<std::size_t>(count) * entrySize + offsetSize());
        if (Status status = read(offset + countSize, entries.data(), entries.size(), isComplete);
            !status.isOk())
            return status;
        if (!isComplete)
            return {};

        std::uint64_t scheme = 1;
        const unsigned char* end = entries.data() + count * entrySize;
        for (const unsigned char* entry = entries.data(); entry < end && isComplete; entry += entrySize) {
            const std::uint64_t tag = number(entry, 2);
            if (tag == compressionTag)
                scheme = number(entry + 4 + offsetSize(), number(entry + 2, 2) == shortType ? 2 : 4);
            if (tag == imagesWithinTag)
                if (Status status = noteImagesWithin(entry, isComplete); !status.isOk())
                    return status;
        }
        compressed = isComplete && isCompressedTiffScheme(scheme);
        if (const std::uint64_t next = number(end, offsetSize()))
            directories.push_back(next);
        return {};
    }

    Status noteImagesWithin(const unsigned char* entry, bool& isComplete) {
        const std::uint64_t type = number(entry + 2, 2);
        const bool isLong = type == 4 || type == 13;
        const bool isLong8 = type == 16 || type == 18;
        const std::uint64_t count = number(entry + 4, offsetSize());
        isComplete = (isLong || isLong8) && count <= maxImages - std::min(directories.size(), maxImages);
        if (!isComplete)
            return {};
        const std::size_t size = isLong ? 4 : 8;
        const unsigned char* field = entry + 4 + offsetSize();
        std::vector<unsigned char> offsets(static_cast<std::size_t>(count) * size);
        if (offsets.size() <= offsetSize())
            std::copy_n(field, offsets.size(), offsets.begin());
        else if (Status status =
                     read(number(field, offsetSize()), offsets.data(), offsets.size(), isComplete);
                 !status.isOk())
            return status;
        for (std::size_t i = 0; i < count; ++i)
            directories.push_back(number(offsets.data() + i * size, size));
        return {};
    }

    Status read(std::uint64_t offset, unsigned char* buffer, std::size_t size, bool& isComplete) {
        std::size_t count = 0;
        Status status = source.read(offset, buffer, size, count);
        isComplete = count == size;
        return status;
    }

    std::size_t offsetSize() const { return big ? 8 : 4; }

    Source& source;
    ByteReader number;
    bool big;
    std::vector<std::uint64_t> directories; ///< offsets of those not yet looked at
    std::vector<unsigned char> entries;
};

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
            return TiffWalker(source, head.data()).walk(compressed);

    compressed = std::any_of(std::begin(signatures), std::end(signatures),
                             [&](std::string_view signature) { return text.starts_with(signature); });
    // Three letters alone could begin a text.
    if (count == head.size() && text.starts_with("BZh"))
        compressed = text.substr(4, 6) == "1AY&SY";
    if (count == head.size() && text.starts_with("RIFF"))
        compressed = text.substr(8, 4) == "WEBP";
    if (count == head.size() && text.substr(4, 4) == "ftyp")
        compressed = std::find(std::begin(mediaBrands), std::end(mediaBrands), text.substr(8, 4)) !=
                     std::end(mediaBrands);
    return {};
}

} // namespace bxzip
