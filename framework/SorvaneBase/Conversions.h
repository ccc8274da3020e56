// Conversions between the host's kinds of text, and from text to numbers.
#pragma once

#include "SorvaneBase/Api.h"
#include "SorvaneBase/StringTypes.h"

namespace Sorvane {

// Each conversion replaces `out` and returns whether the input was well formed. Malformed input still gives
// the best text there is, with U+FFFD in place of what cannot be read, so that nobody shows or stores an
// undefined result. A null pointer is a missing text: `out` becomes empty and the result is false.
// Thread: any. Errors: none beyond allocation failure.
//
// A lone surrogate is not an error. Windows allows it in file names, so it is carried through UTF-8 as its
// three-byte form (WTF-8) and comes back unchanged; otherwise a page with such a name could not be exported.

/// UTF-16 to UTF-8.
SORVANEBASE_API bool c_u16u8(u8string& out, const wchar_t* utf16);
SORVANEBASE_API bool c_u16u8(u8string& out, const std::wstring& utf16);

/// UTF-8 to UTF-16.
SORVANEBASE_API bool c_u8u16(std::wstring& out, const char* utf8);
SORVANEBASE_API bool c_u8u16(std::wstring& out, const u8string& utf8);

/// UTF-8 to the system's ANSI code page, for interfaces that take nothing else. A character that the code
/// page lacks becomes "_"; no look-alike is substituted, because two names must not become equal unnoticed.
/// The result is false when a character was replaced, by "_" or, in malformed input, by U+FFFD.
SORVANEBASE_API bool c_u8acp(std::string& out, const char* utf8);
SORVANEBASE_API bool c_u8acp(std::string& out, const std::string& utf8);

/// The same for a code page of the caller's choice, by its Windows number.
SORVANEBASE_API bool c_u8cp(std::string& out, const std::string& utf8, unsigned codePage);

/// A decimal integer with an optional sign and surrounding blanks. `ok` tells whether the whole text was one
/// and fits; otherwise the result is 0.
SORVANEBASE_API int string2Int(const std::string& text, bool& ok);

} // namespace Sorvane
