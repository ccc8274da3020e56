// scanexport.exe.
#include "host/ScanExport.h"

#include "SorvaneBase/bxutils/SystemLog.h"
#include "host/CrashFilter.h"
#include "host/ProgramFolder.h"
#include "host/SystemConsole.h"

#include <windows.h>

namespace {

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
    return host::runScanExport({argv + 1, argv + argc}, console, {host::programFolder()});
}
