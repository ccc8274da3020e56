// Where a module has crashed, in words.
#pragma once

#include <windows.h>

#include <array>

namespace host {

/// A structured exception that was nobody's to handle.
struct Crash {
    DWORD code = 0;
    const void* address = nullptr;
};

/// "exception 0xc0000005 at MODULE+0xOFFSET", for use with the module's symbols, in UTF-8 and ended by a NUL. Allocates
/// nothing: the heap may be what is broken.
std::array<char, MAX_PATH + 100> describe(const Crash& crash) noexcept;

} // namespace host
