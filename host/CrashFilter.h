// Ends a crashed program with one sentence instead of a dialog that nobody answers.
#pragma once

namespace host {

constexpr int crashExitCode = 99;

/// From now on a crash of any thread, and an exception that nobody catches, prints where it happened (module
/// and offset, for use with the module's symbols) to the error output and ends the process with
/// crashExitCode.
void installCrashFilter();

} // namespace host
