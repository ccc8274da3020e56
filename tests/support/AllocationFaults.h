// Lets memory run out when a test wants it to. Portable.
//
// Linking this replaces the program's operators new and delete, and libdeflate's allocator while it is used.
// Allocations inside the C++ runtime's own DLL are out of its reach; native programs have none.
#pragma once

#include <atomic>

namespace test {

/// While armed, the allocation with a number fails, counted on all threads together. One at a time.
class AllocationFaults {
public:
    /// @param number  from 1
    /// @param once    otherwise all that follow fail too
    AllocationFaults(int number, bool once);
    ~AllocationFaults();
    AllocationFaults(const AllocationFaults&) = delete;
    AllocationFaults& operator=(const AllocationFaults&) = delete;

    void arm() { armed = true; }
    void disarm() { armed = false; }

    /// Whether an allocation failed.
    bool hasStruck() const { return seen >= number; }

    /// Whether the present allocation has to fail.
    bool strikes();

private:
    const int number;
    const bool once;
    std::atomic<bool> armed = false;
    std::atomic<int> seen = 0;
};

} // namespace test
