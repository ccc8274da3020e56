// Message boxes.
#include "SampleDialogTest.h"

#include <string>

namespace {

class MessageBoxTest : public test::SampleDialogTest {
protected:
    struct Seen {
        std::wstring title;
        std::wstring text;
        HWND owner = nullptr;
    };

    void answer(int button) {
        pilot.then("answer", host::anyMessageBox(), [this, button](HWND box) {
            seen = {host::windowText(box), host::messageBoxText(box), GetWindow(box, GW_OWNER)};
            return host::click(button)(box);
        });
    }

    Seen seen;
};

TEST_F(MessageBoxTest, ShowsTheTextUnderTheApplicationsName) {
    CWinApp app(L"The application");
    answer(IDOK);
    EXPECT_EQ(AfxMessageBox(L"Žádná stránka"), IDOK);
    EXPECT_EQ(seen.title, L"The application");
    EXPECT_EQ(seen.text, L"Žádná stránka");
}

TEST_F(MessageBoxTest, ShowsATextOfTheStringTable) {
    answer(IDOK);
    AfxMessageBox(IDS_GREETING);
    EXPECT_EQ(seen.text, L"Dobrý den");
}

TEST_F(MessageBoxTest, GivesTheButtonPressed) {
    answer(IDNO);
    EXPECT_EQ(AfxMessageBox(L"Sure?", MB_YESNO), IDNO);
}

TEST_F(MessageBoxTest, IsOwnedByTheDialogOnTop) {
    CWnd mainWindow;
    mainWindow.CreateEx(0, nullptr, L"", WS_POPUP | WS_VISIBLE, 0, 0, 9, 9, nullptr, nullptr);
    CWinApp app;
    app.m_pMainWnd = &mainWindow;
    HWND dialogWindow = nullptr;
    dialog.onCheck = [&] {
        dialogWindow = dialog;
        AfxMessageBox(L"Over the dialog");
    };
    pilot.then("tick", host::dialogTitled(L"Sample"), host::click(IDC_CHECK));
    answer(IDOK);
    showAnd([] {});
    EXPECT_NE(dialogWindow, nullptr);
    EXPECT_EQ(seen.owner, dialogWindow);
}

TEST_F(MessageBoxTest, OfAWindowIsOwnedByIt) {
    HWND dialogWindow = nullptr;
    dialog.onCheck = [&] {
        dialogWindow = dialog;
        dialog.MessageBox(L"Text", L"Caption", MB_ICONERROR);
    };
    pilot.then("tick", host::dialogTitled(L"Sample"), host::click(IDC_CHECK));
    answer(IDOK);
    showAnd([] {});
    EXPECT_EQ(seen.owner, dialogWindow);
    EXPECT_EQ(seen.title, L"Caption");
}

} // namespace
