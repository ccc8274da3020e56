// The log that the programs share.
#include "host/LogFile.h"

#include "SorvaneBase/bxutils/SystemLog.h"

#include <windows.h>

namespace host {

std::wstring logFilePath() {
    wchar_t folder[MAX_PATH + 1];
    const DWORD length = GetEnvironmentVariableW(L"LOCALAPPDATA", folder, MAX_PATH + 1);
    if (!length || length > MAX_PATH)
        return {};
    return std::wstring(folder) + L"\\Sorvane\\ScanHost\\ScanHost.log";
}

void startLog() {
    bxutils::setSystemLogFile(logFilePath());
}

} // namespace host
