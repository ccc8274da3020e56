// Loads a component and takes it away again.
#include "host/ComponentModule.h"

#include "AfxModule.h"
#include "afxwin.h"
#include "host/HostError.h"
#include "host/Text.h"

namespace host {
namespace {

std::string reasonForLoadError(DWORD error) {
    switch (error) {
    case ERROR_BAD_EXE_FORMAT:
        return "it is not a DLL for 64-bit Windows";
    case ERROR_MOD_NOT_FOUND:
        return "a DLL that it needs is missing";
    case ERROR_PROC_NOT_FOUND:
        return "a DLL that it needs is of another version";
    case ERROR_DLL_INIT_FAILED:
        return "its initialisation failed";
    default:
        return reasonFor(error);
    }
}

} // namespace

ComponentModule::ComponentModule(const std::wstring& path, EnginesManager& manager) : manager(manager) {
    const std::string failure = "The component " + utf8(path) + " cannot be loaded: ";
    if (GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES)
        throw HostError(failure + reasonFor(GetLastError()) + ".");
    module = LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (!module)
        throw HostError(failure + reasonForLoadError(GetLastError()) + ".");
    application = AfxFindModuleApp(module);
    if (!application) {
        FreeLibrary(module);
        throw HostError(failure + "it has no application object.");
    }
    if (!initInstance()) {
        unload();
        throw HostError(failure + "it refused to start.");
    }
}

ComponentModule::~ComponentModule() {
    unload();
}

bool ComponentModule::initInstance() {
    const std::size_t others = manager.getFactories().size();
    AFX_MAINTAIN_STATE2 state(AfxFindModuleState(module));
    const bool started = application->InitInstance() != FALSE;
    for (std::size_t i = others; i < manager.getFactories().size(); ++i)
        registered.push_back(manager.getFactories()[i].get());
    return started;
}

void ComponentModule::unload() {
    {
        AFX_MAINTAIN_STATE2 state(AfxFindModuleState(module));
        application->ExitInstance();
        for (SorvaneCommon::ExportEngineFactory* factory : registered)
            manager.unregisterFactory(factory);
    }
    FreeLibrary(module);
}

} // namespace host
