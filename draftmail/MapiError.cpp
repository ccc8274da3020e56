// Failures that Simple MAPI has a code for.
#include "draftmail/MapiError.h"

namespace draftmail {
namespace {

// ERROR_DISK_QUOTA_EXCEEDED, which not every <winerror.h> has.
constexpr DWORD diskQuotaExceeded = 1295;

} // namespace

MapiError attachmentError(DWORD error) noexcept {
    switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
    case ERROR_INVALID_DRIVE:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
        return MapiError(MAPI_E_ATTACHMENT_NOT_FOUND);
    case ERROR_NOT_ENOUGH_MEMORY:
    case ERROR_OUTOFMEMORY:
        return MapiError(MAPI_E_INSUFFICIENT_MEMORY);
    default:
        return MapiError(MAPI_E_ATTACHMENT_OPEN_FAILURE);
    }
}

MapiError draftError(DWORD error) noexcept {
    switch (error) {
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
    case diskQuotaExceeded:
        return MapiError(MAPI_E_DISK_FULL);
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
    case ERROR_WRITE_PROTECT:
    // Where the folder should be there is none and none can be made, or there is a file.
    case ERROR_PATH_NOT_FOUND:
    case ERROR_DIRECTORY:
        return MapiError(MAPI_E_ACCESS_DENIED);
    case ERROR_NOT_ENOUGH_MEMORY:
    case ERROR_OUTOFMEMORY:
        return MapiError(MAPI_E_INSUFFICIENT_MEMORY);
    default:
        return MapiError(MAPI_E_FAILURE);
    }
}

} // namespace draftmail
