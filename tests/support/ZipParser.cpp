// Reads a ZIP archive byte by byte and accepts nothing but what a careful writer makes of it.
#include "support/ZipParser.h"

#include <zlib.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <memory>
#include <set>
#include <stdexcept>

namespace test {
namespace {

struct Fault {
    std::string text;
};

void require(bool condition, const std::string& text) {
    if (!condition)
        throw Fault{text};
}

constexpr std::uint64_t marker16 = 0xFFFF;
constexpr std::uint64_t marker32 = 0xFFFFFFFF;
constexpr std::uint16_t madeBy = 10 << 8 | 63; ///< version 6.3, which knows UTF-8, on Windows with NTFS
constexpr std::uint32_t archiveAttribute = 0x20;

/// Little-endian fields, one after the other.
class Fields {
public:
    explicit Fields(std::string_view bytes) : bytes(bytes) {}

    std::uint64_t take(std::size_t count) {
        const std::string_view field = text(count);
        std::uint64_t value = 0;
        for (std::size_t i = count; i-- > 0;)
            value = value << 8 | static_cast<unsigned char>(field[i]);
        return value;
    }
    std::uint16_t take16() { return static_cast<std::uint16_t>(take(2)); }
    std::uint32_t take32() { return static_cast<std::uint32_t>(take(4)); }
    std::uint64_t take64() { return take(8); }

    std::string_view text(std::size_t count) {
        require(count <= bytes.size(), "a record ends too early");
        const std::string_view result = bytes.substr(0, count);
        bytes.remove_prefix(count);
        return result;
    }

    bool isEmpty() const { return bytes.empty(); }

private:
    std::string_view bytes;
};

bool isUtf8(std::string_view text) {
    while (!text.empty()) {
        const auto first = static_cast<unsigned char>(text[0]);
        const std::size_t length = first < 0x80   ? 1
                                   : first < 0xC2 ? 0
                                   : first < 0xE0 ? 2
                                   : first < 0xF0 ? 3
                                                  : 4;
        if (length == 0 || first > 0xF4 || length > text.size())
            return false;
        for (std::size_t i = 1; i < length; ++i)
            if ((static_cast<unsigned char>(text[i]) & 0xC0) != 0x80)
                return false;
        const auto second = length > 1 ? static_cast<unsigned char>(text[1]) : 0u;
        if ((first == 0xE0 && second < 0xA0) || (first == 0xED && second > 0x9F) ||
            (first == 0xF0 && second < 0x90) || (first == 0xF4 && second > 0x8F))
            return false;
        text.remove_prefix(length);
    }
    return true;
}

bool isTime(std::uint32_t dosTime) {
    const auto bits = [&](int shift, int width) { return dosTime >> shift & ((1u << width) - 1); };
    const std::chrono::year_month_day date(std::chrono::year(1980 + static_cast<int>(bits(25, 7))),
                                           std::chrono::month(bits(21, 4)), std::chrono::day(bits(16, 5)));
    return date.ok() && bits(11, 5) < 24 && bits(5, 6) < 60 && bits(0, 5) < 30;
}

/// A folder's name ends with a separator, and readers cut a name at a NUL.
bool isFileName(const std::string& name) {
    return !name.empty() && name.back() != '/' && name.back() != '\\' && name.find('\0') == std::string::npos;
}

class Parser {
public:
    Parser(const ZipBytes& bytes, const ZipContentSink& content, ZipListing& listing)
        : bytes(bytes), content(content), listing(listing) {}

    void run() {
        readEnd();
        readDirectory();
        std::uint64_t position = 0;
        for (std::size_t i = 0; i < listing.items.size(); ++i) {
            ZipItem& item = listing.items[i];
            const std::string where = "entry " + std::to_string(i) + ": ";
            require(item.offset == position, where + "does not follow the one before it");
            position = readLocalHeader(item, where);
            readContent(i, where);
            position += item.compressedSize;
        }
        require(position == directoryOffset, "something lies between the entries and the directory");
    }

private:
    std::string load(std::uint64_t offset, std::uint64_t size) {
        require(offset <= bytes.size && size <= bytes.size - offset, "a record lies outside of the archive");
        std::string result(static_cast<std::size_t>(size), '\0');
        bytes.read(offset, result.data(), result.size());
        return result;
    }

