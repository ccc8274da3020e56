// The heap of checked builds: every block ends at a page that cannot be touched.
//
// This library must not use the heap of the C++ runtime, which it replaces: no containers, no exceptions, no
// objects that are made at start. Memory comes from an address range of its own in which no address is used
// twice, so that a freed block stays untouchable for good.
#include "support/guardheap/GuardHeap.h"

#include "support/FaultReport.h"

#include <windows.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <new>

extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace {

constexpr std::size_t pageSize = 4096;
constexpr std::size_t arenaSize = std::size_t{16} << 30;
// Linux allows a process 65,530 mappings; a living block takes two.
constexpr long maxLiveBlocks = 30'000;
constexpr std::size_t maxFrames = 9;
constexpr unsigned char freshByte = 0xCD;
constexpr unsigned char slackByte = 0xFB;

enum class State : std::uint8_t { unused, live, freed };

/// What allocated a block, or frees it.
enum class Kind : std::uint8_t {
    runtime, ///< libstdc++ on behalf of anybody: belongs to every other kind
    cHeap,
    alignedCHeap,
    object,
    array,
};

/// What is known about the block that begins in a page.
struct Block {
    std::size_t size;
    char* begin;
    State state;
    Kind kind;
    void* allocatedBy[maxFrames];
    void* freedBy[maxFrames];
};

char* arena;
char* arenaNext;
/// One entry per page of the arena; only the part up to arenaNext is backed by memory.
Block* blocks;
char* blocksCommitted;
long liveBlocks;
SRWLOCK lock = SRWLOCK_INIT;

class Locked {
public:
    Locked() { AcquireSRWLockExclusive(&lock); }
    ~Locked() { ReleaseSRWLockExclusive(&lock); }
    Locked(const Locked&) = delete;
    Locked& operator=(const Locked&) = delete;
};

std::size_t roundUp(std::size_t size, std::size_t unit) {
    return (size + unit - 1) / unit * unit;
}

bool isGuarded(const void* memory) {
    return memory >= arena && memory < arena + arenaSize;
}

std::size_t pageIndex(const void* memory) {
    return static_cast<std::size_t>(static_cast<const char*>(memory) - arena) / pageSize;
}

char* pageOf(const void* memory) {
    return arena + pageIndex(memory) * pageSize;
}

/// The first byte behind the pages of a block, where its guard page begins.
char* endOf(const Block& block) {
    return pageOf(block.begin) +
           roundUp(static_cast<std::size_t>(block.begin - pageOf(block.begin)) + block.size, pageSize);
}

const char* nameOf(Kind kind) {
    switch (kind) {
    case Kind::cHeap:
        return "malloc/free";
    case Kind::alignedCHeap:
        return "_aligned_malloc/_aligned_free";
    case Kind::object:
        return "new/delete";
    case Kind::array:
        return "new[]/delete[]";
    case Kind::runtime:
        break;
    }
    return "the C++ runtime";
}

bool isOurCode(const void* address) {
    HMODULE module = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       static_cast<const char*>(address), &module);
    return module == reinterpret_cast<HMODULE>(&__ImageBase);
}

void addCalls(FaultReport& report, const char* title, std::span<void* const> addresses) {
    report.add("  %s\n", title);
    report.addFrames({std::ranges::find_if_not(addresses, isOurCode), addresses.end()});
}

[[noreturn]] void stop(FaultReport& report, std::span<void* const> by, const Block* block) {
    addCalls(report, "by", by);
    if (block) {
        addCalls(report, "allocated by", block->allocatedBy);
        if (block->state == State::freed)
            addCalls(report, "freed by", block->freedBy);
    }
    report.endProcess(guardHeapExitCode);
}

void capture(std::span<void*, maxFrames> by) {
    RtlCaptureStackBackTrace(0, maxFrames, by.data(), nullptr);
}

