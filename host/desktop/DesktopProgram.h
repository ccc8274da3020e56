// The program with a window, from its start to its end.
#pragma once

#include "host/Surroundings.h"

namespace host {

/// Runs the program until its window is closed, and gives its exit code. Everything it says is shown in windows.
int runDesktopProgram(const Surroundings& surroundings, int showCommand);

} // namespace host