    void readEnd() {
        require(bytes.size >= 22, "shorter than an empty archive");
        const std::string end = load(bytes.size - 22, 22);
        Fields fields(end);
        require(fields.take32() == 0x06054B50, "does not end with an end record without comment");
        require(fields.take16() == 0 && fields.take16() == 0, "several disks");
        const std::uint64_t countHere = fields.take16();
        const std::uint64_t count = fields.take16();
        const std::uint64_t size = fields.take32();
        const std::uint64_t offset = fields.take32();
        require(fields.take16() == 0, "a comment");
        require(countHere == count, "the two counts differ");
        entryCount = count;
        directorySize = size;
        directoryOffset = offset;
        std::uint64_t endRecords = bytes.size - 22;

        if (bytes.size >= 22 + 20 + 56) {
            const std::string locatorBytes = load(bytes.size - 42, 20);
            Fields locator(locatorBytes);
            if (locator.take32() == 0x07064B50) {
                endRecords = bytes.size - 42 - 56;
                require(locator.take32() == 0 && locator.take64() == endRecords && locator.take32() == 1,
                        "the 64-bit locator is wrong");
                readZip64End(endRecords);
                listing.isZip64 = true;
            }
        }
        require(listing.isZip64 ==
                    (entryCount >= marker16 || directorySize >= marker32 || directoryOffset >= marker32),
                listing.isZip64 ? "64-bit end records without need" : "64-bit end records are missing");
        require(count == std::min(entryCount, marker16) && size == std::min(directorySize, marker32) &&
                    offset == std::min(directoryOffset, marker32),
                "the two end records differ");
        require(directorySize <= endRecords && directoryOffset == endRecords - directorySize,
                "the directory is not right before the end records");
    }

    void readZip64End(std::uint64_t offset) {
        const std::string record = load(offset, 56);
        Fields fields(record);
        require(fields.take32() == 0x06064B50 && fields.take64() == 44, "no 64-bit end record");
        require(fields.take16() == madeBy, "the 64-bit end record was made by another version");
        require(fields.take16() == 45, "the 64-bit end record needs another version");
        require(fields.take32() == 0 && fields.take32() == 0, "several disks");
        const std::uint64_t countHere = fields.take64();
        entryCount = fields.take64();
        require(countHere == entryCount, "the two 64-bit counts differ");
        directorySize = fields.take64();
        directoryOffset = fields.take64();
    }

    void readDirectory() {
        const std::string directory = load(directoryOffset, directorySize);
        Fields fields(directory);
        std::set<std::string> names;
        for (std::uint64_t i = 0; i < entryCount; ++i) {
            listing.items.push_back(
                readDirectoryEntry(fields, "directory entry " + std::to_string(i) + ": "));
            require(names.insert(listing.items.back().name).second, "a name occurs twice");
        }
        require(fields.isEmpty(), "the directory has more bytes than entries");
    }

    static ZipItem readDirectoryEntry(Fields& fields, const std::string& where) {
        ZipItem item;
        require(fields.take32() == 0x02014B50, where + "no signature");
        require(fields.take16() == madeBy, where + "made by another version");
        item.versionNeeded = fields.take16();
        require(fields.take16() == 1 << 11, where + "flags other than UTF-8");
        item.method = fields.take16();
        require(item.method == 0 || item.method == 8, where + "unknown method");
        item.dosTime = fields.take32();
        require(isTime(item.dosTime), where + "no such time");
        item.crc = fields.take32();
        item.compressedSize = fields.take32();
        item.size = fields.take32();
        const std::size_t nameSize = fields.take16();
        const std::size_t extraSize = fields.take16();
        require(fields.take16() == 0, where + "a comment");
        require(fields.take16() == 0, where + "another disk");
        require(fields.take16() == 0, where + "internal attributes");
        require(fields.take32() == archiveAttribute, where + "not marked as an archived file");
        item.offset = fields.take32();
        item.name = fields.text(nameSize);
        require(isUtf8(item.name), where + "the name is not UTF-8");
        require(isFileName(item.name), where + "the name is not one of a file");

        Fields extra(fields.text(extraSize));
        item.isZip64 = !extra.isEmpty();
        if (item.isZip64) {
            require(extra.take16() == 1 && extra.take16() == extraSize - 4, where + "no 64-bit record");
            for (std::uint64_t* value : {&item.size, &item.compressedSize, &item.offset}) {
                if (*value != marker32)
                    continue;
                *value = extra.take64();
                require(*value >= marker32, where + "a 64-bit value without need");
            }
            require(extraSize > 4, where + "a 64-bit record without need");
            require(extra.isEmpty(), where + "more 64-bit values than marked fields");
        } else {
            require(item.size < marker32 && item.compressedSize < marker32 && item.offset < marker32,
                    where + "a marked field without a 64-bit record");
        }
        const int needed = item.isZip64 ? 45 : item.method == 8 ? 20 : 10;
        require(item.versionNeeded == needed, where + "needs another version");
        return item;
    }

