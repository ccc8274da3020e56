// Linked into each DLL and program of a checked build: gives it the guarded heap.
#include "support/guardheap/GuardHeap.h"

extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace {

// The lowest priority that programs may use, so before the constructors of all global objects.
[[gnu::constructor(101)]] void adoptThisModule() {
    guardHeapAdopt(reinterpret_cast<HMODULE>(&__ImageBase));
}

} // namespace
