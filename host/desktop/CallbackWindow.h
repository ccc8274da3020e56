// Calls a function from the thread's message loop.
#pragma once

#include "toolkit/afxwin.h"

#include <atomic>
#include <functional>

namespace host {

/// An invisible window whose messages call a function: in every message loop of its thread, those of dialogs and of
/// dragging too.
///
/// Thread: the one that makes it, which also destroys it; callSoon() comes from any, as long as the window lives.
class CallbackWindow : public CWnd {
public:
    explicit CallbackWindow(std::function<void()> function);

    /// Asks for a call, which also answers what was asked before it.
    void callSoon();

    /// Calls again and again, each time when nothing else is to be done.
    void startCalls();
    void stopCalls();
    bool isCalling() const noexcept { return calling; }

private:
    LRESULT OnCall(WPARAM wParam, LPARAM lParam);
    LRESULT OnTick(WPARAM wParam, LPARAM lParam);
    DECLARE_MESSAGE_MAP()

    std::function<void()> function;
    std::atomic<bool> asked = false;
    bool calling = false;
};

} // namespace host
