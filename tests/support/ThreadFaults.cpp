// Lets the system run out of threads when a test wants it to.
#include "support/ThreadFaults.h"

#include <system_error>
#include <thread>

namespace {

test::ThreadFaults* current = nullptr;

} // namespace

namespace test {

ThreadFaults::ThreadFaults(int available) : available(available) {
    current = this;
}

ThreadFaults::~ThreadFaults() {
    current = nullptr;
}

bool ThreadFaults::strikes() {
    if (available-- > 0)
        return false;
    ++refusals;
    return true;
}

} // namespace test

// The linker makes one of these out of each call of the other. The state is passed by the address of its owner.
#define START_THREAD(prefix)                                                                                 \
    prefix##_ZNSt6thread15_M_start_threadESt10unique_ptrINS_6_StateESt14default_deleteIS1_EEPFvvE

extern "C" void START_THREAD(__real_)(std::thread* thread, void* state, void (*depend)());

extern "C" void START_THREAD(__wrap_)(std::thread* thread, void* state, void (*depend)()) {
    if (current && current->strikes())
        throw std::system_error(std::make_error_code(std::errc::resource_unavailable_try_again));
    START_THREAD(__real_)(thread, state, depend);
}
