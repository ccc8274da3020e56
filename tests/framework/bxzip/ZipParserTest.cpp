// Tests that the strict parser fails: an archive is written field by field, each of them wrong once.
#include "support/ZipParser.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

/// A little-endian field.
std::string number(std::uint64_t value, std::size_t size) {
    std::string bytes;
    for (std::size_t i = 0; i < size; ++i)
        bytes.push_back(static_cast<char>(value >> (8 * i)));
    return bytes;
}

constexpr std::uint32_t marked = 0xFFFFFFFF;
constexpr std::uint16_t windows = 10 << 8 | 63;

/// What both headers of an entry hold.
struct Header {
    std::uint16_t version = 10;
    std::uint16_t flags = 1 << 11;
    std::uint16_t method = 0;
    std::uint32_t time = 44 << 25 | 2 << 21 | 29 << 16; ///< a leap day
    std::uint32_t crc = 0;
    std::uint32_t compressedSize = 0;
    std::uint32_t size = 0;
    std::string name;
    std::string extra;

    std::string fields() const {
        return number(version, 2) + number(flags, 2) + number(method, 2) + number(time, 4) + number(crc, 4) +
               number(compressedSize, 4) + number(size, 4) + number(name.size(), 2) + number(extra.size(), 2);
    }
};

struct Entry {
    std::string before; ///< bytes in front of the entry
    std::uint32_t localSignature = 0x04034B50;
    Header local;
    std::string data;
    std::uint32_t signature = 0x02014B50;
    std::uint16_t madeBy = windows;
    Header central;
    std::string comment;
    std::uint16_t disk = 0;
    std::uint16_t internalAttributes = 0;
    std::uint32_t attributes = 0x20;
    std::optional<std::uint32_t> offset;
};

struct LongEnd {
    std::uint32_t signature = 0x06064B50;
    std::uint64_t recordSize = 44;
    std::uint16_t madeBy = windows;
    std::uint16_t version = 45;
    std::uint32_t disk = 0;
    std::uint32_t directoryDisk = 0;
    std::optional<std::uint64_t> countHere;
    std::optional<std::uint64_t> count;
    std::uint32_t locatorDisk = 0;
    std::optional<std::uint64_t> position;
    std::uint32_t disks = 1;
};

struct End {
    std::uint16_t disk = 0;
    std::uint16_t directoryDisk = 0;
    std::optional<std::uint16_t> countHere;
    std::optional<std::uint16_t> count;
    std::optional<std::uint32_t> directorySize;
    std::optional<std::uint32_t> directoryOffset;
    std::optional<std::uint16_t> commentSize;
    std::string comment;
};

/// An archive whose every field can be set. The optional ones hold what is true until they are.
struct Archive {
    std::vector<Entry> entries;
    std::string beforeDirectory;
    std::string directoryTail; ///< counted as a part of the directory
    std::string beforeEnd;
    std::optional<LongEnd> longEnd;
    End end;
    std::string behind;

    /// Sets a field of both headers of an entry.
    template <class T> void set(std::size_t entry, T Header::*field, T value) {
        entries[entry].local.*field = entries[entry].central.*field = value;
    }

    std::string bytes() const {
        std::string bytes;
        std::string directory;
        for (const Entry& e : entries) {
            bytes += e.before;
            const std::uint64_t offset = e.offset.value_or(static_cast<std::uint32_t>(bytes.size()));
            bytes += number(e.localSignature, 4) + e.local.fields() + e.local.name + e.local.extra + e.data;
            directory += number(e.signature, 4) + number(e.madeBy, 2) + e.central.fields() +
                         number(e.comment.size(), 2) + number(e.disk, 2) + number(e.internalAttributes, 2) +
                         number(e.attributes, 4) + number(offset, 4) + e.central.name + e.central.extra +
                         e.comment;
        }
        directory += directoryTail;
        bytes += beforeDirectory;
        const std::uint64_t directoryOffset = bytes.size();
        bytes += directory + beforeEnd;
        return bytes + endRecords(entries.size(), directoryOffset, directory.size()) + behind;
    }

