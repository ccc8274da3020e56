// Reporting the crashes of a test program.
#include "support/CrashReport.h"

#include "support/FaultReport.h"

#include <windows.h>

#include <csignal>

namespace {

constexpr std::size_t maxFrames = 32;

const char* nameOf(DWORD code) {
    switch (code) {
    case EXCEPTION_ACCESS_VIOLATION:
        return "access violation";
    case EXCEPTION_ILLEGAL_INSTRUCTION:
        return "illegal instruction (undefined behaviour in checked builds)";
    case EXCEPTION_INT_DIVIDE_BY_ZERO:
        return "division by zero";
    case EXCEPTION_STACK_OVERFLOW:
        return "stack overflow";
    case STATUS_HEAP_CORRUPTION:
        return "heap corruption";
    default:
        return "exception";
    }
}

LONG WINAPI reportException(EXCEPTION_POINTERS* pointers) {
    const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
    void* frames[maxFrames] = {};
    unwind(*pointers->ContextRecord, frames);
    FaultReport report;
    report.add("CRASH: %s %08lx", nameOf(record.ExceptionCode), record.ExceptionCode);
    if (record.ExceptionCode == EXCEPTION_ACCESS_VIOLATION && record.NumberParameters >= 2)
        report.add(", %s %p", record.ExceptionInformation[0] ? "writing" : "reading",
                   reinterpret_cast<void*>(record.ExceptionInformation[1]));
    report.add("\n");
    report.addFrames(frames);
    report.endProcess(crashExitCode);
}

void reportAbort(int) {
    void* frames[maxFrames] = {};
    RtlCaptureStackBackTrace(1, maxFrames, frames, nullptr);
    FaultReport report;
    report.add("CRASH: abort\n");
    report.addFrames(frames);
    report.endProcess(crashExitCode);
}

} // namespace

void reportCrashes() {
    SetErrorMode(SEM_NOGPFAULTERRORBOX | SEM_FAILCRITICALERRORS);
    SetUnhandledExceptionFilter(reportException);
    std::signal(SIGABRT, reportAbort);
}
