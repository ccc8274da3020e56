// ScanHost.exe.
#include "host/CrashFilter.h"
#include "host/LogFile.h"
#include "host/ProgramFolder.h"
#include "host/desktop/CrashWindow.h"
#include "host/desktop/DesktopProgram.h"

#include <windows.h>

#include <cstdlib>

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int showCommand) {
    host::installCrashFilter("ScanHost", host::showCrash);
    host::startLog();
    return host::runDesktopProgram({__wargv + 1, __wargv + __argc}, {host::programFolder()}, showCommand);
}
