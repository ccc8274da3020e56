// A directory and a prefix kept in the host's settings store.
#pragma once

#include "SorvaneBase/StringTypes.h"

/// The caller sets `path` and `prefix` and saves them, or loads and reads them.
class ExportToDirectoryData {
public:
    /// @param key  the settings key of the directory; the prefix has a fixed one
    explicit ExportToDirectoryData(const Sorvane::u8string& key);
    virtual ~ExportToDirectoryData();

    /// False, with nothing stored, when the host keeps no settings.
    bool save() const;

    /// False when the host keeps no settings or either text is not stored; `prefix` is untouched unless the
    /// directory was read.
    bool load();

    Sorvane::u8string key;
    Sorvane::u8string path;
    Sorvane::u8string prefix;
};
