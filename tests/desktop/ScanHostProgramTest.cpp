// ScanHost.exe as a program: its windows are used from outside, as by a person.
#include "desktop/FileData.h"
#include "host/CommandLinePath.h"
#include "host/DialogPilot.h"
#include "host/DirectoryDialogControls.h"
#include "host/HostApplication.h"
#include "host/ProgramCopy.h"
#include "host/ScanExport.h"
#include "host/Text.h"
#include "host/desktop/Commands.h"
#include "host/desktop/ExportControls.h"
#include "host/desktop/SettingsControls.h"
#include "support/ChildProcess.h"
#include "support/MessageLoop.h"
#include "support/ScopedRegistryKey.h"
#include "support/ScopedVariable.h"
#include "support/TempFolder.h"
#include "support/UnixName.h"

#include <gmock/gmock.h>

#include <windows.h>

#include <commctrl.h>

#include <functional>
#include <string>
#include <vector>

namespace {

using host::utf8;
using host::wide;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;
using Texts = std::vector<std::string>;

std::wstring textOf(HWND window) {
    std::wstring text(static_cast<std::size_t>(SendMessageW(window, WM_GETTEXTLENGTH, 0, 0)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(
        SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()))));
    return text;
}

/// The windows of a running ScanHost. What does not come within some seconds fails the test.
class RunningProgram {
public:
    explicit RunningProgram(DWORD id) : id(id), process(OpenProcess(PROCESS_ALL_ACCESS, FALSE, id)) {}
    ~RunningProgram() { CloseHandle(process); }
    RunningProgram(const RunningProgram&) = delete;
    RunningProgram& operator=(const RunningProgram&) = delete;

    HWND find(const host::DialogPilot::Match& match) const {
        HWND found = nullptr;
        EXPECT_TRUE(test::handleMessagesUntil([&] { return (found = host::windowOf(id, match)) != nullptr; }))
            << "a window is missing";
        return found;
    }

    HWND window() const {
        if (!main)
            main = find([](HWND window) {
                return FindWindowExW(window, nullptr, TOOLBARCLASSNAMEW, nullptr) != nullptr;
            });
        return main;
    }
    void command(UINT command) const { PostMessageW(window(), WM_COMMAND, command, 0); }
    void close() const { PostMessageW(window(), WM_CLOSE, 0, 0); }

    void expectPages(const wchar_t* text) const {
        const HWND bar = FindWindowExW(window(), nullptr, STATUSCLASSNAMEW, nullptr);
        EXPECT_TRUE(test::handleMessagesUntil([&] { return textOf(bar) == text; })) << utf8(textOf(bar));
    }

    /// The names on the buttons of the exports.
    Texts buttons() const {
        const HWND bar = FindWindowExW(window(), nullptr, TOOLBARCLASSNAMEW, nullptr);
        constexpr SIZE_T size = 200 * sizeof(wchar_t);
        void* const there = VirtualAllocEx(process, nullptr, size, MEM_COMMIT, PAGE_READWRITE);
        Texts names;
        const auto count = static_cast<UINT>(SendMessageW(bar, TB_BUTTONCOUNT, 0, 0));
        for (UINT i = 0; i < count; ++i) {
            SendMessageW(bar, TB_GETBUTTONTEXTW, host::commandExport + i, reinterpret_cast<LPARAM>(there));
            wchar_t name[200] = L"";
            ReadProcessMemory(process, there, name, size, nullptr);
            names.push_back(utf8(name));
        }
        VirtualFreeEx(process, there, 0, MEM_RELEASE);
        return names;
    }

    /// Closes the next message.
    std::string answerMessage() const {
        const HWND box = find(host::anyMessageBox());
        std::string text = utf8(textOf(GetDlgItem(box, 0xFFFF)));
        // A box with nothing but OK gives this button the number of Cancel.
        EXPECT_TRUE(host::click(IDCANCEL)(box) || host::click(IDOK)(box));
        EXPECT_TRUE(test::handleMessagesUntil([&] { return !IsWindow(box); }));
        return text;
    }

