// The console program handing pages to a mail client with the real component, run inside the test.
#include "host/ScanExportFixture.h"

#include "host/MailDialogControls.h"
#include "host/Text.h"
#include "host/VisibleWindow.h"
#include "support/ImportHook.h"
#include "support/mail/MailClient.h"

#include <gmock/gmock.h>

#include <climits>
#include <map>

namespace {

using host::utf8;
using host::mailDialog::subjectEdit;
using test::MailCall;
using test::OpenFile;
using test::Person;
using testing::_;
using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;
using testing::StartsWith;

constexpr char notTaken[] =
    "scanexport: The mail program reported a failure. The message has not been sent.\n"
    "scanexport: The message was not taken: ";

class MailTargetTest : public ScanExportFixture {
protected:
    MailTargetTest() {
        // The copies need not live longer than the call.
        client.behaviour = [this](const MailCall& call) {
            attached.clear();
            for (const MailCall::File& file : call.files)
                attached.emplace_back(file.name.value_or("null"), test::readFile(wideOf(*file.path)));
            return ULONG{SUCCESS_SUCCESS};
        };
    }

    int mail(std::vector<std::wstring> arguments) {
        arguments.insert(arguments.begin(), L"--to-mail");
        return run(std::move(arguments));
    }

    static std::wstring wideOf(const std::string& text) {
        std::wstring wide(text.size(), L'\0');
        wide.resize(static_cast<std::size_t>(MultiByteToWideChar(CP_ACP, 0, text.data(),
                                                                 static_cast<int>(text.size()), wide.data(),
                                                                 static_cast<int>(wide.size()))));
        return wide;
    }

    std::wstring settingsKey() const { return L"SOFTWARE\\" + basePath + L"\\1.0\\Settings"; }

    std::optional<std::wstring> setting(const wchar_t* name) const {
        wchar_t text[1024] = {};
        DWORD size = sizeof text;
        if (RegGetValueW(HKEY_CURRENT_USER, settingsKey().c_str(), name, RRF_RT_REG_SZ, nullptr, text, &size))
            return std::nullopt;
        return text;
    }

    void rememberLimit(const std::wstring& kb) const {
        RegSetKeyValueW(HKEY_CURRENT_USER, settingsKey().c_str(), limitName, REG_SZ, kb.c_str(),
                        static_cast<DWORD>((kb.size() + 1) * sizeof(wchar_t)));
    }

    /// Two pages of one KB together.
    void addKilobyte() {
        addPage(L"a.tif", std::string(512, 'a'));
        addPage(L"b.tif", std::string(512, 'b'));
    }

    static constexpr wchar_t limitName[] = L"Export.ToMail.MaxTotalSizeInKb";

