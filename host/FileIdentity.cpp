// Tells whether two paths lead to one file, whatever they look like.
#include "host/FileIdentity.h"

#include "SorvaneBase/bxdisk/File.h"

#include <windows.h>

#include <cstring>

namespace host {
namespace {

UniqueHandle openToLook(const std::wstring& path) {
    return UniqueHandle(CreateFileW(bxdisk::File(path).getPath().c_str(), FILE_READ_ATTRIBUTES,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
}

std::array<LONGLONG, 4> timesAndAttributes(const UniqueHandle& file) {
    FILE_BASIC_INFO info{};
    GetFileInformationByHandleEx(file.get(), FileBasicInfo, &info, sizeof info);
    return {info.CreationTime.QuadPart, info.LastWriteTime.QuadPart, info.ChangeTime.QuadPart,
            info.FileAttributes};
}

} // namespace

std::optional<FileIdentity> identityOf(const std::wstring& path) {
    return identityOf(openToLook(path));
}

std::optional<FileIdentity> identityOf(const UniqueHandle& file) {
    FILE_ID_INFO info;
    if (!file || !GetFileInformationByHandleEx(file.get(), FileIdInfo, &info, sizeof info))
        return std::nullopt;
    FileIdentity identity;
    identity.volume = info.VolumeSerialNumber;
    static_assert(sizeof info.FileId == sizeof identity.id);
    std::memcpy(identity.id.data(), &info.FileId, sizeof info.FileId);
    return identity;
}

bool isSameFile(const std::wstring& path, const std::wstring& otherPath) {
    const UniqueHandle one = openToLook(path);
    const UniqueHandle other = openToLook(otherPath);
    const auto identity = identityOf(one);
    if (!identity || identity != identityOf(other))
        return false;
    // Files of two file systems that Wine cannot tell apart differ in their times. Somebody may be writing to
    // the file while we look, so only times that stood still around the look at the other one count.
    for (int attempt = 0; attempt < 10; ++attempt) {
        const auto before = timesAndAttributes(one);
        const auto others = timesAndAttributes(other);
        if (before == others)
            return true;
        if (before == timesAndAttributes(one))
            return false;
    }
    return true;
}

} // namespace host
