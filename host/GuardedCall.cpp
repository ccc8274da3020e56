// Calls that come back even when what they call crashes.
#include "host/GuardedCall.h"

#include <windows.h>

#include <malloc.h>

// GCC has no __try. This frame has what __try compiles to: the system's own handler, with a table that names the range
// guarded, the filter and the place to go on at.
//
// bool callThroughGuard(void (*function)(const void*), const void* argument, host::Crash* crash)
asm(R"(
        .text
        .globl  callThroughGuard
        .def    callThroughGuard; .scl 2; .type 32; .endef
        .seh_proc callThroughGuard
callThroughGuard:
        subq    $56, %rsp
        .seh_stackalloc 56
        .seh_endprologue
        movq    %r8, 40(%rsp)           # where the filter looks for it
        movq    %rcx, %rax
        movq    %rdx, %rcx
.LguardBegin:
        call    *%rax
        nop                             # where the call returns to must lie in the range
.LguardEnd:
        xorl    %eax, %eax
        addq    $56, %rsp
        ret
.LguardCrashed:
        movl    $1, %eax
        addq    $56, %rsp
        ret
        .seh_handler __C_specific_handler, @except
        .seh_handlerdata
        .long   1
        .rva    .LguardBegin, .LguardEnd, guardFilter, .LguardCrashed
        .text
        .seh_endproc
)");

extern "C" {

bool callThroughGuard(void (*function)(const void*), const void* argument, host::Crash* crash);

/// @param frame  the stack pointer of callThroughGuard after its prologue
LONG guardFilter(const EXCEPTION_POINTERS* exception, void* const* frame);

} // extern "C"

namespace {

constexpr DWORD severityMask = 0xC0000000;
constexpr DWORD severityError = 0xC0000000;
// What libgcc raises to throw, to unwind and to unwind by force: 0x20474343, 0x21474343, 0x22474343.
constexpr DWORD gccMask = 0xFCFFFFFF;
constexpr DWORD gccException = 0x20474343;

bool isCrash(const EXCEPTION_RECORD& record) {
    if ((record.ExceptionCode & gccMask) == gccException)
        return false;
    return (record.ExceptionCode & severityMask) == severityError ||
           (record.ExceptionFlags & EXCEPTION_NONCONTINUABLE);
}

void callFunction(const void* function) {
    (*static_cast<const std::function<void()>*>(function))();
}

} // namespace

// Little stack may be left, so this only writes down what the search for words needs later.
LONG guardFilter(const EXCEPTION_POINTERS* exception, void* const* frame) {
    const EXCEPTION_RECORD& record = *exception->ExceptionRecord;
    if (!isCrash(record))
        return EXCEPTION_CONTINUE_SEARCH;
    *static_cast<host::Crash*>(frame[5]) = {record.ExceptionCode, record.ExceptionAddress};
    return EXCEPTION_EXECUTE_HANDLER;
}

namespace host {

std::optional<Crash> callGuarded(const std::function<void()>& function) {
    // What is left for the handling of a stack overflow. The system never takes it away from the thread again.
    ULONG stackForHandling = 65536;
    SetThreadStackGuarantee(&stackForHandling);
    Crash crash;
    if (!callThroughGuard(&callFunction, &function, &crash))
        return std::nullopt;
    // Without its guard page the next overflow of the stack would end the process without a word.
    if (crash.code == EXCEPTION_STACK_OVERFLOW)
        _resetstkoflw();
    return crash;
}

} // namespace host
