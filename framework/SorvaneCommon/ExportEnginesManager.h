// The host's register of export kinds.
#pragma once

#include "SorvaneCommon/Api.h"

namespace SorvaneCommon {

class ExportEngineFactory;

/// Implemented by the host. Thread: the host's user-interface thread.
class ExportEnginesManager {
public:
    virtual ~ExportEnginesManager() = default;

    /// Takes a reference of its own to the factory and offers it until it is unregistered. The component
    /// drops its creation reference right after this call.
    virtual void registerFactory(ExportEngineFactory* factory) = 0;

    /// Drops the reference that registerFactory took. Engines that the factory has created live on.
    virtual void unregisterFactory(ExportEngineFactory* factory) = 0;
};

/// The host's manager, or null when the host has none. Not owned by the caller.
SORVANECOMMON_API ExportEnginesManager* getExportEnginesManager();

/// Called by the host before it loads components, and with null after it has unloaded them. The manager stays
/// the host's.
SORVANECOMMON_API void setExportEnginesManager(ExportEnginesManager* manager);

} // namespace SorvaneCommon
