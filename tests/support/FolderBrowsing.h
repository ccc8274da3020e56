// Uses an edit's folder-browse button and the system's folder dialog as a user would.
#pragma once

#include "host/DialogPilot.h"

#include <windows.h>

#include <shlobj.h>

#include <string>

namespace test {

/// The middle of the button in screen coordinates: it lies between the end of the edit's text area and its border.
inline POINT browseButtonOf(HWND edit) {
    RECT window{};
    RECT client{};
    GetWindowRect(edit, &window);
    GetClientRect(edit, &client);
    MapWindowPoints(edit, nullptr, reinterpret_cast<POINT*>(&client), 2);
    return {(client.right + window.right) / 2, (window.top + window.bottom) / 2};
}

inline void pressMouseAt(HWND edit, POINT screenPoint) {
    const LPARAM position = MAKELPARAM(screenPoint.x, screenPoint.y);
    const LRESULT hit = SendMessage(edit, WM_NCHITTEST, 0, position);
    PostMessage(edit, WM_NCLBUTTONDOWN, static_cast<WPARAM>(hit), position);
}

inline void releaseMouseAt(HWND edit, POINT screenPoint) {
    ScreenToClient(edit, &screenPoint);
    PostMessage(edit, WM_LBUTTONUP, 0, MAKELPARAM(screenPoint.x, screenPoint.y));
}

/// Presses the button of the dialog's edit with that identifier.
inline host::DialogPilot::Action pressBrowseButton(int editId) {
    return [editId](HWND dialog) {
        const HWND edit = GetDlgItem(dialog, editId);
        const POINT button = browseButtonOf(edit);
        pressMouseAt(edit, button);
        releaseMouseAt(edit, button);
        return true;
    };
}

/// In a folder dialog that opens at the folder `start` (none: at its default): selects another folder, then presses
/// the button (IDOK or IDCANCEL). The dialog handles messages while it is still on its way to the first folder and
/// loses its way when another is selected then, so the action waits for its edit to name the first one, and then
/// the other. The dialog's flags must hold BIF_EDITBOX.
inline host::DialogPilot::Action chooseFolder(const std::wstring& start, const std::wstring& path,
                                              int button) {
    return [start, path, button, isSelected = false](HWND dialog) mutable {
        const std::wstring shown = host::windowText(FindWindowEx(dialog, nullptr, L"Edit", nullptr));
        const auto ends = [&](const std::wstring& folder) { return folder.ends_with(L"\\" + shown); };
        if (isSelected)
            return ends(path) && host::click(button)(dialog);
        if (start.empty() || ends(start)) {
            SendMessage(dialog, BFFM_SETSELECTIONW, TRUE, reinterpret_cast<LPARAM>(path.c_str()));
            isSelected = true;
        }
        return false;
    };
}

} // namespace test
