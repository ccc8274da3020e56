// What the main window can be told to do: identifiers, menus and shortcuts.
#include "host/desktop/Commands.h"

#include "host/desktop/Texts.h"

#include <algorithm>
#include <initializer_list>

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
    {commandNextPane, 0, VK_F6},
    {commandNextPane, 0, VK_TAB},
    {commandPreviousPane, FSHIFT, VK_F6},
    {commandPreviousPane, FSHIFT, VK_TAB},
};

std::vector<Shortcut> allShortcuts() {
    std::vector<Shortcut> all(std::begin(shortcuts), std::end(shortcuts));
    for (WORD number = 0; number < exportsWithShortcut; ++number)
        all.push_back({commandExport + number, FCONTROL, static_cast<WORD>('1' + number)});
    return all;
}

std::wstring keyText(WORD key) {
    return std::wstring(1, static_cast<wchar_t>(key));
}

std::wstring withShortcut(std::wstring text, UINT command) {
    const std::wstring shortcut = shortcutText(command);
    return shortcut.empty() ? text : text + L'\t' + shortcut;
}

/// A text of somebody else's, in which "&" is nothing but a character.
std::wstring plain(const std::wstring& text) {
    std::wstring result;
    for (wchar_t c : text)
        result.append(c == L'&' ? 2 : 1, c);
    return result;
}

struct Entry {
    UINT command; ///< 0 for a line between entries
    const char* key;
};
constexpr Entry line{0, nullptr};

void append(HMENU menu, std::initializer_list<Entry> entries) {
    for (const Entry& entry : entries) {
        if (entry.command)
            AppendMenuW(menu, MF_STRING, entry.command,
                        withShortcut(localText(section, entry.key), entry.command).c_str());
        else
            AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
    }
}

void appendPopup(HMENU menu, const char* key, HMENU popup) {
    AppendMenuW(menu, MF_POPUP, reinterpret_cast<UINT_PTR>(popup), localText(section, key).c_str());
}

HMENU popupOf(std::initializer_list<Entry> entries) {
    const HMENU popup = CreatePopupMenu();
    append(popup, entries);
    return popup;
}

/// One entry for each export, the first nine with their number as the letter to press.
HMENU exportsPopup(const std::vector<std::wstring>& exports, UINT first, UINT end) {
    const HMENU popup = CreatePopupMenu();
    for (UINT i = 0; i < std::min<std::size_t>(exports.size(), end - first); ++i) {
        const std::wstring number = i < exportsWithShortcut ? L'&' + std::to_wstring(i + 1) + L"  " : L"";
        AppendMenuW(popup, MF_STRING, first + i, withShortcut(number + plain(exports[i]), first + i).c_str());
    }
    return popup;
}

} // namespace

HMENU createMenuBar(const std::vector<std::wstring>& exports) {
    const HMENU bar = CreateMenu();
    appendPopup(bar, "Menu.File", popupOf({{commandExit, "Exit"}}));
    appendPopup(bar, "Menu.Export", exportsPopup(exports, commandExport, commandExportEnd));
    appendPopup(bar, "Menu.Help", popupOf({{commandAbout, "About"}}));
    return bar;
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
