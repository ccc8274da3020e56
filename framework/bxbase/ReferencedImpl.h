// The class that is really instantiated for every shared object.
#pragma once

#ifdef BXBASE_COUNT_OBJECTS
#include "bxbase/LiveObjects.h"
#endif

#include <cstdint>
#include <utility>

namespace bxbase {

/// Gives T, which has a virtual destructor but leaves addRef() and release() open, its reference count.
///
/// The count is the last field, behind T's own, and starts at 0: the creator takes the first reference, most
/// simply by putting the new object into a Reference. It is a plain integer, not an atomic one; create, use
/// and release the object on one thread.
///
/// Created objects live on the heap only; release() destroys the object through T's virtual destructor in the
/// module that created it.
template <class T> class ReferencedImpl final : public T {
public:
    template <class... Arguments>
    explicit ReferencedImpl(Arguments&&... arguments) : T(std::forward<Arguments>(arguments)...) {
#ifdef BXBASE_COUNT_OBJECTS
        ++liveCounter();
#endif
    }

    void addRef() override {
        ++count;
    }

    void release() override {
        if (--count == 0)
            delete this;
    }

private:
#ifdef BXBASE_COUNT_OBJECTS
    ~ReferencedImpl() override {
        --liveCounter();
    }

    static int& liveCounter() {
        static int& counter = LiveObjects::counter(typeid(T));
        return counter;
    }
#else
    ~ReferencedImpl() override = default;
#endif

    std::int32_t count = 0;
};

} // namespace bxbase
