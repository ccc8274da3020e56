// Watches the calls that a module makes of another module's function.
#pragma once

#include <windows.h>

namespace test {

/// For the time of its life, calls of an imported function out of one module's code go to another one. What other
/// modules call stays theirs.
class ImportHook {
public:
    /// Throws std::runtime_error when the module imports no function of that name.
    /// @param module  the file name of a loaded module, or null for the program
    ImportHook(const char* function, void* replacement, const wchar_t* module = nullptr);
    ~ImportHook();
    ImportHook(const ImportHook&) = delete;
    ImportHook& operator=(const ImportHook&) = delete;

private:
    static void write(void** slot, void* function);

    void** slot;
    void* original;
};

} // namespace test
