// The system's dialogs that ask for files and folders with pages.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace host {

/// The full paths that the person chose; none when they chose none. COM is open on the thread.
std::vector<std::wstring> askForFiles(HWND owner);
std::vector<std::wstring> askForFolders(HWND owner);

} // namespace host
