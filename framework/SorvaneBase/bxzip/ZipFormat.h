// The records of the ZIP container as bytes.
#pragma once

#include "SorvaneBase/bxzip/Storage.h"

#include <cstdint>
#include <string>

namespace bxzip {

enum class Method : std::uint16_t { Stored = 0, Deflated = 8 };

/// One entry as both of its headers describe it.
struct ZipEntry {
    std::string name; ///< well-formed UTF-8
    Method method = Method::Stored;
    LocalTime modified;
    std::uint32_t crc = 0;
    std::uint64_t compressedSize = 0;
    std::uint64_t size = 0;
    std::uint64_t offset = 0; ///< of the local header
};

/// The size of the local header, known before the entry's data is: a deflated entry is never larger than its
/// file, so the file's size alone tells whether the header holds 64-bit sizes.
std::size_t localHeaderSize(const ZipEntry& entry);

void appendLocalHeader(std::string& bytes, const ZipEntry& entry);
void appendCentralHeader(std::string& bytes, const ZipEntry& entry);

/// The records behind the central directory, the 64-bit ones only when a value needs them.
void appendEndRecords(std::string& bytes, std::uint64_t entryCount, std::uint64_t directoryOffset,
                      std::uint64_t directorySize);

/// No end records are larger than this.
constexpr std::size_t maxEndRecordsSize = 22 + 20 + 56;

/// Makes text fit for a name that is marked as UTF-8: malformed bytes and lone surrogates become U+FFFD,
/// because some readers refuse the whole archive for one of them.
std::string wellFormedUtf8(const std::string& text);

} // namespace bxzip
