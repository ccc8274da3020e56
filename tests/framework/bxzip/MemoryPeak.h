// The memory that a test takes at most.
#pragma once

#include <windows.h>

// Needs the types of the one above.
#include <psapi.h>

#include <algorithm>
#include <cstddef>

/// Private bytes of the process. The system's own peak is not of use: it covers the whole life of the process,
/// and Wine does not keep it.
class MemoryPeak {
public:
    /// To be called while the memory is in use.
    void look() { most = std::max(most, privateBytes()); }

    /// What was taken at most since the object was made, in MB.
    std::size_t growthInMb() const { return (most - atFirst) >> 20; }

private:
    static std::size_t privateBytes() {
        PROCESS_MEMORY_COUNTERS counters{};
        GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
        return counters.PagefileUsage;
    }

    const std::size_t atFirst = privateBytes();
    std::size_t most = atFirst;
};
