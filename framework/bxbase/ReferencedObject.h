// The root of every object that host and components share by reference count.
#pragma once

namespace bxbase {

/// An object whose lifetime is governed by a reference count.
///
/// Thread: the host's user-interface thread only. Counts are plain integers; nothing is locked.
///
/// The table holds exactly these two operations, in this order. There is deliberately no virtual destructor
/// here: whoever wants the object gone calls release(), and the class that is actually instantiated
/// (ReferencedImpl) knows how to destroy itself. Interfaces that derive from this class can therefore place
/// their own operations right behind slot 1.
class ReferencedObject {
public:
    ReferencedObject() = default;
    ReferencedObject(const ReferencedObject&) = delete;
    ReferencedObject& operator=(const ReferencedObject&) = delete;

    /// Adds one reference. The caller owes one release() for it. Never fails.
    virtual void addRef() = 0;

    /// Gives one reference back. The object destroys itself with the last one, so the caller must not touch
    /// it afterwards unless another reference of its own is left. Never fails.
    virtual void release() = 0;

protected:
    ~ReferencedObject() = default;
};

} // namespace bxbase