    std::string endRecords(std::size_t entryCount, std::uint64_t directoryOffset,
                           std::uint64_t directorySize) const {
        std::string bytes;
        if (longEnd)
            bytes += number(longEnd->signature, 4) + number(longEnd->recordSize, 8) +
                     number(longEnd->madeBy, 2) + number(longEnd->version, 2) + number(longEnd->disk, 4) +
                     number(longEnd->directoryDisk, 4) + number(longEnd->countHere.value_or(entryCount), 8) +
                     number(longEnd->count.value_or(entryCount), 8) + number(directorySize, 8) +
                     number(directoryOffset, 8) + number(0x07064B50, 4) + number(longEnd->locatorDisk, 4) +
                     number(longEnd->position.value_or(directoryOffset + directorySize), 8) +
                     number(longEnd->disks, 4);
        const auto count = static_cast<std::uint16_t>(std::min<std::size_t>(entryCount, 0xFFFF));
        return bytes + number(0x06054B50, 4) + number(end.disk, 2) + number(end.directoryDisk, 2) +
               number(end.countHere.value_or(count), 2) + number(end.count.value_or(count), 2) +
               number(end.directorySize.value_or(static_cast<std::uint32_t>(directorySize)), 4) +
               number(end.directoryOffset.value_or(static_cast<std::uint32_t>(directoryOffset)), 4) +
               number(end.commentSize.value_or(static_cast<std::uint16_t>(end.comment.size())), 2) +
               end.comment;
    }
};

std::string deflated(const std::string& content) {
    z_stream stream{};
    EXPECT_EQ(deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY), Z_OK);
    std::string result(deflateBound(&stream, static_cast<uLong>(content.size())), '\0');
    std::string input = content;
    stream.next_in = reinterpret_cast<Bytef*>(input.data());
    stream.avail_in = static_cast<uInt>(input.size());
    stream.next_out = reinterpret_cast<Bytef*>(result.data());
    stream.avail_out = static_cast<uInt>(result.size());
    EXPECT_EQ(deflate(&stream, Z_FINISH), Z_STREAM_END);
    result.resize(result.size() - stream.avail_out);
    deflateEnd(&stream);
    return result;
}

Entry entryOf(const std::string& name, const std::string& content, bool isDeflated) {
    Entry entry;
    entry.data = isDeflated ? deflated(content) : content;
    entry.central.name = name;
    entry.central.version = isDeflated ? 20 : 10;
    entry.central.method = isDeflated ? 8 : 0;
    entry.central.crc = static_cast<std::uint32_t>(
        crc32(0, reinterpret_cast<const Bytef*>(content.data()), static_cast<uInt>(content.size())));
    entry.central.compressedSize = static_cast<std::uint32_t>(entry.data.size());
    entry.central.size = static_cast<std::uint32_t>(content.size());
    entry.local = entry.central;
    return entry;
}

/// A text of 500 bytes, of which no two parts are alike.
std::string text() {
    std::string text;
    for (int i = 0; text.size() < 500; ++i)
        text += std::to_string(i * i) + ", ";
    text.resize(500);
    return text;
}

/// A stored entry and a deflated one.
Archive soundArchive() {
    Archive archive;
    archive.entries = {entryOf("a.txt", "content", false), entryOf("b.txt", text(), true)};
    return archive;
}

/// A change to a sound archive, and what the parser must say about it.
struct Row {
    const char* what;
    std::function<void(Archive&)> change;
    const char* fault;
};

void expectFaults(const Archive& sound, const std::vector<Row>& rows,
                  const std::function<std::string(const Archive&)>& bytesOf = &Archive::bytes) {
    ASSERT_EQ(test::parseZip(bytesOf(sound)).error, "");
    for (const Row& row : rows) {
        Archive archive = sound;
        row.change(archive);
        EXPECT_EQ(test::parseZip(bytesOf(archive)).error, row.fault) << row.what;
    }
}

