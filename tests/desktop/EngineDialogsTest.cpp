// What is read off the windows of engines.
#include "host/desktop/EngineDialogs.h"

#include "host/DialogPilot.h"
#include "host/desktop/ExportControls.h"
#include "support/HostTexts.h"
#include "support/TempFolder.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <chrono>
#include <optional>
#include <string>

namespace {

class EngineDialogsTest : public testing::Test {
protected:
    EngineDialogsTest() { test::loadLanguage(L"en.ini"); }

    /// Shows a dialog with two edits, enters texts and presses a button.
    void enter(const std::wstring& first, const std::wstring& second, int button = IDOK) {
        host::DialogPilot pilot(std::chrono::seconds(20));
        pilot.then("the dialog", host::dialogWith(IDC_RESULT_PATH),
                   host::inOrder({host::enterText(IDC_RESULT_PATH, first),
                                  host::enterText(IDC_RESULT_DETAILS, second), host::click(button)}));
        const auto procedure = [](HWND dialog, UINT message, WPARAM wParam, LPARAM) -> INT_PTR {
            if (message == WM_COMMAND && HIWORD(wParam) == BN_CLICKED)
                EndDialog(dialog, 0);
            return message == WM_INITDIALOG;
        };
        DialogBoxParamW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDD_EXPORT_RESULT), nullptr, procedure,
                        0);
        EXPECT_EQ(pilot.failure(), "");
    }

    static void answer(const std::wstring& question, UINT buttons, int button) {
        host::DialogPilot pilot(std::chrono::seconds(20));
        pilot.then("the question", host::anyMessageBox(), host::click(button));
        MessageBoxW(nullptr, question.c_str(), L"title", buttons);
        EXPECT_EQ(pilot.failure(), "");
    }

    const test::TempFolder folder;
    host::EngineDialogs dialogs;
};

TEST_F(EngineDialogsTest, ThePlaceIsTheFirstFullPath) {
    EXPECT_EQ(dialogs.place(), std::nullopt);
    enter(L"Scan", L"C:\\not there");
    EXPECT_EQ(dialogs.place(), L"C:\\not there");
    enter(L"\\\\server\\share", L"C:\\not there");
    EXPECT_EQ(dialogs.place(), L"\\\\server\\share");
    enter(L"Scan", L"C:");
    EXPECT_EQ(dialogs.place(), std::nullopt);
}

TEST_F(EngineDialogsTest, APathThatExistsComesBeforeOneThatDoesNot) {
    enter(L"C:\\not there", folder.path());
    EXPECT_EQ(dialogs.place(), folder.path());
    // Names are no paths, though they exist in some folder or other.
    enter(L".", L"C:\\not there");
    EXPECT_EQ(dialogs.place(), L"C:\\not there");
}

TEST_F(EngineDialogsTest, ACancelledDialogTellsNothing) {
    enter(folder.path(), L"", IDC_RESULT_COPY);
    EXPECT_EQ(dialogs.place(), std::nullopt);
}

TEST_F(EngineDialogsTest, ABoxThatRefusesAnEntryIsNoDialogWithoutAPath) {
    enter(folder.path(), L"");
    answer(L"There is no such folder.", MB_OK, IDOK);
    EXPECT_EQ(dialogs.place(), folder.path());
}

TEST_F(EngineDialogsTest, WhatIsEnteredDuringTheExportIsNoPlace) {
    enter(folder.path(), L"");
    dialogs.exportBegins();
    enter(L"C:\\Windows", L"");
    EXPECT_EQ(dialogs.place(), folder.path());
}

TEST_F(EngineDialogsTest, TheLastAnswerToAQuestionCounts) {
    answer(L"More?", MB_YESNO, IDNO);
    EXPECT_TRUE(dialogs.isRefused());
    answer(L"More?", MB_YESNO, IDYES);
    EXPECT_FALSE(dialogs.isRefused());
    answer(L"More?", MB_YESNO, IDNO);
    dialogs.forgetAnswers();
    EXPECT_FALSE(dialogs.isRefused());
}

TEST_F(EngineDialogsTest, KnowsTheFileToOverwriteUntilTheEngineGoesOn) {
    std::wstring question = test::hostText("Common", "Question.OverwriteFile");
    question.replace(question.find(L"%ls"), 3, L"C:\\a.tif");
    answer(question, MB_YESNO, IDNO);
    EXPECT_EQ(dialogs.overwritten(), std::nullopt);
    answer(question, MB_YESNO, IDYES);
    EXPECT_EQ(dialogs.overwritten(), L"C:\\a.tif");
    answer(L"More?", MB_YESNO, IDYES);
    EXPECT_EQ(dialogs.overwritten(), L"C:\\a.tif");
    dialogs.forgetAnswers();
    EXPECT_EQ(dialogs.overwritten(), std::nullopt);
}

} // namespace
