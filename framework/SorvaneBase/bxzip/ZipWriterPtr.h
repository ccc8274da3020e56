// Writes a ZIP archive from files.
#pragma once

#include "SorvaneBase/Api.h"
#include "SorvaneBase/StringTypes.h"

#include <cstddef>
#include <memory>

namespace bxzip {

/// The owner of one archive that is being written.
///
/// The archive: entries in the order in which they were added, with the names given, in UTF-8 (what is
/// malformed in one becomes U+FFFD, separators stay), and the local time of each file's last change, deflated
/// unless the file's bytes are compressed already (JPEG, PNG, compressed TIFF, PDF, archives) or would not
/// become smaller. Files and archives of any size and any number of entries work with bounded memory; the
/// 64-bit extensions are used only where they are needed. How many cores the machine has makes no difference
/// to the bytes.
///
/// An existing file at the path stays untouched, and locked, until the archive is closed, and is replaced in
/// one step then. When adding an entry failed or an exception ended the export, it is kept beside the archive
/// as NAME.bak ("NAME (2).bak" and so on when that is taken). When the archive cannot be finished, the existing
/// file stays; where there was none, what was written stays without a directory. What a crash leaves behind in
/// a folder is removed when the next archive is created in it.
///
/// Thread: one at a time; large files are compressed on threads of the object's own.
/// Errors: nothing throws; each failure is logged with its cause and with the names of the files it left.
class SORVANEBASE_API ZipWriterPtr {
public:
    /// Starts without an archive. The handle is always null; there is no other way to have one than
    /// createZipFile.
    explicit ZipWriterPtr(std::nullptr_t archive);

    /// Finishes and closes the archive; as an incomplete one while an exception unwinds that was not thrown
    /// yet when it was created.
    ~ZipWriterPtr();
    ZipWriterPtr(const ZipWriterPtr&) = delete;
    ZipWriterPtr& operator=(const ZipWriterPtr&) = delete;

    /// Creates the archive, without entries at first. False when a file cannot be written at the path, be it
    /// new or in the place of the existing one: a folder, a missing parent, a locked or read-only file; then
    /// nothing has changed there, and another attempt may follow. A writer makes only one archive.
    bool createZipFile(const Sorvane::u8string& path);

    /// Stores the whole content of a file as a new entry.
    /// False when the file cannot be read or changes meanwhile, when the archive cannot be written, and for a
    /// name that readers would lose: empty, ending with a separator, or used before. The archive stays as it
    /// was before the call, and a disk that is full cannot make it unreadable.
    bool addItemFromFile(const Sorvane::u8string& entryName, const Sorvane::u8string& filePath);

private:
    struct State;
    std::unique_ptr<State> state;
};

} // namespace bxzip
