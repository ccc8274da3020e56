// Why something failed, in the person's language.
#pragma once

#include <windows.h>

#include <string>

namespace host {

/// Why a file operation failed, as a sentence of its own that does not name the file.
/// @param error  the code that GetLastError() gave, or one of those that FileError has
std::wstring localReason(DWORD error);

/// Why the mail client did not take a message, as a sentence.
/// @param code  what MAPISendMail() gave
std::wstring localMailReason(int code);

} // namespace host
