// Registry values as the bytes they are, and keys that refuse access.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

namespace test {

/// A value's type and every byte of its data.
struct RawValue {
    DWORD type = REG_NONE;
    std::string bytes;

    friend bool operator==(const RawValue&, const RawValue&) = default;
};

/// The bytes of a text, without a terminating NUL.
std::string bytesOf(const std::wstring& text);
/// The bytes of a text with its terminating NUL.
std::string bytesOfTerminated(const std::wstring& text);
std::string bytesOf(DWORD number);

/// Writes exactly these bytes to a value under HKEY_CURRENT_USER, making the key if need be.
void writeValue(const std::wstring& key, const std::wstring& name, const RawValue& value);

/// The value, or none when there is no such key or value.
std::optional<RawValue> readValue(const std::wstring& key, const std::wstring& name);

bool keyExists(const std::wstring& key);

/// Takes rights to an existing key away from everybody, for the time of its life.
class RestrictedRegistryKey {
public:
    /// @param allowed  the rights that everybody keeps; 0 keeps none
    RestrictedRegistryKey(const std::wstring& key, REGSAM allowed);
    ~RestrictedRegistryKey();
    RestrictedRegistryKey(const RestrictedRegistryKey&) = delete;
    RestrictedRegistryKey& operator=(const RestrictedRegistryKey&) = delete;

private:
    HKEY opened = nullptr; ///< opened before, because nobody could give the rights back afterwards
    std::string original;  ///< the security descriptor
};

} // namespace test
