// Where the C++ runtime in DraftMail.dll keeps what each thread is throwing and catching.
//
// Simple MAPI loads and unloads its client with each message. The runtime's own place would not outlive that: it comes
// from winpthreads, which leaves behind one of the process's about thousand thread slots and some handles each time the
// DLL is unloaded.
#include <windows.h>

#include <cxxabi.h>

#include <cstdlib>

namespace __gnu_cxx {
// Frees the memory that the runtime sets aside for exceptions when there is no other. No header declares it.
void __freeres();
} // namespace __gnu_cxx

// As the ABI has it; <cxxabi.h> only names it.
struct __cxxabiv1::__cxa_eh_globals {
    void* caughtExceptions;
    unsigned int uncaughtExceptions;
};

namespace {

DWORD slot = FLS_OUT_OF_INDEXES;

void NTAPI freeState(void* state) {
    std::free(state);
}

} // namespace

extern "C" {

// These two take the place of the runtime's own.

__cxxabiv1::__cxa_eh_globals* __cxxabiv1::__cxa_get_globals() noexcept {
    void* state = FlsGetValue(slot);
    if (!state) {
        state = std::calloc(1, sizeof(__cxa_eh_globals));
        // As the runtime does when it has no memory here, where nobody could be told.
        if (!state || !FlsSetValue(slot, state))
            std::abort();
    }
    return static_cast<__cxa_eh_globals*>(state);
}

__cxxabiv1::__cxa_eh_globals* __cxxabiv1::__cxa_get_globals_fast() noexcept {
    return __cxa_get_globals();
}

BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void* processEnds) {
    if (reason == DLL_PROCESS_ATTACH) {
        slot = FlsAlloc(freeState);
        return slot != FLS_OUT_OF_INDEXES;
    }
    if (reason == DLL_PROCESS_DETACH && !processEnds) {
        // Frees the states of all threads.
        FlsFree(slot);
        __gnu_cxx::__freeres();
    }
    return TRUE;
}

} // extern "C"
