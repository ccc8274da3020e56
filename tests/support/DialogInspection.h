// Looks at a dialog's controls, and at what it shows, while a pilot is in it.
#pragma once

#include "host/DialogPilot.h"

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

namespace test {

/// Fails the test for every message box that comes up during its life, and closes the box.
class NoMessageBoxes {
public:
    NoMessageBoxes();

private:
    host::DialogPilot pilot;
};

// Actions.

/// Looks at the dialog, or does something to it that needs no waiting.
host::DialogPilot::Action now(std::function<void(HWND)> look);
/// Waits until a control shows the text.
host::DialogPilot::Action waitForText(int controlId, std::wstring text);
/// Looks at the dialog as soon as it has the focus, which the windows of other tests may take away meanwhile.
host::DialogPilot::Action withFocus(std::function<void(HWND)> look);

/// Presses and releases a key in a control.
void pressKey(HWND control, WPARAM key);

std::wstring controlText(HWND window, int controlId);
/// The identifiers of the dialog's controls in their order.
std::vector<int> controlIds(HWND window);
/// The identifiers of the controls that have the focus as the tab key is pressed that many times.
std::vector<int> focusedByTab(HWND window, int presses);

/// Where a control lies in its window.
RECT rectIn(HWND window, int controlId);
/// From x, y, width and height in dialog units to a rectangle in pixels, each rounded by itself as the dialog
/// manager does.
RECT pixels(HWND window, RECT dialogUnits);
std::vector<LONG> edges(const RECT& rect);

} // namespace test
