// What the toolkit keeps per thread: where it is stored.
#include "ThreadState.h"

#include <memory>

namespace {

void WINAPI destroy(void* state) {
    delete static_cast<ThreadState*>(state);
}

// Fiber-local storage, because it calls back at the thread's end as well as when the DLL is unloaded before.
class Slot {
public:
    Slot() : index(FlsAlloc(destroy)) {}
    Slot(const Slot&) = delete;
    Slot& operator=(const Slot&) = delete;
    ~Slot() { FlsFree(index); }

    ThreadState& get() const {
        if (auto* existing = static_cast<ThreadState*>(FlsGetValue(index)))
            return *existing;
        auto state = std::make_unique<ThreadState>();
        FlsSetValue(index, state.get());
        return *state.release();
    }

private:
    DWORD index;
};

} // namespace

ThreadState& threadState() {
    static const Slot slot;
    return slot.get();
}
