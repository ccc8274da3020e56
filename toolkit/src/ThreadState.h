// What the toolkit keeps per thread.
#pragma once

#include "afxwin.h"

#include <windows.h>

#include <memory>
#include <unordered_map>

struct SystemCall;

/// Deletes the object and leaves its window alone.
struct TemporaryWindowDeleter {
    void operator()(CWnd* window) const {
        window->m_hWnd = nullptr;
        delete window;
    }
};

struct ThreadState {
    AFX_MODULE_STATE* moduleState = nullptr;
    std::unordered_map<HWND, CWnd*> permanentWindows;
    std::unordered_map<HWND, std::unique_ptr<CWnd, TemporaryWindowDeleter>> temporaryWindows;
    /// The message that is handled now, as it came.
    MSG currentMessage{};
    /// The object that is in charge of the window CreateWindowEx() is making, until it is attached.
    CWnd* windowBeingCreated = nullptr;
    SystemCall* innermostCall = nullptr;
};

ThreadState& threadState();
