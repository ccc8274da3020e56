// Holds the host's register of export kinds.
#include "SorvaneCommon/ExportEnginesManager.h"

namespace SorvaneCommon {

namespace {

ExportEnginesManager* currentManager = nullptr;

} // namespace

ExportEnginesManager* getExportEnginesManager() {
    return currentManager;
}

void setExportEnginesManager(ExportEnginesManager* manager) {
    currentManager = manager;
}

} // namespace SorvaneCommon
