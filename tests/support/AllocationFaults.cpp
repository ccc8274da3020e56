// Lets memory run out when a test wants it to. Portable.
#include "support/AllocationFaults.h"

#include <libdeflate.h>

#include <cstdlib>
#include <new>

namespace {

std::atomic<test::AllocationFaults*> current = nullptr;

void* allocate(std::size_t size) {
    test::AllocationFaults* faults = current;
    return faults && faults->strikes() ? nullptr : std::malloc(size ? size : 1);
}

} // namespace

namespace test {

AllocationFaults::AllocationFaults(int number, bool once) : number(number), once(once) {
    libdeflate_set_memory_allocator(allocate, std::free);
    current = this;
}

AllocationFaults::~AllocationFaults() {
    current = nullptr;
}

bool AllocationFaults::strikes() {
    if (!armed)
        return false;
    const int count = ++seen;
    return once ? count == number : count >= number;
}

} // namespace test

void* operator new(std::size_t size) {
    if (void* memory = allocate(size))
        return memory;
    throw std::bad_alloc();
}

void* operator new[](std::size_t size) {
    return operator new(size);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size);
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size);
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete[](void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}
