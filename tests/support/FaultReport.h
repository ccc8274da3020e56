// The last words of a process that went wrong.
#pragma once

#include <windows.h>

#include <cstddef>
#include <span>

/// Collects a message about a fault and ends the process with it. Safe where the process can no longer be
/// trusted: takes no memory from any heap, and writes past the C library, whose locks may be held.
class FaultReport {
public:
    /// Adds text in the manner of printf.
    [[gnu::format(gnu_printf, 2, 3)]] void add(const char* format, ...);

    /// Adds a line for each address: its module and the offset in it, which addr2line understands once the
    /// module's image base is added.
    void addFrames(std::span<void* const> addresses);

    /// Adds the line of one address.
    void addFrame(const void* address);

    /// Writes what was collected to the standard error and ends the process.
    [[noreturn]] void endProcess(unsigned exitCode);

private:
    char text[8192] = {};
    std::size_t length = 0;
};

/// The addresses from which the code at `context` was called, the innermost first. Returns how many were found.
std::size_t unwind(CONTEXT context, std::span<void*> addresses);
