// A registry key of one test's own.
#pragma once

#include <string>

namespace test {

/// A key under HKEY_CURRENT_USER that does not exist when the test starts. What the user had there waits in a
/// key beside it and is back when the test ends, or at the end of the next one if this one dies.
class ScopedRegistryKey {
public:
    /// Throws std::runtime_error when what is there cannot be put aside.
    explicit ScopedRegistryKey(std::wstring path);
    ~ScopedRegistryKey();
    ScopedRegistryKey(const ScopedRegistryKey&) = delete;
    ScopedRegistryKey& operator=(const ScopedRegistryKey&) = delete;

private:
    std::wstring path;
    std::wstring aside;
};

} // namespace test
