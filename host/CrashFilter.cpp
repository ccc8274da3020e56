// Ends a crashed program with one sentence instead of a dialog that nobody answers.
#include "host/CrashFilter.h"

#include <windows.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <exception>

namespace host {
namespace {

// Works without allocating: the heap may be what is broken.
[[noreturn]] void endWith(const char* sentence) {
    DWORD written = 0;
    WriteFile(GetStdHandle(STD_ERROR_HANDLE), sentence, static_cast<DWORD>(std::strlen(sentence)), &written,
              nullptr);
    TerminateProcess(GetCurrentProcess(), crashExitCode);
    for (;;)
        Sleep(INFINITE);
}

LONG WINAPI onCrash(EXCEPTION_POINTERS* crash) {
    const EXCEPTION_RECORD& record = *crash->ExceptionRecord;
    HMODULE module = nullptr;
    char path[MAX_PATH] = "";
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       static_cast<const char*>(record.ExceptionAddress), &module);
    if (module)
        GetModuleFileNameA(module, path, MAX_PATH);
    const char* separator = std::strrchr(path, '\\');
    const auto offset =
        reinterpret_cast<std::uintptr_t>(record.ExceptionAddress) - reinterpret_cast<std::uintptr_t>(module);
    char sentence[MAX_PATH + 100];
    std::snprintf(sentence, sizeof sentence, "scanexport: Crashed with exception 0x%08lx at %s+0x%llx.\n",
                  record.ExceptionCode, separator ? separator + 1 : "an unknown module",
                  static_cast<unsigned long long>(offset));
    endWith(sentence);
}

} // namespace

void installCrashFilter() {
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
    SetUnhandledExceptionFilter(onCrash);
    std::set_terminate([] { endWith("scanexport: Crashed with an exception that nobody caught.\n"); });
}

} // namespace host