constexpr char noEnd[] = "does not end with an end record without comment";
constexpr char notBeforeEnd[] = "the directory is not right before the end records";
constexpr char badFlags[] = "directory entry 0: flags other than UTF-8";
constexpr char badTime[] = "directory entry 0: no such time";
constexpr char badName[] = "directory entry 0: the name is not UTF-8";
constexpr char noFileName[] = "directory entry 0: the name is not one of a file";

TEST(ZipParserTest, ReadsASoundArchive) {
    EXPECT_EQ(test::zipEntries(soundArchive().bytes()),
              (test::ZipEntries{{"a.txt", "content"}, {"b.txt", text()}}));
}

TEST(ZipParserTest, FindsWhatIsWrongWithTheEndOrBetweenTheParts) {
    expectFaults(
        soundArchive(),
        {{"a comment", [](Archive& a) { a.end.comment = "c"; }, noEnd},
         {"a comment's size", [](Archive& a) { a.end.commentSize = 1; }, "a comment"},
         {"bytes behind the end", [](Archive& a) { a.behind = "x"; }, noEnd},
         {"bytes in front", [](Archive& a) { a.entries[0].before = "x"; },
          "entry 0: does not follow the one before it"},
         {"a gap between entries", [](Archive& a) { a.entries[1].before = "gap"; },
          "entry 1: does not follow the one before it"},
         {"bytes before the directory", [](Archive& a) { a.beforeDirectory = "x"; },
          "something lies between the entries and the directory"},
         {"bytes before the end", [](Archive& a) { a.beforeEnd = "x"; }, notBeforeEnd},
         {"bytes in the directory", [](Archive& a) { a.directoryTail = "x"; },
          "the directory has more bytes than entries"},
         {"the end on another disk", [](Archive& a) { a.end.disk = 1; }, "several disks"},
         {"the directory on another disk", [](Archive& a) { a.end.directoryDisk = 1; }, "several disks"},
         {"an entry on another disk", [](Archive& a) { a.end.countHere = 1; }, "the two counts differ"},
         {"an entry too many", [](Archive& a) { a.end.countHere = a.end.count = 3; },
          "a record ends too early"},
         {"an entry too few", [](Archive& a) { a.end.countHere = a.end.count = 1; },
          "the directory has more bytes than entries"},
         {"another size of the directory", [](Archive& a) { a.end.directorySize = 101; }, notBeforeEnd},
         {"another place of the directory", [](Archive& a) { a.end.directoryOffset = 1; }, notBeforeEnd},
         {"a directory beyond the end", [](Archive& a) { a.end.directorySize = marked - 1; }, notBeforeEnd},
         {"needless 64-bit records", [](Archive& a) { a.longEnd.emplace(); },
          "64-bit end records without need"}});
}

