// The console program: exports pages through the component.
#pragma once

#include "host/Console.h"
#include "host/Surroundings.h"

#include <string>
#include <vector>

namespace host {

enum ExitCode { exitDone = 0, exitFailed = 1, exitStopped = 2, exitUsage = 7 };

/// Runs the program and gives its exit code. Everything it says goes to the console.
/// @param arguments  without the program's name
int runScanExport(const std::vector<std::wstring>& arguments, Console& console,
                  const Surroundings& surroundings);

} // namespace host