    test::MailClient client;
    std::vector<std::pair<std::string, std::string>> attached; ///< names and bytes of the last message
};

TEST_F(MailTargetTest, AttachesPagesByteForByteUnderNumberedNames) {
    const std::string binary("\0\r\n\x1A\xFF", 5);
    const std::wstring a = addPage(L"a.TIF", binary);
    const std::wstring b = addPage(L"b.jpg", std::string(1 << 20, 'b'));

    EXPECT_EQ(mail({L"--subject", L"Invoices", b, a}), 0);

    ASSERT_EQ(client.calls.size(), 1u);
    EXPECT_EQ(client.calls[0].subject, "Invoices");
    EXPECT_EQ(client.calls[0].note, " ");
    EXPECT_THAT(attached,
                ElementsAre(Pair("Page-1.jpg", std::string(1 << 20, 'b')), Pair("Page-2.TIF", binary)));
    EXPECT_EQ(console.output, "") << "output that nobody watches";
    EXPECT_EQ(console.errors, "");
}

TEST_F(MailTargetTest, TheSubjectOfLastTimeStaysWhenNoneIsGiven) {
    addPage(L"a.tif");
    ASSERT_EQ(mail({L"--subject=Invoices", pages}), 0);
    EXPECT_EQ(setting(L"Export.ToMail.Subject"), L"Invoices");

    EXPECT_EQ(mail({pages}), 0);
    EXPECT_EQ(mail({L"--subject=", pages}), 0);

    ASSERT_EQ(client.calls.size(), 3u);
    EXPECT_EQ(client.calls[1].subject, "Invoices");
    EXPECT_EQ(client.calls[2].subject, std::nullopt);
}

TEST_F(MailTargetTest, ShowsProgressToAPersonWhoWatches) {
    addPage(L"a.tif");
    addPage(L"b.tif");
    console.watched = true;

    EXPECT_EQ(mail({pages}), 0);

    EXPECT_THAT(console.output, AllOf(HasSubstr("Exporting page 1 of 2"), HasSubstr("Exporting page 2 of 2"),
                                      EndsWith("\r2 pages handed to the mail client.\n")));
}

TEST_F(MailTargetTest, WorksInCzech) {
    const std::wstring page = addPage(L"ž.tif", std::string(1025, 'x'));

    EXPECT_EQ(host::runScanExport({L"--lang=cs", L"--to-mail", L"--max-size=1", L"--yes", page}, console,
                                  surroundings),
              0);
    EXPECT_THAT(attached, ElementsAre(Pair(testing::_, std::string(1025, 'x'))));
    EXPECT_EQ(console.errors, "");
}

TEST_F(MailTargetTest, ShowsThePromptInTheLanguageOfTheDialogs) {
    client.behaviour = test::returns(MAPI_E_FAILURE);
    const std::wstring page = addPage(L"a.tif");
    const std::pair<std::wstring, std::string> cases[] = {
        {L"cs", "scanexport: Poštovní program ohlásil chybu. Zpráva nebyla odeslána.\n"},
        {L"en", "scanexport: The mail program reported a failure. The message has not been sent.\n"},
        {L"cs", "scanexport: Poštovní program ohlásil chybu. Zpráva nebyla odeslána.\n"},
    };
    const LANGID language = GetThreadUILanguage();
    const LCID locale = GetThreadLocale();
    for (const auto& [code, prompt] : cases) {
        console.errors.clear();
        EXPECT_EQ(host::runScanExport({L"--lang", code, L"--to-mail", page}, console, surroundings), 1);
        EXPECT_THAT(console.errors, StartsWith(prompt));
        EXPECT_EQ(GetThreadUILanguage(), language);
        EXPECT_EQ(GetThreadLocale(), locale);
    }
}

TEST_F(MailTargetTest, AMessageThatIsNotSentIsNoFailure) {
    addPage(L"a.tif");
    for (const ULONG code : {MAPI_USER_ABORT, MAPI_E_LOGIN_FAILURE}) {
        client.behaviour = test::returns(code);
        EXPECT_EQ(mail({pages}), 0) << code;
    }
    EXPECT_EQ(client.finished, 2);
    EXPECT_EQ(console.errors, "");
}

TEST_F(MailTargetTest, TellsWhyTheMailClientTookNothing) {
    addPage(L"a.tif");
    const std::pair<ULONG, std::string> cases[] = {
        {2, "the mail client gave no reason but Simple MAPI code 2.\n"},
        {5, "there is not enough memory (Simple MAPI code 5).\n"},
        {12, "the mail client could not open an attachment (Simple MAPI code 12).\n"},
        {26, "no mail client takes messages from programs here; --register-draft-mail provides one (Simple "
             "MAPI code 26).\n"},
        {0xFFFFFFFF, "the mail client gave no reason but Simple MAPI code -1.\n"},
    };
    int finished = 0;
    for (const auto& [code, reason] : cases) {
        client.behaviour = test::returns(code);
        console.errors.clear();
        EXPECT_EQ(mail({pages}), 1) << code;
        EXPECT_EQ(client.finished, ++finished);
        EXPECT_EQ(console.errors, notTaken + reason);
    }
}

/// The titles of the dialogs and message boxes that this thread has shown, by their windows. A window counts once,
/// however often it becomes the active one: other programs' windows may come in between.
class ShownDialogs {
public:
    ShownDialogs() { titles.clear(); }
    ~ShownDialogs() { UnhookWindowsHookEx(hook); }
    ShownDialogs(const ShownDialogs&) = delete;
    ShownDialogs& operator=(const ShownDialogs&) = delete;

    static inline std::map<HWND, std::wstring> titles;

private:
    static LRESULT CALLBACK onEvent(int code, WPARAM wParam, LPARAM lParam) {
        if (const auto window = reinterpret_cast<HWND>(wParam);
            code == HCBT_ACTIVATE && host::windowClass(window) == L"#32770")
            titles.emplace(window, host::windowText(window));
        return CallNextHookEx(nullptr, code, wParam, lParam);
    }