TEST(ZipParserTest, FindsWhatIsWrongWithADirectoryEntry) {
    const auto flags = [](std::uint16_t value) {
        return [value](Archive& a) { a.set(0, &Header::flags, value); };
    };
    const auto time = [](std::uint32_t value) {
        return [value](Archive& a) { a.set(0, &Header::time, value); };
    };
    const auto name = [](const std::string& value) {
        return [value](Archive& a) { a.set(0, &Header::name, value); };
    };
    constexpr std::uint32_t day = 1 << 21 | 1 << 16;
    expectFaults(
        soundArchive(),
        {{"another signature", [](Archive& a) { a.entries[0].signature = 0; },
          "directory entry 0: no signature"},
         {"made with FAT", [](Archive& a) { a.entries[0].madeBy = 63; },
          "directory entry 0: made by another version"},
         {"made by version 6.2", [](Archive& a) { a.entries[0].madeBy = windows - 1; },
          "directory entry 0: made by another version"},
         {"stored by version 2.0", [](Archive& a) { a.set<std::uint16_t>(0, &Header::version, 20); },
          "directory entry 0: needs another version"},
         {"deflated by version 1.0", [](Archive& a) { a.set<std::uint16_t>(1, &Header::version, 10); },
          "directory entry 1: needs another version"},
         {"a data descriptor", flags(1 << 11 | 1 << 3), badFlags},
         {"encryption", flags(1 << 11 | 1), badFlags},
         {"a name not marked as UTF-8", flags(0), badFlags},
         {"another method", [](Archive& a) { a.set<std::uint16_t>(0, &Header::method, 9); },
          "directory entry 0: unknown method"},
         {"month 0", time(1 << 16), badTime},
         {"month 13", time(13 << 21 | 1 << 16), badTime},
         {"day 0", time(1 << 21), badTime},
         {"30 February", time(44 << 25 | 2 << 21 | 30 << 16), badTime},
         {"29 February 2023", time(43 << 25 | 2 << 21 | 29 << 16), badTime},
         {"hour 24", time(day | 24 << 11), badTime},
         {"minute 60", time(day | 60 << 5), badTime},
         {"second 60", time(day | 30), badTime},
         {"a comment", [](Archive& a) { a.entries[0].comment = "c"; }, "directory entry 0: a comment"},
         {"another disk", [](Archive& a) { a.entries[0].disk = 1; }, "directory entry 0: another disk"},
         {"internal attributes", [](Archive& a) { a.entries[0].internalAttributes = 1; },
          "directory entry 0: internal attributes"},
         {"a folder's attribute", [](Archive& a) { a.entries[0].attributes = 0x10; },
          "directory entry 0: not marked as an archived file"},
         {"a byte that is no character", name("\xFF"), badName},
         {"a cut character", name("a\xC3"), badName},
         {"a character of two bytes followed by another", name("\xC3z"), badName},
         {"a character written too long", name("\xC0\x80"), badName},
         {"a surrogate", name("\xED\xA0\x80"), badName},
         {"a character beyond Unicode", name("\xF4\x90\x80\x80"), badName},
         {"no name", name(""), noFileName},
         {"a folder's name", name("folder/"), noFileName},
         {"a folder's name as on Windows", name("folder\\"), noFileName},
         {"a NUL in the name", name(std::string("a\0b", 3)), noFileName},
         {"a name twice", [](Archive& a) { a.set(1, &Header::name, a.entries[0].local.name); },
          "a name occurs twice"},
         {"an offset that is not the entry's", [](Archive& a) { a.entries[1].offset = 0; },
          "entry 1: does not follow the one before it"}});
}

TEST(ZipParserTest, FindsWhatIsWrongWithA64BitRecordOfTheDirectory) {
    const auto extra = [](const std::string& record, bool isSizeMarked) {
        return [=](Archive& a) {
            a.set<std::uint16_t>(0, &Header::version, 45);
            a.entries[0].central.extra = record;
            if (isSizeMarked)
                a.entries[0].central.size = marked;
        };
    };
    const std::string large = number(1ull << 32, 8);
    expectFaults(soundArchive(),
                 {{"a time stamp", extra(number(0x5455, 2) + number(1, 2) + "x", false),
                   "directory entry 0: no 64-bit record"},
                  {"a record of another size", extra(number(1, 2) + number(9, 2) + large, true),
                   "directory entry 0: no 64-bit record"},
                  {"a record without values", extra(number(1, 2) + number(0, 2), false),
                   "directory entry 0: a 64-bit record without need"},
                  {"a small value", extra(number(1, 2) + number(8, 2) + number(7, 8), true),
                   "directory entry 0: a 64-bit value without need"},
                  {"a value too many", extra(number(1, 2) + number(16, 2) + large + large, true),
                   "directory entry 0: more 64-bit values than marked fields"},
                  {"no record", extra("", true), "directory entry 0: a marked field without a 64-bit record"},
                  {"no record for the offset", [](Archive& a) { a.entries[0].offset = marked; },
                   "directory entry 0: a marked field without a 64-bit record"}});
}

