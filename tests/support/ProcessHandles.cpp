// Counts what the process holds of the system.
#include "support/ProcessHandles.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <psapi.h>

#include <algorithm>
#include <vector>

namespace test {
namespace {

// The system's list of all handles, which its headers do not declare.
constexpr ULONG extendedHandleInformation = 64;
constexpr LONG infoLengthMismatch = static_cast<LONG>(0xC0000004);

struct HandleEntry {
    void* object;
    ULONG_PTR processId;
    ULONG_PTR handle;
    ULONG grantedAccess;
    USHORT backTraceIndex;
    USHORT typeIndex;
    ULONG attributes;
    ULONG reserved;
};

struct HandleList {
    ULONG_PTR count;
    ULONG_PTR reserved;
};

} // namespace

std::size_t countHandles() {
    using Query = LONG WINAPI(ULONG informationClass, void* buffer, ULONG size, ULONG* needed);
    static auto* const query = reinterpret_cast<Query*>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "NtQuerySystemInformation")));
    std::vector<std::byte> buffer(std::size_t{1} << 20);
    LONG status = 0;
    while ((status = query(extendedHandleInformation, buffer.data(), static_cast<ULONG>(buffer.size()),
                           nullptr)) == infoLengthMismatch)
        buffer.resize(buffer.size() * 2);
    EXPECT_EQ(status, 0);
    const auto* list = reinterpret_cast<const HandleList*>(buffer.data());
    const auto* entries = reinterpret_cast<const HandleEntry*>(list + 1);
    return static_cast<std::size_t>(
        std::count_if(entries, entries + list->count,
                      [](const HandleEntry& entry) { return entry.processId == GetCurrentProcessId(); }));
}

std::size_t countModules() {
    HMODULE modules[1024] = {};
    DWORD size = 0;
    EXPECT_TRUE(K32EnumProcessModules(GetCurrentProcess(), modules, sizeof modules, &size));
    return size / sizeof(HMODULE);
}

std::size_t countWindows() {
    std::size_t count = 0;
    const auto add = [](HWND, LPARAM total) -> BOOL {
        ++*reinterpret_cast<std::size_t*>(total);
        return TRUE;
    };
    EnumThreadWindows(GetCurrentThreadId(), add, reinterpret_cast<LPARAM>(&count));
    return count;
}

} // namespace test
