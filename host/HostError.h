// Failures that the host tells its user in one sentence.
#pragma once

#include "SorvaneBase/StringTypes.h"

#include <windows.h>

#include <stdexcept>

// The compiler's headers lack it.
#ifndef ERROR_DIRECTORY_NOT_SUPPORTED
#define ERROR_DIRECTORY_NOT_SUPPORTED 336L
#endif

namespace host {

/// Why a file operation failed, where that is one of the usual reasons.
struct FileReason {
    const char* textKey = nullptr; ///< of a sentence in the language files, in the section ScanHost.Export
    const char* text = nullptr;    ///< in English, as the second half of a sentence
};

/// Without texts for an error that needs its number to be told.
FileReason fileReason(DWORD error);

/// Why a file operation failed, as the second half of a sentence ("another program is using it").
/// @param error  the code that GetLastError() gave
Sorvane::u8string reasonFor(DWORD error);

/// Something the host cannot do. what() is one English sentence in UTF-8 that names the file concerned and is
/// meant for the person at the program.
class HostError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A file or folder that the host cannot use, and why.
class FileError : public HostError {
public:
    /// @param failure  what cannot be done, as the first half of a sentence; reasonFor() the code is the other
    /// @param code     the code that GetLastError() gave
    FileError(const std::string& failure, DWORD code)
        : HostError(failure + ": " + reasonFor(code) + "."), errorCode(code) {}

    DWORD code() const noexcept { return errorCode; }

private:
    DWORD errorCode;
};

/// A command line that asks for something that does not exist or contradicts itself.
class UsageError : public HostError {
public:
    using HostError::HostError;
};

} // namespace host