    HHOOK hook = SetWindowsHookExW(WH_CBT, onEvent, nullptr, GetCurrentThreadId());
};

TEST_F(MailTargetTest, ShowsThePromptUnderTheProgramsName) {
    addPage(L"a.tif");
    client.behaviour = [](const MailCall&) {
        ShownDialogs::titles.clear();
        return ULONG{MAPI_E_FAILURE};
    };
    const ShownDialogs shown;
    EXPECT_EQ(mail({pages}), 1);
    EXPECT_THAT(shown.titles, ElementsAre(Pair(_, L"scanexport")));
}

TEST_F(MailTargetTest, KeepsTheUserOutOfOtherWindowsWhileTheMailClientHasControl) {
    const test::VisibleWindow window;
    bool enabled = true;
    client.behaviour = test::meanwhile([&] { enabled = window.isEnabled(); });
    addPage(L"a.tif");
    EXPECT_EQ(mail({pages}), 0);
    EXPECT_EQ(client.finished, 1);
    EXPECT_FALSE(enabled);
    EXPECT_TRUE(window.isEnabled());
}

// The question before large attachments.

TEST_F(MailTargetTest, AsksOnTheConsoleBeforeItExceedsTheLimit) {
    addKilobyte();
    addPage(L"c.tif", "c");
    console.answers = {"y"};
    console.onAsk = [] {
        const auto isBox = [](HWND window) {
            return IsWindowVisible(window) && host::windowClass(window) == L"#32770";
        };
        bool isShown = false;
        for (HWND window = GetTopWindow(nullptr); window; window = GetWindow(window, GW_HWNDNEXT)) {
            if (GetWindowThreadProcessId(window, nullptr) == GetCurrentThreadId())
                isShown = isShown || isBox(window);
        }
        EXPECT_FALSE(isShown) << "the question can be seen in two places";
    };

    EXPECT_EQ(mail({L"--max-size", L"1", pages}), 0);

    EXPECT_EQ(console.questions,
              "The pages exceed the limit of 1 KB for one e-mail. Send them nevertheless? [y/N] \n");
    EXPECT_EQ(client.finished, 1);
    EXPECT_EQ(console.errors, "");
}

TEST_F(MailTargetTest, FailsWithASentenceWhenTheLimitMayNotBeExceeded) {
    addKilobyte();
    addPage(L"c.tif", "c");
    console.answers = {"n"};

    EXPECT_EQ(mail({L"--max-size", L"1", pages}), 1);

    EXPECT_EQ(client.finished, 0);
    EXPECT_EQ(console.errors, "scanexport: The pages exceed the limit of 1 KB for one e-mail, and the answer "
                              "was No; --yes or --max-size 0 sends them.\n");
}

TEST_F(MailTargetTest, TheLimitIsNotExceededWhereNobodyCanBeAsked) {
    addKilobyte();
    addPage(L"c.tif", "c");

    EXPECT_EQ(mail({L"--max-size=1", pages}), 1);

    EXPECT_EQ(client.finished, 0);
    EXPECT_EQ(console.questions, "");
    EXPECT_THAT(console.errors, StartsWith("scanexport: The pages exceed the limit of 1 KB"));
}

TEST_F(MailTargetTest, TheLimitIsExceededWithoutAskingWhenToldSo) {
    addKilobyte();
    addPage(L"c.tif", "c");
    console.answers = {"n"};

    EXPECT_EQ(mail({L"--max-size=1", L"--yes", pages}), 0);

    EXPECT_EQ(client.finished, 1);
    EXPECT_EQ(console.questions, "");
}

TEST_F(MailTargetTest, AsksOnlyBeyondTheLimit) {
    addKilobyte();
    for (const int free : {1, 2, 0, -1, INT_MIN, INT_MAX, 2097152, 4194304, 4194305}) {
        EXPECT_EQ(mail({L"--max-size", std::to_wstring(free), pages}), 0) << free;
    }
    EXPECT_EQ(console.errors, "");
    addPage(L"c.tif", "c");
    for (const int free : {2, 0, -1, INT_MIN, INT_MAX, 2097152, 4194304}) {
        EXPECT_EQ(mail({L"--max-size", std::to_wstring(free), pages}), 0) << free;
    }
    EXPECT_EQ(console.errors, "");
    // What the engine makes of it.
    EXPECT_EQ(mail({L"--max-size=4194305", pages}), 1);
    EXPECT_THAT(console.errors, HasSubstr("the limit of 1 KB"));
}

TEST_F(MailTargetTest, ALimitOnTheCommandLineIsForThisExportOnly) {
    addKilobyte();
    addPage(L"c.tif", "c");

    ASSERT_EQ(mail({L"--max-size=1", pages}), 1);
    EXPECT_EQ(setting(limitName), std::nullopt);
    EXPECT_EQ(mail({pages}), 0);

    rememberLimit(L"1");
    EXPECT_EQ(mail({L"--max-size=0", pages}), 0);
    EXPECT_EQ(setting(limitName), L"1");
    console.errors.clear();
    EXPECT_EQ(mail({pages}), 1);
    EXPECT_THAT(console.errors, HasSubstr("the limit of 1 KB"));
}

// Windows of the mail client.

constexpr wchar_t clientTitle[] = L"Compose";

/// A person who presses Yes in the mail client's window once it has been there longer than the pilot takes.
void CALLBACK pressYesInTime(HWND, UINT, UINT_PTR timer, DWORD) {
    static int ticks = 0;
    const HWND window = FindWindowW(L"#32770", clientTitle);
    if (!window || GetWindowThreadProcessId(window, nullptr) != GetCurrentThreadId() || ++ticks < 20)
        return;
    KillTimer(nullptr, timer);
    PostMessageW(window, WM_COMMAND, IDYES, 0);
}

ULONG codeFor(INT_PTR answer) {
    return answer == IDYES ? SUCCESS_SUCCESS : MAPI_USER_ABORT;
}

ULONG showBox(const MailCall& call) {
    return codeFor(MessageBoxW(call.owner(), L"Send\nnow?", clientTitle, MB_YESNO));
}

INT_PTR CALLBACK endWithButton(HWND dialog, UINT message, WPARAM wParam, LPARAM) {
    return message == WM_COMMAND && EndDialog(dialog, LOWORD(wParam));
}

ULONG showDialog(const MailCall& call) {
    struct {
        DLGTEMPLATE dialog{WS_POPUP | WS_VISIBLE | WS_CAPTION | DS_MODALFRAME, 0, 0, 0, 0, 100, 50};
        WORD menu = 0;
        WORD windowClass = 0;
        wchar_t title[std::size(clientTitle)] = L"Compose";
    } const layout;
    return codeFor(DialogBoxIndirectParamW(nullptr, &layout.dialog, call.owner(), endWithButton, 0));
}

class MailClientWindowTest : public MailTargetTest {
protected:
    /// Has the mail client show the window, and says how the export ended.
    int mailThrough(ULONG (*window)(const MailCall&), bool isPersonThere) {
        addPage(L"a.tif");
        surroundings.isDesktopVisible = [this, isPersonThere] {
            // Shorter than the person takes, but only now that the settings dialog is through.
            surroundings.unattendedLimit = std::chrono::milliseconds(50);
            return isPersonThere;
        };
        client.behaviour = [this, window, isPersonThere](const MailCall& call) {
            if (isPersonThere)
                SetTimer(nullptr, 0, 10, pressYesInTime);
            return code = window(call);
        };
        const int result = mail({pages});
        EXPECT_EQ(client.finished, 1);
        return result;
    }

