// What the main window can be told to do: identifiers, menus and shortcuts.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace host {

/// The identifiers of the commands. Those of exports have ranges, in which the targets are counted from 0.
enum Command : UINT {
    commandAddFiles = 3000,
    commandAddFolder,
    commandExit,
    commandUndo,
    commandRedo,
    commandPaste,
    commandSelectAll,
    commandOpen,
    commandRemove,
    commandMoveBack,
    commandMoveForward,
    commandOwnOrder, ///< the first of those that choose a PageOrder, in its sequence
    commandSortByName,
    commandSortByDate,
    commandSettings,
    commandAbout,
    commandNextPane,
    commandExport = 4100,         ///< the pages that the status bar names
    commandExportAll = 4200,      ///< all pages, whatever is selected
    commandExportSelected = 4300, ///< the selected ones, be it only one
    commandExportsEnd = 4400,
};
constexpr UINT mostExports = commandExportAll - commandExport;

/// The menu bar in the current language. The caller owns it until a window has it.
/// @param exports  the names of the targets; what is beyond mostExports is left out
HMENU createMenuBar(const std::vector<std::wstring>& exports);

/// The menu for the selected pages. The caller owns it.
HMENU createPagesMenu(const std::vector<std::wstring>& exports);

/// Owned by the caller.
HACCEL createShortcuts();

/// How a person presses the shortcut of a command, in the current language; empty when it has none.
std::wstring shortcutText(UINT command);

} // namespace host
