// Registry values as the bytes they are, and keys that refuse access.
#include "support/RawRegistry.h"

#include <gtest/gtest.h>

#include <cstring>
#include <stdexcept>

namespace test {
namespace {

void check(LSTATUS status, const char* what) {
    if (status != ERROR_SUCCESS)
        throw std::runtime_error(std::string(what) + " failed with " + std::to_string(status));
}

} // namespace

std::string bytesOf(const std::wstring& text) {
    return {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(wchar_t)};
}

std::string bytesOfTerminated(const std::wstring& text) {
    return {reinterpret_cast<const char*>(text.c_str()), (text.size() + 1) * sizeof(wchar_t)};
}

std::string bytesOf(DWORD number) {
    return {reinterpret_cast<const char*>(&number), sizeof number};
}

void writeValue(const std::wstring& key, const std::wstring& name, const RawValue& value) {
    HKEY opened = nullptr;
    check(
        RegCreateKeyExW(HKEY_CURRENT_USER, key.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &opened, nullptr),
        "RegCreateKeyExW");
    // A text without its NUL would get one from the system if one happened to follow in memory.
    const std::string poisoned = value.bytes + std::string(8, '\xCC');
    const LSTATUS status =
        RegSetValueExW(opened, name.c_str(), 0, value.type, reinterpret_cast<const BYTE*>(poisoned.data()),
                       static_cast<DWORD>(value.bytes.size()));
    RegCloseKey(opened);
    check(status, "RegSetValueExW");
    if (readValue(key, name) != value)
        throw std::runtime_error("the registry did not take the value as it is");
}

std::optional<RawValue> readValue(const std::wstring& key, const std::wstring& name) {
    HKEY opened = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, key.c_str(), 0, KEY_QUERY_VALUE, &opened) != ERROR_SUCCESS)
        return std::nullopt;
    std::string buffer(131072, '\0');
    auto size = static_cast<DWORD>(buffer.size());
    RawValue value;
    const LSTATUS status = RegQueryValueExW(opened, name.c_str(), nullptr, &value.type,
                                            reinterpret_cast<BYTE*>(buffer.data()), &size);
    RegCloseKey(opened);
    if (status != ERROR_SUCCESS)
        return std::nullopt;
    value.bytes = buffer.substr(0, size);
    return value;
}

bool keyExists(const std::wstring& key) {
    HKEY opened = nullptr;
    const bool exists =
        RegOpenKeyExW(HKEY_CURRENT_USER, key.c_str(), 0, KEY_QUERY_VALUE, &opened) == ERROR_SUCCESS;
    RegCloseKey(opened);
    return exists;
}

RestrictedRegistryKey::RestrictedRegistryKey(const std::wstring& key, REGSAM allowed) {
    check(RegOpenKeyExW(HKEY_CURRENT_USER, key.c_str(), 0, READ_CONTROL | WRITE_DAC, &opened),
          "RegOpenKeyExW");
    DWORD size = 0;
    RegGetKeySecurity(opened, DACL_SECURITY_INFORMATION, nullptr, &size);
    original.resize(size);
    check(RegGetKeySecurity(opened, DACL_SECURITY_INFORMATION, original.data(), &size), "RegGetKeySecurity");

    alignas(DWORD) BYTE everybody[SECURITY_MAX_SID_SIZE];
    DWORD everybodySize = sizeof everybody;
    CreateWellKnownSid(WinWorldSid, nullptr, everybody, &everybodySize);
    alignas(DWORD) BYTE listBytes[256];
    auto* list = reinterpret_cast<ACL*>(listBytes);
    InitializeAcl(list, sizeof listBytes, ACL_REVISION);
    if (allowed)
        AddAccessAllowedAce(list, ACL_REVISION, allowed, everybody);
    SECURITY_DESCRIPTOR descriptor;
    InitializeSecurityDescriptor(&descriptor, SECURITY_DESCRIPTOR_REVISION);
    SetSecurityDescriptorDacl(&descriptor, TRUE, list, FALSE);
    check(RegSetKeySecurity(opened, DACL_SECURITY_INFORMATION, &descriptor), "RegSetKeySecurity");
}

RestrictedRegistryKey::~RestrictedRegistryKey() {
    EXPECT_EQ(RegSetKeySecurity(opened, DACL_SECURITY_INFORMATION, original.data()), ERROR_SUCCESS);
    RegCloseKey(opened);
}

} // namespace test
