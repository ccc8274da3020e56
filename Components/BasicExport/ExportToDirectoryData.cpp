// Keeps a directory and a prefix in the host's settings store.
#include "ExportToDirectoryData.h"

#include "SorvaneCommon/Application.h"
#include "SorvaneCommon/SettingsStore.h"

namespace {

constexpr char PREFIX_KEY[] = "Export.ToDirectory.Prefix";

} // namespace

ExportToDirectoryData::ExportToDirectoryData(const Sorvane::u8string& key) : key(key) {}

ExportToDirectoryData::~ExportToDirectoryData() = default;

bool ExportToDirectoryData::save() const {
    SorvaneCommon::SettingsStore* const store = SorvaneCommon::GetApplication()->getSettingsStore();
    if (!store)
        return false;
    store->write(key, path);
    store->write(PREFIX_KEY, prefix);
    return true;
}

bool ExportToDirectoryData::load() {
    SorvaneCommon::SettingsStore* const store = SorvaneCommon::GetApplication()->getSettingsStore();
    return store && store->read(key, path) && store->read(PREFIX_KEY, prefix);
}
