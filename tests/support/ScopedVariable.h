// Environment variables for the time of a test.
#pragma once

#include <windows.h>

#include <string>

namespace test {

/// Gives an environment variable, which programs inherit, another value for the time of its life.
class ScopedVariable {
public:
    ScopedVariable(const wchar_t* name, const std::wstring& value) : name(name) {
        wasSet = GetEnvironmentVariableW(name, before, MAX_PATH) != 0;
        SetEnvironmentVariableW(name, value.c_str());
    }
    ~ScopedVariable() { SetEnvironmentVariableW(name, wasSet ? before : nullptr); }
    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;

private:
    const wchar_t* name;
    wchar_t before[MAX_PATH] = {};
    bool wasSet = false;
};

} // namespace test
