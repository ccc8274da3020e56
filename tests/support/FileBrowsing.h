// Uses the system's file dialog as a user would.
#pragma once

#include "host/DialogPilot.h"

#include <windows.h>

#include <string>
#include <utility>

namespace test {

/// The visible edit of a file dialog in which a name can be typed, or null.
inline HWND fileNameEditOf(HWND dialog) {
    struct Search {
        static BOOL CALLBACK look(HWND child, LPARAM found) {
            constexpr int fileNameId = 1152;
            if (GetDlgCtrlID(child) != fileNameId || host::windowClass(child) != L"Edit" ||
                !IsWindowVisible(child))
                return TRUE;
            *reinterpret_cast<HWND*>(found) = child;
            return FALSE;
        }
    };
    HWND edit = nullptr;
    EnumChildWindows(dialog, &Search::look, reinterpret_cast<LPARAM>(&edit));
    return edit;
}

inline host::DialogPilot::Match fileDialog() {
    return [](HWND window) { return host::windowClass(window) == L"#32770" && fileNameEditOf(window); };
}

/// Whether the thread has a file dialog on the screen.
inline bool isFileDialogOpen() {
    bool found = false;
    EnumThreadWindows(
        GetCurrentThreadId(),
        [](HWND window, LPARAM result) -> BOOL {
            *reinterpret_cast<bool*>(result) = IsWindowVisible(window) && fileDialog()(window);
            return !*reinterpret_cast<bool*>(result);
        },
        reinterpret_cast<LPARAM>(&found));
    return found;
}

/// Types a name into the file dialog and presses its OK button.
inline host::DialogPilot::Action typeFileName(std::wstring name) {
    return [name = std::move(name)](HWND dialog) {
        SetWindowTextW(fileNameEditOf(dialog), name.c_str());
        return host::click(IDOK)(dialog);
    };
}

} // namespace test
