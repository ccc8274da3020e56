// A message loop for tests.
#pragma once

#include <windows.h>

#include <chrono>
#include <functional>

namespace test {

/// Handles the thread's messages until the condition holds, which is asked after each of them. False when it does not
/// hold within the limit, which is generous because tests run on busy machines.
inline bool handleMessagesUntil(const std::function<bool()>& condition,
                                std::chrono::seconds limit = std::chrono::seconds(30)) {
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        MSG message;
        if (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        } else {
            MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
        }
    }
    return true;
}

} // namespace test
