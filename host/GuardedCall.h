// Calls that come back even when what they call crashes.
#pragma once

#include "host/Crash.h"

#include <functional>
#include <optional>

namespace host {

/// Calls the function and returns where it crashed; none when it did not.
///
/// A crash is a structured exception that no frame inside the call handles: one of severity "error" or one that cannot
/// be continued. Frames inside come first, so that code which handles its own exceptions does not notice the guard.
/// C++ exceptions of this compiler pass through, and so do messages to debuggers and breakpoints.
///
/// A crash abandons the frames of the call without running their C++ destructors: what they held stays held, memory,
/// locks and modules. Calls nest.
///
/// What still ends the program: a crash in a window procedure that Windows has called from the kernel, out of which it
/// lets no exceptions, and code that ends the process itself, as abort(), std::terminate() and __fastfail() do.
std::optional<Crash> callGuarded(const std::function<void()>& function);

} // namespace host
