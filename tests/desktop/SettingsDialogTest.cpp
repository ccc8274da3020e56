// The settings, operated as a person would.
#include "host/desktop/SettingsDialog.h"

#include "component/DialogFixture.h"
#include "host/ProgramFolder.h"
#include "host/ThreadLanguage.h"
#include "host/desktop/SettingsControls.h"
#include "support/AccessKeys.h"
#include "support/ClippedTexts.h"
#include "support/RawRegistry.h"
#include "support/ScopedRegistryKey.h"
#include "support/TempFolder.h"
#include "support/TestHost.h"

#include <gmock/gmock.h>

using host::SettingsDialog;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

namespace {

class SettingsDialogTest : public DialogFixture<SettingsDialog> {
protected:
    SettingsDialogTest() : DialogFixture(IDC_SETTINGS_LANGUAGE) {}

    host::SettingsTargets targets() {
        return {host::DesktopSettings(store),
                host::MailClients({{HKEY_CURRENT_USER, clients}}, dll),
                programFolder,
                MAKELANGID(LANG_CZECH, SUBLANG_DEFAULT),
                L"C:\\Logs\\ScanHost.log",
                [this] { ++languageChanges; },
                [this](const std::wstring& path) { shown.push_back(path); }};
    }

    /// Does something to the dialog that was opened, and cancels it.
    void look(std::vector<Action> actions) {
        inspect(std::move(actions), static_cast<CWnd*>(nullptr), targets());
    }
    /// The same, but for that the actions close it.
    INT_PTR operate(std::vector<Action> actions) {
        return show(std::move(actions), static_cast<CWnd*>(nullptr), targets());
    }

    void addClient(const std::wstring& key) const {
        test::writeValue(clients + L"\\" + key, L"DLLPath", {REG_SZ, test::bytesOfTerminated(L"C:\\x.dll")});
    }
    void setClient(const std::wstring& key) const {
        test::writeValue(clients, L"", {REG_SZ, test::bytesOfTerminated(key)});
    }

    static std::vector<std::wstring> entries(HWND dialog, int list) {
        std::vector<std::wstring> texts;
        const LRESULT count = SendDlgItemMessageW(dialog, list, CB_GETCOUNT, 0, 0);
        for (LRESULT i = 0; i < count; ++i) {
            wchar_t text[256] = {};
            SendDlgItemMessageW(dialog, list, CB_GETLBTEXT, static_cast<WPARAM>(i),
                                reinterpret_cast<LPARAM>(text));
            texts.emplace_back(text);
        }
        return texts;
    }

    /// Chooses an entry of a list, as the arrow keys do.
    static Action choose(int list, std::wstring entry) {
        return test::now([list, entry = std::move(entry)](HWND dialog) {
            SendDlgItemMessageW(dialog, list, CB_SELECTSTRING, static_cast<WPARAM>(-1),
                                reinterpret_cast<LPARAM>(entry.c_str()));
            EXPECT_EQ(test::controlText(dialog, list), entry);
            SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(list, CBN_SELCHANGE),
                         reinterpret_cast<LPARAM>(GetDlgItem(dialog, list)));
        });
    }

    static Action expectEnabled(int control, bool expected) {
        return test::now([control, expected](HWND dialog) {
            EXPECT_EQ(IsWindowEnabled(GetDlgItem(dialog, control)) != FALSE, expected) << control;
        });
    }

    /// Expects a message and closes it. To be called before the dialog is opened, in which it comes up.
    void expectMessage(const std::wstring& expected) {
        pilot.always(host::anyMessageBox(), [this, expected](HWND box) {
            messages.push_back(host::messageBoxText(box));
            EXPECT_EQ(messages.back(), expected);
            return host::click(IDOK)(box) || host::click(IDCANCEL)(box);
        });
    }