    ULONG code = ULONG_MAX; ///< what the mail client returned
};

TEST_F(MailClientWindowTest, ABoxIsThePersons) {
    EXPECT_EQ(mailThrough(showBox, true), 0);
    EXPECT_EQ(code, SUCCESS_SUCCESS + 0u);
    EXPECT_EQ(console.errors, "");
}

TEST_F(MailClientWindowTest, ADialogIsThePersons) {
    EXPECT_EQ(mailThrough(showDialog, true), 0);
    EXPECT_EQ(code, SUCCESS_SUCCESS + 0u);
    EXPECT_EQ(console.errors, "");
}

TEST_F(MailClientWindowTest, ABoxThatNobodySeesIsDismissedAndPrinted) {
    EXPECT_EQ(mailThrough(showBox, false), 0);
    EXPECT_EQ(code, MAPI_USER_ABORT + 0u);
    EXPECT_EQ(console.errors, "scanexport: Send now?\n");
}

TEST_F(MailClientWindowTest, ADialogThatNobodySeesEndsTheExport) {
    EXPECT_EQ(mailThrough(showDialog, false), 1);
    EXPECT_EQ(code, MAPI_USER_ABORT + 0u);
    EXPECT_THAT(console.errors, AllOf(StartsWith("scanexport: The export to the mail client waited for "
                                                 "somebody who was not there: "),
                                      HasSubstr("\"Compose\"")));
}

// What cannot be exported.

TEST_F(MailTargetTest, APageThatVanishesEndsTheExportWithItsName) {
    addPage(L"a.tif");
    const std::wstring b = addPage(L"b.tif");
    addPage(L"c.tif");
    whenAtPage(1, [&] { DeleteFileW(b.c_str()); });

    EXPECT_EQ(mail({pages}), 1);

    EXPECT_EQ(console.errors,
              "scanexport: The page " + utf8(b) + " cannot be exported: it does not exist.\n");
    EXPECT_EQ(client.finished, 0);
}

TEST_F(MailTargetTest, APageThatGetsLockedEndsTheExportWithItsName) {
    const std::wstring a = addPage(L"a.tif");
    std::optional<OpenFile> lock;
    whenAtPage(1, [&] { lock.emplace(a); });

    EXPECT_EQ(mail({pages}), 1);

    EXPECT_EQ(console.errors,
              "scanexport: The page " + utf8(a) + " cannot be exported: another program is using it.\n");
}

/// Fails the component's next copy of a file.
class FailedCopy {
public:
    FailedCopy() { hook.emplace("CopyFileW", reinterpret_cast<void*>(fail), L"BasicExport.dll"); }

