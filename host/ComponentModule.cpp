// Loads a component and takes it away again.
#include "host/ComponentModule.h"

#include "AfxModule.h"
#include "afxwin.h"
#include "host/HostError.h"
#include "host/Text.h"

#include <exception>
#include <utility>

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

ComponentModule::ComponentModule(const std::wstring& path, EnginesManager& manager)
    : path(path), manager(manager) {
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
    if (const auto reason = start()) {
        unload();
        throw HostError(failure + *reason + ".");
    }
}

ComponentModule::~ComponentModule() {
    if (application)
        unload();
}

void ComponentModule::close() {
    // Nothing of the exception may be left when the module goes: its code can be in there.
    std::string reason;
    try {
        unload();
    } catch (const std::exception& error) {
        reason = std::string(": ") + error.what();
    } catch (...) {
        reason = '.';
    }
    if (reason.empty())
        return;
    abandon();
    FreeLibrary(module);
    throw HostError("The component " + utf8(path) + " failed while ending" + reason);
}

void ComponentModule::abandon() {
    AFX_MAINTAIN_STATE2 state(AfxFindModuleState(module));
    for (SorvaneCommon::ExportEngineFactory* factory : registered)
        manager.unregisterFactory(factory);
}

std::optional<std::string> ComponentModule::start() {
    const std::size_t others = manager.getFactories().size();
    std::optional<std::string> reason;
    // Nothing of the exception may be left when the module goes: its code can be in there.
    try {
        AFX_MAINTAIN_STATE2 state(AfxFindModuleState(module));
        if (!application->InitInstance())
            reason = "it refused to start";
    } catch (const std::exception& error) {
        reason = std::string("it failed while starting: ") + error.what();
    } catch (...) {
        reason = "it failed while starting";
    }
    for (std::size_t i = others; i < manager.getFactories().size(); ++i)
        registered.push_back(manager.getFactories()[i].get());
    return reason;
}

void ComponentModule::unload() {
    {
        AFX_MAINTAIN_STATE2 state(AfxFindModuleState(module));
        std::exchange(application, nullptr)->ExitInstance();
    }
    abandon();
    FreeLibrary(module);
}

} // namespace host
