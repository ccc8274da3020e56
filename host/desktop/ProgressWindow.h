// Shows how far an export has come, and lets it be stopped.
#pragma once

#include "host/UniqueHandle.h"

#include <windows.h>

#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

struct ITaskbarList3;

namespace host {

/// How far an export has come, in words and as a part of the whole.
struct Progress {
    std::wstring page;
    std::wstring name;
    std::wstring bytes;
    double part = 0; ///< from 0 to 1
};

/// A window on a thread of its own, because engines block that of the user interface. It shows itself when the export
/// takes longer than a moment, stays in front of its owner, and takes the keyboard only from that: Enter and Esc stop
/// the export.
///
/// The owner does not own it in the system's sense, which would tie the input of both threads together. The window
/// neither sends messages to the owner's thread nor waits for it. The owner's button in the taskbar shows the progress
/// too.
///
/// Thread: the user-interface thread, but for what is said otherwise.
class ProgressWindow {
public:
    struct Texts {
        std::wstring title;
        std::wstring stop;
        std::wstring stopping; ///< on the button once it was pressed
    };

    /// @param owner     the window that it stands over
    /// @param whenStop  the person wants to stop; called on the window's thread
    ProgressWindow(HWND owner, Texts texts, std::function<void()> whenStop);
    /// Waits for the window's end, and handles meanwhile what other threads send to this one.
    ~ProgressWindow();
    ProgressWindow(const ProgressWindow&) = delete;
    ProgressWindow& operator=(const ProgressWindow&) = delete;

    void show(Progress progress);

    /// Hides while another window wants the person's attention, once that can be seen; false ends it.
    void standAside(bool aside);

private:
    static INT_PTR CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    void run(HANDLE ready);
    void initialize(HWND dialog);
    void update();
    void appear();
    void giveWay();
    void stop();

    const HWND owner;
    const Texts texts;
    const std::function<void()> whenStop;
    const UniqueHandle ended;
    std::atomic<HWND> window = nullptr;

    std::mutex mutex; ///< guards what follows
    Progress progress;
    bool isUpdatePosted = false;

    // The window's thread only.
    ITaskbarList3* taskbar = nullptr;
    bool isAside = false;
    int triesToGiveWay = 0;

    std::thread thread;
};

} // namespace host
