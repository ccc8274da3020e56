// The heap of checked builds: every block ends at a page that cannot be touched.
#pragma once

#include <windows.h>

/// The exit code of a process that misused its heap.
constexpr unsigned guardHeapExitCode = 98;

/// Gives `module` the guarded heap from now on: points its imports of malloc, operator new and their kin to this
/// library. Each DLL and program of a checked build calls it for itself before its own global objects are made,
/// so that modules loaded late are guarded as well. libstdc++ is guarded from the start, because much of what
/// our templates allocate is allocated there.
///
/// The process ends at once with `guardHeapExitCode` and a message on the standard error that tells what was
/// done, by whom, and who allocated and freed the block, when
/// - a block is read or written past its end, or after it was freed;
/// - a block is freed, and it had been freed before, or bytes just before or behind it were changed, or it is
///   freed by another function than belongs to the one that allocated it, or as an object of another size.
///
/// The end of a block of 16 bytes or more is rounded up to the alignment that the platform promises; what lies
/// between is no zero byte, and is checked when the block is freed. Blocks of modules that are not guarded (the
/// system's) pass through, and so do all above 30,000 living ones, because the system that runs the tests has no
/// room for more mappings. Leaks are not looked for.
extern "C" void guardHeapAdopt(HMODULE module);
