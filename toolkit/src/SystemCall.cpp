// Keeps exceptions from crossing the system's code.
#include "SystemCall.h"

void keepException() noexcept {
    SystemCall* call = threadState().innermostCall;
    if (!call)
        std::terminate();
    if (!call->exception)
        call->exception = std::current_exception();
    if (call->dialog)
        EndDialog(call->dialog, -1);
}
