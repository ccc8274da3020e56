// Which window owns a modal one.
#pragma once

#include <windows.h>

class CWnd;

/// The top-level window of the parent; without one, the window on top of the application's main window.
HWND ownerOf(const CWnd* parent);