[[noreturn]] void stop(const char* fault, const void* memory, const Block* block) {
    void* by[maxFrames] = {};
    capture(by);
    FaultReport report;
    report.add("GuardHeap: %s, %p", fault, memory);
    if (block)
        report.add(" of %zu bytes", block->size);
    report.add("\n");
    stop(report, by, block);
}

bool backTable(const Block* end) {
    constexpr std::size_t step = std::size_t{1} << 20;
    while (blocksCommitted < reinterpret_cast<const char*>(end)) {
        if (!VirtualAlloc(blocksCommitted, step, MEM_COMMIT, PAGE_READWRITE))
            return false;
        blocksCommitted += step;
    }
    return true;
}

/// Returns null when there is no room for another guarded block: the caller then takes it from the plain heap.
void* allocate(std::size_t size, std::size_t alignment, Kind kind) {
    if (size > arenaSize / 4 || alignment > pageSize)
        return nullptr;
    const std::size_t rounded = roundUp(std::max<std::size_t>(size, 1), alignment);
    const std::size_t paged = roundUp(rounded, pageSize);

    const Locked locked;
    char* const pages = arenaNext;
    if (liveBlocks >= maxLiveBlocks || paged + pageSize > static_cast<std::size_t>(arena + arenaSize - pages))
        return nullptr;
    Block& block = blocks[pageIndex(pages)];
    // The fault handler looks at the entries of the pages behind a block as well.
    if (!backTable(&block + paged / pageSize + 2) || !VirtualAlloc(pages, paged, MEM_COMMIT, PAGE_READWRITE))
        return nullptr;
    arenaNext += paged + pageSize;
    ++liveBlocks;

    char* const begin = pages + paged - rounded;
    std::memset(pages, freshByte, paged - rounded + size);
    std::memset(begin + size, slackByte, rounded - size);
    block.size = size;
    block.begin = begin;
    block.state = State::live;
    block.kind = kind;
    capture(block.allocatedBy);
    return begin;
}

/// The alignment that the platform promises, less for blocks too small to hold anything that needs it.
void* allocate(std::size_t size, Kind kind) {
    return allocate(size, std::bit_floor(std::clamp<std::size_t>(size, 1, 16)), kind);
}

bool allBytesAre(unsigned char value, const char* begin, const char* end) {
    return std::all_of(begin, end, [value](char byte) { return static_cast<unsigned char>(byte) == value; });
}

/// The living block that begins at `memory`; ends the process if there is none.
Block& blockAt(void* memory) {
    Block& block = blocks[pageIndex(memory)];
    if (memory < arenaNext && block.state == State::freed && block.begin == memory)
        stop("double free", memory, &block);
    if (memory >= arenaNext || block.state != State::live || block.begin != memory)
        stop("free of what is no block", memory, nullptr);
    return block;
}

/// Stands for the size of an object whose deallocation function is not told it.
constexpr std::size_t anySize = SIZE_MAX;

void release(void* memory, Kind kind, std::size_t size = anySize) {
    const Locked locked;
    Block& block = blockAt(memory);
    if (block.kind != kind && block.kind != Kind::runtime && kind != Kind::runtime) {
        void* by[maxFrames] = {};
        capture(by);
        FaultReport report;
        report.add("GuardHeap: mismatched free: allocated with %s, freed with %s\n", nameOf(block.kind),
                   nameOf(kind));
        stop(report, by, &block);
    }
    if (size != anySize && size != block.size)
        stop("delete as an object of another size", memory, &block);
    if (!allBytesAre(slackByte, block.begin + block.size, endOf(block)))
        stop("heap overrun found at free", memory, &block);
    if (!allBytesAre(freshByte, pageOf(memory), block.begin))
        stop("heap underrun found at free", memory, &block);
    char* const pages = pageOf(memory);
    VirtualFree(pages, static_cast<std::size_t>(endOf(block) - pages), MEM_DECOMMIT);
    block.state = State::freed;
    capture(block.freedBy);
    --liveBlocks;
}

