// Keeps exceptions from crossing the system's code, which lies between our callbacks and our callers.
#pragma once

#include "ThreadState.h"

#include <windows.h>

#include <exception>
#include <utility>

/// One call of ours into the system during which the system calls back.
struct SystemCall {
    SystemCall* outer;
    /// The modal dialog that the call runs, once it exists: it is ended when a callback fails.
    HWND dialog = nullptr;
    std::exception_ptr exception{};
};

/// Makes the call and throws what a callback has thrown meanwhile.
template <class Call> auto callSystem(Call call) {
    SystemCall*& innermost = threadState().innermostCall;
    SystemCall thisCall{innermost};
    innermost = &thisCall;
    auto result = call();
    innermost = thisCall.outer;
    if (thisCall.exception)
        std::rethrow_exception(thisCall.exception);
    return result;
}

/// Keeps the exception that is handled now for the innermost call; the first one of a call is the one that counts.
void keepException() noexcept;

/// Runs what a callback does. Nothing is thrown; a failed callback answers 0.
template <class Callback> LRESULT runCallback(Callback callback) noexcept {
    try {
        return callback();
    } catch (...) {
        keepException();
        return 0;
    }
}
