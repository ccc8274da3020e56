// Ends a crashed program with one sentence instead of a dialog that nobody answers.
#include "host/CrashFilter.h"

#include "host/Crash.h"

#include <windows.h>

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
    char sentence[MAX_PATH + 100];
    std::snprintf(sentence, sizeof sentence, "scanexport: Crashed with %s.\n",
                  describe({record.ExceptionCode, record.ExceptionAddress}).data());
    endWith(sentence);
}

} // namespace

void installCrashFilter() {
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
    SetUnhandledExceptionFilter(onCrash);
    std::set_terminate([] { endWith("scanexport: Crashed with an exception that nobody caught.\n"); });
}

} // namespace host
