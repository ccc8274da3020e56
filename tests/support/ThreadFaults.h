// Lets the system run out of threads when a test wants it to.
//
// A program that links this must wrap the runtime's function that starts a thread:
//   -Wl,--wrap=_ZNSt6thread15_M_start_threadESt10unique_ptrINS_6_StateESt14default_deleteIS1_EEPFvvE
#pragma once

namespace test {

/// While it exists, only so many threads can be started. One at a time.
class ThreadFaults {
public:
    explicit ThreadFaults(int available);
    ~ThreadFaults();
    ThreadFaults(const ThreadFaults&) = delete;
    ThreadFaults& operator=(const ThreadFaults&) = delete;

    /// How many threads could not be started.
    int refused() const { return refusals; }

    /// Whether the present thread cannot be started.
    bool strikes();

private:
    int available;
    int refusals = 0;
};

} // namespace test
