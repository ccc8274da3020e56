// Which names Windows can store.
#pragma once

#include <optional>
#include <string>

namespace host {

/// Whether a file or folder of exactly this name can exist: no forbidden or control characters, no dot or
/// space at the end, no device's name, at most 255 characters. Windows does not refuse all of them: it drops
/// the dots, and what is copied to a device is gone.
bool isPossibleFileName(const std::wstring& name);

/// Whether a text could stand within such a name.
bool isPossibleInFileName(const std::wstring& text);

/// The first part of a path, as typed, that is not a possible name. "." and ".." and what names the drive or
/// share are fine.
std::optional<std::wstring> impossiblePartOf(const std::wstring& path);

} // namespace host
