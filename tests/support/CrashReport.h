// Makes crashes of a test program name their place instead of waiting for somebody.
#pragma once

/// The exit code of a test program that crashed.
constexpr unsigned crashExitCode = 99;

/// From now on a crash of this process (a fault of the processor, a trap of the undefined-behaviour checks, a
/// failed assertion, std::terminate) writes its kind and the calls that led to it to the standard error and ends
/// the process with `crashExitCode`. The system's own crash window would wait for somebody to close it.
void reportCrashes();