    void openSettingsAndChoose(const wchar_t* language) const {
        command(host::commandSettings);
        const HWND dialog = find(host::dialogWith(IDC_SETTINGS_LANGUAGE));
        const HWND list = GetDlgItem(dialog, IDC_SETTINGS_LANGUAGE);
        SendMessageW(list, CB_SELECTSTRING, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(language));
        SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(IDC_SETTINGS_LANGUAGE, CBN_SELCHANGE),
                     reinterpret_cast<LPARAM>(list));
        host::click(IDOK)(dialog);
    }

    void chooseLanguage(const wchar_t* language) const {
        openSettingsAndChoose(language);
        EXPECT_TRUE(test::handleMessagesUntil(
            [&] { return !host::windowOf(id, host::dialogWith(IDC_SETTINGS_LANGUAGE)); }));
    }

    void exportToFolder(const std::wstring& folder) const {
        command(host::commandExportAll);
        const HWND dialog = find(host::dialogWith(host::directoryDialog::pathEdit));
        const auto enter = [dialog](int control, const std::wstring& text) {
            SendMessageW(GetDlgItem(dialog, control), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
        };
        enter(host::directoryDialog::pathEdit, folder);
        enter(host::directoryDialog::prefixEdit, L"p");
        enter(host::directoryDialog::firstNumberEdit, L"1");
        enter(host::directoryDialog::digitsEdit, L"1");
        host::click(IDOK)(dialog);
        const HWND result = find(host::dialogWith(IDC_RESULT_TEXT));
        host::click(IDOK)(result);
        EXPECT_TRUE(test::handleMessagesUntil([&] { return !IsWindow(result); }));
    }

    /// Starts a thread where there is no code.
    void crash() const {
        const auto nowhere = reinterpret_cast<LPTHREAD_START_ROUTINE>(16);
        CloseHandle(CreateRemoteThread(process, nullptr, 0, nowhere, nullptr, 0, nullptr));
    }

private:
    DWORD id;
    HANDLE process;
    mutable HWND main = nullptr;
};

class ScanHostProgramTest : public testing::Test {
protected:
    ScanHostProgramTest() {
        for (const wchar_t* name : {L"temp", L"local", L"out"})
            CreateDirectoryW((folder / name).c_str(), nullptr);
    }

    unsigned run(const std::vector<std::wstring>& arguments,
                 const std::function<void(const RunningProgram&)>& use) {
        return runProgram(program, arguments, [&](DWORD id) { use(RunningProgram(id)); }).exitCode;
    }

    /// From now on runs a copy of the program that has components for tests beside it.
    void addComponents(const std::vector<std::wstring>& names) {
        CreateDirectoryW((folder / L"bin").c_str(), nullptr);
        CreateDirectoryW((folder / L"bin\\lang").c_str(), nullptr);
        test::copyPrograms(folder / L"bin", {L"ScanHost.exe", L"lang\\en.ini", L"lang\\cs.ini"});
        for (const std::wstring& name : names)
            ASSERT_TRUE(CopyFileW((host::fullPathOf(wide(TEST_COMPONENTS)) + L'\\' + name + L".dll").c_str(),
                                  (folder / L"bin\\" + name + L".dll").c_str(), FALSE));
        program = folder / L"bin\\ScanHost.exe";
    }

    std::string exported(const std::wstring& name) const { return test::readFile(folder / L"out\\" + name); }

    const test::TempFolder folder;
    const std::wstring first = folder.write(L"a.pdf", "first");
    const std::wstring second = folder.write(L"b.pdf", "second");
    const test::ScopedRegistryKey registryKey{std::wstring(L"SOFTWARE\\") +
                                              host::HostApplication::defaultBasePath};
    const test::ScopedVariable temp{L"TEMP", folder / L"temp"};
    const test::ScopedVariable tmp{L"TMP", folder / L"temp"};
    const test::ScopedVariable local{L"LOCALAPPDATA", folder / L"local"};
    std::wstring program = L"ScanHost.exe";
};

TEST_F(ScanHostProgramTest, ShowsThePagesGivenInTheLanguageGiven) {
    const unsigned exitCode = run({L"--lang", L"cs", first, second}, [](const RunningProgram& scanHost) {
        EXPECT_EQ(textOf(scanHost.window()), L"ScanHost");
        scanHost.expectPages(L"2 strany");
        EXPECT_THAT(scanHost.buttons(), ElementsAre("Export do složky", "Odeslat e-mailem", "Export do ZIP"));
        scanHost.close();
    });
    EXPECT_EQ(exitCode, 0u);
}

TEST_F(ScanHostProgramTest, TakesUnixPaths) {
    const auto path = test::unixName(first);
    // Windows takes such a path for one on the current drive.
    if (!path)
        GTEST_SKIP() << "there are none on Windows";
    run({L"--lang", L"en", wide(*path)}, [](const RunningProgram& scanHost) {
        scanHost.expectPages(L"1 page");
        scanHost.close();
    });
}

TEST_F(ScanHostProgramTest, EndsWithAMessageAtAWrongOption) {
    const unsigned exitCode = run({L"--lang", L"xx"}, [](const RunningProgram& scanHost) {
        EXPECT_THAT(scanHost.answerMessage(), HasSubstr("There is no language \"xx\"."));
    });
    EXPECT_EQ(exitCode, static_cast<unsigned>(host::exitUsage));
}

