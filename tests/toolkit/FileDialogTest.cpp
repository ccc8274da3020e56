// The system's file dialog.
#include "afxdlgs.h"

#include "host/DialogPilot.h"
#include "support/FileBrowsing.h"
#include "support/TempFolder.h"

#include <gmock/gmock.h>

#include <chrono>
#include <stdexcept>

namespace {

using host::click;

class FileDialogTest : public testing::Test {
protected:
    void TearDown() override { EXPECT_TRUE(pilot.succeeded()) << pilot.failure(); }

    void then(host::DialogPilot::Action action) {
        pilot.then("the file dialog", test::fileDialog(), std::move(action));
    }

    test::TempFolder folder;
    host::DialogPilot pilot{std::chrono::seconds(20)};
    CFileDialog dialog{TRUE};
};

TEST_F(FileDialogTest, TakesTheNameOfAFileThatDoesNotExistYet) {
    then(test::typeFileName(folder / L"nový.zip"));
    EXPECT_EQ(dialog.DoModal(), IDOK);
    EXPECT_STREQ(dialog.GetPathName(), (folder / L"nový.zip").c_str());
    EXPECT_TRUE(folder.list().empty());
}

TEST_F(FileDialogTest, TakesAnExistingFileWithoutAQuestion) {
    const std::wstring file = folder.write(L"old.zip", "old");
    then(test::typeFileName(file));
    EXPECT_EQ(dialog.DoModal(), IDOK);
    EXPECT_STREQ(dialog.GetPathName(), file.c_str());
}

TEST_F(FileDialogTest, InsistsOnAnExistingFileWhenTheFlagSaysSo) {
    CFileDialog insisting(TRUE, nullptr, nullptr, OFN_FILEMUSTEXIST | OFN_PATHMUSTEXIST);
    then(test::typeFileName(folder / L"new.zip"));
    pilot.then("the complaint", host::anyMessageBox(), click(IDOK));
    then(click(IDCANCEL));
    EXPECT_EQ(insisting.DoModal(), IDCANCEL);
}

TEST_F(FileDialogTest, HasNoPathWhenCancelled) {
    then([this](HWND window) {
        SetWindowTextW(test::fileNameEditOf(window), (folder / L"a.zip").c_str());
        return click(IDCANCEL)(window);
    });
    EXPECT_EQ(dialog.DoModal(), IDCANCEL);
    EXPECT_STREQ(dialog.GetPathName(), L"");
}

TEST_F(FileDialogTest, StartsWithTheNameAndAddsTheExtensionThatItWasGiven) {
    const std::wstring name = folder / L"scans";
    CFileDialog prepared(FALSE, L"zip", name.c_str(), OFN_OVERWRITEPROMPT, L"Archives|*.zip|All|*.*||");
    then(click(IDOK));
    EXPECT_EQ(prepared.DoModal(), IDOK);
    EXPECT_STREQ(prepared.GetPathName(), (name + L".zip").c_str());
}

TEST_F(FileDialogTest, HasAnOwnerOnlyWhenOneIsGiven) {
    CWnd owner;
    owner.CreateEx(0, L"Static", L"owner", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 100, 100, nullptr,
                   nullptr);
    for (CWnd* parent : {static_cast<CWnd*>(nullptr), &owner}) {
        HWND found = nullptr;
        then([&](HWND window) {
            found = GetWindow(window, GW_OWNER);
            return click(IDCANCEL)(window);
        });
        CFileDialog(TRUE, nullptr, nullptr, OFN_HIDEREADONLY, nullptr, parent).DoModal();
        EXPECT_EQ(found, parent ? owner.m_hWnd : nullptr);
    }
}

TEST_F(FileDialogTest, LetsWhatAHandlerThrowsMeanwhileReachTheCaller) {
    class Window : public CWnd {
        LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
            if (message == WM_APP)
                throw std::runtime_error("failure");
            return CWnd::WindowProc(message, wParam, lParam);
        }
    } window;
    window.CreateEx(0, nullptr, L"", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr);
    then([&](HWND file) {
        SendMessageW(window, WM_APP, 0, 0);
        return click(IDCANCEL)(file);
    });
    EXPECT_THROW(dialog.DoModal(), std::runtime_error);
}

} // namespace
