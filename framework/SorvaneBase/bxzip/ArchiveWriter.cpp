// Writes the entries and the directory of one ZIP archive.
#include "SorvaneBase/bxzip/ArchiveWriter.h"

#include "SorvaneBase/bxzip/PageKind.h"

#include <algorithm>
#include <array>

namespace bxzip {
namespace {

constexpr std::size_t maxNameSize = 0xFFFF;

Status checkName(const std::string& name) {
    if (name.empty())
        return Status("the entry has no name");
    if (name.size() > maxNameSize)
        return Status("the entry's name is too long");
    if (name.find('\0') != std::string::npos)
        return Status("the entry's name holds a NUL");
    if (name.back() == '/' || name.back() == '\\')
        return Status("the entry's name is one of a folder");
    return {};
}

} // namespace

ArchiveWriter::ArchiveWriter(Output& output, unsigned threads) : output(output), deflater(threads) {}

Status ArchiveWriter::add(const std::string& name, Source& source) {
    ZipEntry entry;
    entry.name = wellFormedUtf8(name);
    if (Status status = checkName(entry.name); !status.isOk())
        return status;
    if (names.contains(entry.name))
        return Status("the archive has an entry of this name");

    SourceState before;
    if (Status status = source.getState(before); !status.isOk())
        return status;
    entry.modified = before.modified;
    entry.size = before.size;
    entry.offset = entriesEnd;
    if (Status status = writeData(entry, source); !status.isOk())
        return status;
    if (Status status = checkUnchanged(entry, before, source); !status.isOk())
        return status;

    std::string record;
    appendLocalHeader(record, entry);
    if (Status status = output.write(entry.offset, record.data(), record.size()); !status.isOk())
        return status;
    const std::uint64_t end = entry.offset + record.size() + entry.compressedSize;
    writtenEnd = std::max(writtenEnd, end);

    record.clear();
    appendCentralHeader(record, entry);
    if (Status status = securedUpTo(end + directory.size() + record.size() + maxEndRecordsSize);
        !status.isOk())
        return status;
    // finish() must not fail for want of memory either.
    if (directory.capacity() < directory.size() + record.size() + maxEndRecordsSize)
        directory.reserve(2 * (directory.size() + record.size() + maxEndRecordsSize));
    names.insert(std::move(entry.name));
    directory += record;
    entriesEnd = end;
    return {};
}

Status ArchiveWriter::writeData(ZipEntry& entry, Source& source) {
    const std::uint64_t start = entry.offset + localHeaderSize(entry);
    std::uint64_t position = start;
    const auto sink = [&](const void* bytes, std::size_t size) {
        Status status = output.write(position, bytes, size);
        position += size;
        return status;
    };

    bool compressed = false;
    if (Status status = isCompressed(source, compressed); !status.isOk())
        return status;
    if (entry.size && !compressed) {
        // A page that does not get smaller is given up before it takes more room than it needs stored: the
        // disk may have no more.
        bool shrinks = true;
        const auto shrinkingSink = [&](const void* bytes, std::size_t size) {
            shrinks = position + size - start < entry.size;
            return shrinks ? sink(bytes, size) : Status("the page does not get smaller");
        };
        Deflater::Result result;
        Status status = deflater.deflate(source, entry.size, shrinkingSink, result);
        if (status.isOk()) {
            entry.method = Method::Deflated;
            entry.compressedSize = result.compressedSize;
            entry.crc = result.crc;
        }
        if (shrinks)
            return status;
        position = start;
    }
    entry.compressedSize = entry.size;
    return copySource(source, entry.size, sink, entry.crc);
}

Status ArchiveWriter::checkUnchanged(const ZipEntry& entry, const SourceState& before, Source& source) {
    SourceState after;
    if (Status status = source.getState(after); !status.isOk())
        return status;
    std::uint32_t crc = entry.crc;
    if (!source.excludesWriters()) {
        const auto nowhere = [](const void*, std::size_t) { return Status(); };
        if (Status status = copySource(source, entry.size, nowhere, crc); !status.isOk())
            return status;
    }
    return after == before && crc == entry.crc ? Status()
                                               : Status("the page's file changed while it was read");
}

Status ArchiveWriter::securedUpTo(std::uint64_t end) {
    // In steps, so that small entries do not each pay for a write.
    constexpr std::uint64_t step = std::uint64_t{64} << 10;
    static constexpr std::array<char, step> zeros{};
    for (end = (end + step - 1) / step * step; writtenEnd < end;) {
        const auto size = static_cast<std::size_t>(std::min(step, end - writtenEnd));
        if (Status status = output.write(writtenEnd, zeros.data(), size); !status.isOk())
            return status;
        writtenEnd += size;
    }
    return {};
}

Status ArchiveWriter::finish() {
    const std::size_t directorySize = directory.size();
    appendEndRecords(directory, names.size(), entriesEnd, directorySize);
    Status status = output.write(entriesEnd, directory.data(), directory.size());
    const std::uint64_t end = entriesEnd + directory.size();
    directory.resize(directorySize);
    if (!status.isOk())
        return status;
    writtenEnd = end;
    return output.setSize(end);
}

} // namespace bxzip
