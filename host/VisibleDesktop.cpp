// Tells whether a person can see the windows of this program.
#include "host/VisibleDesktop.h"

#include <windows.h>

#include <iterator>
#include <string>

namespace host {
namespace {

bool isStationVisible() {
    USEROBJECTFLAGS flags{};
    return GetUserObjectInformationW(GetProcessWindowStation(), UOI_FLAGS, &flags, sizeof flags, nullptr) &&
           (flags.dwFlags & WSF_VISIBLE);
}

// Wine names the driver that draws the desktop under the identifier that it gives the desktop window; Windows
// gives none.
bool isDrawnByWine(ATOM displayId) {
    wchar_t id[64] = {};
    GlobalGetAtomNameW(displayId, id, static_cast<int>(std::size(id)));
    const std::wstring key = std::wstring(L"System\\CurrentControlSet\\Control\\Video\\{") + id + L"}\\0000";
    wchar_t driver[64] = {};
    DWORD size = sizeof driver;
    return RegGetValueW(HKEY_LOCAL_MACHINE, key.c_str(), L"GraphicsDriver", RRF_RT_REG_SZ, nullptr, driver,
                        &size) == ERROR_SUCCESS &&
           driver != std::wstring(L"null");
}

} // namespace

bool isDesktopVisible() {
    if (!isStationVisible())
        return false;
    const HANDLE displayId = GetPropW(GetDesktopWindow(), L"__wine_display_device_guid");
    return !displayId || isDrawnByWine(static_cast<ATOM>(reinterpret_cast<ULONG_PTR>(displayId)));
}

} // namespace host
