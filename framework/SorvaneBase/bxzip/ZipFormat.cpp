// The records of the ZIP container as bytes.
#include "SorvaneBase/bxzip/ZipFormat.h"

#include <algorithm>

namespace bxzip {
namespace {

// The largest value of a field means "see the 64-bit record", so it cannot stand for itself.
constexpr std::uint64_t marker16 = 0xFFFF;
constexpr std::uint64_t marker32 = 0xFFFFFFFF;

constexpr std::uint16_t utf8Names = 1 << 11;
// Version 6.3, on Windows with NTFS: the attributes are DOS attributes, and names are taken as they are. For
// the system FAT, Info-ZIP's unzip reads names in the OEM code page whatever the UTF-8 flag says.
constexpr std::uint16_t madeBy = 10 << 8 | 63;
constexpr std::uint16_t zip64Version = 45;
constexpr std::uint16_t zip64ExtraId = 1;
constexpr std::uint32_t archiveAttribute = 0x20;

void append(std::string& bytes, std::uint64_t value, int count) {
    for (int i = 0; i < count; ++i)
        bytes.push_back(static_cast<char>(value >> (8 * i)));
}
void append16(std::string& bytes, std::uint64_t value) {
    append(bytes, value, 2);
}
void append32(std::string& bytes, std::uint64_t value) {
    append(bytes, value, 4);
}
void append64(std::string& bytes, std::uint64_t value) {
    append(bytes, value, 8);
}

std::uint16_t versionNeeded(const ZipEntry& entry) {
    if (entry.size >= marker32 || entry.offset >= marker32)
        return zip64Version;
    return entry.method == Method::Deflated ? 20 : 10;
}

std::uint32_t dosTimeAndDate(const LocalTime& t) {
    LocalTime c = t;
    if (t.year < 1980)
        c = {1980, 1, 1, 0, 0, 0};
    else if (t.year > 2107)
        c = {2107, 12, 31, 23, 59, 58};
    const int time = c.hour << 11 | c.minute << 5 | std::min(c.second, 59) / 2;
    const int date = (c.year - 1980) << 9 | c.month << 5 | c.day;
    return static_cast<std::uint32_t>(date) << 16 | static_cast<std::uint32_t>(time);
}

// What both headers hold in the same order.
void appendCommonFields(std::string& bytes, const ZipEntry& entry) {
    append16(bytes, versionNeeded(entry));
    append16(bytes, utf8Names);
    append16(bytes, static_cast<std::uint16_t>(entry.method));
    append32(bytes, dosTimeAndDate(entry.modified));
    append32(bytes, entry.crc);
}

// Decodes one character and returns its length, or 0 when the bytes there are malformed.
std::size_t characterLength(const std::string& text, std::size_t i) {
    const auto at = [&](std::size_t k) { return k < text.size() ? static_cast<unsigned char>(text[k]) : 0u; };
    const unsigned first = at(i);
    if (first < 0x80)
        return 1;
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    std::uint32_t code = first & (0xFFu >> (length + 1));
    for (std::size_t k = 1; k < length; ++k) {
        if ((at(i + k) & 0xC0) != 0x80)
            return 0;
        code = code << 6 | (at(i + k) & 0x3F);
    }
    constexpr std::uint32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
    return first >= 0xC0 && first < 0xF8 && code >= smallest[length] && code <= 0x10FFFF && !surrogate
               ? length
               : 0;
}

} // namespace

std::size_t localHeaderSize(const ZipEntry& entry) {
    return 30 + entry.name.size() + (entry.size >= marker32 ? 20 : 0);
}

void appendLocalHeader(std::string& bytes, const ZipEntry& entry) {
    const bool zip64 = entry.size >= marker32;
    append32(bytes, 0x04034B50);
    appendCommonFields(bytes, entry);
    append32(bytes, zip64 ? marker32 : entry.compressedSize);
    append32(bytes, zip64 ? marker32 : entry.size);
    append16(bytes, entry.name.size());
    append16(bytes, zip64 ? 20 : 0);
    bytes += entry.name;
    if (zip64) {
        // Here the record must hold both sizes, even when only one of them needs it.
        append16(bytes, zip64ExtraId);
        append16(bytes, 16);
        append64(bytes, entry.size);
        append64(bytes, entry.compressedSize);
    }
}

void appendCentralHeader(std::string& bytes, const ZipEntry& entry) {
    std::string extra;
    for (const std::uint64_t value : {entry.size, entry.compressedSize, entry.offset})
        if (value >= marker32)
            append64(extra, value);

    append32(bytes, 0x02014B50);
    append16(bytes, madeBy);
    appendCommonFields(bytes, entry);
    append32(bytes, std::min(entry.compressedSize, marker32));
    append32(bytes, std::min(entry.size, marker32));
    append16(bytes, entry.name.size());
    append16(bytes, extra.empty() ? 0 : 4 + extra.size());
    append16(bytes, 0); // comment
    append16(bytes, 0); // disk
    append16(bytes, 0); // internal attributes
    append32(bytes, archiveAttribute);
    append32(bytes, std::min(entry.offset, marker32));
    bytes += entry.name;
    if (!extra.empty()) {
        append16(bytes, zip64ExtraId);
        append16(bytes, extra.size());
        bytes += extra;
    }
}

void appendEndRecords(std::string& bytes, std::uint64_t entryCount, std::uint64_t directoryOffset,
                      std::uint64_t directorySize) {
    if (entryCount >= marker16 || directoryOffset >= marker32 || directorySize >= marker32) {
        append32(bytes, 0x06064B50);
        append64(bytes, 44); // what follows in this record
        append16(bytes, madeBy);
        append16(bytes, zip64Version);
        append32(bytes, 0); // this disk
        append32(bytes, 0); // the directory's disk
        append64(bytes, entryCount);
        append64(bytes, entryCount);
        append64(bytes, directorySize);
        append64(bytes, directoryOffset);

        append32(bytes, 0x07064B50);
        append32(bytes, 0); // the disk of the record above
        append64(bytes, directoryOffset + directorySize);
        append32(bytes, 1); // disks
    }
    append32(bytes, 0x06054B50);
    append16(bytes, 0); // this disk
    append16(bytes, 0); // the directory's disk
    append16(bytes, std::min(entryCount, marker16));
    append16(bytes, std::min(entryCount, marker16));
    append32(bytes, std::min(directorySize, marker32));
    append32(bytes, std::min(directoryOffset, marker32));
    append16(bytes, 0); // comment
}

std::string wellFormedUtf8(const std::string& text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        if (const std::size_t length = characterLength(text, i)) {
            result.append(text, i, length);
            i += length;
            continue;
        }
        // A lone surrogate is three bytes but one character.
        const bool surrogate = i + 2 < text.size() && text[i] == '\xED' && (text[i + 1] & 0xE0) == 0xA0 &&
                               (text[i + 2] & 0xC0) == 0x80;
        result += "\xEF\xBF\xBD";
        i += surrogate ? 3 : 1;
    }
    return result;
}

} // namespace bxzip
