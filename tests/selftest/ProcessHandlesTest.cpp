// The counts of what a process holds: they rise and fall.
#include "support/ProcessHandles.h"

#include <gtest/gtest.h>

#include <windows.h>

namespace {

HWND makeWindow() {
    return CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr);
}

TEST(ProcessHandlesTest, HandleCountsUntilItIsClosed) {
    const std::size_t before = test::countHandles();
    HANDLE event = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    EXPECT_EQ(test::countHandles(), before + 1);
    CloseHandle(event);
    EXPECT_EQ(test::countHandles(), before);
}

TEST(ProcessHandlesTest, ModuleCountsUntilItIsFreed) {
    const std::size_t before = test::countModules();
    const HMODULE module = LoadLibraryW(L"late_fault.dll");
    EXPECT_EQ(test::countModules(), before + 1);
    FreeLibrary(module);
    EXPECT_EQ(test::countModules(), before);
}

TEST(ProcessHandlesTest, WindowCountsUntilItIsDestroyed) {
    // With the first one the system may make others of its own.
    HWND first = makeWindow();
    const std::size_t before = test::countWindows();
    HWND window = makeWindow();
    EXPECT_EQ(test::countWindows(), before + 1);
    DestroyWindow(window);
    EXPECT_EQ(test::countWindows(), before);
    DestroyWindow(first);
}

} // namespace
