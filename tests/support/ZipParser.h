// Reads a ZIP archive byte by byte and accepts nothing but what a careful writer makes of it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace test {

struct ZipItem {
    std::string name;
    std::uint16_t versionNeeded = 0;
    std::uint16_t method = 0;
    std::uint32_t dosTime = 0; ///< the date in the high half
    std::uint32_t crc = 0;
    std::uint64_t compressedSize = 0;
    std::uint64_t size = 0;
    std::uint64_t offset = 0;
    bool isZip64 = false; ///< its directory entry has the 64-bit record
    std::uint64_t dataOffset = 0;
};

struct ZipListing {
    std::string error; ///< the first fault found; empty for a good archive
    std::vector<ZipItem> items;
    bool isZip64 = false; ///< it ends with the 64-bit records
};

/// The bytes of an archive.
struct ZipBytes {
    std::uint64_t size;
    /// Fills the whole buffer; only asked for bytes that exist.
    std::function<void(std::uint64_t offset, void* buffer, std::size_t size)> read;
};

/// Takes the content of the item with a number, piece by piece.
using ZipContentSink = std::function<void(std::size_t item, const char* bytes, std::size_t size)>;

/// Checks that entries lie one behind the other from the first byte on, that both headers of each agree, that
/// sizes, offsets and checksums are right, that every stream ends where its size says, that names are unique,
/// of files, and UTF-8 and marked so, that times exist, that there are no data descriptors, comments or unknown
/// records, that a deflated entry is smaller than its content, that 64-bit records are there exactly where a value
/// needs them, and that everything else has the one value that an archive made on Windows has.
ZipListing parseZip(const ZipBytes& bytes, const ZipContentSink& content = {});
ZipListing parseZip(const std::string& bytes, const ZipContentSink& content = {});

/// Names and contents.
using ZipEntries = std::vector<std::pair<std::string, std::string>>;

/// The entries of a small archive in their order. Throws std::runtime_error, which tells the fault, for a bad one.
ZipEntries zipEntries(const std::string& bytes);

} // namespace test