    test::MemoryStore store;
    const std::wstring root = L"Software\\BasicExportTest-" + std::to_wstring(GetCurrentProcessId());
    const test::ScopedRegistryKey scope{root};
    const std::wstring clients = root + L"\\Mail";
    const test::TempFolder folder;
    const std::wstring dll = folder.write(L"DraftMail.dll", "");
    std::wstring programFolder = host::programFolder();
    const host::ThreadLanguageKeeper keeper;
    int languageChanges = 0;
    std::vector<std::wstring> shown;
    std::vector<std::wstring> messages;
};

TEST_F(SettingsDialogTest, ShowsWhatIsSet) {
    store.values = {{"ScanHost.Language", "de"}, {"Export.ToMail.MaxTotalSizeInKb", "2048"}};
    addClient(L"Post");
    setClient(L"Post");
    look({test::now([](HWND dialog) {
        EXPECT_EQ(test::controlText(dialog, IDC_SETTINGS_LANGUAGE), L"Deutsch");
        EXPECT_EQ(test::controlText(dialog, IDC_SETTINGS_CLIENT), L"Post");
        EXPECT_EQ(test::controlText(dialog, IDC_SETTINGS_LIMIT), L"2048");
        EXPECT_TRUE(IsDlgButtonChecked(dialog, IDC_SETTINGS_ASK));
        EXPECT_EQ(test::controlText(dialog, IDC_SETTINGS_LOG_FILE), L"C:\\Logs\\ScanHost.log");
        EXPECT_FALSE(IsWindowEnabled(GetDlgItem(dialog, IDC_SETTINGS_APPLY)));
    })});
}

TEST_F(SettingsDialogTest, ShowsTheDefaultsWhereNothingIsSet) {
    look({test::now([](HWND dialog) {
        EXPECT_EQ(test::controlText(dialog, IDC_SETTINGS_LANGUAGE), L"As in Windows (Čeština)");
        EXPECT_EQ(test::controlText(dialog, IDC_SETTINGS_CLIENT), L"None");
        EXPECT_EQ(test::controlText(dialog, IDC_SETTINGS_LIMIT), L"");
        EXPECT_FALSE(IsDlgButtonChecked(dialog, IDC_SETTINGS_ASK));
        EXPECT_FALSE(IsWindowEnabled(GetDlgItem(dialog, IDC_SETTINGS_LIMIT)));
    })});
}

TEST_F(SettingsDialogTest, TakesBrokenSettingsForUnset) {
    store.values = {{"ScanHost.Language", "..\\xx"}, {"Export.ToMail.MaxTotalSizeInKb", "much"}};
    test::writeValue(clients, L"", {REG_DWORD, test::bytesOf(7)});
    EXPECT_EQ(operate({test::now([](HWND dialog) {
                           EXPECT_EQ(test::controlText(dialog, IDC_SETTINGS_LANGUAGE),
                                     L"As in Windows (Čeština)");
                           EXPECT_EQ(test::controlText(dialog, IDC_SETTINGS_CLIENT), L"None");
                           EXPECT_FALSE(IsDlgButtonChecked(dialog, IDC_SETTINGS_ASK));
                       }),
                       host::click(IDOK)}),
              IDOK);
    EXPECT_THAT(store.written, IsEmpty());
}

TEST_F(SettingsDialogTest, OffersEachLanguageByItsOwnName) {
    look({test::now([](HWND dialog) {
        EXPECT_THAT(entries(dialog, IDC_SETTINGS_LANGUAGE),
                    testing::UnorderedElementsAre(L"As in Windows (Čeština)", L"Čeština", L"Deutsch",
                                                  L"English", L"Español", L"Français", L"Italiano", L"Polski",
                                                  L"Slovenčina"));
    })});
}

TEST_F(SettingsDialogTest, WritesNothingWhenNothingHasChanged) {
    store.values = {{"ScanHost.Language", "de"}, {"Export.ToMail.MaxTotalSizeInKb", "2048"}};
    EXPECT_EQ(operate({host::click(IDOK)}), IDOK);
    EXPECT_THAT(store.written, IsEmpty());
    EXPECT_FALSE(test::keyExists(clients));
    EXPECT_EQ(languageChanges, 0);
}