TEST(ZipParserTest, FindsWhatIsWrongWithALocalHeader) {
    const auto extra = [](const std::string& record) {
        return [record](Archive& a) {
            a.entries[0].local.compressedSize = a.entries[0].local.size = marked;
            a.entries[0].local.extra = record;
        };
    };
    const std::string seven = number(7, 8);
    expectFaults(
        soundArchive(),
        {{"another signature", [](Archive& a) { a.entries[0].localSignature = 0; },
          "entry 0: no local header"},
         {"another version", [](Archive& a) { a.entries[0].local.version = 20; },
          "entry 0: the versions differ"},
         {"a data descriptor", [](Archive& a) { a.entries[0].local.flags = 1 << 11 | 1 << 3; },
          "entry 0: flags other than UTF-8"},
         {"another method", [](Archive& a) { a.entries[0].local.method = 8; }, "entry 0: the methods differ"},
         {"another time", [](Archive& a) { ++a.entries[0].local.time; }, "entry 0: the times differ"},
         {"another checksum", [](Archive& a) { a.entries[0].local.crc = 0; },
          "entry 0: the checksums differ"},
         {"no compressed size", [](Archive& a) { a.entries[0].local.compressedSize = 0; },
          "entry 0: the sizes differ"},
         {"another size", [](Archive& a) { ++a.entries[0].local.size; }, "entry 0: the sizes differ"},
         {"another name", [](Archive& a) { a.entries[0].local.name = "A.txt"; }, "entry 0: the names differ"},
         {"a time stamp",
          [](Archive& a) { a.entries[0].local.extra = number(0x5455, 2) + number(1, 2) + "x"; },
          "entry 0: not both sizes are marked"},
         {"a record for one size", extra(number(1, 2) + number(8, 2) + seven),
          "entry 0: no 64-bit record for both sizes"},
         {"a record behind another", extra(number(1, 2) + number(16, 2) + seven + seven + "x"),
          "entry 0: more than both sizes"},
         {"a record without need", extra(number(1, 2) + number(16, 2) + seven + seven),
          "entry 0: 64-bit sizes without need"},
         {"no record", extra(""), "entry 0: marked sizes without a record"}});
}

TEST(ZipParserTest, FindsWhatIsWrongWithAContent) {
    const auto resize = [](Archive& a, std::size_t entry, std::uint32_t compressedSize, std::uint32_t size) {
        a.set(entry, &Header::compressedSize, compressedSize);
        a.set(entry, &Header::size, size);
    };
    const auto replaceStream = [resize](Archive& a, const std::string& stream) {
        a.entries[1].data = stream;
        resize(a, 1, static_cast<std::uint32_t>(stream.size()), 500);
    };
    expectFaults(
        soundArchive(),
        {{"another content", [](Archive& a) { a.entries[0].data[0] = 'C'; },
          "entry 0: the content has another checksum"},
         {"another checksum in both headers", [](Archive& a) { a.set<std::uint32_t>(1, &Header::crc, 1); },
          "entry 1: the content has another checksum"},
         {"a stored size that is not the content's", [=](Archive& a) { resize(a, 0, 7, 8); },
          "entry 0: stored with another size"},
         {"a deflated size that is not the content's", [](Archive& a) { a.set(1, &Header::size, 499u); },
          "entry 1: the content has another size"},
         {"a content that runs into the directory", [=](Archive& a) { resize(a, 0, 1000, 1000); },
          "entry 0: runs into the directory"},
         {"a size beyond all offsets",
          [=](Archive& a) {
              resize(a, 0, marked, marked);
              a.set<std::uint16_t>(0, &Header::version, 45);
              const std::string size = number(~std::uint64_t{15}, 8);
              a.set(0, &Header::extra, number(1, 2) + number(16, 2) + size + size);
          },
          "entry 0: runs into the directory"},
         {"bytes behind the stream", [=](Archive& a) { replaceStream(a, a.entries[1].data + "x"); },
          "entry 1: bytes behind the stream"},
         {"a cut stream",
          [=](Archive& a) { replaceStream(a, a.entries[1].data.substr(0, a.entries[1].data.size() - 1)); },
          "entry 1: the stream does not end"},
         {"a damaged stream", [=](Archive& a) { replaceStream(a, "\7"); }, "entry 1: the stream is damaged"},
         {"a stream that is no smaller", [](Archive& a) { a.entries[1] = entryOf("b.txt", "b", true); },
          "entry 1: deflated without getting smaller"}});
}

