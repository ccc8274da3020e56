// The components that lie beside a program.
#pragma once

#include "host/ComponentModule.h"
#include "host/EnginesManager.h"

#include <memory>
#include <string>
#include <vector>

namespace host {

/// The full paths of the DLLs in a folder that import SorvaneCommon.dll, which is what makes a component, sorted by
/// name. Their import tables are read; nothing of them runs.
std::vector<std::wstring> componentsIn(const std::wstring& folder);

/// All components of a folder for the time of its life, loaded in the order of their names. One that cannot be loaded
/// or crashes when it starts is logged and does not keep the others away.
///
/// Thread: the user-interface thread, outside DllMain.
class ComponentFolder {
public:
    /// @param manager  must outlive this; has the factories of the components that could be loaded
    ComponentFolder(const std::wstring& folder, EnginesManager& manager);
    ~ComponentFolder();
    ComponentFolder(const ComponentFolder&) = delete;
    ComponentFolder& operator=(const ComponentFolder&) = delete;

    /// Takes all components away. One that throws or crashes meanwhile is logged and does not keep the others here.
    /// @return one sentence in English for each of these
    std::vector<std::string> unload();

    /// One sentence in English for each component that is missing.
    const std::vector<std::string>& failures() const noexcept { return failureTexts; }

private:
    void load(const std::wstring& path, EnginesManager& manager);

    std::vector<std::unique_ptr<ComponentModule>> components;
    std::vector<std::string> failureTexts;
};

} // namespace host
