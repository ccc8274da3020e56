// What the main window can be told to do: identifiers, menus and shortcuts.
#include "host/desktop/Commands.h"

#include "host/desktop/Texts.h"

#include <algorithm>
#include <initializer_list>
#include <iterator>

namespace host {
namespace {

constexpr char section[] = "ScanHost.Window";
constexpr UINT exportsWithShortcut = 9;

struct Shortcut {
    UINT command;
    BYTE modifiers;
    WORD key;
};

constexpr Shortcut shortcuts[] = {
    {commandAddFiles, FCONTROL, 'O'},
    {commandAddFolder, FCONTROL | FSHIFT, 'O'},
    {commandUndo, FCONTROL, 'Z'},
    {commandRedo, FCONTROL, 'Y'},
    {commandPaste, FCONTROL, 'V'},
    {commandSelectAll, FCONTROL, 'A'},
    {commandRemove, 0, VK_DELETE},
    {commandMoveBack, FCONTROL | FSHIFT, VK_LEFT},
    {commandMoveForward, FCONTROL | FSHIFT, VK_RIGHT},
    {commandNextPane, 0, VK_F6},
    {commandNextPane, FSHIFT, VK_F6},
    {commandNextPane, 0, VK_TAB},
    {commandNextPane, FSHIFT, VK_TAB},
};

std::vector<Shortcut> allShortcuts() {
    std::vector<Shortcut> all(std::begin(shortcuts), std::end(shortcuts));
    for (WORD number = 0; number < exportsWithShortcut; ++number) {
        const auto key = static_cast<WORD>('1' + number);
        all.push_back({commandExport + number, FCONTROL, key});
        all.push_back({commandExportAll + number, FCONTROL | FSHIFT, key});
    }
    return all;
}

std::wstring keyText(WORD key) {
    switch (key) {
    case VK_DELETE:
        return localText(section, "Key.Delete");
    case VK_LEFT:
        return localText(section, "Key.Left");
    case VK_RIGHT:
        return localText(section, "Key.Right");
    default:
        return std::wstring(1, static_cast<wchar_t>(key));
    }
}

std::wstring withShortcut(const std::wstring& text, UINT command) {
    const std::wstring shortcut = shortcutText(command);
    return shortcut.empty() ? text : text + L'\t' + shortcut;
}

/// A text of somebody else's, in which "&" is nothing but a character.
std::wstring withoutLetter(const std::wstring& text) {
    std::wstring result;
    for (wchar_t c : text)
        result.append(c == L'&' ? 2 : 1, c);
    return result;
}

struct Entry {
    UINT command;
    const char* key;
};
/// A line between entries.
constexpr Entry line{0, nullptr};

void append(HMENU menu, std::initializer_list<Entry> entries) {
    for (const Entry& entry : entries) {
        if (entry.key)
            AppendMenuW(menu, MF_STRING, entry.command,
                        withShortcut(localText(section, entry.key), entry.command).c_str());
        else
            AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
    }
}

HMENU popupOf(std::initializer_list<Entry> entries) {
    const HMENU popup = CreatePopupMenu();
    append(popup, entries);
    return popup;
}

void appendPopup(HMENU menu, const char* key, HMENU popup) {
    AppendMenuW(menu, MF_POPUP, reinterpret_cast<UINT_PTR>(popup), localText(section, key).c_str());
}

/// One entry for each target; the letters to press are the numbers of the first nine.
void appendExports(HMENU menu, const std::vector<std::wstring>& exports, UINT first) {
    for (UINT i = 0; i < std::min<std::size_t>(exports.size(), mostExports); ++i) {
        const std::wstring number = i < exportsWithShortcut ? L'&' + std::to_wstring(i + 1) + L"  " : L"";
        AppendMenuW(menu, MF_STRING, first + i,
                    withShortcut(number + withoutLetter(exports[i]), first + i).c_str());
    }
}

HMENU exportsPopup(const std::vector<std::wstring>& exports, UINT first) {
    const HMENU popup = CreatePopupMenu();
    appendExports(popup, exports, first);
    return popup;
}

} // namespace

HMENU createMenuBar(const std::vector<std::wstring>& exports) {
    const HMENU bar = CreateMenu();
    appendPopup(
        bar, "Menu.File",
        popupOf(
            {{commandAddFiles, "AddFiles"}, {commandAddFolder, "AddFolder"}, line, {commandExit, "Exit"}}));
    appendPopup(bar, "Menu.Edit",
                popupOf({{commandUndo, "Undo"},
                         {commandRedo, "Redo"},
                         line,
                         {commandOpen, "Open"},
                         {commandPaste, "Paste"},
                         {commandSelectAll, "SelectAll"},
                         {commandRemove, "Remove"},
                         line,
                         {commandMoveBack, "MoveBack"},
                         {commandMoveForward, "MoveForward"},
                         line,
                         {commandOwnOrder, "OwnOrder"},
                         {commandSortByName, "SortByName"},
                         {commandSortByDate, "SortByDate"}}));
    const HMENU exportMenu = exportsPopup(exports, commandExport);
    append(exportMenu, {line});
    appendPopup(exportMenu, "AllPages", exportsPopup(exports, commandExportAll));
    appendPopup(exportMenu, "SelectedPages", exportsPopup(exports, commandExportSelected));
    appendPopup(bar, "Menu.Export", exportMenu);
    appendPopup(bar, "Menu.Tools", popupOf({{commandSettings, "Settings"}}));
    appendPopup(bar, "Menu.Help", popupOf({{commandAbout, "About"}}));
    return bar;
}

HMENU createPagesMenu(const std::vector<std::wstring>& exports) {
    const HMENU menu = popupOf({{commandOpen, "Open"},
                                line,
                                {commandPaste, "Paste"},
                                {commandSelectAll, "SelectAll"},
                                {commandRemove, "Remove"},
                                line,
                                {commandMoveBack, "MoveBack"},
                                {commandMoveForward, "MoveForward"},
                                line});
    appendPopup(menu, "ExportSelected", exportsPopup(exports, commandExportSelected));
    SetMenuDefaultItem(menu, commandOpen, FALSE);
    return menu;
}

HACCEL createShortcuts() {
    std::vector<ACCEL> table;
    for (const Shortcut& shortcut : allShortcuts())
        table.push_back({static_cast<BYTE>(shortcut.modifiers | FVIRTKEY), shortcut.key,
                         static_cast<WORD>(shortcut.command)});
    return CreateAcceleratorTableW(table.data(), static_cast<int>(table.size()));
}

std::wstring shortcutText(UINT command) {
    const auto all = allShortcuts();
    const auto found = std::ranges::find(all, command, &Shortcut::command);
    if (found == all.end())
        return {};
    std::wstring text;
    if (found->modifiers & FCONTROL)
        text += localText(section, "Key.Control") + L'+';
    if (found->modifiers & FSHIFT)
        text += localText(section, "Key.Shift") + L'+';
    return text + keyText(found->key);
}

} // namespace host
