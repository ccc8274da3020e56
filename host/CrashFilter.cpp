// Ends a crashed program with one sentence instead of a dialog that nobody answers.
#include "host/CrashFilter.h"

#include "SorvaneBase/bxutils/SystemLog.h"
#include "host/Crash.h"

#include <windows.h>

#include <atomic>
#include <cstdio>
#include <cstring>
#include <exception>

namespace host {
namespace {

const char* programName = "";
CrashTeller tell = printCrash;
std::atomic_flag hasCrashed;

// Works without allocating: the heap may be what is broken.
[[noreturn]] void endWith(const char* what) {
    if (!hasCrashed.test_and_set()) {
        char sentence[MAX_PATH + 200];
        std::snprintf(sentence, sizeof sentence, "%s: Crashed with %s.", programName, what);
        bxutils::logCrash(sentence, "host/CrashFilter", __LINE__);
        tell(sentence);
    }
    TerminateProcess(GetCurrentProcess(), crashExitCode);
    for (;;)
        Sleep(INFINITE);
}

LONG WINAPI onCrash(EXCEPTION_POINTERS* crash) {
    const EXCEPTION_RECORD& record = *crash->ExceptionRecord;
    endWith(describe({record.ExceptionCode, record.ExceptionAddress}).data());
}

} // namespace

void printCrash(const char* sentence) {
    DWORD written = 0;
    for (const char* text : {sentence, "\n"})
        WriteFile(GetStdHandle(STD_ERROR_HANDLE), text, static_cast<DWORD>(std::strlen(text)), &written,
                  nullptr);
}

void installCrashFilter(const char* program, CrashTeller teller) {
    programName = program;
    tell = teller;
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
    SetUnhandledExceptionFilter(onCrash);
    std::set_terminate([] { endWith("an exception that nobody caught"); });
}

} // namespace host
