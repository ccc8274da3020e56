// The host's register of export kinds.
#pragma once

#include "SorvaneCommon/ExportEngineFactory.h"
#include "SorvaneCommon/ExportEnginesManager.h"
#include "bxbase/Reference.h"

#include <string_view>
#include <vector>

namespace host {

/// The process's engines manager for the time of its life. Offers the factories in the order of their
/// registration.
class EnginesManager : public SorvaneCommon::ExportEnginesManager {
public:
    using Factories = std::vector<bxbase::Reference<SorvaneCommon::ExportEngineFactory>>;

    EnginesManager();
    ~EnginesManager() override;
    EnginesManager(const EnginesManager&) = delete;
    EnginesManager& operator=(const EnginesManager&) = delete;

    void registerFactory(SorvaneCommon::ExportEngineFactory* factory) override;
    /// A factory that is not registered is ignored.
    void unregisterFactory(SorvaneCommon::ExportEngineFactory* factory) override;

    const Factories& getFactories() const noexcept { return factories; }

    /// The factory with the identifier, or null. Not owned by the caller.
    SorvaneCommon::ExportEngineFactory* findFactory(std::string_view id) const;

private:
    Factories factories;
};

} // namespace host
