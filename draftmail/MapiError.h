// Failures that Simple MAPI has a code for.
#pragma once

#include <windows.h>

#include <mapi.h>

#include <exception>

namespace draftmail {

/// Ends a call with a code of Simple MAPI. Never leaves the DLL.
class MapiError : public std::exception {
public:
    explicit MapiError(ULONG code) noexcept : mapiCode(code) {}

    ULONG code() const noexcept { return mapiCode; }
    const char* what() const noexcept override { return "a Simple MAPI call failed"; }

private:
    ULONG mapiCode;
};

/// @param error  why an attachment cannot be opened or read, as GetLastError() told
MapiError attachmentError(DWORD error) noexcept;

/// @param error  why a draft cannot be written, as GetLastError() told
MapiError draftError(DWORD error) noexcept;

} // namespace draftmail
