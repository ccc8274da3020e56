// What becomes of a draft on the user's desktop.
#include "draftmail/Desktop.h"

#include "draftmail/resource.h"
#include "host/DialogPilot.h"
#include "support/ImportHook.h"
#include "support/StringTable.h"
#include "support/TempFolder.h"

#include <gmock/gmock.h>

#include <shellapi.h>
#include <shlobj.h>

#include <vector>

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr LANGID english = MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US);

/// The desktop whose shell does what the test says. The messages are real, and confirmed.
class DesktopTest : public testing::Test {
protected:
    DesktopTest() {
        current = this;
        setLanguage(english);
        pilot.always(host::anyMessageBox(), [this](HWND box) {
            titles.push_back(host::windowText(box));
            messages.push_back(host::messageBoxText(box));
            messageOwner = GetWindow(box, GW_OWNER);
            return host::click(IDOK)(box);
        });
    }

    ~DesktopTest() override { setLanguage(LANGIDFROMLCID(localeBefore)); }

    // Windows goes by the one, Wine by the other.
    static void setLanguage(LANGID language) {
        SetThreadLocale(MAKELCID(language, SORT_DEFAULT));
        SetThreadUILanguage(language);
    }

    DWORD open(bool visible = true) { return draftmail::WindowsDesktop(visible).open(draft, owner); }

    /// What the shell answers, and what it was asked.
    DWORD openError = ERROR_NO_ASSOCIATION;
    HRESULT choice = HRESULT_FROM_WIN32(ERROR_CANCELLED);
    SHELLEXECUTEINFOW command{};
    std::vector<std::wstring> opened;
    std::vector<std::wstring> asked;

    std::vector<std::wstring> titles;
    std::vector<std::wstring> messages;
    HWND messageOwner = nullptr;

    std::wstring draft = L"C:\\100 %1 Drafts\\x.eml";
    HWND owner = nullptr;

private:
    static BOOL WINAPI shellExecute(SHELLEXECUTEINFOW* command) {
        current->command = *command;
        current->opened.emplace_back(command->lpFile);
        SetLastError(current->openError);
        return current->openError == ERROR_SUCCESS;
    }

    static HRESULT WINAPI openWithDialog(HWND, const OPENASINFO* info) {
        current->asked.emplace_back(info->pcszFile);
        return current->choice;
    }

    static inline DesktopTest* current = nullptr;
    LCID localeBefore = GetThreadLocale();
    host::DialogPilot pilot{std::chrono::seconds(30)};
    test::ImportHook shellExecuteHook{"ShellExecuteExW", reinterpret_cast<void*>(&shellExecute)};
    test::ImportHook openWithHook{"SHOpenWithDialog", reinterpret_cast<void*>(&openWithDialog)};
};

TEST_F(DesktopTest, OpensTheDraftAsADoubleClickDoes) {
    openError = ERROR_SUCCESS;
    EXPECT_EQ(open(), static_cast<DWORD>(ERROR_SUCCESS));
    EXPECT_THAT(opened, ElementsAre(draft));
    EXPECT_EQ(command.lpVerb, nullptr);
    EXPECT_THAT(asked, IsEmpty());
    EXPECT_THAT(messages, IsEmpty());
}

TEST_F(DesktopTest, LetsTheUserChooseAProgramWhenThereIsNone) {
    choice = S_OK;
    EXPECT_EQ(open(), static_cast<DWORD>(ERROR_SUCCESS));
    EXPECT_THAT(asked, ElementsAre(draft));
    EXPECT_THAT(messages, IsEmpty());
}

TEST_F(DesktopTest, TellsWhereTheDraftIsWhenTheUserChoosesNone) {
    EXPECT_EQ(open(), static_cast<DWORD>(ERROR_CANCELLED));
    EXPECT_THAT(titles, ElementsAre(L"E-mail draft"));
    EXPECT_THAT(
        messages,
        ElementsAre(L"The message is ready as a draft, but no program opened it:\r\n\r\n" + draft +
                    L"\r\n\r\nOpen this file with your mail program to address and send the message."));
}

struct Texts {
    const char* name;
    LANGID language;
    const wchar_t* title;
    std::wstring before; ///< the draft's path
    std::wstring after;
};

