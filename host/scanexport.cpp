// scanexport.exe.
#include "host/ScanExport.h"

#include "SorvaneBase/bxutils/SystemLog.h"
#include "host/CrashFilter.h"
#include "host/SystemConsole.h"

#include <windows.h>

namespace {

std::wstring programFolder() {
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
        if (length < path.size())
            return path.substr(0, path.find_last_of(L'\\'));
        path.resize(path.size() * 2);
    }
}

void startLog() {
    wchar_t folder[MAX_PATH + 1];
    const DWORD length = GetEnvironmentVariableW(L"LOCALAPPDATA", folder, MAX_PATH + 1);
    if (length && length <= MAX_PATH)
        bxutils::setSystemLogFile(std::wstring(folder) + L"\\Sorvane\\ScanHost\\ScanHost.log");
}

} // namespace

int wmain(int argc, wchar_t** argv) {
    host::installCrashFilter();
    startLog();
    host::SystemConsole console;
    return host::runScanExport({argv + 1, argv + argc}, console, {programFolder()});
}
