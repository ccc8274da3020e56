// Failures that the host tells its user in one sentence.
#include "host/HostError.h"

namespace host {

Sorvane::u8string reasonFor(DWORD error) {
    switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_BAD_NETPATH:
        return "it does not exist";
    case ERROR_ACCESS_DENIED:
        return "access to it is denied";
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
        return "another program is using it";
    case ERROR_WRITE_PROTECT:
        return "it is write-protected";
    case ERROR_HANDLE_DISK_FULL:
    case ERROR_DISK_FULL:
        return "the disk is full";
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
        return "Windows does not allow such a name";
    case ERROR_FILENAME_EXCED_RANGE:
        return "its name is too long";
    case ERROR_NOT_READY:
    case ERROR_INVALID_DRIVE:
        return "its drive is not there";
    case ERROR_DIRECTORY:
        return "it is not a folder";
    case ERROR_DIRECTORY_NOT_SUPPORTED:
        return "it is a folder";
    case ERROR_BAD_FILE_TYPE:
        return "it is not a file but a device";
    case ERROR_HANDLE_EOF:
        return "it is empty";
    default:
        return "Windows reports error " + std::to_string(error);
    }
}

} // namespace host
