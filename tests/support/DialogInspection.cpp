// Looks at a dialog's controls, and at what it shows, while a pilot is in it.
#include "support/DialogInspection.h"

#include "host/Text.h"

#include <gtest/gtest.h>

#include <utility>

namespace test {

NoMessageBoxes::NoMessageBoxes() {
    pilot.always(host::anyMessageBox(), [](HWND box) {
        ADD_FAILURE() << "unexpected box: " << host::utf8(host::messageBoxText(box));
        return host::click(IDOK)(box) || host::click(IDNO)(box);
    });
}

host::DialogPilot::Action now(std::function<void(HWND)> look) {
    return [look = std::move(look)](HWND window) {
        look(window);
        return true;
    };
}

host::DialogPilot::Action waitForText(int controlId, std::wstring text) {
    return
        [controlId, text = std::move(text)](HWND window) { return controlText(window, controlId) == text; };
}

host::DialogPilot::Action withFocus(std::function<void(HWND)> look) {
    return [look = std::move(look)](HWND window) {
        if (!GetFocus()) {
            SetForegroundWindow(window);
            return false;
        }
        look(window);
        return true;
    };
}

void pressKey(HWND control, WPARAM key) {
    PostMessageW(control, WM_KEYDOWN, key, 1);
    PostMessageW(control, WM_KEYUP, key, 1);
}

std::wstring controlText(HWND window, int controlId) {
    return host::windowText(GetDlgItem(window, controlId));
}

std::vector<int> controlIds(HWND window) {
    std::vector<int> ids;
    for (HWND child = GetWindow(window, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
        ids.push_back(GetDlgCtrlID(child));
    return ids;
}

std::vector<int> focusedByTab(HWND window, int presses) {
    std::vector<int> focused{GetDlgCtrlID(GetFocus())};
    for (int i = 0; i < presses; ++i) {
        MSG tab = {};
        tab.hwnd = GetFocus();
        tab.message = WM_KEYDOWN;
        tab.wParam = VK_TAB;
        IsDialogMessageW(window, &tab);
        focused.push_back(GetDlgCtrlID(GetFocus()));
    }
    return focused;
}

RECT rectIn(HWND window, int controlId) {
    RECT rect;
    GetWindowRect(GetDlgItem(window, controlId), &rect);
    MapWindowPoints(nullptr, window, reinterpret_cast<POINT*>(&rect), 2);
    return rect;
}

RECT pixels(HWND window, RECT dialogUnits) {
    MapDialogRect(window, &dialogUnits);
    return {dialogUnits.left, dialogUnits.top, dialogUnits.left + dialogUnits.right,
            dialogUnits.top + dialogUnits.bottom};
}

std::vector<LONG> edges(const RECT& rect) {
    return {rect.left, rect.top, rect.right, rect.bottom};
}

} // namespace test
