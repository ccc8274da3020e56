// Where a window lies on the desktop, to be remembered until it is opened again.
#include "host/desktop/WindowPlace.h"

#include <algorithm>
#include <sstream>

namespace host {
namespace {

constexpr char maximized[] = "maximized";

// Windows can be nowhere else.
constexpr long farthest = 32767;

/// The part of a screen that no bar takes, in the coordinates of WINDOWPLACEMENT, which begin at its corner.
RECT freeAreaNear(const RECT& rect) {
    MONITORINFO monitor = {};
    monitor.cbSize = sizeof monitor;
    GetMonitorInfoW(MonitorFromRect(&rect, MONITOR_DEFAULTTONEAREST), &monitor);
    RECT area = monitor.rcWork;
    OffsetRect(&area, monitor.rcMonitor.left - monitor.rcWork.left,
               monitor.rcMonitor.top - monitor.rcWork.top);
    return area;
}

void moveInto(LONG& begin, LONG& end, LONG areaBegin, LONG areaEnd) {
    const LONG size = std::min(end - begin, areaEnd - areaBegin);
    begin = std::clamp(begin, areaBegin, areaEnd - size);
    end = begin + size;
}

} // namespace

WindowPlace placeOf(HWND window) {
    WINDOWPLACEMENT placement = {};
    placement.length = sizeof placement;
    GetWindowPlacement(window, &placement);
    const bool isMinimized = placement.showCmd == SW_SHOWMINIMIZED;
    return {placement.rcNormalPosition, isMinimized ? (placement.flags & WPF_RESTORETOMAXIMIZED) != 0
                                                    : placement.showCmd == SW_SHOWMAXIMIZED};
}

void showAt(HWND window, const WindowPlace& place) {
    WINDOWPLACEMENT placement = {};
    placement.length = sizeof placement;
    placement.showCmd = place.isMaximized ? SW_SHOWMAXIMIZED : SW_SHOWNORMAL;
    placement.rcNormalPosition = movedInto(place.rect, freeAreaNear(place.rect));
    SetWindowPlacement(window, &placement);
}

RECT movedInto(const RECT& rect, const RECT& area) {
    RECT result = rect;
    moveInto(result.left, result.right, area.left, area.right);
    moveInto(result.top, result.bottom, area.top, area.bottom);
    return result;
}

std::string textOf(const WindowPlace& place) {
    std::ostringstream text;
    text << place.rect.left << ' ' << place.rect.top << ' ' << place.rect.right << ' ' << place.rect.bottom;
    if (place.isMaximized)
        text << ' ' << maximized;
    return text.str();
}

std::optional<WindowPlace> windowPlaceFrom(const std::string& text) {
    std::istringstream in(text);
    RECT rect;
    if (!(in >> rect.left >> rect.top >> rect.right >> rect.bottom))
        return std::nullopt;
    std::string state;
    in >> state;
    std::string rest;
    const bool isPlace = (state.empty() || state == maximized) && !(in >> rest);
    const auto [nearest, remotest] = std::minmax({rect.left, rect.top, rect.right, rect.bottom});
    if (!isPlace || nearest < -farthest || remotest > farthest || IsRectEmpty(&rect))
        return std::nullopt;
    return WindowPlace{rect, !state.empty()};
}

} // namespace host
