// Files and folders that come from other programs, by the clipboard or by drag and drop.
#pragma once

#include <windows.h>

#include <objidl.h>

#include <string>
#include <vector>

namespace host {

/// Whether a data object carries files and folders that lie on a disk.
bool carriesPaths(IDataObject& data);

/// Their full paths, in the order of the program that gave them; none when it carries none.
std::vector<std::wstring> pathsIn(IDataObject& data);

/// The paths of the files and folders on the clipboard.
/// @param window  of this thread; the clipboard is opened for it
std::vector<std::wstring> pathsOnClipboard(HWND window);

} // namespace host
