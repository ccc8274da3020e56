// A visual style's data for one class of controls.
#pragma once

#include <windows.h>

#include <uxtheme.h>

/// Open as long as this object lives; false where visual styles are off.
class Theme {
public:
    Theme(HWND window, LPCWSTR classes) : handle(OpenThemeData(window, classes)) {}
    Theme(const Theme&) = delete;
    Theme& operator=(const Theme&) = delete;
    ~Theme() {
        if (handle)
            CloseThemeData(handle);
    }

    explicit operator bool() const { return handle != nullptr; }
    HTHEME get() const { return handle; }

private:
    HTHEME handle;
};
