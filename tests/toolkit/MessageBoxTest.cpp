// Message boxes.
#include "AfxModule.h"
#include "SampleDialogTest.h"
#include "support/StringTable.h"

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

struct Prompts {
    const char* name;
    LANGID language;
    const wchar_t* invalidLibrary;
    const wchar_t* failedSend;
};

const Prompts prompts[] = {
    {"English", MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US),
     L"The system’s mail library MAPI32.DLL is not valid, so no e-mail can be sent.",
     L"The mail program reported a failure. The message has not been sent."},
    {"Czech", MAKELANGID(LANG_CZECH, SUBLANG_DEFAULT),
     L"Systémová knihovna pro poštu MAPI32.DLL není platná, e-mail proto nelze odeslat.",
     L"Poštovní program ohlásil chybu. Zpráva nebyla odeslána."},
    {"German", MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN),
     L"Die E-Mail-Bibliothek MAPI32.DLL des Systems ist ungültig. Es kann keine E-Mail gesendet werden.",
     L"Das E-Mail-Programm hat einen Fehler gemeldet. Die Nachricht wurde nicht gesendet."},
    {"French", MAKELANGID(LANG_FRENCH, SUBLANG_FRENCH),
     L"La bibliothèque de messagerie MAPI32.DLL du système n’est pas valide. Aucun e-mail ne peut être "
     L"envoyé.",
     L"Le logiciel de messagerie a signalé une erreur. Le message n’a pas été envoyé."},
    {"Spanish", MAKELANGID(LANG_SPANISH, SUBLANG_SPANISH_MODERN),
     L"La biblioteca de correo MAPI32.DLL del sistema no es válida. No se puede enviar correo electrónico.",
     L"El programa de correo notificó un error. No se envió el mensaje."},
    {"Polish", MAKELANGID(LANG_POLISH, SUBLANG_DEFAULT),
     L"Biblioteka systemowa MAPI32.DLL do obsługi poczty jest nieprawidłowa. Nie można wysłać wiadomości.",
     L"Program pocztowy zgłosił błąd. Wiadomość nie została wysłana."},
    {"Slovak", MAKELANGID(LANG_SLOVAK, SUBLANG_DEFAULT),
     L"Systémová knižnica pre poštu MAPI32.DLL nie je platná, e-mail preto nemožno odoslať.",
     L"Poštový program ohlásil chybu. Správa nebola odoslaná."},
    {"Italian", MAKELANGID(LANG_ITALIAN, SUBLANG_ITALIAN),
     L"La libreria di posta elettronica MAPI32.DLL del sistema non è valida. Impossibile inviare messaggi.",
     L"Il programma di posta elettronica ha segnalato un errore. Il messaggio non è stato inviato."},
};

// Windows goes by the one, Wine by the other.
void setThreadsLanguage(LCID locale, LANGID language) {
    SetThreadLocale(locale);
    SetThreadUILanguage(language);
}

class PromptTest : public MessageBoxTest {
protected:
    ~PromptTest() override { setThreadsLanguage(before, LANGIDFROMLCID(before)); }

    std::wstring shown(UINT prompt, LANGID language) {
        setThreadsLanguage(MAKELCID(language, SORT_DEFAULT), language);
        answer(IDOK);
        EXPECT_EQ(AfxMessageBox(prompt), IDOK);
        return seen.text;
    }

private:
    LCID before = GetThreadLocale();
};

class PromptLanguageTest : public PromptTest, public testing::WithParamInterface<Prompts> {};

TEST_P(PromptLanguageTest, IsShownInTheThreadsLanguage) {
    EXPECT_EQ(shown(AFX_IDP_INVALID_MAPI_DLL, GetParam().language), GetParam().invalidLibrary);
    EXPECT_EQ(shown(AFX_IDP_FAILED_MAPI_SEND, GetParam().language), GetParam().failedSend);
}

TEST_P(PromptLanguageTest, IsThereForTheLanguagesOtherVariants) {
    const std::wstring texts = test::stringTable(GetModuleHandle(L"toolkit.dll"), AFX_IDP_FAILED_MAPI_SEND,
                                                 test::unusualVariant(GetParam().language));
    EXPECT_NE(texts.find(GetParam().invalidLibrary), std::wstring::npos);
    EXPECT_NE(texts.find(GetParam().failedSend), std::wstring::npos);
}

INSTANTIATE_TEST_SUITE_P(Languages, PromptLanguageTest, testing::ValuesIn(prompts),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(PromptTest, IsEnglishInAnyOtherLanguage) {
    constexpr LANGID portuguese = MAKELANGID(LANG_PORTUGUESE, SUBLANG_PORTUGUESE);
    EXPECT_EQ(shown(AFX_IDP_INVALID_MAPI_DLL, portuguese), prompts[0].invalidLibrary);
    EXPECT_EQ(shown(AFX_IDP_FAILED_MAPI_SEND, portuguese), prompts[0].failedSend);
}

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
