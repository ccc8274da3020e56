// The log that the programs share.
#pragma once

#include <string>

namespace host {

/// The file, in the user's local application data; empty where that has no place.
std::wstring logFilePath();

/// Logs to that file from now on; to none where there cannot be one.
void startLog();

} // namespace host
