// A ZIP archive at a path, and what becomes of the file that had the path before.
#pragma once

#include "SorvaneBase/bxzip/ArchiveWriter.h"
#include "SorvaneBase/bxzip/Storage.h"

#include <memory>
#include <optional>
#include <string>

namespace bxzip {

/// Where nothing has the path, the archive is written there. Otherwise it is written beside the existing file
/// under a temporary name, "~bxzip-<hash of the name>-<number>.tmp", and takes its place in one step when it
/// is closed; until then the existing file is locked against others and stays as it is. Temporary files that
/// a crash left behind are removed when the next archive for the same path is created.
///
/// An archive that did not get all its entries takes its place too, but then the existing file is kept beside
/// it as NAME.bak, or "NAME (2).bak" and so on when that is taken.
///
/// Nothing throws: allocation failure is a failure like others.
class ArchiveFile {
public:
    /// What closing came to. The paths are for the log.
    struct Outcome {
        Status status;
        std::wstring backup; ///< where the existing file was moved; empty when it was not
        std::wstring aside;  ///< where the new archive lies when it could not take its place
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
    Status place(Outcome& outcome);
    Status moveToFreeName(Output& file, const wchar_t* suffix, std::wstring& path);

    Storage& storage;
    std::wstring target;
    std::unique_ptr<Output> replaced; ///< the existing file, while it is locked
    std::unique_ptr<Output> output;
    std::optional<ArchiveWriter> writer;
    bool isReplacing = false;
    bool incomplete = false;
};

} // namespace bxzip
