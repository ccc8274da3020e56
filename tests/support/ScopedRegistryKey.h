// A registry key of one test's own.
#pragma once

#include <windows.h>

#include <string>

namespace test {

/// A key under HKEY_CURRENT_USER that does not exist when the test starts and is gone when it ends.
class ScopedRegistryKey {
public:
    explicit ScopedRegistryKey(std::wstring path) : path(std::move(path)) { remove(); }
    ~ScopedRegistryKey() { remove(); }
    ScopedRegistryKey(const ScopedRegistryKey&) = delete;
    ScopedRegistryKey& operator=(const ScopedRegistryKey&) = delete;

private:
    void remove() const { RegDeleteTreeW(HKEY_CURRENT_USER, path.c_str()); }

    std::wstring path;
};

} // namespace test
