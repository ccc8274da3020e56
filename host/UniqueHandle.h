// An owned file handle.
#pragma once

#include <windows.h>

#include <utility>

namespace host {

/// Closes the handle that CreateFileW gave, if it gave one.
class UniqueHandle {
public:
    explicit UniqueHandle(HANDLE handle) noexcept : handle(handle) {}
    UniqueHandle(UniqueHandle&& other) noexcept : handle(std::exchange(other.handle, INVALID_HANDLE_VALUE)) {}
    UniqueHandle& operator=(UniqueHandle&& other) noexcept {
        std::swap(handle, other.handle);
        return *this;
    }
    ~UniqueHandle() {
        if (*this)
            CloseHandle(handle);
    }

    HANDLE get() const noexcept { return handle; }
    explicit operator bool() const noexcept { return handle != INVALID_HANDLE_VALUE; }

private:
    HANDLE handle;
};

} // namespace host
