// Settings kept in the Windows registry.
#pragma once

#include "SorvaneCommon/Api.h"
#include "SorvaneCommon/SettingsStore.h"

namespace SorvaneCommon {

/// Keeps each setting as a REG_SZ value of one key under HKEY_CURRENT_USER. The key is made with the first
/// write; it is opened for each call, so several processes may share it.
class SORVANECOMMON_API RegistrySettingsStore : public SettingsStore {
public:
    /// @param keyPath  the path below HKEY_CURRENT_USER
    explicit RegistrySettingsStore(const Sorvane::astring& keyPath);

    bool read(const Sorvane::u8string& key, Sorvane::u8string& value) override;
    bool write(const Sorvane::u8string& key, const Sorvane::u8string& value) override;

private:
    Sorvane::astring keyPath;
};

} // namespace SorvaneCommon
