// The host application, as its components see it.
#pragma once

#include "SorvaneBase/StringTypes.h"
#include "SorvaneCommon/Api.h"
#include "SorvaneCommon/MessageDialog.h"

namespace SorvaneCommon {

class SettingsStore;

/// Implemented by the host. Thread: the host's user-interface thread.
class SORVANECOMMON_API Application {
public:
    virtual ~Application();

    /// The host's own part of its registry path, without "SOFTWARE" and the version ("Maker\Product").
    virtual std::wstring getBaseRegistryPath() const = 0;

    /// The version part of the registry path ("2.0").
    virtual std::wstring getRegistryVersion() const = 0;

    /// The settings store, or null when the host keeps none. Owned by the application.
    virtual SettingsStore* getSettingsStore() = 0;

    /// What MessageDialog() does. The default shows the system's message box.
    virtual MessageDlgResult showMessage(HWND owner, MessageDlgType type, const Sorvane::u8string& text,
                                         const Sorvane::u8string& title);
};

/// The host application. The host sets it before it loads the first component and keeps it until the last one
/// is unloaded; in between it is never null. Not owned by the caller.
SORVANECOMMON_API Application* GetApplication();
SORVANECOMMON_API void SetApplication(Application* application);

/// The host application's registry version.
SORVANECOMMON_API std::wstring getRegistryVersion();

} // namespace SorvaneCommon