const Texts texts[] = {
    {"Czech", MAKELANGID(LANG_CZECH, SUBLANG_DEFAULT), L"Koncept e-mailu",
     L"Zpráva je připravena jako koncept, ale žádný program ji neotevřel:",
     L"Otevřete tento soubor ve svém poštovním programu, zprávu adresujte a odešlete."},
    {"German", MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN), L"E-Mail-Entwurf",
     L"Die Nachricht liegt als Entwurf bereit, aber kein Programm hat ihn geöffnet:",
     L"Öffnen Sie diese Datei mit Ihrem E-Mail-Programm, um die Nachricht zu adressieren und zu senden."},
    {"French", MAKELANGID(LANG_FRENCH, SUBLANG_FRENCH), L"Brouillon d’e-mail",
     L"Le message est prêt sous forme de brouillon, mais aucun programme ne l’a ouvert :",
     L"Ouvrez ce fichier avec votre logiciel de messagerie pour indiquer les destinataires et envoyer le "
     L"message."},
    {"Spanish", MAKELANGID(LANG_SPANISH, SUBLANG_SPANISH_MODERN), L"Borrador de correo",
     L"El mensaje está listo como borrador, pero ningún programa lo abrió:",
     L"Abra este archivo con su programa de correo para indicar los destinatarios y enviar el mensaje."},
    {"Polish", MAKELANGID(LANG_POLISH, SUBLANG_DEFAULT), L"Wersja robocza wiadomości",
     L"Wiadomość jest gotowa jako wersja robocza, ale żaden program jej nie otworzył:",
     L"Otwórz ten plik w programie pocztowym, aby zaadresować i wysłać wiadomość."},
    {"Slovak", MAKELANGID(LANG_SLOVAK, SUBLANG_DEFAULT), L"Koncept e-mailu",
     L"Správa je pripravená ako koncept, ale žiadny program ju neotvoril:",
     L"Otvorte tento súbor vo svojom poštovom programe, správu adresujte a odošlite."},
    {"Italian", MAKELANGID(LANG_ITALIAN, SUBLANG_ITALIAN), L"Bozza di e-mail",
     L"Il messaggio è pronto come bozza, ma nessun programma lo ha aperto:",
     L"Aprire questo file con il programma di posta elettronica per indicare i destinatari e inviare il "
     L"messaggio."},
};

class DesktopLanguageTest : public DesktopTest, public testing::WithParamInterface<Texts> {};

TEST_P(DesktopLanguageTest, IsTheThreads) {
    setLanguage(GetParam().language);
    open();
    EXPECT_THAT(titles, ElementsAre(GetParam().title));
    EXPECT_THAT(messages,
                ElementsAre(GetParam().before + L"\r\n\r\n" + draft + L"\r\n\r\n" + GetParam().after));
}

TEST_P(DesktopLanguageTest, IsThereInItsOtherVariants) {
    EXPECT_THAT(
        test::stringTable(nullptr, IDS_DRAFT_TITLE, test::unusualVariant(GetParam().language)),
        AllOf(HasSubstr(GetParam().title), HasSubstr(GetParam().before), HasSubstr(GetParam().after)));
}

INSTANTIATE_TEST_SUITE_P(Languages, DesktopLanguageTest, testing::ValuesIn(texts),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(DesktopTest, TellsWhereTheDraftIsWhenTheSystemCannotAsk) {
    choice = E_NOTIMPL;
    EXPECT_NE(open(), static_cast<DWORD>(ERROR_CANCELLED));
    EXPECT_THAT(messages, ElementsAre(HasSubstr(draft)));
}

TEST_F(DesktopTest, DoesNotAskForAProgramWhenTheUserDeclinedToOpenTheDraft) {
    openError = ERROR_CANCELLED;
    EXPECT_EQ(open(), static_cast<DWORD>(ERROR_CANCELLED));
    EXPECT_THAT(asked, IsEmpty());
    EXPECT_THAT(messages, ElementsAre(HasSubstr(draft)));
}

TEST_F(DesktopTest, TellsOverTheWindowOfTheCaller) {
    owner = CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 0, 0, 9, 9, nullptr, nullptr, nullptr,
                            nullptr);
    open();
    EXPECT_EQ(messageOwner, owner);
    EXPECT_EQ(command.hwnd, owner);
    DestroyWindow(owner);
}

TEST_F(DesktopTest, TellsAlsoWhenTheCallersWindowIsNone) {
    owner = reinterpret_cast<HWND>(42);
    open();
    EXPECT_THAT(messages, ElementsAre(HasSubstr(draft)));
}

TEST_F(DesktopTest, NeitherAsksNorTellsWhereNobodySeesIt) {
    EXPECT_EQ(open(false), static_cast<DWORD>(ERROR_NO_ASSOCIATION));
    EXPECT_THAT(opened, ElementsAre(draft));
    EXPECT_TRUE(command.fMask & SEE_MASK_FLAG_NO_UI);
    EXPECT_THAT(asked, IsEmpty());
    EXPECT_THAT(messages, IsEmpty());
}

TEST_F(DesktopTest, OpensTheDraftBeforeTheCallReturns) {
    open();
    EXPECT_TRUE(command.fMask & SEE_MASK_NOASYNC);
}

} // namespace
