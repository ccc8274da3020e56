// A path to a file or directory and what can be asked about it.
#pragma once

#include "SorvaneBase/Api.h"
#include "SorvaneBase/StringTypes.h"

#include <cstdint>

namespace bxdisk {

/// A path, not an open file: every question goes to the disk when it is asked.
///
/// Paths over 260 characters work without the caller's doing; getPath() gives a form that the Windows file
/// functions accept, with the "\\?\" prefix only where the length needs it. "/" counts as a separator.
///
/// Thread: any. Errors: none; a path that cannot be looked at reads as absent.
class SORVANEBASE_API File {
public:
    explicit File(const Sorvane::pstring& path);
    explicit File(const Sorvane::u8string& path);

    /// Adds one path component, in UTF-8. The component is not normalised.
    void append(const Sorvane::u8string& name);

    /// Whether there is a file or a directory at the path.
    bool exists() const;
    bool isDirectory() const;

    /// The size in bytes, or 0 when there is no such file.
    std::int64_t getFileSize() const;

    /// The full path: absolute when the path is longer than MAX_PATH allows, otherwise as it was given with
    /// the appended components.
    Sorvane::pstring getPath() const;

private:
    Sorvane::pstring path;
};

} // namespace bxdisk
