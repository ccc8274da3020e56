// Paths as a person types them on the command line.
#pragma once

#include <string>

namespace host {

/// The full Windows path of what was typed, which may be relative.
///
/// Under Wine a path that begins with "/" is the Unix path it looks like; left to Windows' rules it would mean
/// the root of the current drive, which is another place as soon as the program is started from drive C.
std::wstring fullPathOf(const std::wstring& typed);

} // namespace host