TEST_F(SettingsDialogTest, WritesNothingWhenItIsCancelled) {
    look({choose(IDC_SETTINGS_LANGUAGE, L"Deutsch"), choose(IDC_SETTINGS_CLIENT, L"DraftMail"),
          host::click(IDC_SETTINGS_ASK)});
    EXPECT_THAT(store.written, IsEmpty());
    EXPECT_FALSE(test::keyExists(clients));
    EXPECT_EQ(languageChanges, 0);
}

TEST_F(SettingsDialogTest, StoresTheLanguage) {
    EXPECT_EQ(operate({choose(IDC_SETTINGS_LANGUAGE, L"Deutsch"), host::click(IDOK)}), IDOK);
    EXPECT_THAT(store.written, ElementsAre(Pair("ScanHost.Language", "de")));
    EXPECT_EQ(languageChanges, 1);
    EXPECT_EQ(test::hostText("Common", "Button.Cancel"), L"Abbrechen");
}

TEST_F(SettingsDialogTest, SpeaksTheAppliedLanguageAtOnce) {
    look({choose(IDC_SETTINGS_CLIENT, L"DraftMail"), choose(IDC_SETTINGS_LANGUAGE, L"Deutsch"),
          host::click(IDC_SETTINGS_APPLY), test::waitForText(IDCANCEL, L"Abbrechen"),
          test::now([this](HWND dialog) {
              EXPECT_EQ(host::windowText(dialog), L"Einstellungen");
              EXPECT_EQ(test::controlText(dialog, IDC_SETTINGS_LANGUAGE), L"Deutsch");
              EXPECT_EQ(entries(dialog, IDC_SETTINGS_LANGUAGE).front(), L"Wie in Windows (Čeština)");
              EXPECT_EQ(test::controlText(dialog, IDC_SETTINGS_CLIENT), L"DraftMail");
              EXPECT_EQ(languageChanges, 1);
          })});
}

TEST_F(SettingsDialogTest, GoesBackToTheLanguageOfWindows) {
    store.values = {{"ScanHost.Language", "de"}};
    EXPECT_EQ(operate({choose(IDC_SETTINGS_LANGUAGE, L"As in Windows (Čeština)"), host::click(IDOK)}), IDOK);
    EXPECT_THAT(store.written, ElementsAre(Pair("ScanHost.Language", "")));
    EXPECT_EQ(test::hostText("Common", "Button.Cancel"), L"Storno");
}

TEST_F(SettingsDialogTest, TellsOfALanguageThatCannotBeRead) {
    CreateDirectoryW((folder / L"lang").c_str(), nullptr);
    const std::wstring file = folder.write(L"lang\\xx.ini", "[Language]\nName=Gone\n");
    programFolder = folder.path();
    expectMessage(test::hostText("ScanHost.Settings", "Error.Language"));
    look({choose(IDC_SETTINGS_LANGUAGE, L"Gone"), test::now([&file](HWND) { DeleteFileW(file.c_str()); }),
          host::click(IDOK), [this](HWND) { return !messages.empty(); }});
    EXPECT_THAT(store.written, IsEmpty());
    EXPECT_EQ(languageChanges, 0);
}

TEST_F(SettingsDialogTest, StoresTheLimit) {
    EXPECT_EQ(operate({host::click(IDC_SETTINGS_ASK), test::waitForText(IDC_SETTINGS_LIMIT, L"10240"),
                       expectEnabled(IDC_SETTINGS_LIMIT, true), host::enterText(IDC_SETTINGS_LIMIT, L"500"),
                       expectEnabled(IDC_SETTINGS_APPLY, true), host::click(IDOK)}),
              IDOK);
    EXPECT_THAT(store.written, ElementsAre(Pair("Export.ToMail.MaxTotalSizeInKb", "500")));
}

