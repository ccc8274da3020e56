// A registry key of one test's own.
#include "support/ScopedRegistryKey.h"

#include "support/RawRegistry.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <stdexcept>
#include <utility>

namespace test {
namespace {

void remove(const std::wstring& path) {
    RegDeleteTreeW(HKEY_CURRENT_USER, path.c_str());
}

/// Moves a key with all below it to where none is. Returns whether that worked; if not, it stays where it was.
bool move(const std::wstring& from, const std::wstring& to) {
    HKEY target = nullptr;
    if (RegCreateKeyExW(HKEY_CURRENT_USER, to.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &target,
                        nullptr) != ERROR_SUCCESS)
        return false;
    const LSTATUS copied = RegCopyTreeW(HKEY_CURRENT_USER, from.c_str(), target);
    RegCloseKey(target);
    remove(copied == ERROR_SUCCESS ? from : to);
    return copied == ERROR_SUCCESS;
}

} // namespace

ScopedRegistryKey::ScopedRegistryKey(std::wstring ownPath)
    : path(std::move(ownPath)), aside(path + L" (put aside by a test)") {
    // When something has been put aside already, the key is what a test that died left.
    if (!keyExists(aside) && keyExists(path) && !move(path, aside))
        throw std::runtime_error("a registry key cannot be put aside");
    remove(path);
}

ScopedRegistryKey::~ScopedRegistryKey() {
    remove(path);
    if (keyExists(aside)) {
        EXPECT_TRUE(move(aside, path)) << "the user's registry key is still put aside";
    }
}

} // namespace test
