// The host's register of export kinds.
#include "host/EnginesManager.h"

#include <algorithm>

namespace host {

EnginesManager::EnginesManager() {
    SorvaneCommon::setExportEnginesManager(this);
}

EnginesManager::~EnginesManager() {
    SorvaneCommon::setExportEnginesManager(nullptr);
}

void EnginesManager::registerFactory(SorvaneCommon::ExportEngineFactory* factory) {
    factories.emplace_back(factory);
}

void EnginesManager::unregisterFactory(SorvaneCommon::ExportEngineFactory* factory) {
    const auto found = std::find_if(factories.begin(), factories.end(),
                                    [factory](const auto& held) { return held.get() == factory; });
    if (found != factories.end())
        factories.erase(found);
}

SorvaneCommon::ExportEngineFactory* EnginesManager::findFactory(std::string_view id) const {
    const auto found = std::find_if(factories.begin(), factories.end(),
                                    [id](const auto& factory) { return factory->getId() == id; });
    return found == factories.end() ? nullptr : found->get();
}

} // namespace host