TEST_F(SettingsDialogTest, TakesTheLimitAway) {
    store.values = {{"Export.ToMail.MaxTotalSizeInKb", "2048"}};
    EXPECT_EQ(operate({host::click(IDC_SETTINGS_ASK),
                       [](HWND dialog) { return !IsWindowEnabled(GetDlgItem(dialog, IDC_SETTINGS_LIMIT)); },
                       host::click(IDOK)}),
              IDOK);
    EXPECT_THAT(store.written, ElementsAre(Pair("Export.ToMail.MaxTotalSizeInKb", "0")));
}

TEST_F(SettingsDialogTest, RefusesALimitThatIsNone) {
    store.values = {{"Export.ToMail.MaxTotalSizeInKb", "2048"}};
    for (const wchar_t* text : {L"", L"0", L"2097152", L"9999999"}) {
        messages.clear();
        expectMessage(L"Enter a size from 1 to 2097151 KB.");
        look({host::enterText(IDC_SETTINGS_LIMIT, text), host::click(IDOK),
              [this](HWND) { return !messages.empty(); }});
    }
    EXPECT_THAT(store.written, IsEmpty());
}

TEST_F(SettingsDialogTest, MakesAClientTheDefault) {
    addClient(L"Old");
    addClient(L"Post");
    setClient(L"Old");
    EXPECT_EQ(operate({choose(IDC_SETTINGS_CLIENT, L"Post"), host::click(IDOK)}), IDOK);
    EXPECT_EQ(test::readValue(clients, L""), (test::RawValue{REG_SZ, test::bytesOfTerminated(L"Post")}));
}

TEST_F(SettingsDialogTest, TellsWhenTheProgramItselfUsesTheClientOnlyLater) {
    addClient(L"Post");
    const HMODULE library = LoadLibraryW(L"MAPI32.DLL");
    ASSERT_NE(library, nullptr);
    expectMessage(L"The mail program has been changed. ScanHost itself will use it after its next start.");
    EXPECT_EQ(operate({choose(IDC_SETTINGS_CLIENT, L"Post"), host::click(IDOK)}), IDOK);
    EXPECT_EQ(messages.size(), 1);
    EXPECT_EQ(test::readValue(clients, L""), (test::RawValue{REG_SZ, test::bytesOfTerminated(L"Post")}));
    FreeLibrary(library);
}

TEST_F(SettingsDialogTest, SaysWhatDraftMailIs) {
    addClient(L"Post");
    setClient(L"Post");
    look({test::now([](HWND dialog) {
              EXPECT_EQ(test::controlText(dialog, IDC_SETTINGS_CLIENT_NOTE),
                        test::hostText("ScanHost.Settings", "Mail.Scope"));
          }),
          choose(IDC_SETTINGS_CLIENT, L"DraftMail"), test::now([](HWND dialog) {
              EXPECT_EQ(test::controlText(dialog, IDC_SETTINGS_CLIENT_NOTE),
                        test::hostText("ScanHost.Settings", "Mail.DraftMail"));
          })});
}

TEST_F(SettingsDialogTest, OffersNoneOnlyWhereThatIsAWayBack) {
    const auto list = [](std::vector<std::wstring>& names) {
        return test::now([&names](HWND dialog) { names = entries(dialog, IDC_SETTINGS_CLIENT); });
    };
    std::vector<std::wstring> names;
    EXPECT_EQ(operate({choose(IDC_SETTINGS_CLIENT, L"DraftMail"), host::click(IDOK)}), IDOK);
    look({list(names)});
    EXPECT_THAT(names, ElementsAre(L"None", L"DraftMail"));
    addClient(L"Post");
    look({list(names)});
    EXPECT_THAT(names, ElementsAre(L"DraftMail", L"Post"));
}

