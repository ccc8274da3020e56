// Loads a component and takes it away again.
#pragma once

#include "host/EnginesManager.h"

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

class CWinApp;

namespace host {

/// A component DLL for the time of its life: loaded, its application object initialised, its factories in the
/// engines manager.
///
/// The order of the end is fixed: ExitInstance(), then factories that the component forgot to unregister are
/// dropped while their code is still there, then FreeLibrary(). Engines, icons and everything else that came
/// from the component must have been released before.
///
/// Thread: the user-interface thread, outside DllMain.
class ComponentModule {
public:
    /// Throws HostError, in one sentence, when the file is missing or no DLL for this program, has no
    /// application object, does not want to start or throws meanwhile. Nothing of it is loaded then.
    /// @param path     the full path. DLLs that the component needs are found beside it as well.
    /// @param manager  the process's engines manager; must outlive the module
    ComponentModule(const std::wstring& path, EnginesManager& manager);
    ~ComponentModule();
    ComponentModule(const ComponentModule&) = delete;
    ComponentModule& operator=(const ComponentModule&) = delete;

    /// Ends the component, as the destructor does. Where its ExitInstance() throws so does this, a HostError in one
    /// sentence, once the component is gone; the destructor would end the program.
    void close();
    /// After close() has crashed and been abandoned: drops the component's factories. It stays loaded.
    void abandon();

private:
    /// Why the component did not start, as the second half of a sentence; none when it did.
    std::optional<std::string> start();
    void unload();

    std::wstring path;
    EnginesManager& manager;
    HMODULE module = nullptr;
    CWinApp* application = nullptr;
    /// What the component registered when it started; only for comparison, they may be gone.
    std::vector<SorvaneCommon::ExportEngineFactory*> registered;
};

} // namespace host
