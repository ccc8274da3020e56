#include "host/desktop/DroppedFiles.h"

#include "desktop/FileData.h"

#include <gtest/gtest.h>

#include <ole2.h>

namespace {

using Paths = std::vector<std::wstring>;

/// Puts something on the clipboard, which is empty afterwards.
class DroppedFilesTest : public testing::Test {
protected:
    ~DroppedFilesTest() override {
        EXPECT_TRUE(OpenClipboard(window));
        EmptyClipboard();
        CloseClipboard();
        DestroyWindow(window);
    }

    void copy(UINT format, HGLOBAL data) {
        ASSERT_TRUE(OpenClipboard(window));
        EmptyClipboard();
        EXPECT_TRUE(SetClipboardData(format, data));
        CloseClipboard();
    }

    HWND window =
        CreateWindowExW(0, L"Static", L"", WS_POPUP, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr);
};

TEST_F(DroppedFilesTest, ReadsThePathsOnTheClipboardInTheirOrder) {
    const Paths paths{L"C:\\Účty\\b.tif", L"C:\\a.jpg", L"C:\\" + std::wstring(300, L'x') + L".png"};
    copy(CF_HDROP, test::fileData(paths));
    EXPECT_EQ(host::pathsOnClipboard(window), paths);
}

TEST_F(DroppedFilesTest, FindsNoPathsInATextOnTheClipboard) {
    HGLOBAL text = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, 64);
    copy(CF_UNICODETEXT, text);
    EXPECT_EQ(host::pathsOnClipboard(window), Paths{});
}

TEST_F(DroppedFilesTest, FindsNoPathsWhileAnotherWindowHasTheClipboard) {
    copy(CF_HDROP, test::fileData({L"C:\\a.jpg"}));
    HWND other = CreateWindowExW(0, L"Static", L"", WS_POPUP, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr);
    ASSERT_TRUE(OpenClipboard(other));
    EXPECT_EQ(host::pathsOnClipboard(window), Paths{});
    CloseClipboard();
    DestroyWindow(other);
}

} // namespace