TEST_F(SettingsDialogTest, GivesDraftMailUpForNone) {
    EXPECT_EQ(operate({choose(IDC_SETTINGS_CLIENT, L"DraftMail"), host::click(IDOK)}), IDOK);
    EXPECT_TRUE(test::keyExists(clients));
    EXPECT_EQ(operate({choose(IDC_SETTINGS_CLIENT, L"None"), host::click(IDOK)}), IDOK);
    EXPECT_FALSE(test::keyExists(clients));
}

TEST_F(SettingsDialogTest, TellsWhoMayChangeTheMailProgram) {
    setClient(L"Old");
    const test::RestrictedRegistryKey restricted(clients, KEY_READ);
    expectMessage(test::hostText("ScanHost.Settings", "Error.ClientDenied"));
    look({choose(IDC_SETTINGS_CLIENT, L"DraftMail"), host::click(IDOK),
          [this](HWND) { return !messages.empty(); }});
    EXPECT_EQ(messages.size(), 1);
}

TEST_F(SettingsDialogTest, TellsThatNothingCanBeStored) {
    store.readOnly = true;
    expectMessage(test::hostText("ScanHost.Settings", "Error.Store"));
    look({host::click(IDC_SETTINGS_ASK), test::waitForText(IDC_SETTINGS_LIMIT, L"10240"), host::click(IDOK),
          [this](HWND) { return !messages.empty(); }});
}

TEST_F(SettingsDialogTest, AppliesAndGoesOn) {
    store.values = {{"Export.ToMail.MaxTotalSizeInKb", "2048"}};
    look({host::enterText(IDC_SETTINGS_LIMIT, L"500"), host::click(IDC_SETTINGS_APPLY),
          [this](HWND) { return !store.written.empty(); }});
    EXPECT_THAT(store.written, ElementsAre(Pair("Export.ToMail.MaxTotalSizeInKb", "500")));
}

TEST_F(SettingsDialogTest, ShowsTheLogInItsFolder) {
    look({host::click(IDC_SETTINGS_LOG_SHOW), [this](HWND) { return !shown.empty(); }});
    EXPECT_THAT(shown, ElementsAre(L"C:\\Logs\\ScanHost.log"));
}

TEST_F(SettingsDialogTest, IsWalkedThroughInItsOrder) {
    store.values = {{"Export.ToMail.MaxTotalSizeInKb", "2048"}};
    look({test::withFocus([](HWND dialog) {
        EXPECT_THAT(test::focusedByTab(dialog, 8),
                    ElementsAre(IDC_SETTINGS_LANGUAGE, IDC_SETTINGS_CLIENT, IDC_SETTINGS_ASK,
                                IDC_SETTINGS_LIMIT, IDC_SETTINGS_LOG_FILE, IDC_SETTINGS_LOG_SHOW, IDOK,
                                IDCANCEL, IDC_SETTINGS_LANGUAGE));
    })});
}

TEST_F(SettingsDialogTest, EscCancels) {
    EXPECT_EQ(operate({test::withFocus([](HWND) { test::pressKey(GetFocus(), VK_ESCAPE); })}), IDCANCEL);
}

class SettingsDialogLanguageTest : public SettingsDialogTest,
                                   public testing::WithParamInterface<std::wstring> {
protected:
    void SetUp() override { test::loadLanguage(GetParam()); }
};

INSTANTIATE_TEST_SUITE_P(Languages, SettingsDialogLanguageTest, testing::ValuesIn(test::languageFiles()),
                         languageName);

TEST_P(SettingsDialogLanguageTest, ClipsNoText) {
    addClient(L"Post");
    setClient(L"Post");
    const Action expectNone =
        test::now([](HWND dialog) { EXPECT_THAT(test::clippedTexts(dialog), IsEmpty()); });
    look({expectNone, choose(IDC_SETTINGS_CLIENT, L"DraftMail"), expectNone});
}

TEST_P(SettingsDialogLanguageTest, HasAnAccessKeyForEachControl) {
    look({test::now([](HWND dialog) { EXPECT_THAT(test::wrongAccessKeys(dialog), IsEmpty()); })});
}

} // namespace
