// Operations on directories and files.
#pragma once

#include "SorvaneBase/Api.h"
#include "SorvaneBase/StringTypes.h"

namespace bxdisk {

// Paths may be longer than 260 characters and hold any character that the file system takes.
// Thread: any. Nothing throws; GetLastError() holds the Windows error after a false result.

/// Creates a directory with all its missing parents. True when it exists afterwards, whether or not it did
/// before; false also when the path names a file. A failure leaves the parents made so far.
SORVANEBASE_API bool createDirectories(const Sorvane::u8string& path);
SORVANEBASE_API bool createDirectories(const std::wstring& path);

/// Whether the path names an existing directory.
SORVANEBASE_API bool isDirectory(const Sorvane::u8string& path);

/// Deletes a file. False when it was not there or could not be deleted.
SORVANEBASE_API bool deleteFile(const Sorvane::u8string& path);

/// Makes a text fit to be (a part of) a file name: characters that Windows forbids and control characters
/// become "_", dots and spaces at the end go, and a reserved device name (CON, NUL, COM1 ..., with or without
/// an extension) gets a "_" behind its stem. May return an empty text, for one that held nothing but dots and
/// spaces.
SORVANEBASE_API Sorvane::u8string normalizeFileName(const Sorvane::u8string& name);

/// Makes a new, empty directory of its own under the temporary root and gives its full path.
/// @param prefix  starts the directory's name, for people who look into the root
/// @param path    out: the directory's path; unchanged when the result is false
/// Ownership: the directory stays until its maker or the owner of the temporary root removes it.
SORVANEBASE_API bool createTempDir(const Sorvane::u8string& prefix, Sorvane::u8string& path);

/// Sets the directory under which createTempDir works. It must exist. Until this is called, and after a call
/// with an empty path, it is the user's temporary directory.
SORVANEBASE_API void setTempRoot(const Sorvane::pstring& directory);

} // namespace bxdisk
