// Failures that the host tells its user in one sentence.
#pragma once

#include "SorvaneBase/StringTypes.h"

#include <windows.h>

#include <stdexcept>

namespace host {

/// Something the host cannot do. what() is one English sentence in UTF-8 that names the file concerned and is
/// meant for the person at the program.
class HostError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A command line that asks for something that does not exist or contradicts itself.
class UsageError : public HostError {
public:
    using HostError::HostError;
};

/// Why a file operation failed, as the second half of a sentence ("another program is using it").
/// @param error  the code that GetLastError() gave
Sorvane::u8string reasonFor(DWORD error);

} // namespace host
