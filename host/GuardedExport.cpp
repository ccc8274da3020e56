// Runs an engine's export and protects the host from the mail client, which is somebody else's code in its process.
#include "host/GuardedExport.h"

#include "AfxModule.h"
#include "SorvaneCommon/ExportEngine.h"
#include "afxwin.h"
#include "host/GuardedCall.h"
#include "host/HostError.h"

#include <windows.h>

#include <psapi.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

namespace host {
namespace {

/// The system's own mail library. A library that is loaded is what the system gives to who asks for its name.
class SystemMailLibrary {
public:
    SystemMailLibrary() {
        wchar_t folder[MAX_PATH] = L"";
        GetSystemDirectoryW(folder, MAX_PATH);
        module = LoadLibraryExW((std::wstring(folder) + L"\\mapi32.dll").c_str(), nullptr,
                                LOAD_LIBRARY_SEARCH_SYSTEM32);
    }
    ~SystemMailLibrary() {
        if (module)
            FreeLibrary(module);
    }
    SystemMailLibrary(const SystemMailLibrary&) = delete;
    SystemMailLibrary& operator=(const SystemMailLibrary&) = delete;

private:
    HMODULE module;
};

class CurrentDirectoryKeeper {
public:
    CurrentDirectoryKeeper() : directory(GetCurrentDirectoryW(0, nullptr), L'\0') {
        GetCurrentDirectoryW(static_cast<DWORD>(directory.size()), directory.data());
    }
    ~CurrentDirectoryKeeper() { SetCurrentDirectoryW(directory.c_str()); }
    CurrentDirectoryKeeper(const CurrentDirectoryKeeper&) = delete;
    CurrentDirectoryKeeper& operator=(const CurrentDirectoryKeeper&) = delete;

private:
    std::wstring directory;
};

/// The state of the windows, to which restore() goes back.
class WindowState {
public:
    explicit WindowState(CWnd& owner)
        : owner(owner), heldOff(owner.m_nFlags & WF_STAYDISABLED),
          wasEnabled(owner.IsWindowEnabled() != FALSE) {}

    void restore() const {
        if (capture != GetCapture())
            ReleaseCapture();
        // Before anything is enabled, which the flag would undo.
        owner.m_nFlags = (owner.m_nFlags & ~static_cast<UINT>(WF_STAYDISABLED)) | heldOff;
        toolkit.restore();
        if (wasEnabled)
            owner.EnableWindow(TRUE);
        if (IsWindow(focus))
            SetFocus(focus);
    }

private:
    CWnd& owner;
    UINT heldOff;
    bool wasEnabled;
    AfxThreadSnapshot toolkit;
    HWND capture = GetCapture();
    HWND focus = GetFocus();
};

void keepModulesLoaded() {
    std::vector<HMODULE> modules(1024);
    DWORD size = 0;
    K32EnumProcessModules(GetCurrentProcess(), modules.data(),
                          static_cast<DWORD>(modules.size() * sizeof(HMODULE)), &size);
    modules.resize(std::min(modules.size(), size / sizeof(HMODULE)));
    for (HMODULE module : modules)
        GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                           reinterpret_cast<const wchar_t*>(module), &module);
}

} // namespace

int exportGuarded(SorvaneCommon::ExportEngine& engine, CWnd& owner, ExportErrorSink& errors) {
    const SystemMailLibrary mailLibrary;
    const CurrentDirectoryKeeper directory;
    const WindowState windows(owner);
    int result = 0;
    std::optional<Crash> crash;
    try {
        crash = callGuarded([&] { result = engine.exportData(nullptr, errors); });
    } catch (...) {
        windows.restore();
        throw;
    }
    if (!crash)
        return result;
    keepModulesLoaded();
    windows.restore();
    throw HostError("The export crashed with " + std::string(describe(*crash).data()) +
                    ", and nobody knows whether the pages were taken over.");
}

} // namespace host
