// The host that the benchmarks run the component in.
#include "bench/BenchmarkHost.h"

#include "host/HostError.h"
#include "host/ProgramFolder.h"

#include "SorvaneBase/bxutils/ResourceManager.h"
#include "SorvaneCommon/ExportEngineFactory.h"

#include "afxwin.h"

namespace bench {

Host::Host(const wchar_t* registryBase)
    : application(registryBase),
      owner(CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr)) {
    if (!bxutils::getResourceManager()->loadLanguageFile(host::programFolder() + L"\\lang\\en.ini"))
        throw host::HostError("The language file cannot be read.");
}

Host::~Host() {
    DestroyWindow(owner);
    RegDeleteTreeW(HKEY_CURRENT_USER, (L"SOFTWARE\\" + application.getBaseRegistryPath()).c_str());
}

std::unique_ptr<host::ComponentModule> Host::loadComponent() {
    return std::make_unique<host::ComponentModule>(host::programFolder() + L"\\BasicExport.dll", manager);
}

bxbase::Reference<SorvaneCommon::ExportEngine> Host::createEngine(const char* factoryId) const {
    bxbase::Reference<SorvaneCommon::ExportEngine> engine;
    SorvaneCommon::ExportEngineFactory* factory = manager.findFactory(factoryId);
    if (!factory || !factory->createEngine(CWnd::FromHandle(owner), engine))
        throw host::HostError(std::string("The component offers no ") + factoryId + ".");
    return engine;
}

} // namespace bench
