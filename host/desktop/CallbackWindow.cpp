// Calls a function from the thread's message loop.
#include "host/desktop/CallbackWindow.h"

#include <utility>

namespace host {
namespace {

constexpr UINT callMessage = WM_APP;
constexpr UINT_PTR timerId = 1;

} // namespace

BEGIN_MESSAGE_MAP(CallbackWindow, CWnd)
    ON_MESSAGE(callMessage, &CallbackWindow::OnCall)
    ON_MESSAGE(WM_TIMER, &CallbackWindow::OnTick)
END_MESSAGE_MAP()

CallbackWindow::CallbackWindow(std::function<void()> function) : function(std::move(function)) {
    CreateEx(0, nullptr, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr);
}

void CallbackWindow::callSoon() {
    if (!asked.exchange(true) && !PostMessage(callMessage))
        asked = false;
}

void CallbackWindow::startCalls() {
    calling = true;
    SetTimer(timerId, USER_TIMER_MINIMUM, nullptr);
}

void CallbackWindow::stopCalls() {
    calling = false;
    KillTimer(timerId);
}

LRESULT CallbackWindow::OnCall(WPARAM /*wParam*/, LPARAM /*lParam*/) {
    asked = false;
    function();
    return 0;
}

LRESULT CallbackWindow::OnTick(WPARAM /*wParam*/, LPARAM /*lParam*/) {
    // The timer may have been stopped when its message was on the way already.
    if (calling)
        function();
    return 0;
}

} // namespace host
