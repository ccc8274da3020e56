// ScanHost.exe.
#include "host/ProgramFolder.h"
#include "host/desktop/DesktopProgram.h"

#include <windows.h>

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int showCommand) {
    return host::runDesktopProgram({host::programFolder()}, showCommand);
}