LONG CALLBACK explainFault(EXCEPTION_POINTERS* pointers) {
    const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
    if (record.ExceptionCode != EXCEPTION_ACCESS_VIOLATION || record.NumberParameters < 2)
        return EXCEPTION_CONTINUE_SEARCH;
    const char* const address = reinterpret_cast<const char*>(record.ExceptionInformation[1]);
    if (!isGuarded(address))
        return EXCEPTION_CONTINUE_SEARCH;

    const Block* block = nullptr;
    if (address < arenaNext) {
        block = &blocks[pageIndex(address)];
        while (block->state == State::unused)
            --block;
        // Between two blocks the nearer one was missed.
        const Block& next = blocks[pageIndex(endOf(*block)) + 1];
        if (address >= endOf(*block) && next.state != State::unused &&
            next.begin - address < address - endOf(*block))
            block = &next;
    }
    const char* fault = "access to what was never allocated";
    if (block && block->state == State::freed)
        fault = "use after free";
    else if (block)
        fault = address < block->begin ? "heap underrun" : "heap overrun";

    void* by[maxFrames * 2] = {};
    unwind(*pointers->ContextRecord, by);
    FaultReport report;
    report.add("GuardHeap: %s, %s %p", fault, record.ExceptionInformation[0] ? "writing" : "reading",
               address);
    if (block)
        report.add(", which is %+td from a block of %zu bytes", address - block->begin, block->size);
    report.add("\n");
    stop(report, by, block);
}

// What modules call instead of the C library. In libstdc++, malloc and free stand for anything.

template <Kind kind> void* guardedMalloc(std::size_t size) {
    void* memory = allocate(size, kind);
    return memory ? memory : std::malloc(size);
}

template <Kind kind> void guardedFree(void* memory) {
    if (isGuarded(memory))
        release(memory, kind);
    else
        std::free(memory);
}

template <Kind kind> void* guardedCalloc(std::size_t count, std::size_t size) {
    std::size_t total = 0;
    if (__builtin_mul_overflow(count, size, &total))
        return nullptr;
    void* memory = allocate(total, kind);
    return memory ? std::memset(memory, 0, total) : std::calloc(count, size);
}

template <Kind kind> void* guardedRealloc(void* memory, std::size_t size) {
    if (memory && !isGuarded(memory))
        return std::realloc(memory, size);
    if (!memory)
        return guardedMalloc<kind>(size);
    if (size == 0) {
        release(memory, kind);
        return nullptr;
    }
    std::size_t oldSize = 0;
    {
        const Locked locked;
        oldSize = blockAt(memory).size;
    }
    void* const moved = guardedMalloc<kind>(size);
    if (moved) {
        std::memcpy(moved, memory, std::min(oldSize, size));
        release(memory, kind);
    }
    return moved;
}

template <Kind kind> void* guardedAlignedMalloc(std::size_t size, std::size_t alignment) {
    void* memory = std::has_single_bit(alignment) ? allocate(size, alignment, kind) : nullptr;
    return memory ? memory : _aligned_malloc(size, alignment);
}

template <Kind kind> void guardedAlignedFree(void* memory) {
    if (isGuarded(memory))
        release(memory, kind);
    else
        _aligned_free(memory);
}

std::size_t guardedMsize(void* memory) {
    if (!isGuarded(memory))
        return _msize(memory);
    const Locked locked;
    return blockAt(memory).size;
}

char* guardedStrdup(const char* text) {
    const std::size_t size = std::strlen(text) + 1;
    void* copy = guardedMalloc<Kind::cHeap>(size);
    return copy ? static_cast<char*>(std::memcpy(copy, text, size)) : nullptr;
}

wchar_t* guardedWcsdup(const wchar_t* text) {
    const std::size_t size = (std::wcslen(text) + 1) * sizeof *text;
    void* copy = guardedMalloc<Kind::cHeap>(size);
    return copy ? static_cast<wchar_t*>(std::memcpy(copy, text, size)) : nullptr;
}

// What modules call instead of the operators of libstdc++, to which everything goes that is not guarded.

