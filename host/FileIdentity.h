// Tells whether two paths lead to one file, whatever they look like.
#pragma once

#include "host/UniqueHandle.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <tuple>

namespace host {

/// What the file system itself calls a file or folder. Equal identities mean the same file on Windows. Under
/// Wine different file systems may share a volume number, so equal identities there only make it likely;
/// isSameFile() decides.
struct FileIdentity {
    std::uint64_t volume = 0;
    std::array<std::uint8_t, 16> id{};

    friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
    friend bool operator<(const FileIdentity& a, const FileIdentity& b) {
        return std::tie(a.volume, a.id) < std::tie(b.volume, b.id);
    }
};

/// The identity of the file or folder at the path, links followed; none when there is nothing or it cannot be
/// looked at.
std::optional<FileIdentity> identityOf(const std::wstring& path);
/// The same of a file or folder that is open.
std::optional<FileIdentity> identityOf(const UniqueHandle& file);

/// Whether both paths lead to one existing file or folder.
bool isSameFile(const std::wstring& path, const std::wstring& otherPath);

} // namespace host
