// The owning handle to a reference-counted object.
#pragma once

#include <cstddef>
#include <utility>

namespace bxbase {

/// Holds one reference to a T, or none.
///
/// Every constructor and assignment from a non-null pointer calls addRef() on it, so the pointer's previous
/// holder keeps its own reference; clearing, reassigning and destroying the handle call release().
/// A new object is created with count 0 and gets its first reference here:
/// `Reference<Engine> engine(new ReferencedImpl<Engine>);`
///
/// T may be incomplete where a handle is only declared; it must be complete where one is copied or destroyed.
template <class T> class Reference {
public:
    Reference() noexcept = default;
    Reference(std::nullptr_t) noexcept {}
    explicit Reference(T* object) : object(object) {
        if (object)
            object->addRef();
    }
    Reference(const Reference& other) : Reference(other.object) {}
    Reference(Reference&& other) noexcept : object(std::exchange(other.object, nullptr)) {}
    ~Reference() { clear(); }

    /// Takes the new reference before it drops the old one, so assigning a handle to itself, or an object
    /// that only the old one keeps alive, is safe.
    Reference& operator=(const Reference& other) {
        Reference(other).swap(*this);
        return *this;
    }
    Reference& operator=(Reference&& other) noexcept {
        Reference(std::move(other)).swap(*this);
        return *this;
    }
    Reference& operator=(T* newObject) {
        Reference(newObject).swap(*this);
        return *this;
    }

    /// Releases the object held, if any, and leaves the handle empty.
    void clear() {
        if (T* old = std::exchange(object, nullptr))
            old->release();
    }

    /// Gives the pointer up without releasing it: the caller owes the release() from now on.
    [[nodiscard]] T* detach() noexcept { return std::exchange(object, nullptr); }

    /// The address of the pointer itself, for an operation that hands an object out together with one
    /// reference. What the handle held before is not released: pass an empty handle.
    T** getAddressOf() noexcept { return &object; }

    void swap(Reference& other) noexcept { std::swap(object, other.object); }

    /// The object without a reference for the caller, or null. Valid as long as this handle holds it.
    T* get() const noexcept { return object; }
    T* operator->() const noexcept { return object; }
    T& operator*() const noexcept { return *object; }
    explicit operator bool() const noexcept { return object != nullptr; }

    friend bool operator==(const Reference& a, const Reference& b) noexcept { return a.object == b.object; }

private:
    T* object = nullptr;
};

} // namespace bxbase