struct Operators {
    void* (*create)(std::size_t);
    void (*destroy)(void*);
    void* (*createAligned)(std::size_t, std::align_val_t);
    void (*destroyAligned)(void*, std::align_val_t);
};
Operators runtimeOperators;

template <Kind kind> void* guardedNew(std::size_t size) {
    void* memory = allocate(size, kind);
    return memory ? memory : runtimeOperators.create(size);
}

template <Kind kind> void* guardedNewNothrow(std::size_t size, const std::nothrow_t&) {
    return guardedMalloc<kind>(size);
}

template <Kind kind> void* guardedNewAligned(std::size_t size, std::align_val_t alignment) {
    void* memory = allocate(size, static_cast<std::size_t>(alignment), kind);
    return memory ? memory : runtimeOperators.createAligned(size, alignment);
}

template <Kind kind> void guardedDelete(void* memory) {
    if (isGuarded(memory))
        release(memory, kind);
    else
        runtimeOperators.destroy(memory);
}

template <Kind kind> void guardedDeleteSized(void* memory, std::size_t size) {
    if (isGuarded(memory))
        release(memory, kind, size);
    else
        runtimeOperators.destroy(memory);
}

template <Kind kind> void guardedDeleteNothrow(void* memory, const std::nothrow_t&) {
    guardedDelete<kind>(memory);
}

template <Kind kind> void guardedDeleteAligned(void* memory, std::align_val_t alignment) {
    if (isGuarded(memory))
        release(memory, kind);
    else
        runtimeOperators.destroyAligned(memory, alignment);
}

template <Kind kind>
void guardedDeleteSizedAligned(void* memory, std::size_t size, std::align_val_t alignment) {
    if (isGuarded(memory))
        release(memory, kind, size);
    else
        runtimeOperators.destroyAligned(memory, alignment);
}

struct Replacement {
    const char* name;
    void* function;
};

template <typename Function> void* pointerTo(Function* function) {
    return reinterpret_cast<void*>(function);
}

const Replacement ourReplacements[] = {
    {"malloc", pointerTo(guardedMalloc<Kind::cHeap>)},
    {"calloc", pointerTo(guardedCalloc<Kind::cHeap>)},
    {"realloc", pointerTo(guardedRealloc<Kind::cHeap>)},
    {"free", pointerTo(guardedFree<Kind::cHeap>)},
    {"_aligned_malloc", pointerTo(guardedAlignedMalloc<Kind::alignedCHeap>)},
    {"_aligned_free", pointerTo(guardedAlignedFree<Kind::alignedCHeap>)},
    {"_msize", pointerTo(guardedMsize)},
    {"_strdup", pointerTo(guardedStrdup)},
    {"_wcsdup", pointerTo(guardedWcsdup)},
    {"_Znwy", pointerTo(guardedNew<Kind::object>)},
    {"_Znay", pointerTo(guardedNew<Kind::array>)},
    {"_ZnwyRKSt9nothrow_t", pointerTo(guardedNewNothrow<Kind::object>)},
    {"_ZnayRKSt9nothrow_t", pointerTo(guardedNewNothrow<Kind::array>)},
    {"_ZnwySt11align_val_t", pointerTo(guardedNewAligned<Kind::object>)},
    {"_ZnaySt11align_val_t", pointerTo(guardedNewAligned<Kind::array>)},
    {"_ZdlPv", pointerTo(guardedDelete<Kind::object>)},
    {"_ZdaPv", pointerTo(guardedDelete<Kind::array>)},
    {"_ZdlPvy", pointerTo(guardedDeleteSized<Kind::object>)},
    {"_ZdaPvy", pointerTo(guardedDeleteSized<Kind::array>)},
    {"_ZdlPvRKSt9nothrow_t", pointerTo(guardedDeleteNothrow<Kind::object>)},
    {"_ZdaPvRKSt9nothrow_t", pointerTo(guardedDeleteNothrow<Kind::array>)},
    {"_ZdlPvSt11align_val_t", pointerTo(guardedDeleteAligned<Kind::object>)},
    {"_ZdaPvSt11align_val_t", pointerTo(guardedDeleteAligned<Kind::array>)},
    {"_ZdlPvySt11align_val_t", pointerTo(guardedDeleteSizedAligned<Kind::object>)},
    {"_ZdaPvySt11align_val_t", pointerTo(guardedDeleteSizedAligned<Kind::array>)},
};

