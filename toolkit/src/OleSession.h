// OLE for the time that one of the system's dialogs needs it.
#pragma once

#include <windows.h>

#include <ole2.h>

#include <memory>

/// Open for its lifetime; false on a thread that runs COM in the other way.
class OleSession {
public:
    OleSession() : isOpen(SUCCEEDED(OleInitialize(nullptr))) {}
    OleSession(const OleSession&) = delete;
    OleSession& operator=(const OleSession&) = delete;
    ~OleSession() {
        if (isOpen)
            OleUninitialize();
    }
    explicit operator bool() const { return isOpen; }

private:
    bool isOpen;
};

struct TaskMemoryDeleter {
    void operator()(void* memory) const { CoTaskMemFree(memory); }
};
/// What the system's dialogs hand out.
template <class T> using TaskMemory = std::unique_ptr<T, TaskMemoryDeleter>;
