// The host that the benchmarks run the component in.
#pragma once

#include "host/ComponentModule.h"
#include "host/EnginesManager.h"
#include "host/HostApplication.h"

#include "SorvaneCommon/ExportEngine.h"
#include "bxbase/Reference.h"

#include <windows.h>

#include <memory>

namespace bench {

/// A host without windows of its own, as far as the measurements need one.
class Host {
public:
    /// @param registryBase  for its settings, which are removed at the end
    explicit Host(const wchar_t* registryBase);
    ~Host();
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    /// The component, loaded and registered for the time of the object's life.
    std::unique_ptr<host::ComponentModule> loadComponent();

    bxbase::Reference<SorvaneCommon::ExportEngine> createEngine(const char* factoryId) const;

private:
    host::HostApplication application;
    host::EnginesManager manager;
    HWND owner;
};

} // namespace bench
