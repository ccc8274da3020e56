// Running another program and seeing what becomes of it.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

/// What a program left behind.
struct ChildResult {
    unsigned exitCode = 0;
    std::string output; ///< its standard output
    std::string errors; ///< its standard error
};

/// Runs `program`, a full path or a file name in the folder of the test programs, with the arguments given and no
/// input, and waits for its end. A program that cannot be started, or has not ended after a minute, fails the
/// test; the latter is ended first.
/// @param meanwhile  called once the program runs, for example to use its windows
ChildResult runProgram(const std::wstring& program, const std::vector<std::wstring>& arguments,
                       const std::function<void(DWORD processId)>& meanwhile = {});
