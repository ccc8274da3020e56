// Message boxes.
#include "AfxModule.h"
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

// The toolkit's own prompts.

struct Prompt {
    const char* name;
    LANGID language;
    UINT id;
    const wchar_t* text;
};

constexpr LANGID english = MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US);
constexpr LANGID czech = MAKELANGID(LANG_CZECH, SUBLANG_DEFAULT);
constexpr LANGID german = MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN);

constexpr wchar_t invalidLibrary[] =
    L"The system’s mail library MAPI32.DLL is not valid, so no e-mail can be sent.";
constexpr wchar_t failedSend[] = L"The mail program reported a failure. The message has not been sent.";

class PromptTest : public MessageBoxTest, public testing::WithParamInterface<Prompt> {
protected:
    // Windows goes by the one, Wine by the other.
    static void setLanguage(LCID locale, LANGID language) {
        SetThreadLocale(locale);
        SetThreadUILanguage(language);
    }

    PromptTest() { setLanguage(MAKELCID(GetParam().language, SORT_DEFAULT), GetParam().language); }
    ~PromptTest() override { setLanguage(before, LANGIDFROMLCID(before)); }

private:
    LCID before = GetThreadLocale();
};

TEST_P(PromptTest, IsShownInTheThreadsLanguage) {
    answer(IDOK);
    EXPECT_EQ(AfxMessageBox(GetParam().id), IDOK);
    EXPECT_EQ(seen.text, GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Prompts, PromptTest,
    testing::Values(
        Prompt{"InvalidLibraryInEnglish", english, AFX_IDP_INVALID_MAPI_DLL, invalidLibrary},
        Prompt{"InvalidLibraryInCzech", czech, AFX_IDP_INVALID_MAPI_DLL,
               L"Systémová knihovna pro poštu MAPI32.DLL není platná, e-mail proto nelze odeslat."},
        Prompt{"InvalidLibraryInAnyOtherLanguage", german, AFX_IDP_INVALID_MAPI_DLL, invalidLibrary},
        Prompt{"FailedSendInEnglish", english, AFX_IDP_FAILED_MAPI_SEND, failedSend},
        Prompt{"FailedSendInCzech", czech, AFX_IDP_FAILED_MAPI_SEND,
               L"Poštovní program ohlásil chybu. Zpráva nebyla odeslána."},
        Prompt{"FailedSendInAnyOtherLanguage", german, AFX_IDP_FAILED_MAPI_SEND, failedSend}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(MessageBoxTest, OfAModuleWithThatNumberShowsTheModulesOwnText) {
    const HMODULE module = LoadLibrary(L"toolkit_test_module.dll");
    ASSERT_NE(module, nullptr);
    answer(IDOK);
    {
        AFX_MANAGE_STATE(AfxFindModuleState(module))
        AfxMessageBox(AFX_IDP_FAILED_MAPI_SEND);
    }
    FreeLibrary(module);
    EXPECT_EQ(seen.text, L"The module's own prompt");
}

TEST_F(MessageBoxTest, OfAnUnknownNumberIsEmpty) {
    answer(IDOK);
    AfxMessageBox(4711U);
    EXPECT_EQ(seen.text, L"");
}

} // namespace
