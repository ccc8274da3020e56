// Watches the calls that the test program makes of another module's function.
#pragma once

#include <windows.h>

namespace test {

/// For the time of its life, calls of an imported function out of this program's own code go to another one. What
/// other modules call stays theirs.
class ImportHook {
public:
    /// Throws std::runtime_error when the program imports no function of that name.
    ImportHook(const char* function, void* replacement);
    ~ImportHook();
    ImportHook(const ImportHook&) = delete;
    ImportHook& operator=(const ImportHook&) = delete;

private:
    static void write(void** slot, void* function);

    void** slot;
    void* original;
};

} // namespace test
