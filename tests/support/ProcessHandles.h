// Counts what the process holds of the system.
#pragma once

#include <cstddef>

namespace test {

/// The open handles of this process. The system's own count, GetProcessHandleCount(), is always 0 under Wine.
std::size_t countHandles();

/// The modules that are loaded in this process.
std::size_t countModules();

/// The top-level windows of this thread.
std::size_t countWindows();

} // namespace test
