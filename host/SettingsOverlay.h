// Settings that count for one run only.
#pragma once

#include "SorvaneCommon/SettingsStore.h"

#include <map>
#include <string>
#include <utility>

namespace host {

/// Settings by key, as a store holds them.
using SettingValues = std::map<std::string, std::string>;

/// Shows other values than the store has, and leaves those in the store as they are.
class SettingsOverlay : public SorvaneCommon::SettingsStore {
public:
    /// @param store  not owned; has all other settings, and takes what is written
    SettingsOverlay(SorvaneCommon::SettingsStore& store, SettingValues values)
        : store(store), values(std::move(values)) {}

    bool read(const Sorvane::u8string& key, Sorvane::u8string& value) override {
        const auto found = values.find(key);
        if (found == values.end())
            return store.read(key, value);
        value = found->second;
        return true;
    }

    bool write(const Sorvane::u8string& key, const Sorvane::u8string& value) override {
        return store.write(key, value);
    }

private:
    SorvaneCommon::SettingsStore& store;
    SettingValues values;
};

} // namespace host