TEST(ZipParserTest, FindsWhatIsWrongWithThe64BitEnd) {
    // As few entries as need it, which are put together once.
    Archive archive;
    for (int i = 0; i < 0xFFFF; ++i)
        archive.entries.push_back(entryOf(std::to_string(i), "", false));
    const std::string bytes = archive.bytes();
    const std::string entries = bytes.substr(0, bytes.size() - 22);
    const std::size_t directoryOffset = entries.find(number(archive.entries[0].signature, 4));
    const auto withEntries = [&](const Archive& end) {
        return entries + end.endRecords(0xFFFF, directoryOffset, entries.size() - directoryOffset);
    };
    Archive onlyEnd;
    onlyEnd.longEnd.emplace();
    expectFaults(
        onlyEnd,
        {{"none", [](Archive& a) { a.longEnd.reset(); }, "64-bit end records are missing"},
         {"another signature", [](Archive& a) { a.longEnd->signature = 0; }, "no 64-bit end record"},
         {"another size", [](Archive& a) { a.longEnd->recordSize = 45; }, "no 64-bit end record"},
         {"made with FAT", [](Archive& a) { a.longEnd->madeBy = 63; },
          "the 64-bit end record was made by another version"},
         {"another version", [](Archive& a) { a.longEnd->version = 20; },
          "the 64-bit end record needs another version"},
         {"the end on another disk", [](Archive& a) { a.longEnd->disk = 1; }, "several disks"},
         {"the directory on another disk", [](Archive& a) { a.longEnd->directoryDisk = 1; }, "several disks"},
         {"an entry on another disk", [](Archive& a) { a.longEnd->countHere = 1; },
          "the two 64-bit counts differ"},
         {"an entry too many", [](Archive& a) { a.longEnd->countHere = a.longEnd->count = 0x10000; },
          "a record ends too early"},
         {"another count in the short record", [](Archive& a) { a.end.countHere = a.end.count = 1; },
          "the two end records differ"},
         {"a locator on another disk", [](Archive& a) { a.longEnd->locatorDisk = 1; },
          "the 64-bit locator is wrong"},
         {"a locator of something else", [](Archive& a) { a.longEnd->position = 0; },
          "the 64-bit locator is wrong"},
         {"several disks", [](Archive& a) { a.longEnd->disks = 2; }, "the 64-bit locator is wrong"}},
        withEntries);
}

TEST(ZipParserTest, GivesNoEntriesOfABadArchive) {
    EXPECT_THROW(test::zipEntries("PK"), std::runtime_error);
}

TEST(ZipParserTest, FindsEveryCut) {
    const std::string bytes = soundArchive().bytes();
    for (std::size_t size = 0; size < bytes.size(); ++size)
        EXPECT_NE(test::parseZip(bytes.substr(0, size)).error, "") << size;
}

TEST(ZipParserTest, FindsEveryChangedByte) {
    const std::string bytes = soundArchive().bytes();
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        // Only the lowest bit of a stream's last byte is sure to belong to the stream.
        for (const int mask : {0x01, 0xFF}) {
            std::string changed = bytes;
            changed[i] = static_cast<char>(changed[i] ^ mask);
            EXPECT_NE(test::parseZip(changed).error, "") << "byte " << i << ", mask " << mask;
        }
    }
}

} // namespace
