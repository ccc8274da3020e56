// Failures that the host tells its user in one sentence.
#include "host/HostError.h"

namespace host {

FileReason fileReason(DWORD error) {
    switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_BAD_NETPATH:
        return {"Reason.Missing", "it does not exist"};
    case ERROR_ACCESS_DENIED:
        return {"Reason.AccessDenied", "access to it is denied"};
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
        return {"Reason.InUse", "another program is using it"};
    case ERROR_WRITE_PROTECT:
        return {"Reason.WriteProtected", "it is write-protected"};
    case ERROR_HANDLE_DISK_FULL:
    case ERROR_DISK_FULL:
        return {"Reason.DiskFull", "the disk is full"};
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
        return {"Reason.NameNotAllowed", "Windows does not allow such a name"};
    case ERROR_FILENAME_EXCED_RANGE:
        return {"Reason.NameTooLong", "its name is too long"};
    case ERROR_NOT_READY:
    case ERROR_INVALID_DRIVE:
        return {"Reason.NoDrive", "its drive is not there"};
    case ERROR_DIRECTORY:
        return {"Reason.NoFolder", "it is not a folder"};
    case ERROR_DIRECTORY_NOT_SUPPORTED:
        return {"Reason.Folder", "it is a folder"};
    case ERROR_BAD_FILE_TYPE:
        return {"Reason.Device", "it is not a file but a device"};
    case ERROR_HANDLE_EOF:
        return {"Reason.Empty", "it is empty"};
    default:
        return {};
    }
}

Sorvane::u8string reasonFor(DWORD error) {
    const char* const text = fileReason(error).text;
    return text ? text : "Windows reports error " + std::to_string(error);
}

} // namespace host
