// The host application's settings.
#pragma once

#include "SorvaneBase/StringTypes.h"

namespace SorvaneCommon {

/// Texts by key, kept between runs. Thread: the host's user-interface thread. Nothing throws.
class SettingsStore {
public:
    virtual ~SettingsStore() = default;

    /// Reads the text stored under the key. False, with `value` untouched, when there is none or it cannot be
    /// read.
    virtual bool read(const Sorvane::u8string& key, Sorvane::u8string& value) = 0;

    /// Stores the text under the key, replacing what was there. False when it cannot be stored.
    virtual bool write(const Sorvane::u8string& key, const Sorvane::u8string& value) = 0;
};

} // namespace SorvaneCommon
