// Shows how far an export has come, and lets it be stopped.
#include "host/desktop/ProgressWindow.h"

#include "host/desktop/ExportControls.h"

#include <windows.h>

#include <commctrl.h>
#include <shobjidl.h>

#include <algorithm>
#include <utility>

namespace host {
namespace {

constexpr UINT updateMessage = WM_APP;
constexpr UINT asideMessage = WM_APP + 1;
constexpr UINT endMessage = WM_APP + 2;

constexpr UINT_PTR appearTimer = 1;
constexpr UINT_PTR giveWayTimer = 2;
constexpr UINT delayMilliseconds = 400;
constexpr UINT giveWayMilliseconds = 50;
constexpr int maximumTriesToGiveWay = 40;

constexpr int barSteps = 1000;

void setText(HWND dialog, int control, const std::wstring& text) {
    SetDlgItemTextW(dialog, control, text.c_str());
}

/// Over the owner, but inside the work area of its screen.
void centreOver(HWND owner, HWND window) {
    RECT around{};
    GetWindowRect(owner, &around);
    MONITORINFO monitor = {};
    monitor.cbSize = sizeof monitor;
    GetMonitorInfoW(MonitorFromWindow(owner, MONITOR_DEFAULTTONEAREST), &monitor);
    const RECT& work = monitor.rcWork;
    // The first move may take it to a screen of another resolution, which changes its size.
    for (int move = 0; move < 2; ++move) {
        RECT own;
        GetWindowRect(window, &own);
        const LONG width = own.right - own.left;
        const LONG height = own.bottom - own.top;
        const LONG x = (around.left + around.right - width) / 2;
        const LONG y = (around.top + around.bottom - height) / 2;
        SetWindowPos(window, nullptr, std::clamp(x, work.left, std::max(work.left, work.right - width)),
                     std::clamp(y, work.top, std::max(work.top, work.bottom - height)), 0, 0,
                     SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    }
}

/// Waits as a thread must that others may send messages to, as the system does when a window of theirs loses the
/// keyboard to one of this thread's.
void waitFor(HANDLE object) {
    while (MsgWaitForMultipleObjects(1, &object, FALSE, INFINITE, QS_SENDMESSAGE) == WAIT_OBJECT_0 + 1) {
        MSG message;
        PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
    }
}

} // namespace

ProgressWindow::ProgressWindow(HWND owner, Texts texts, std::function<void()> whenStop)
    : owner(owner), texts(std::move(texts)), whenStop(std::move(whenStop)),
      ended(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {
    const UniqueHandle ready(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    thread = std::thread([this, handle = ready.get()] { run(handle); });
    waitFor(ready.get());
}

ProgressWindow::~ProgressWindow() {
    PostMessageW(window, endMessage, 0, 0);
    waitFor(ended.get());
    thread.join();
}

void ProgressWindow::show(Progress now) {
    const std::lock_guard lock(mutex);
    progress = std::move(now);
    if (!isUpdatePosted)
        isUpdatePosted = PostMessageW(window, updateMessage, 0, 0) != FALSE;
}

// Waits for the other thread, or that would still come to the front, over the question that is about to open.
void ProgressWindow::standAside(bool aside) {
    SendMessageW(window, asideMessage, aside, 0);
}

void ProgressWindow::run(HANDLE ready) {
    const HRESULT com = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE);
    if (FAILED(CoCreateInstance(CLSID_TaskbarList, nullptr, CLSCTX_INPROC_SERVER, IID_ITaskbarList3,
                                reinterpret_cast<void**>(&taskbar))))
        taskbar = nullptr;
    else
        taskbar->HrInit();
    window = CreateDialogParamW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDD_EXPORT_PROGRESS), nullptr,
                                procedure, reinterpret_cast<LPARAM>(this));
    SetEvent(ready);
    MSG message;
    while (window && GetMessageW(&message, nullptr, 0, 0) > 0) {
        if (!IsDialogMessageW(window, &message)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
    if (taskbar) {
        taskbar->SetProgressState(owner, TBPF_NOPROGRESS);
        taskbar->Release();
    }
    if (SUCCEEDED(com))
        CoUninitialize();
    SetEvent(ended.get());
}

INT_PTR CALLBACK ProgressWindow::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrW(window, DWLP_USER, lParam);
        reinterpret_cast<ProgressWindow*>(lParam)->initialize(window);
        return TRUE;
    }
    auto* const self = reinterpret_cast<ProgressWindow*>(GetWindowLongPtrW(window, DWLP_USER));
    switch (message) {
    case WM_COMMAND:
        if (LOWORD(wParam) == IDCANCEL)
            self->stop();
        return TRUE;
    case WM_TIMER:
        if (wParam == appearTimer)
            self->appear();
        else
            self->giveWay();
        return TRUE;
    case updateMessage:
        self->update();
        return TRUE;
    case asideMessage:
        self->isAside = wParam != 0;
        KillTimer(window, appearTimer);
        if (self->isAside) {
            self->triesToGiveWay = 0;
            SetTimer(window, giveWayTimer, giveWayMilliseconds, nullptr);
        } else {
            KillTimer(window, giveWayTimer);
            SetTimer(window, appearTimer, delayMilliseconds, nullptr);
        }
        return TRUE;
    case endMessage:
        DestroyWindow(window);
        PostQuitMessage(0);
        return TRUE;
    default:
        return FALSE;
    }
}

void ProgressWindow::initialize(HWND dialog) {
    SetWindowTextW(dialog, texts.title.c_str());
    setText(dialog, IDCANCEL, texts.stop);
    SendDlgItemMessageW(dialog, IDC_PROGRESS_BAR, PBM_SETRANGE32, 0, barSteps);
    SetTimer(dialog, appearTimer, delayMilliseconds, nullptr);
}

void ProgressWindow::update() {
    Progress now;
    {
        const std::lock_guard lock(mutex);
        now = std::move(progress);
        isUpdatePosted = false;
    }
    setText(window, IDC_PROGRESS_PAGE, now.page);
    setText(window, IDC_PROGRESS_NAME, now.name);
    setText(window, IDC_PROGRESS_BYTES, now.bytes);
    const auto step = static_cast<ULONGLONG>(now.part * barSteps);
    SendDlgItemMessageW(window, IDC_PROGRESS_BAR, PBM_SETPOS, static_cast<WPARAM>(step), 0);
    if (taskbar)
        taskbar->SetProgressValue(owner, step, barSteps);
}

// Again and again: an owner that is clicked or chosen in the taskbar covers it, and looks as if it hung.
void ProgressWindow::appear() {
    // A message of the timer may have been on the way already when that was stopped.
    if (isAside)
        return;
    const bool isOwnerInFront = GetForegroundWindow() == owner;
    if (!IsWindowVisible(window)) {
        centreOver(owner, window);
        if (isOwnerInFront) {
            ShowWindow(window, SW_SHOW);
        } else {
            SetWindowPos(window, owner, 0, 0, 0, 0,
                         SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE | SWP_SHOWWINDOW);
            SetWindowPos(window, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
        }
    }
    if (isOwnerInFront)
        SetForegroundWindow(window);
}

// The active window must not hide before the one that is to follow it has become active, which takes its thread a while,
// or no window or one of another program gets the keyboard.
void ProgressWindow::giveWay() {
    const HWND front = GetForegroundWindow();
    if ((!front || front == window) && ++triesToGiveWay < maximumTriesToGiveWay) {
        if (const HWND popup = GetLastActivePopup(owner); popup != owner && IsWindowVisible(popup))
            SetForegroundWindow(popup);
        return;
    }
    KillTimer(window, giveWayTimer);
    ShowWindow(window, SW_HIDE);
}

void ProgressWindow::stop() {
    whenStop();
    setText(window, IDCANCEL, texts.stopping);
    EnableWindow(GetDlgItem(window, IDCANCEL), FALSE);
}

} // namespace host
