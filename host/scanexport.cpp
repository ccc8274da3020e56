// scanexport.exe.
#include "host/ScanExport.h"

#include "host/CrashFilter.h"
#include "host/LogFile.h"
#include "host/ProgramFolder.h"
#include "host/SystemConsole.h"

int wmain(int argc, wchar_t** argv) {
    host::installCrashFilter("scanexport", host::printCrash);
    host::startLog();
    host::SystemConsole console;
    return host::runScanExport({argv + 1, argv + argc}, console, {host::programFolder()});
}
