// Drives an archive from creation to closing and judges what is left on the disk. Portable.
#pragma once

#include "SorvaneBase/bxzip/ArchiveFile.h"
#include "support/AllocationFaults.h"
#include "support/ZipParser.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace test {

/// One archive that is written, and what it must hold then.
class ZipJob {
public:
    /// Gives a file's bytes, or nothing when it is not there.
    using Reader = std::function<std::optional<std::string>(const std::wstring& path)>;

    /// @param old     the content of the file at the path before
    /// @param faults  armed during the writer's own work only
    ZipJob(bxzip::Storage& storage, std::wstring path, std::optional<std::string> old,
           AllocationFaults* faults = nullptr);

    /// False when the archive cannot be created.
    bool create();

    /// Adds a file, of which `content` is known; false when that failed.
    bool add(const std::string& name, const std::wstring& path, const std::string& content);
    void setIncomplete();
    void close();

    /// What is wrong with the outcome; empty when nothing is. Each entry that was reported as added must be in
    /// the archive, no other may, and the old file must be where it belongs.
    /// @param mayLackArchive  for disks on which no archive can be finished at all
    std::string verdict(const Reader& read, bool mayLackArchive) const;

    /// Whether one of the names in the archive's folder is that of a temporary file, other than the one that
    /// the outcome tells of.
    bool leavesTemporaryFile(const std::vector<std::wstring>& names) const;

    const bxzip::ArchiveFile::Outcome& outcome() const { return result; }

private:
    class Armed;

    std::string archiveFault(const std::string& bytes) const;

    AllocationFaults* faults;
    bxzip::ArchiveFile archive;
    std::wstring path;
    std::optional<std::string> old;
    bool created = false;
    bool complete = true;
    ZipEntries expected;
    bxzip::ArchiveFile::Outcome result;
};

} // namespace test