TEST_F(ScanHostProgramTest, ChangesItsLanguageAndExportsAllTheSame) {
    run({first, second}, [this](const RunningProgram& scanHost) {
        scanHost.chooseLanguage(L"Čeština");
        scanHost.expectPages(L"2 strany");
        const Texts czech = scanHost.buttons();
        scanHost.chooseLanguage(L"English");
        scanHost.expectPages(L"2 pages");
        const Texts english = scanHost.buttons();
        EXPECT_THAT(english, SizeIs(3));
        EXPECT_NE(english, czech);

        scanHost.exportToFolder(folder / L"out");
        scanHost.close();
    });
    EXPECT_EQ(exported(L"p1.pdf"), "first");
    EXPECT_EQ(exported(L"p2.pdf"), "second");
}

TEST_F(ScanHostProgramTest, RemembersItsLanguageItsPlaceAndTheOrder) {
    EXPECT_EQ(run({},
                  [](const RunningProgram& scanHost) {
                      scanHost.chooseLanguage(L"Čeština");
                      SetWindowPos(scanHost.window(), nullptr, 30, 40, 500, 450, SWP_NOZORDER);
                      scanHost.command(host::commandSortByName);
                      scanHost.close();
                  }),
              0u);

    run({second, first}, [this](const RunningProgram& scanHost) {
        RECT place{};
        GetWindowRect(scanHost.window(), &place);
        EXPECT_THAT((std::vector{place.left, place.top, place.right, place.bottom}),
                    ElementsAre(30, 40, 530, 490));
        scanHost.expectPages(L"2 strany");
        scanHost.exportToFolder(folder / L"out");
        scanHost.close();
    });
    EXPECT_EQ(exported(L"p1.pdf"), "first");
}

TEST_F(ScanHostProgramTest, HasTheTargetsOfFurtherComponentsAndTellsOfBrokenOnes) {
    addComponents({L"RefusesToStart", L"SoundComponent"});
    const unsigned exitCode = run({L"--lang", L"en", first}, [](const RunningProgram& scanHost) {
        EXPECT_THAT(scanHost.answerMessage(),
                    AllOf(HasSubstr("a component could not be loaded"), HasSubstr("RefusesToStart.dll")));
        scanHost.expectPages(L"1 page");
        const Texts buttons = scanHost.buttons();
        ASSERT_THAT(buttons, SizeIs(5));
        EXPECT_EQ(buttons[3], "first");
        EXPECT_EQ(buttons[4], "second");
        scanHost.close();
    });
    EXPECT_EQ(exitCode, 0u);
}

TEST_F(ScanHostProgramTest, LivesThroughComponentsThatFailWhileEnding) {
    addComponents({L"CrashesAtExit", L"ThrowsAtExit"});
    const unsigned exitCode = run({L"--lang", L"en", first}, [](const RunningProgram& scanHost) {
        scanHost.expectPages(L"1 page");
        scanHost.openSettingsAndChoose(L"Čeština");
        EXPECT_THAT(scanHost.answerMessage(),
                    AllOf(HasSubstr("Komponenta při ukončení selhala"), HasSubstr("ThrowsAtExit.dll"),
                          HasSubstr("CrashesAtExit.dll+0x")));
        scanHost.expectPages(L"1 strana");
        EXPECT_THAT(scanHost.buttons(), SizeIs(5));
        scanHost.close();
    });
    EXPECT_EQ(exitCode, 0u);
}

TEST_F(ScanHostProgramTest, PastesFiles) {
    ASSERT_TRUE(OpenClipboard(nullptr));
    EmptyClipboard();
    EXPECT_TRUE(SetClipboardData(CF_HDROP, test::fileData({first, second})));
    CloseClipboard();
    run({L"--lang", L"en"}, [](const RunningProgram& scanHost) {
        scanHost.command(host::commandPaste);
        scanHost.expectPages(L"2 pages");
        scanHost.close();
    });
    ASSERT_TRUE(OpenClipboard(nullptr));
    EmptyClipboard();
    CloseClipboard();
}

TEST_F(ScanHostProgramTest, TellsOfACrashInAWindow) {
    const unsigned exitCode = run({L"--lang", L"cs"}, [](const RunningProgram& scanHost) {
        scanHost.expectPages(L"0 stran");
        scanHost.crash();
        EXPECT_THAT(scanHost.answerMessage(),
                    AllOf(HasSubstr("Program se kvůli chybě musí zavřít."),
                          HasSubstr("ScanHost: Crashed with exception 0xc0000005 at")));
    });
    EXPECT_EQ(exitCode, 99u);
    EXPECT_THAT(test::readFile(folder / L"local\\Sorvane\\ScanHost\\ScanHost.log"),
                HasSubstr("ScanHost: Crashed with exception 0xc0000005 at"));
}

} // namespace
