// The program with a window, from its start to its end.
#pragma once

#include "host/Surroundings.h"

#include <string>
#include <vector>

namespace host {

/// Runs the program until its window is closed, and gives its exit code, which is that of the console program.
/// Everything it says is shown in windows.
/// @param arguments    [--lang XX] [FILE|FOLDER]..., without the program's name
/// @param showCommand  how the system wants the window shown, SW_...
int runDesktopProgram(const std::vector<std::wstring>& arguments, const Surroundings& surroundings,
                      int showCommand);

} // namespace host