    /// Returns where the content begins.
    std::uint64_t readLocalHeader(ZipItem& item, const std::string& where) {
        const std::string header = load(item.offset, 30);
        Fields fields(header);
        require(fields.take32() == 0x04034B50, where + "no local header");
        require(fields.take16() == item.versionNeeded, where + "the versions differ");
        require(fields.take16() == 1 << 11, where + "flags other than UTF-8");
        require(fields.take16() == item.method, where + "the methods differ");
        require(fields.take32() == item.dosTime, where + "the times differ");
        require(fields.take32() == item.crc, where + "the checksums differ");
        std::uint64_t compressedSize = fields.take32();
        std::uint64_t size = fields.take32();
        const std::size_t nameSize = fields.take16();
        const std::size_t extraSize = fields.take16();
        require(load(item.offset + 30, nameSize) == item.name, where + "the names differ");
        const std::string extraBytes = load(item.offset + 30 + nameSize, extraSize);
        if (extraSize) {
            Fields extra(extraBytes);
            require(compressedSize == marker32 && size == marker32, where + "not both sizes are marked");
            require(extra.take16() == 1 && extra.take16() == 16, where + "no 64-bit record for both sizes");
            size = extra.take64();
            compressedSize = extra.take64();
            require(extra.isEmpty(), where + "more than both sizes");
            require(size >= marker32 || compressedSize >= marker32, where + "64-bit sizes without need");
        } else {
            require(size < marker32 && compressedSize < marker32, where + "marked sizes without a record");
        }
        require(size == item.size && compressedSize == item.compressedSize, where + "the sizes differ");
        item.dataOffset = item.offset + 30 + nameSize + extraSize;
        require(item.dataOffset <= directoryOffset && compressedSize <= directoryOffset - item.dataOffset,
                where + "runs into the directory");
        return item.dataOffset;
    }

    void readContent(std::size_t number, const std::string& where) {
        const ZipItem& item = listing.items[number];
        std::uint64_t size = 0;
        uLong crc = crc32(0, nullptr, 0);
        const auto take = [&](const char* data, std::size_t count) {
            size += count;
            crc = crc32(crc, reinterpret_cast<const Bytef*>(data), static_cast<uInt>(count));
            if (content)
                content(number, data, count);
        };
        if (item.method == 0) {
            require(item.size == item.compressedSize, where + "stored with another size");
            forEachPiece(item, [&](std::string& piece) { take(piece.data(), piece.size()); });
        } else {
            require(item.compressedSize < item.size, where + "deflated without getting smaller");
            inflateContent(item, where, take);
        }
        require(size == item.size, where + "the content has another size");
        require(crc == item.crc, where + "the content has another checksum");
    }

    template <class Take> void forEachPiece(const ZipItem& item, const Take& take) {
        constexpr std::uint64_t pieceSize = std::uint64_t{1} << 20;
        std::string piece;
        for (std::uint64_t done = 0; done < item.compressedSize; done += piece.size()) {
            piece.resize(static_cast<std::size_t>(std::min(pieceSize, item.compressedSize - done)));
            bytes.read(item.dataOffset + done, piece.data(), piece.size());
            take(piece);
        }
    }

    template <class Take>
    void inflateContent(const ZipItem& item, const std::string& where, const Take& take) {
        z_stream stream{};
        require(inflateInit2(&stream, -MAX_WBITS) == Z_OK, "zlib does not start");
        const std::unique_ptr<z_stream, int (*)(z_stream*)> end(&stream,
                                                                [](z_stream* s) { return inflateEnd(s); });
        std::string output(std::size_t{256} << 10, '\0');
        int result = Z_OK;
        forEachPiece(item, [&](std::string& piece) {
            require(result == Z_OK, where + "the stream ends too early");
            stream.next_in = reinterpret_cast<Bytef*>(piece.data());
            stream.avail_in = static_cast<uInt>(piece.size());
            do {
                stream.next_out = reinterpret_cast<Bytef*>(output.data());
                stream.avail_out = static_cast<uInt>(output.size());
                result = inflate(&stream, Z_NO_FLUSH);
                require(result == Z_OK || result == Z_STREAM_END || result == Z_BUF_ERROR,
                        where + "the stream is damaged");
                take(output.data(), output.size() - stream.avail_out);
            } while (result != Z_STREAM_END && stream.avail_out == 0);
            if (result == Z_BUF_ERROR)
                result = Z_OK;
            require(stream.avail_in == 0, where + "bytes behind the stream");
        });
        require(result == Z_STREAM_END, where + "the stream does not end");
    }

    const ZipBytes& bytes;
    const ZipContentSink& content;
    ZipListing& listing;
    std::uint64_t entryCount = 0;
    std::uint64_t directorySize = 0;
    std::uint64_t directoryOffset = 0;
};

} // namespace

ZipListing parseZip(const ZipBytes& bytes, const ZipContentSink& content) {
    ZipListing listing;
    try {
        Parser(bytes, content, listing).run();
    } catch (const Fault& fault) {
        listing.error = fault.text;
    }
    return listing;
}

ZipListing parseZip(const std::string& bytes, const ZipContentSink& content) {
    return parseZip(
        ZipBytes{bytes.size(), [&](std::uint64_t offset, void* buffer,
                                   std::size_t size) { std::memcpy(buffer, bytes.data() + offset, size); }},
        content);
}

ZipEntries zipEntries(const std::string& bytes) {
    std::vector<std::string> contents;
    const ZipListing listing = parseZip(bytes, [&](std::size_t item, const char* data, std::size_t size) {
        contents.resize(std::max(contents.size(), item + 1));
        contents[item].append(data, size);
    });
    if (!listing.error.empty())
        throw std::runtime_error("a bad archive: " + listing.error);
    contents.resize(listing.items.size());
    ZipEntries entries;
    for (std::size_t i = 0; i < contents.size(); ++i)
        entries.emplace_back(listing.items[i].name, std::move(contents[i]));
    return entries;
}

} // namespace test
