// A ZIP archive at a path, and what becomes of the file that had the path before.
#pragma once

#include "SorvaneBase/bxzip/ArchiveWriter.h"
#include "SorvaneBase/bxzip/Storage.h"

#include <memory>
#include <optional>
#include <string>

namespace bxzip {

/// Where nothing has the path, the archive is written there. Otherwise it is written beside the existing file
/// under a temporary name, "~bxzip-<number>.tmp", and takes its place in one step when it is closed; until
/// then the existing file is locked against others and stays as it is. Temporary files that nobody has open
/// were left by a crash: they are removed when the next archive is created in the folder, whatever its name.
///
/// An archive that did not get all its entries takes its place too, but then the existing file is kept beside
/// it as NAME.bak, or "NAME (2).bak" and so on when that is taken. Where the file system gives a file a second
/// name, that is one step too; elsewhere there is a moment in which only NAME.bak exists.
///
/// Nothing throws: allocation failure is a failure like others.
class ArchiveFile {
public:
    /// What closing came to. The paths are for the log.
    struct Outcome {
        Status status;
        std::wstring backup; ///< where the existing file is kept; empty when it is not
        /// Where the new archive lies when it could not take its place: NAME.new or, when not even that could
        /// be had, the temporary name, under which it lasts until the next archive is created in the folder.
        std::wstring aside;
    };

    explicit ArchiveFile(Storage& storage) : storage(storage) {}
    ~ArchiveFile() { close(); }
    ArchiveFile(const ArchiveFile&) = delete;
    ArchiveFile& operator=(const ArchiveFile&) = delete;

    bool isOpen() const { return writer.has_value(); }

    /// Makes an archive without entries. After a failure everything is as it was before.
    Status create(const std::wstring& path);

    /// Adds a file. After a failure the archive is as it was before and can go on.
    Status add(const std::string& name, const std::wstring& path);

    /// Declares that the archive does not get all its entries, as a failed add() does.
    void setIncomplete() { incomplete = true; }

    /// Finishes the archive and puts it in its place. Closing what is not open does nothing.
    Outcome close();

private:
    Status createFiles(const std::wstring& path);
    Status createTemporary(const std::wstring& folder);
    Status finish();
    void replace(Outcome& outcome);
    Status place(Outcome& outcome);
    Status keepExisting(std::wstring& backup);
    void putAside(Outcome& outcome);
    template <class Attempt>
    Status useFreeName(const wchar_t* suffix, std::wstring& path, const Attempt& attempt);

    Storage& storage;
    std::wstring target;
    std::wstring temporary;           ///< the archive's path until it takes its place; empty when it has it
    std::unique_ptr<Output> replaced; ///< the existing file, while it is locked
    std::unique_ptr<Output> output;
    std::optional<ArchiveWriter> writer;
    bool existingWasMoved = false;
    bool incomplete = false;
};

} // namespace bxzip
