// The button in an edit that opens the system's folder dialog.
#include "SampleDialogTest.h"

#include "support/FolderBrowsing.h"

#include <gmock/gmock.h>

#include <array>
#include <string>
#include <vector>

namespace {

class FolderBrowseTest : public test::SampleDialogTest {
protected:
    FolderBrowseTest() {
        GetWindowsDirectory(start.data(), MAX_PATH);
        GetSystemDirectory(other.data(), MAX_PATH);
        dialog.onInit = [this] {
            dialog.path.EnableFolderBrowseButton(L"Choose one", 0x55);
            dialog.path.SetWindowText(start.data());
        };
    }

    CPoint button() const { return test::browseButtonOf(dialog.path); }

    WPARAM hitTest(CPoint at) const {
        return static_cast<WPARAM>(dialog.path.SendMessage(WM_NCHITTEST, 0, MAKELPARAM(at.x, at.y)));
    }

    void pressButton() {
        pilot.then("press the button", host::dialogTitled(L"Sample"), test::pressBrowseButton(IDC_PATH));
    }

    host::DialogPilot::Match folderDialog() const {
        return [this](HWND window) { return GetWindow(window, GW_OWNER) == dialog.m_hWnd; };
    }

    std::wstring pathAtTheEnd() {
        std::wstring path;
        showAnd([&] { path = host::windowText(dialog.path); });
        return path;
    }

    // Folders whose neighbours nobody touches: Wine's folder dialog loses folders whose times change meanwhile.
    std::array<wchar_t, MAX_PATH> start{};
    std::array<wchar_t, MAX_PATH> other{};
};

TEST_F(FolderBrowseTest, TakesTheFolderChosen) {
    pressButton();
    pilot.then("choose", folderDialog(), test::chooseFolder(start.data(), other.data(), IDOK));
    EXPECT_EQ(pathAtTheEnd(), other.data());
}

TEST_F(FolderBrowseTest, LeavesTheTextWhenCancelled) {
    pressButton();
    pilot.then("choose, then cancel", folderDialog(),
               test::chooseFolder(start.data(), other.data(), IDCANCEL));
    EXPECT_EQ(pathAtTheEnd(), start.data());
}

TEST_F(FolderBrowseTest, StartsAtTheFolderInTheEdit) {
    pressButton();
    pilot.then("confirm", folderDialog(), host::click(IDOK));
    const auto setUp = dialog.onInit;
    dialog.onInit = [&] {
        setUp();
        // What comes back is the folder's own spelling.
        dialog.path.SetWindowText((std::wstring(start.data()) + L'\\').c_str());
    };
    EXPECT_EQ(pathAtTheEnd(), start.data());
}

TEST_F(FolderBrowseTest, ShowsTheTitle) {
    std::vector<std::wstring> texts;
    pressButton();
    pilot.then("read and cancel", folderDialog(), [&](HWND window) {
        EnumChildWindows(
            window,
            [](HWND child, LPARAM list) -> BOOL {
                reinterpret_cast<std::vector<std::wstring>*>(list)->push_back(host::windowText(child));
                return TRUE;
            },
            reinterpret_cast<LPARAM>(&texts));
        return host::click(IDCANCEL)(window);
    });
    pathAtTheEnd();
    EXPECT_THAT(texts, testing::Contains(L"Choose one"));
}

TEST_F(FolderBrowseTest, CanBePressedAgain) {
    pressButton();
    pilot.then("cancel", folderDialog(), host::click(IDCANCEL));
    pressButton();
    pilot.then("choose", folderDialog(), test::chooseFolder(start.data(), other.data(), IDOK));
    EXPECT_EQ(pathAtTheEnd(), other.data());
}

TEST_F(FolderBrowseTest, TellsTheParentThatTheTextChanged) {
    int changes = 0;
    pressButton();
    pilot.then("choose", folderDialog(),
               [&, choose = test::chooseFolder(start.data(), other.data(), IDOK)](HWND window) {
                   dialog.onPathChange = [&] { ++changes; };
                   return choose(window);
               });
    pathAtTheEnd();
    EXPECT_EQ(changes, 1);
}

TEST_F(FolderBrowseTest, DoesNothingWhenReleasedElsewhere) {
    pilot.then("press and leave", host::dialogTitled(L"Sample"), [this](HWND) {
        test::pressMouseAt(dialog.path, button());
        test::releaseMouseAt(dialog.path, CPoint(button().x, button().y + 100));
        return true;
    });
    pilot.then("see that nothing opened", host::dialogTitled(L"Sample"), [this](HWND) {
        // The messages posted above have been handled once the capture is free again.
        return GetCapture() == nullptr && dialog.IsWindowEnabled();
    });
    EXPECT_EQ(pathAtTheEnd(), start.data());
}

TEST_F(FolderBrowseTest, TakesItsRoomFromTheText) {
    showAnd([this] {
        CRect with;
        CRect without;
        dialog.path.GetClientRect(with);
        dialog.name.GetClientRect(without);
        EXPECT_LT(with.Width(), without.Width() - 10);
        EXPECT_EQ(with.Height(), without.Height());
        EXPECT_EQ(hitTest(button()), static_cast<WPARAM>(HTBORDER));
        CPoint text(with.right - 1, with.bottom / 2);
        dialog.path.ClientToScreen(&text);
        EXPECT_EQ(hitTest(text), static_cast<WPARAM>(HTCLIENT));
    });
}

TEST_F(FolderBrowseTest, StaysAtTheEndWhenTheEditGrows) {
    showAnd([this] {
        dialog.path.SetWindowPos(nullptr, 0, 0, 300, 40, SWP_NOMOVE | SWP_NOZORDER);
        CRect window;
        dialog.path.GetWindowRect(window);
        EXPECT_EQ(hitTest(CPoint(window.right - 8, window.CenterPoint().y)), static_cast<WPARAM>(HTBORDER));
    });
}

} // namespace
