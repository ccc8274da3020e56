// What the mail engine keeps in the host's settings store.
#include "ExportToMailData.h"

#include "SorvaneBase/Conversions.h"
#include "SorvaneCommon/Application.h"
#include "SorvaneCommon/SettingsStore.h"

namespace {

constexpr char SUBJECT_KEY[] = "Export.ToMail.Subject";
constexpr char MAX_TOTAL_SIZE_KEY[] = "Export.ToMail.MaxTotalSizeInKb";

} // namespace

ExportToMailData::~ExportToMailData() = default;

bool ExportToMailData::load() {
    SorvaneCommon::SettingsStore* const store = SorvaneCommon::GetApplication()->getSettingsStore();
    if (!store)
        return false;
    store->read(SUBJECT_KEY, subject);
    Sorvane::u8string maxTotalSize;
    store->read(MAX_TOTAL_SIZE_KEY, maxTotalSize);
    bool isNumber = false;
    maxTotalSizeInKb = Sorvane::string2Int(maxTotalSize, isNumber);
    return true;
}

bool ExportToMailData::save() const {
    SorvaneCommon::SettingsStore* const store = SorvaneCommon::GetApplication()->getSettingsStore();
    return store && store->write(SUBJECT_KEY, subject);
}
