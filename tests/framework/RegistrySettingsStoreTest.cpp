// Settings in the registry.
#include "SorvaneCommon/RegistrySettingsStore.h"

#include "support/ScopedRegistryKey.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <string>
#include <vector>

namespace {

class RegistrySettingsStoreTest : public testing::Test {
protected:
    ~RegistrySettingsStoreTest() override {
        if (key)
            RegCloseKey(key);
    }

    HKEY openedKey() {
        if (!key) {
            EXPECT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                                      &key, nullptr),
                      ERROR_SUCCESS);
        }
        return key;
    }

    /// Stores bytes as another program might have left them.
    void put(const wchar_t* name, DWORD type, std::vector<BYTE> bytes) {
        const auto size = static_cast<DWORD>(bytes.size());
        // The function appends a NUL when it finds one behind the data: keep it from finding one.
        bytes.insert(bytes.end(), {0xFF, 0xFF});
        EXPECT_EQ(RegSetValueExW(openedKey(), name, 0, type, bytes.data(), size), ERROR_SUCCESS);
    }

    /// Takes all rights to the key away, or gives them back.
    void setLocked(bool locked) {
        SECURITY_DESCRIPTOR descriptor;
        ACL nobody;
        InitializeSecurityDescriptor(&descriptor, SECURITY_DESCRIPTOR_REVISION);
        InitializeAcl(&nobody, sizeof nobody, ACL_REVISION);
        SetSecurityDescriptorDacl(&descriptor, TRUE, locked ? &nobody : nullptr, FALSE);
        EXPECT_EQ(RegSetKeySecurity(openedKey(), DACL_SECURITY_INFORMATION, &descriptor), ERROR_SUCCESS);
    }

    const std::wstring root = L"SOFTWARE\\BasicExportTests\\" + std::to_wstring(GetCurrentProcessId());
    const std::wstring path = root + L"\\Settings";
    test::ScopedRegistryKey scope{root};
    SorvaneCommon::RegistrySettingsStore store{path};
    std::string value = "untouched";

private:
    HKEY key = nullptr;
};

TEST_F(RegistrySettingsStoreTest, WithoutKeyReadsNothing) {
    EXPECT_FALSE(store.read("Subject", value));
    EXPECT_EQ(value, "untouched");
}

TEST_F(RegistrySettingsStoreTest, ReadingDoesNotMakeTheKey) {
    store.read("Subject", value);
    HKEY opened = nullptr;
    EXPECT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, KEY_READ, &opened), ERROR_FILE_NOT_FOUND);
}

TEST_F(RegistrySettingsStoreTest, UnknownSettingLeavesTheTextUntouched) {
    ASSERT_TRUE(store.write("Subject", "Scans"));
    EXPECT_FALSE(store.read("Prefix", value));
    EXPECT_EQ(value, "untouched");
}

TEST_F(RegistrySettingsStoreTest, WritesATerminatedTextForOtherPrograms) {
    ASSERT_TRUE(store.write("Export.ToMail.Subject", "Účty"));
    DWORD type = 0;
    wchar_t stored[16];
    DWORD size = sizeof stored;
    ASSERT_EQ(RegQueryValueExW(openedKey(), L"Export.ToMail.Subject", nullptr, &type,
                               reinterpret_cast<BYTE*>(stored), &size),
              ERROR_SUCCESS);
    EXPECT_EQ(type, static_cast<DWORD>(REG_SZ));
    EXPECT_EQ(std::wstring(stored, size / sizeof(wchar_t)), std::wstring(L"Účty\0", 5));
}

TEST_F(RegistrySettingsStoreTest, SecondWriteReplacesTheFirst) {
    ASSERT_TRUE(store.write("Subject", "a long first text"));
    ASSERT_TRUE(store.write("Subject", "short"));
    ASSERT_TRUE(store.read("Subject", value));
    EXPECT_EQ(value, "short");
}

TEST_F(RegistrySettingsStoreTest, OtherTypesAreRefused) {
    for (const DWORD type : {REG_DWORD, REG_BINARY, REG_EXPAND_SZ, REG_MULTI_SZ, REG_NONE}) {
        put(L"Subject", type, {'4', 0, 0, 0});
        EXPECT_FALSE(store.read("Subject", value)) << type;
        EXPECT_EQ(value, "untouched");
    }
}

TEST_F(RegistrySettingsStoreTest, DeniedAccessIsAPlainFailure) {
    ASSERT_TRUE(store.write("Subject", "Scans"));
    setLocked(true);
    EXPECT_FALSE(store.read("Subject", value));
    EXPECT_EQ(value, "untouched");
    EXPECT_FALSE(store.write("Subject", "other"));
    setLocked(false);
    ASSERT_TRUE(store.read("Subject", value));
    EXPECT_EQ(value, "Scans");
}

struct RoundTrip {
    const char* what;
    std::string key;
    std::string value;
};

class SettingRoundTripTest : public RegistrySettingsStoreTest,
                             public testing::WithParamInterface<RoundTrip> {};

TEST_P(SettingRoundTripTest, ComesBackAsItWasWritten) {
    ASSERT_TRUE(store.write(GetParam().key, GetParam().value));
    ASSERT_TRUE(SorvaneCommon::RegistrySettingsStore(path).read(GetParam().key, value));
    EXPECT_EQ(value, GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(
    Values, SettingRoundTripTest,
    testing::Values(RoundTrip{"Plain", "Export.ToDirectory.Prefix", "Scan"},
                    RoundTrip{"Empty", "Subject", ""}, RoundTrip{"UnicodeKey", "Předmět 日本 😀", "Scan"},
                    RoundTrip{"UnicodeText", "Subject", "Žluťoučký kůň 日本 😀"},
                    RoundTrip{"LineBreaks", "Subject", "first\r\nsecond\ttab"},
                    RoundTrip{"JustTheFirstBuffer", "Subject", std::string(255, 'x')},
                    RoundTrip{"OneMoreThanTheFirstBuffer", "Subject", std::string(256, 'x')},
                    RoundTrip{"64KiB", "Subject", std::string(32767, 'x')},
                    RoundTrip{"1MiB", "Subject", std::string(524288, 'x')}),
    [](const auto& info) { return std::string(info.param.what); });

struct Foreign {
    const char* what;
    std::vector<BYTE> bytes;
    std::string value;
};

class ForeignSettingTest : public RegistrySettingsStoreTest, public testing::WithParamInterface<Foreign> {};

TEST_P(ForeignSettingTest, IsReadUpToItsEndAndNoFurther) {
    put(L"Subject", REG_SZ, GetParam().bytes);
    ASSERT_TRUE(store.read("Subject", value));
    EXPECT_EQ(value, GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(Data, ForeignSettingTest,
                         testing::Values(Foreign{"NoBytes", {}, ""}, Foreign{"OneByte", {'S'}, ""},
                                         Foreign{"Unterminated", {'S', 0, 'c', 0}, "Sc"},
                                         Foreign{"OddSize", {'S', 0, 'c', 0, 'x'}, "Sc"},
                                         Foreign{"TextBehindTheEnd", {'S', 0, 0, 0, 'x', 0}, "S"},
                                         Foreign{"UnterminatedAndAsLongAsTheFirstBuffer",
                                                 std::vector<BYTE>(512, 0x21),
                                                 [] {
                                                     std::string text;
                                                     for (int i = 0; i < 256; ++i)
                                                         text += "\xE2\x84\xA1"; // U+2121
                                                     return text;
                                                 }()}),
                         [](const auto& info) { return std::string(info.param.what); });

} // namespace
