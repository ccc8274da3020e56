// Writes the entries and the directory of one ZIP archive.
#pragma once

#include "SorvaneBase/bxzip/Deflater.h"
#include "SorvaneBase/bxzip/Storage.h"
#include "SorvaneBase/bxzip/ZipFormat.h"

#include <cstdint>
#include <string>
#include <thread>
#include <unordered_set>

namespace bxzip {

/// An archive in an output of its own. Entries lie one behind the other, the directory behind the last; the
/// headers are written when sizes and checksum are known, so there are no data descriptors.
///
/// A failed entry leaves no trace: the next one, or the directory, takes its place. An entry counts as added
/// only when the room for the directory that names it has been written to, so a disk that is full afterwards
/// cannot make the archive unreadable.
///
/// Allocation failure throws std::bad_alloc and fails the entry like any other.
class ArchiveWriter {
public:
    explicit ArchiveWriter(Output& output, unsigned threads = std::thread::hardware_concurrency());

    /// Adds a file as it is. Its bytes decide whether it is compressed.
    /// Fails for a name that is empty, ends with a separator, holds a NUL, is longer than the format can hold
    /// or was used before, as readers would lose such an entry; and when the file changes while it is read.
    Status add(const std::string& name, Source& source);

    /// Writes the directory behind the entries and cuts the output to its size. Can be repeated, and more
    /// entries may follow.
    Status finish();

private:
    Status writeData(ZipEntry& entry, Source& source);
    Status checkUnchanged(const ZipEntry& entry, const SourceState& before, Source& source);
    Status securedUpTo(std::uint64_t end);

    Output& output;
    Deflater deflater;
    std::string directory;
    std::unordered_set<std::string> names;
    std::uint64_t entriesEnd = 0;
    std::uint64_t writtenEnd = 0; ///< what lies before has room on the disk
};

} // namespace bxzip
