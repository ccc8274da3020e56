// Writing the last words of a process that went wrong.
#include "support/FaultReport.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>

void FaultReport::add(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int added = std::vsnprintf(text + length, sizeof text - length, format, arguments);
    va_end(arguments);
    if (added > 0)
        length = std::min(length + static_cast<std::size_t>(added), sizeof text - 1);
}

void FaultReport::addFrame(const void* address) {
    HMODULE module = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       static_cast<const char*>(address), &module);
    char path[MAX_PATH] = "";
    if (!module || !GetModuleFileNameA(module, path, sizeof path)) {
        add("    %p\n", address);
        return;
    }
    const char* backslash = std::strrchr(path, '\\');
    add("    %s+0x%zx\n", backslash ? backslash + 1 : path,
        static_cast<std::size_t>(static_cast<const char*>(address) - reinterpret_cast<const char*>(module)));
}

void FaultReport::addFrames(std::span<void* const> addresses) {
    for (const void* address : addresses) {
        if (address)
            addFrame(address);
    }
}

void FaultReport::endProcess(unsigned exitCode) {
    DWORD written = 0;
    WriteFile(GetStdHandle(STD_ERROR_HANDLE), text, static_cast<DWORD>(length), &written, nullptr);
    TerminateProcess(GetCurrentProcess(), exitCode);
    for (;;)
        Sleep(INFINITE);
}

std::size_t unwind(CONTEXT context, std::span<void*> addresses) {
    std::size_t count = 0;
    while (count < addresses.size() && context.Rip) {
        addresses[count++] = reinterpret_cast<void*>(context.Rip);
        DWORD64 base = 0;
        RUNTIME_FUNCTION* function = RtlLookupFunctionEntry(context.Rip, &base, nullptr);
        if (!function) {
            // A leaf function, or a call to nowhere: the return address is on top of the stack.
            DWORD64 returnAddress = 0;
            if (!ReadProcessMemory(GetCurrentProcess(), reinterpret_cast<const void*>(context.Rsp),
                                   &returnAddress, sizeof returnAddress, nullptr))
                break;
            context.Rip = returnAddress;
            context.Rsp += sizeof returnAddress;
            continue;
        }
        void* handlerData = nullptr;
        DWORD64 establisherFrame = 0;
        RtlVirtualUnwind(UNW_FLAG_NHANDLER, base, context.Rip, function, &context, &handlerData,
                         &establisherFrame, nullptr);
    }
    return count;
}
