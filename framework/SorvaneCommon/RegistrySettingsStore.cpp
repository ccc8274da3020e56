// Settings as REG_SZ values of one registry key.
#include "SorvaneCommon/RegistrySettingsStore.h"

#include "SorvaneBase/Conversions.h"
#include "bxbase/RegistryKey.h"

#include <windows.h>

#include <optional>
#include <vector>

namespace SorvaneCommon {

namespace {

std::optional<std::wstring> queryText(HKEY key, const std::wstring& name) {
    std::vector<wchar_t> buffer(256);
    for (;;) {
        DWORD type = 0;
        auto size = static_cast<DWORD>(buffer.size() * sizeof(wchar_t));
        const LSTATUS status = RegQueryValueExW(key, name.c_str(), nullptr, &type,
                                                reinterpret_cast<BYTE*>(buffer.data()), &size);
        if (status == ERROR_MORE_DATA) {
            // Another process may make the value longer still before we ask again.
            buffer.resize(size / sizeof(wchar_t) + 1);
            continue;
        }
        if (status != ERROR_SUCCESS || type != REG_SZ)
            return std::nullopt;

        // The registry does not make sure that a text ends with a NUL, nor that its size is even.
        const std::wstring text(buffer.data(), size / sizeof(wchar_t));
        return text.substr(0, text.find(L'\0'));
    }
}

} // namespace

RegistrySettingsStore::RegistrySettingsStore(const Sorvane::astring& keyPath) : keyPath(keyPath) {}

bool RegistrySettingsStore::read(const Sorvane::u8string& key, Sorvane::u8string& value) {
    HKEY opened = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, keyPath.c_str(), 0, KEY_QUERY_VALUE, &opened) != ERROR_SUCCESS)
        return false;
    const bxbase::RegistryKey guard(opened);

    std::wstring name;
    Sorvane::c_u8u16(name, key);
    const std::optional<std::wstring> text = queryText(opened, name);
    if (!text)
        return false;
    Sorvane::c_u16u8(value, *text);
    return true;
}

bool RegistrySettingsStore::write(const Sorvane::u8string& key, const Sorvane::u8string& value) {
    HKEY opened = nullptr;
    if (RegCreateKeyExW(HKEY_CURRENT_USER, keyPath.c_str(), 0, nullptr, 0, KEY_SET_VALUE, nullptr, &opened,
                        nullptr) != ERROR_SUCCESS)
        return false;
    const bxbase::RegistryKey guard(opened);

    std::wstring name;
    std::wstring text;
    Sorvane::c_u8u16(name, key);
    Sorvane::c_u8u16(text, value);
    return RegSetValueExW(opened, name.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                          static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t))) == ERROR_SUCCESS;
}

} // namespace SorvaneCommon