const Replacement runtimeReplacements[] = {
    {"malloc", pointerTo(guardedMalloc<Kind::runtime>)},
    {"calloc", pointerTo(guardedCalloc<Kind::runtime>)},
    {"realloc", pointerTo(guardedRealloc<Kind::runtime>)},
    {"free", pointerTo(guardedFree<Kind::runtime>)},
    {"_aligned_malloc", pointerTo(guardedAlignedMalloc<Kind::runtime>)},
    {"_aligned_free", pointerTo(guardedAlignedFree<Kind::runtime>)},
};

template <typename T> T* at(HMODULE module, DWORD offset) {
    return reinterpret_cast<T*>(reinterpret_cast<char*>(module) + offset);
}

void replaceImports(HMODULE module, std::span<const Replacement> replacements) {
    const auto& headers =
        *at<IMAGE_NT_HEADERS>(module, static_cast<DWORD>(at<IMAGE_DOS_HEADER>(module, 0)->e_lfanew));
    const DWORD imports = headers.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    if (!imports)
        return;
    for (auto* import = at<IMAGE_IMPORT_DESCRIPTOR>(module, imports); import->Name; ++import) {
        const auto* name = at<IMAGE_THUNK_DATA>(module, import->OriginalFirstThunk);
        auto* address = at<IMAGE_THUNK_DATA>(module, import->FirstThunk);
        for (; name->u1.AddressOfData; ++name, ++address) {
            if (IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal))
                continue;
            const char* imported =
                at<IMAGE_IMPORT_BY_NAME>(module, static_cast<DWORD>(name->u1.AddressOfData))->Name;
            const auto found = std::ranges::find_if(replacements, [imported](const Replacement& it) {
                return std::strcmp(it.name, imported) == 0;
            });
            if (found == replacements.end())
                continue;
            DWORD protection = 0;
            VirtualProtect(address, sizeof *address, PAGE_READWRITE, &protection);
            address->u1.Function = reinterpret_cast<ULONGLONG>(found->function);
            VirtualProtect(address, sizeof *address, protection, &protection);
        }
    }
}

template <typename Function> void find(HMODULE module, const char* name, Function*& function) {
    function = reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

void start() {
    arena = arenaNext = static_cast<char*>(VirtualAlloc(nullptr, arenaSize, MEM_RESERVE, PAGE_NOACCESS));
    blocksCommitted = static_cast<char*>(
        VirtualAlloc(nullptr, (arenaSize / pageSize + 2) * sizeof(Block), MEM_RESERVE, PAGE_READWRITE));
    if (!arena || !blocksCommitted) {
        FaultReport report;
        report.add("GuardHeap: no address space, error %lu\n", GetLastError());
        report.endProcess(guardHeapExitCode);
    }
    blocks = reinterpret_cast<Block*>(blocksCommitted);
    AddVectoredExceptionHandler(TRUE, explainFault);

    if (const HMODULE runtime = GetModuleHandleW(L"libstdc++-6.dll")) {
        find(runtime, "_Znwy", runtimeOperators.create);
        find(runtime, "_ZdlPv", runtimeOperators.destroy);
        find(runtime, "_ZnwySt11align_val_t", runtimeOperators.createAligned);
        find(runtime, "_ZdlPvSt11align_val_t", runtimeOperators.destroyAligned);
        replaceImports(runtime, runtimeReplacements);
    }
}

} // namespace

extern "C" __declspec(dllexport) void guardHeapAdopt(HMODULE module) {
    replaceImports(module, ourReplacements);
}

BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void*) {
    if (reason == DLL_PROCESS_ATTACH)
        start();
    return TRUE;
}
