// Where a window lies on the desktop, to be remembered until it is opened again.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

namespace host {

struct WindowPlace {
    /// Where it lies when it is neither minimised nor maximised, in the coordinates of WINDOWPLACEMENT.
    RECT rect;
    bool isMaximized;
};

/// The place of a top-level window; a minimised one counts as what it will be restored to.
WindowPlace placeOf(HWND window);

/// Shows the window at the place, or on the nearest screen, and not larger than that one, when there is none any
/// more where it was.
void showAt(HWND window, const WindowPlace& place);

/// Moves a rectangle into an area by as little as possible, and makes it smaller where it does not fit.
RECT movedInto(const RECT& rect, const RECT& area);

/// A place as a text and back. A text that is none, or of no window there can be, gives nothing.
std::string textOf(const WindowPlace& place);
std::optional<WindowPlace> windowPlaceFrom(const std::string& text);

} // namespace host