    /// Whether there has been one. The component is as it was then, so that it may be unloaded.
    static bool hasFailed() { return !hook; }

private:
    static BOOL WINAPI fail(const wchar_t*, const wchar_t*, BOOL) {
        hook.reset();
        return FALSE;
    }

    static inline std::optional<test::ImportHook> hook;
};

TEST_F(MailTargetTest, APageThatIsNotCopiedEndsTheExportWithItsName) {
    addPage(L"a.tif");
    const std::wstring b = addPage(L"b.tif");
    whenAtPage(2, [] { FailedCopy(); });

    EXPECT_EQ(mail({pages}), 1);

    EXPECT_TRUE(FailedCopy::hasFailed());
    EXPECT_EQ(console.errors, "scanexport: The page " + utf8(b) +
                                  " was not exported: Windows did not copy it to the temporary files.\n");
    EXPECT_EQ(client.finished, 0);
}

TEST_F(MailTargetTest, AFolderForTheCopiesThatCannotBeMadeIsToldAbout) {
    addPage(L"a.tif");
    const Person person(subjectEdit, [this](HWND dialog) {
        for (const std::wstring& name : test::namesIn(folder / L"temp"))
            EXPECT_TRUE(RemoveDirectoryW((folder / (L"temp\\" + name)).c_str()));
        PostMessageW(GetDlgItem(dialog, IDOK), BM_CLICK, 0, 0);
    });

    EXPECT_EQ(mail({L"--subject=Scan", L"--show-dialog", pages}), 1);

    EXPECT_THAT(console.errors, StartsWith("scanexport: The pages could not be attached: no folder for "
                                           "temporary files can be made: "));
    EXPECT_EQ(client.finished, 0);
}

// The dialog left to a person.

TEST_F(MailTargetTest, ThePersonsSubjectCounts) {
    addPage(L"a.tif");
    const Person person(subjectEdit, [](HWND dialog) {
        SetDlgItemTextW(dialog, subjectEdit, L"Mine");
        PostMessageW(GetDlgItem(dialog, IDOK), BM_CLICK, 0, 0);
    });

    EXPECT_EQ(mail({L"--subject=Scan", L"--show-dialog", pages}), 0);

    ASSERT_EQ(client.calls.size(), 1u);
    EXPECT_EQ(client.calls[0].subject, "Mine");
}

TEST_F(MailTargetTest, ADialogThatThePersonCancelsStopsTheExport) {
    addPage(L"a.tif");
    const Person person(subjectEdit, [](HWND dialog) { PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0); });

    EXPECT_EQ(mail({L"--subject=Scan", L"--show-dialog", pages}), 2);
    EXPECT_THAT(client.calls, IsEmpty());
    EXPECT_EQ(setting(L"Export.ToMail.Subject"), std::nullopt);
}

} // namespace
