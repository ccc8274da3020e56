// The key that tests have for themselves: what a user keeps there is not lost.
#include "support/ScopedRegistryKey.h"

#include "support/RawRegistry.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <optional>

namespace {

class ScopedRegistryKeyTest : public testing::Test {
protected:
    ~ScopedRegistryKeyTest() override { RegDeleteTreeW(HKEY_CURRENT_USER, root.c_str()); }

    const std::wstring root = L"SOFTWARE\\BasicExportTests\\scope-" + std::to_wstring(GetCurrentProcessId());
    const std::wstring key = root + L"\\host";
    const test::RawValue users{REG_SZ, test::bytesOfTerminated(L"the user's")};
    const test::RawValue tests{REG_SZ, test::bytesOfTerminated(L"the test's")};
};

TEST_F(ScopedRegistryKeyTest, WhatTheUserHadIsGoneDuringTheTestAndBackAfterIt) {
    test::writeValue(key, L"name", users);
    test::writeValue(key + L"\\1.0\\below", L"name", users);
    {
        const test::ScopedRegistryKey scope(key);
        EXPECT_FALSE(test::keyExists(key));
        test::writeValue(key, L"name", tests);
        test::writeValue(key + L"\\other", L"name", tests);
    }
    EXPECT_EQ(test::readValue(key, L"name"), users);
    EXPECT_EQ(test::readValue(key + L"\\1.0\\below", L"name"), users);
    EXPECT_FALSE(test::keyExists(key + L"\\other"));
}

TEST_F(ScopedRegistryKeyTest, NothingIsLeftWhereNothingWas) {
    test::writeValue(root, L"name", users);
    {
        const test::ScopedRegistryKey scope(key);
        test::writeValue(key, L"name", tests);
    }
    DWORD keys = 0;
    HKEY opened = nullptr;
    ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, root.c_str(), 0, KEY_READ, &opened), ERROR_SUCCESS);
    RegQueryInfoKeyW(opened, nullptr, nullptr, nullptr, &keys, nullptr, nullptr, nullptr, nullptr, nullptr,
                     nullptr, nullptr);
    RegCloseKey(opened);
    EXPECT_EQ(keys, 0u);
}

TEST_F(ScopedRegistryKeyTest, ATestThatDiesLosesNothingEither) {
    test::writeValue(key, L"name", users);
    // Begun but not ended, as by a test that crashed.
    alignas(test::ScopedRegistryKey) unsigned char place[sizeof(test::ScopedRegistryKey)];
    auto* const dead = new (place) test::ScopedRegistryKey(key);
    test::writeValue(key, L"name", tests);

    { const test::ScopedRegistryKey next(key); }

    EXPECT_EQ(test::readValue(key, L"name"), users);
    dead->~ScopedRegistryKey();
}

} // namespace
