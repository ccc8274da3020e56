// A path to a file or directory and what can be asked about it.
#pragma once

#include "SorvaneBase/Api.h"
#include "SorvaneBase/StringTypes.h"

#include <cstdint>

namespace bxdisk {

/// A path, not an open file: every question goes to the disk when it is asked.
///
/// Paths over 260 characters work without the caller's doing; getPath() gives a form that the Windows file
/// functions accept, behind "\\?\" or "\\?\UNC\" only where the length needs it. "/" counts as a separator.
///
/// Thread: any. Errors: none; a path that cannot be looked at reads as absent.
class SORVANEBASE_API File {
public:
    explicit File(const Sorvane::pstring& path);
    explicit File(const Sorvane::u8string& path);

    /// Adds one path component, in UTF-8, behind a separator unless the path ends with one or is empty; "D:"
    /// thus means the root of the drive. The component is not normalised.
    void append(const Sorvane::u8string& name);

    /// Whether there is a file or a directory at the path.
    bool exists() const;
    bool isDirectory() const;

    /// The size in bytes, or 0 when there is no such file.
    std::int64_t getFileSize() const;

    /// The path with the appended components, as it was given; absolute and in the long form when the full
    /// path has the length from which a directory needs it (248 characters, a little less than MAX_PATH).
    Sorvane::pstring getPath() const;

private:
    Sorvane::pstring path;
};

} // namespace bxdisk
