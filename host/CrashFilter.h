// Ends a crashed program with one sentence instead of a dialog that nobody answers.
#pragma once

namespace host {

constexpr int crashExitCode = 99;

/// Tells the person a sentence, in UTF-8, of how the program crashed. Called on the thread that did, whose heap may be
/// what is broken.
using CrashTeller = void (*)(const char* sentence);

/// Prints the sentence to the error output, as a line.
void printCrash(const char* sentence);

/// From now on a crash of any thread, and an exception that nobody catches, is logged and told with where it happened
/// (module and offset, for use with the module's symbols) and ends the process with crashExitCode. When telling crashes
/// in turn the process ends at once.
/// @param program  a name that lives as long as the process
void installCrashFilter(const char* program, CrashTeller teller);

} // namespace host
