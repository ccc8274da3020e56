// What the main window can be told to do: identifiers, menus and shortcuts.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace host {

/// The identifiers of the commands. Those of exports begin a range each, in which an export's number is counted from 0.
enum Command : UINT {
    commandExit = 3000,
    commandAbout,
    commandNextPane,
    commandPreviousPane,
    commandExport = 4100,
    commandExportEnd = 4200,
};

/// The menu bar in the current language. The caller owns it until a window has it.
/// @param exports  the names of the export targets; those beyond the commands' range are left out
HMENU createMenuBar(const std::vector<std::wstring>& exports);

/// Owned by the caller.
HACCEL createShortcuts();

/// How a person presses the shortcut of a command, in the current language; empty when it has none.
std::wstring shortcutText(UINT command);

} // namespace host
