// The main window, driven by its commands as menus, buttons and shortcuts send them.
#include "host/desktop/MainWindow.h"

#include "SorvaneCommon/ExportUtils/ExportEngineBase.h"
#include "SorvaneCommon/ExportUtils/ExportFactoryBase.h"
#include "bxbase/ReferencedImpl.h"
#include "desktop/FileData.h"
#include "host/CommandLinePath.h"
#include "host/DialogPilot.h"
#include "host/HostApplication.h"
#include "host/LogFile.h"
#include "host/ProgramFolder.h"
#include "host/Text.h"
#include "host/desktop/Commands.h"
#include "host/desktop/ComponentFolder.h"
#include "host/desktop/ExportControls.h"
#include "support/AccessKeys.h"
#include "support/DialogInspection.h"
#include "support/FileBrowsing.h"
#include "support/HostTexts.h"
#include "support/MessageLoop.h"
#include "support/ScopedRegistryKey.h"
#include "support/TempFolder.h"
#include "version.h"

#include <gmock/gmock.h>

#include <commctrl.h>
#include <ole2.h>

#include <functional>
#include <string>
#include <vector>

namespace {

using host::MainWindow;
using host::utf8;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using Names = std::vector<std::wstring>;

/// What the engines of a target do and got.
struct Target {
    Names names;                  ///< of the pages of the last export
    std::function<void()> during; ///< called at each page
};

class RecordingEngine : public ExportUtils::ExportEngineBase {
public:
    explicit RecordingEngine(Target& target) : target(target) {}

    bool showDialog() override {
        target.names.clear();
        return true;
    }

    int exportData(void*, ExportErrorSink& errors) override {
        for (const auto& page : pages) {
            std::wstring path;
            if (!page->getFilePath(path)) {
                errors.reportError("tests/desktop/MainWindowTest", __LINE__, "no data");
                return 1;
            }
            target.names.push_back(path.substr(path.find_last_of(L'\\') + 1));
            if (target.during)
                target.during();
        }
        return 0;
    }

private:
    Target& target;
};

class RecordingFactory : public ExportUtils::ExportFactoryBase {
public:
    explicit RecordingFactory(Target& target) : target(target) { name = "Fish & chips"; }

    const char* getId() const override { return "recording"; }
    bool isAvailable() const override { return true; }
    bool createEngine(CWnd*, bxbase::Reference<SorvaneCommon::ExportEngine>& engine) override {
        engine = bxbase::Reference<SorvaneCommon::ExportEngine>(
            new bxbase::ReferencedImpl<RecordingEngine>(target));
        return true;
    }

private:
    Target& target;
};

class MainWindowTest : public testing::Test {
protected:
    MainWindowTest() {
        test::loadLanguage(L"en.ini");
        const bxbase::Reference<RecordingFactory> factory(
            new bxbase::ReferencedImpl<RecordingFactory>(target));
        manager.registerFactory(factory.get());
    }

    void open() {
        // The window of the test before has told the thread to end.
        command(0);
        ASSERT_TRUE(window.create());
        window.setTexts();
        window.showFirst(SW_SHOWNORMAL);
    }

    void addPages(const Names& names) {
        Names paths;
        for (const std::wstring& name : names)
            paths.push_back(folder.write(name, "%PDF-1.4"));
        addPaths(paths);
    }

    void addPaths(const Names& paths) {
        window.add(paths);
        waitUntilAdded();
    }

    void paste(const std::wstring& path) {
        ASSERT_TRUE(OpenClipboard(window));
        EmptyClipboard();
        EXPECT_TRUE(SetClipboardData(CF_HDROP, test::fileData({path})));
        CloseClipboard();
        command(host::commandPaste);
        waitUntilAdded();
    }

    void waitUntilAdded() {
        EXPECT_TRUE(test::handleMessagesUntil([this] { return !statusPart(0).starts_with(L"Adding"); }));
    }

    bool isInSight(std::size_t index) const {
        CRect icon;
        icon.left = LVIR_ICON;
        SendMessageW(list(), LVM_GETITEMRECT, index, reinterpret_cast<LPARAM>(&icon));
        CRect client;
        GetClientRect(list(), &client);
        return client.PtInRect(icon.CenterPoint());
    }

    /// What the menu's entry and the shortcut send; waits until the view has told of a changed selection.
    void command(UINT id) {
        window.SendMessage(WM_COMMAND, id);
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
            DispatchMessageW(&message);
    }

    /// Lets the export's last window be closed.
    void exportWith(UINT id) {
        host::DialogPilot pilot(std::chrono::seconds(20));
        pilot.then("the result", host::dialogWith(IDC_RESULT_TEXT), host::click(IDOK));
        command(id);
        EXPECT_TRUE(pilot.succeeded()) << pilot.failure();
    }

    CRect placeOfTheNext() {
        MainWindow next(manager, host::DesktopSettings(*application.getSettingsStore()));
        EXPECT_TRUE(next.create());
        next.setTexts();
        next.showFirst(SW_SHOWNORMAL);
        CRect rect;
        next.GetWindowRect(rect);
        return rect;
    }

    /// Exports, answers the question that comes meanwhile, and returns what the last window says.
    std::wstring exportAnswering(int answer) {
        std::wstring result;
        host::DialogPilot pilot(std::chrono::seconds(20));
        pilot.then("the question", host::anyMessageBox(), host::click(answer));
        pilot.then("the result", host::dialogWith(IDC_RESULT_TEXT), [&result](HWND dialog) {
            result = host::windowText(GetDlgItem(dialog, IDC_RESULT_TEXT));
            return host::click(IDOK)(dialog);
        });
        command(host::commandExport);
        EXPECT_TRUE(pilot.succeeded()) << pilot.failure();
        return result;
    }

    HWND child(const wchar_t* className) const { return FindWindowExW(window, nullptr, className, nullptr); }

    HWND list() const {
        for (HWND pane = GetWindow(window, GW_CHILD); pane; pane = GetWindow(pane, GW_HWNDNEXT))
            if (const HWND found = FindWindowExW(pane, nullptr, WC_LISTVIEWW, nullptr))
                return found;
        return nullptr;
    }

    void select(std::size_t first, std::size_t end) {
        LVITEMW item{};
        item.stateMask = LVIS_SELECTED;
        SendMessageW(list(), LVM_SETITEMSTATE, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&item));
        item.state = LVIS_SELECTED;
        for (std::size_t i = first; i < end; ++i)
            SendMessageW(list(), LVM_SETITEMSTATE, i, reinterpret_cast<LPARAM>(&item));
        command(0);
    }

    std::wstring statusPart(WPARAM part) const {
        wchar_t text[200] = L"";
        SendMessageW(child(STATUSCLASSNAMEW), SB_GETTEXTW, part, reinterpret_cast<LPARAM>(text));
        return text;
    }

    bool isButtonEnabled(UINT id) const {
        return SendMessageW(child(TOOLBARCLASSNAMEW), TB_ISBUTTONENABLED, id, 0) != 0;
    }

    std::wstring buttonText(int index) const {
        TBBUTTON button{};
        SendMessageW(child(TOOLBARCLASSNAMEW), TB_GETBUTTON, static_cast<WPARAM>(index),
                     reinterpret_cast<LPARAM>(&button));
        wchar_t text[200] = L"";
        SendMessageW(child(TOOLBARCLASSNAMEW), TB_GETBUTTONTEXTW, static_cast<WPARAM>(button.idCommand),
                     reinterpret_cast<LPARAM>(text));
        return text;
    }

    static void openMenus(const MainWindow& window, HMENU menu) {
        for (int i = 0; i < GetMenuItemCount(menu); ++i) {
            if (const HMENU popup = GetSubMenu(menu, i)) {
                window.SendMessage(WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(popup));
                openMenus(window, popup);
            }
        }
    }

    /// The state of a command in the menu once this has been opened.
    static UINT menuState(const MainWindow& window, UINT id) {
        const HMENU bar = GetMenu(window);
        openMenus(window, bar);
        return GetMenuState(bar, id, MF_BYCOMMAND);
    }

    /// Whether the menu offers a command now.
    bool isOffered(UINT id) const {
        const UINT state = menuState(window, id);
        return state != static_cast<UINT>(-1) && !(state & MF_GRAYED);
    }

    static bool isTicked(const MainWindow& window, UINT id) {
        const UINT state = menuState(window, id);
        return state != static_cast<UINT>(-1) && (state & MF_CHECKED);
    }
    bool isTicked(UINT id) const { return isTicked(window, id); }

    const test::TempFolder folder;
    const std::wstring basePath = L"BasicExportTests\\window-" + std::to_wstring(GetCurrentProcessId());
    const test::ScopedRegistryKey registryKey{L"SOFTWARE\\" + basePath};
    host::HostApplication application{basePath};
    Target target;
    host::EnginesManager manager;
    MainWindow window{manager, host::DesktopSettings(*application.getSettingsStore())};
};

TEST_F(MainWindowTest, HasAButtonForEachTargetOfEveryComponent) {
    host::EnginesManager& targets = manager;
    const host::ComponentFolder product(host::programFolder(), targets);
    const host::ComponentModule another(
        host::fullPathOf(host::wide(TEST_COMPONENTS)) + L"\\SoundComponent.dll", targets);
    open();

    ASSERT_EQ(SendMessageW(child(TOOLBARCLASSNAMEW), TB_BUTTONCOUNT, 0, 0), 6);
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(utf8(buttonText(i)), targets.getFactories()[static_cast<std::size_t>(i)]->getName());
    TBBUTTON button{};
    SendMessageW(child(TOOLBARCLASSNAMEW), TB_GETBUTTON, 5, reinterpret_cast<LPARAM>(&button));
    EXPECT_EQ(button.iBitmap, I_IMAGENONE) << "this target has no icon";
}

TEST_F(MainWindowTest, ExportsOnlyWhenThereArePages) {
    open();
    EXPECT_FALSE(isButtonEnabled(host::commandExport));
    EXPECT_FALSE(isOffered(host::commandExport));

    addPages({L"a.pdf"});

    EXPECT_TRUE(isButtonEnabled(host::commandExport));
    EXPECT_TRUE(isOffered(host::commandExport));
    EXPECT_FALSE(isOffered(host::commandExportSelected)) << "none is selected";
}

TEST_F(MainWindowTest, OffersNoTargetThatIsNotAvailable) {
    const host::ComponentModule component(
        host::fullPathOf(host::wide(TEST_COMPONENTS)) + L"\\SoundComponent.dll", manager);
    open();
    addPages({L"a.pdf"});

    EXPECT_TRUE(isButtonEnabled(host::commandExport));
    EXPECT_FALSE(isButtonEnabled(host::commandExport + 1));
}

TEST_F(MainWindowTest, SaysHowManyPagesThereAreAndWhichAnExportTakes) {
    open();
    EXPECT_EQ(statusPart(0), L"0 pages");
    EXPECT_EQ(statusPart(1), L"");

    addPages({L"a.pdf", L"b.pdf", L"c.pdf"});
    EXPECT_EQ(statusPart(0), L"3 pages");
    EXPECT_EQ(statusPart(1), L"To export: all 3 pages");

    select(0, 1);
    EXPECT_EQ(statusPart(0), L"3 pages, 1 selected");
    EXPECT_EQ(statusPart(1), L"To export: all 3 pages");

    select(1, 3);
    EXPECT_EQ(statusPart(0), L"3 pages, 2 selected");
    EXPECT_EQ(statusPart(1), L"To export: 2 selected pages");
}

TEST_F(MainWindowTest, ExportsWhatTheStatusBarSaysUnlessToldOtherwise) {
    open();
    addPages({L"a.pdf", L"b.pdf", L"c.pdf"});

    select(0, 1);
    exportWith(host::commandExport);
    EXPECT_THAT(target.names, ElementsAre(L"a.pdf", L"b.pdf", L"c.pdf"));
    exportWith(host::commandExportSelected);
    EXPECT_THAT(target.names, ElementsAre(L"a.pdf"));

    select(1, 3);
    exportWith(host::commandExport);
    EXPECT_THAT(target.names, ElementsAre(L"b.pdf", L"c.pdf"));
    exportWith(host::commandExportAll);
    EXPECT_THAT(target.names, ElementsAre(L"a.pdf", L"b.pdf", L"c.pdf"));
}

TEST_F(MainWindowTest, PutsPagesInOrderAndRemovesThem) {
    open();
    addPages({L"b.pdf", L"a.pdf", L"c.pdf"});

    command(host::commandSortByName);
    select(0, 1);
    command(host::commandMoveForward);
    exportWith(host::commandExportAll);
    EXPECT_THAT(target.names, ElementsAre(L"b.pdf", L"a.pdf", L"c.pdf"));

    command(host::commandMoveForward);
    EXPECT_FALSE(isOffered(host::commandMoveForward)) << "it is the last one already";
    command(host::commandMoveBack);
    command(host::commandRemove);
    exportWith(host::commandExportAll);
    EXPECT_THAT(target.names, ElementsAre(L"b.pdf", L"c.pdf"));

    command(host::commandSelectAll);
    command(host::commandRemove);
    EXPECT_EQ(statusPart(0), L"0 pages");
    EXPECT_FALSE(isOffered(host::commandRemove));
}

TEST_F(MainWindowTest, RemovesOnePageAfterTheOther) {
    open();
    addPages({L"a.pdf", L"b.pdf", L"c.pdf", L"d.pdf"});
    select(1, 2);
    command(host::commandRemove);
    EXPECT_EQ(statusPart(0), L"3 pages, 1 selected");
    command(host::commandRemove);
    exportWith(host::commandExportAll);
    EXPECT_THAT(target.names, ElementsAre(L"a.pdf", L"d.pdf"));
    command(host::commandRemove);
    command(host::commandRemove);
    EXPECT_EQ(statusPart(0), L"0 pages");
}

TEST_F(MainWindowTest, KeepsThePagesInTheOrderChosen) {
    open();
    addPages({L"c.pdf", L"a.pdf"});
    EXPECT_TRUE(isTicked(host::commandOwnOrder));

    command(host::commandSortByName);
    EXPECT_TRUE(isTicked(host::commandSortByName));
    EXPECT_FALSE(isTicked(host::commandOwnOrder));
    addPages({L"b.pdf"});
    exportWith(host::commandExportAll);
    EXPECT_THAT(target.names, ElementsAre(L"a.pdf", L"b.pdf", L"c.pdf"));

    command(host::commandOwnOrder);
    addPages({L"_.pdf"});
    exportWith(host::commandExportAll);
    EXPECT_THAT(target.names, ElementsAre(L"a.pdf", L"b.pdf", L"c.pdf", L"_.pdf"));
}

TEST_F(MainWindowTest, LeavesTheOrderToThePersonWhoMovesPages) {
    open();
    addPages({L"b.pdf", L"a.pdf"});
    command(host::commandSortByName);
    select(0, 1);
    command(host::commandMoveForward);
    EXPECT_TRUE(isTicked(host::commandOwnOrder));

    select(0, 0);
    addPages({L"_.pdf"});
    exportWith(host::commandExportAll);
    EXPECT_THAT(target.names, ElementsAre(L"b.pdf", L"a.pdf", L"_.pdf"));
}

TEST_F(MainWindowTest, TakesBackWhatWasDoneToThePagesAndDoesItAgain) {
    open();
    addPages({L"a.pdf", L"b.pdf", L"c.pdf"});
    select(1, 2);
    command(host::commandRemove);
    command(host::commandUndo);
    EXPECT_EQ(statusPart(0), L"3 pages, 1 selected") << "what came back is selected";
    command(host::commandMoveForward);
    exportWith(host::commandExportAll);
    EXPECT_THAT(target.names, ElementsAre(L"a.pdf", L"c.pdf", L"b.pdf"));
    EXPECT_FALSE(isOffered(host::commandRedo)) << "something else was done since";

    command(host::commandUndo);
    exportWith(host::commandExportAll);
    EXPECT_THAT(target.names, ElementsAre(L"a.pdf", L"b.pdf", L"c.pdf"));
    command(host::commandRedo);
    EXPECT_FALSE(isOffered(host::commandRedo));
    exportWith(host::commandExportAll);
    EXPECT_THAT(target.names, ElementsAre(L"a.pdf", L"c.pdf", L"b.pdf"));
}

TEST_F(MainWindowTest, ShowsWhatCameBack) {
    open();
    addPages(Names(100, L"a.pdf"));
    select(99, 100);
    command(host::commandRemove);
    select(0, 1);
    SendMessageW(list(), LVM_ENSUREVISIBLE, 0, FALSE);
    command(host::commandUndo);
    EXPECT_TRUE(isInSight(99));
}

TEST_F(MainWindowTest, TakesBackAnOrderTogetherWithTheSorting) {
    open();
    addPages({L"b.pdf", L"a.pdf"});
    command(host::commandSortByName);
    command(host::commandUndo);
    EXPECT_TRUE(isTicked(host::commandOwnOrder));

    addPages({L"_.pdf"});
    exportWith(host::commandExportAll);
    EXPECT_THAT(target.names, ElementsAre(L"b.pdf", L"a.pdf", L"_.pdf"));
}

TEST_F(MainWindowTest, TakesBackAllThatWasAddedInOneStep) {
    open();
    EXPECT_FALSE(isOffered(host::commandUndo));
    command(host::commandSortByName);
    const std::wstring path = folder.write(L"a.pdf", "%PDF-1.4");
    window.add(Names(500, path));
    ASSERT_TRUE(
        test::handleMessagesUntil([this] { return statusPart(0) != L"Adding pages… 0 pages so far"; }));
    EXPECT_FALSE(isOffered(host::commandUndo)) << "pages are still being added";
    waitUntilAdded();

    command(host::commandUndo);
    EXPECT_EQ(statusPart(0), L"0 pages");
    EXPECT_FALSE(isOffered(host::commandUndo));
    command(host::commandRedo);
    EXPECT_EQ(statusPart(0), L"500 pages, 500 selected");
}

TEST_F(MainWindowTest, HasTheOrderOfTheLastTime) {
    open();
    command(host::commandSortByDate);

    MainWindow next(manager, host::DesktopSettings(*application.getSettingsStore()));
    ASSERT_TRUE(next.create());
    next.setTexts();
    EXPECT_TRUE(isTicked(next, host::commandSortByDate));
}

TEST_F(MainWindowTest, AddsAtTheEndAndPastesBehindTheSelectedPages) {
    open();
    addPages({L"a.pdf", L"z.pdf"});
    select(0, 1);
    addPages({L"end.pdf"});
    paste(folder.write(L"b.pdf", "%PDF-1.4"));

    exportWith(host::commandExportAll);
    EXPECT_THAT(target.names, ElementsAre(L"a.pdf", L"b.pdf", L"z.pdf", L"end.pdf"));
}

TEST_F(MainWindowTest, ShowsTheFirstPageThatHasBeenAdded) {
    open();
    addPages(Names(100, L"a.pdf"));
    EXPECT_FALSE(isInSight(99));

    addPages({L"b.pdf"});
    EXPECT_TRUE(isInSight(100));
    select(0, 1);
    paste(folder / L"b.pdf");
    EXPECT_TRUE(isInSight(1));
}

TEST_F(MainWindowTest, TellsOnceWhatItLeftOut) {
    open();
    std::vector<std::wstring> told;
    host::DialogPilot pilot(std::chrono::seconds(20));
    pilot.always(host::anyMessageBox(), [&told](HWND box) {
        told.push_back(host::messageBoxText(box));
        return host::click(IDOK)(box);
    });
    CreateDirectoryW((folder / L"scans").c_str(), nullptr);
    folder.write(L"scans\\a.pdf", "%PDF-1.4");
    folder.write(L"scans\\notes.txt", "text");

    addPaths({folder / L"scans", folder / L"missing.pdf"});

    ASSERT_EQ(told.size(), 1);
    EXPECT_THAT(utf8(told[0]), testing::StartsWith("2 items were not added:"));
    EXPECT_THAT(utf8(told[0]), HasSubstr("notes.txt\nThis is neither an image nor a PDF file."));
    EXPECT_THAT(utf8(told[0]), HasSubstr("missing.pdf\nThe file or folder does not exist."));
    EXPECT_EQ(statusPart(0), L"1 page");
}

TEST_F(MainWindowTest, AsksBeforeItStopsAnExportToClose) {
    open();
    addPages({L"a.pdf", L"b.pdf"});
    for (const int answer : {IDNO, IDYES}) {
        std::wstring question;
        target.during = [&] {
            if (question.empty())
                window.SendMessage(WM_CLOSE);
        };
        host::DialogPilot pilot(std::chrono::seconds(20));
        pilot.then("the question", host::anyMessageBox(), [&](HWND box) {
            question = host::messageBoxText(box);
            return host::click(answer)(box);
        });
        pilot.then("the result", host::dialogWith(IDC_RESULT_TEXT), host::click(IDOK));
        command(host::commandExport);

        EXPECT_TRUE(pilot.succeeded()) << pilot.failure();
        EXPECT_EQ(question, L"An export is running. Do you want to stop it and close the program?");
        EXPECT_EQ(target.names.size(), answer == IDNO ? 2 : 1);
        EXPECT_EQ(IsWindow(window) != FALSE, answer == IDNO);
    }
}

TEST_F(MainWindowTest, AnswersTheButtonThatClosesItBetweenTwoPages) {
    struct Way {
        UINT message;
        WPARAM wParam;
        int answer;
    };
    open();
    addPages({L"a.pdf", L"b.pdf", L"c.pdf"});
    for (const Way& way : {Way{WM_NCLBUTTONDOWN, HTCLOSE, IDNO}, Way{WM_SYSCOMMAND, SC_CLOSE, IDNO},
                           Way{WM_CLOSE, 0, IDNO}, Way{WM_SYSCOMMAND, SC_CLOSE, IDYES}}) {
        target.during = [&] {
            if (target.names.size() == 1)
                window.PostMessage(way.message, way.wParam);
        };
        const std::wstring result = exportAnswering(way.answer);

        EXPECT_EQ(target.names.size(), way.answer == IDNO ? 3 : 1);
        EXPECT_TRUE(result.starts_with(way.answer == IDNO ? L"3 pages have been exported."
                                                          : L"The export was stopped."));
        EXPECT_EQ(IsWindow(window) != FALSE, way.answer == IDNO);
    }
}

TEST_F(MainWindowTest, FailsAsSuchAfterANoToClosing) {
    open();
    addPages({L"a.pdf", L"b.pdf"});
    target.during = [&] {
        window.PostMessage(WM_CLOSE);
        DeleteFileW((folder / L"b.pdf").c_str());
    };
    EXPECT_THAT(utf8(exportAnswering(IDNO)), Not(HasSubstr("stopped")));
}

TEST_F(MainWindowTest, OffersNothingButItsEndDuringAnExport) {
    open();
    addPages({L"a.pdf"});
    select(0, 1);
    int offered = 0;
    target.during = [&] {
        for (const UINT id : {host::commandAddFiles, host::commandRemove, host::commandSettings})
            offered += isOffered(id);
        EXPECT_TRUE(isOffered(host::commandExit));
    };
    exportWith(host::commandExport);
    EXPECT_EQ(offered, 0);
    EXPECT_TRUE(isOffered(host::commandSettings));
}

TEST_F(MainWindowTest, StaysWhileADialogOfItsIsOpen) {
    open();
    host::DialogPilot pilot(std::chrono::seconds(20));
    pilot.then("the text about the program", host::anyMessageBox(), [this](HWND box) {
        window.SendMessage(WM_CLOSE);
        EXPECT_TRUE(IsWindow(window));
        return host::click(IDOK)(box);
    });
    command(host::commandAbout);
    EXPECT_TRUE(pilot.succeeded()) << pilot.failure();

    window.SendMessage(WM_CLOSE);
    EXPECT_FALSE(IsWindow(window));
}

TEST_F(MainWindowTest, IsWhereItWasTheLastTime) {
    open();
    window.MoveWindow(CRect(40, 50, 640, 550));
    window.SendMessage(WM_CLOSE);
    EXPECT_THAT(test::edges(placeOfTheNext()), ElementsAre(40, 50, 640, 550));
}

TEST_F(MainWindowTest, IsWhereItWasWhenTheSessionEnded) {
    open();
    window.MoveWindow(CRect(40, 50, 640, 550));
    window.SendMessage(WM_ENDSESSION, TRUE, ENDSESSION_LOGOFF);
    EXPECT_THAT(test::edges(placeOfTheNext()), ElementsAre(40, 50, 640, 550));
}

TEST_F(MainWindowTest, GoesBetweenTheButtonsAndThePagesWithTheKeyboard) {
    open();
    addPages({L"a.pdf"});
    const HWND bar = child(TOOLBARCLASSNAMEW);

    window.SetFocus();
    EXPECT_EQ(GetFocus(), list());
    command(host::commandNextPane);
    EXPECT_EQ(GetFocus(), bar);
    EXPECT_EQ(SendMessageW(bar, TB_GETHOTITEM, 0, 0), 0);
    command(host::commandNextPane);
    EXPECT_EQ(GetFocus(), list());
}

TEST_F(MainWindowTest, PressesAButtonWithTheKeyboard) {
    open();
    addPages({L"a.pdf"});
    const HWND bar = child(TOOLBARCLASSNAMEW);
    SetFocus(bar);

    host::DialogPilot pilot(std::chrono::seconds(20));
    pilot.then("the result", host::dialogWith(IDC_RESULT_TEXT), host::click(IDOK));
    SendMessageW(bar, WM_KEYDOWN, VK_RETURN, 0);
    EXPECT_TRUE(test::handleMessagesUntil([&] { return pilot.succeeded(); })) << pilot.failure();
    EXPECT_THAT(target.names, ElementsAre(L"a.pdf"));
}

TEST_F(MainWindowTest, HasTheFocusOnTheButtonsAgainAfterAnExportThatTookItAway) {
    open();
    addPages({L"a.pdf"});
    const HWND bar = child(TOOLBARCLASSNAMEW);
    SetFocus(bar);
    // As an export to e-mail does.
    target.during = [this] {
        SetFocus(nullptr);
        SetActiveWindow(nullptr);
        window.SetActiveWindow();
        window.SetFocus();
    };

    exportWith(host::commandExport);

    EXPECT_EQ(GetFocus(), bar);
}

TEST_F(MainWindowTest, DoesWhatAShortcutSays) {
    open();
    addPages({L"a.pdf", L"b.pdf"});
    BYTE keys[256] = {};
    keys[VK_CONTROL] = 0x80;
    SetKeyboardState(keys);
    MSG message{list(), WM_KEYDOWN, 'A', 0, 0, {}};
    EXPECT_TRUE(window.translate(message));
    keys[VK_CONTROL] = 0;
    SetKeyboardState(keys);
    command(0);
    EXPECT_EQ(statusPart(0), L"2 pages, 2 selected");

    message.wParam = VK_DELETE;
    EXPECT_TRUE(window.translate(message));
    EXPECT_EQ(statusPart(0), L"0 pages");

    keys[VK_CONTROL] = 0x80;
    SetKeyboardState(keys);
    message.wParam = 'Z';
    EXPECT_TRUE(window.translate(message));
    keys[VK_CONTROL] = 0;
    SetKeyboardState(keys);
    command(0);
    EXPECT_EQ(statusPart(0), L"2 pages, 2 selected");
}

TEST_F(MainWindowTest, OpensThePageThatIsDoubleClicked) {
    open();
    addPages({L"a.pdf", L"b.pdf"});
    std::vector<std::wstring> opened;
    window.whenPageWanted = [&opened](const std::wstring& path) { opened.push_back(path); };
    EXPECT_FALSE(isOffered(host::commandOpen)) << "none is selected";

    CRect icon;
    icon.left = LVIR_ICON;
    SendMessageW(list(), LVM_GETITEMRECT, 1, reinterpret_cast<LPARAM>(&icon));
    const CPoint middle = icon.CenterPoint();
    const LPARAM place = MAKELPARAM(middle.x, middle.y);
    PostMessageW(list(), WM_LBUTTONUP, 0, place);
    SendMessageW(list(), WM_LBUTTONDOWN, MK_LBUTTON, place);
    PostMessageW(list(), WM_LBUTTONUP, 0, place);
    SendMessageW(list(), WM_LBUTTONDBLCLK, MK_LBUTTON, place);
    EXPECT_TRUE(test::handleMessagesUntil([&] { return !opened.empty(); }));
    EXPECT_THAT(opened, ElementsAre(folder / L"b.pdf"));

    EXPECT_TRUE(isOffered(host::commandOpen));
    SendMessageW(list(), WM_KEYDOWN, VK_RETURN, 0);
    EXPECT_TRUE(test::handleMessagesUntil([&] { return opened.size() == 2; }));
}

TEST_F(MainWindowTest, TakesThePlaceThatSuitsAnotherResolution) {
    open();
    const HWND status = child(STATUSCLASSNAMEW);
    const auto fontBefore = SendMessageW(status, WM_GETFONT, 0, 0);
    RECT suggested{20, 30, 720, 560};
    window.SendMessage(WM_DPICHANGED, MAKEWPARAM(144, 144), reinterpret_cast<LPARAM>(&suggested));

    CRect rect;
    window.GetWindowRect(rect);
    EXPECT_EQ(rect, CRect(20, 30, 720, 560));
    EXPECT_NE(SendMessageW(status, WM_GETFONT, 0, 0), fontBefore);
    const HWND view = GetParent(list());
    CRect client;
    window.GetClientRect(client);
    CRect pages;
    CRect line;
    GetWindowRect(view, pages);
    GetWindowRect(status, line);
    EXPECT_EQ(pages.Width(), client.Width());
    EXPECT_EQ(pages.bottom, line.top);
}

TEST_F(MainWindowTest, SaysInATipWhichPagesAButtonExports) {
    open();
    addPages({L"a.pdf", L"b.pdf"});
    const HWND bar = child(TOOLBARCLASSNAMEW);
    wchar_t text[200] = L"";
    NMTBGETINFOTIPW tip{};
    tip.hdr = {bar, static_cast<UINT_PTR>(GetDlgCtrlID(bar)), static_cast<UINT>(TBN_GETINFOTIPW)};
    tip.pszText = text;
    tip.cchTextMax = 200;
    tip.iItem = host::commandExport;
    window.SendMessage(WM_NOTIFY, tip.hdr.idFrom, reinterpret_cast<LPARAM>(&tip));
    EXPECT_EQ(utf8(text), "Fish & chips (Ctrl+1)\nTo export: all 2 pages");
}

TEST_F(MainWindowTest, AddsTheFilesAndFoldersChosenInDialogs) {
    ASSERT_TRUE(SUCCEEDED(OleInitialize(nullptr)));
    open();
    const std::wstring file = folder.write(L"a.pdf", "%PDF-1.4");
    CreateDirectoryW((folder / L"scans").c_str(), nullptr);
    folder.write(L"scans\\b.pdf", "%PDF-1.4");
    folder.write(L"scans\\c.pdf", "%PDF-1.4");

    host::DialogPilot pilot(std::chrono::seconds(20));
    pilot.then("the files", test::fileDialog(), test::typeFileName(file));
    command(host::commandAddFiles);
    EXPECT_TRUE(test::handleMessagesUntil([this] { return statusPart(0) == L"1 page"; }));
    pilot.then("the folders", test::fileDialog(), test::typeFileName(folder / L"scans"));
    command(host::commandAddFolder);
    EXPECT_TRUE(test::handleMessagesUntil([this] { return statusPart(0) == L"3 pages"; }));
    EXPECT_TRUE(pilot.succeeded()) << pilot.failure();
    OleUninitialize();
}

TEST_F(MainWindowTest, OpensTheMenuOfThePagesWithTheKeyboard) {
    open();
    addPages({L"a.pdf", L"b.pdf"});
    select(0, 1);
    UINT moveBack = 0;
    host::DialogPilot pilot(std::chrono::seconds(20));
    pilot.then(
        "the menu", [](HWND popup) { return host::windowClass(popup) == L"#32768"; },
        [&](HWND popup) {
            const auto menu = reinterpret_cast<HMENU>(SendMessageW(popup, MN_GETHMENU, 0, 0));
            moveBack = GetMenuState(menu, host::commandMoveBack, MF_BYCOMMAND);
            return PostMessageW(window, WM_CHAR, 'r', 0) != FALSE;
        });
    BYTE keys[256] = {};
    keys[VK_SHIFT] = 0x80;
    SetKeyboardState(keys);
    SendMessageW(list(), WM_SYSKEYDOWN, VK_F10, 0);
    keys[VK_SHIFT] = 0;
    SetKeyboardState(keys);
    command(0);

    EXPECT_TRUE(pilot.succeeded()) << pilot.failure();
    EXPECT_TRUE(moveBack & MF_GRAYED) << "it is the first page";
    EXPECT_EQ(statusPart(0), L"1 page, 1 selected") << "the letter removes the selected one";
}

TEST_F(MainWindowTest, TellsItsVersionAndWhereItsLogIs) {
    open();
    std::string text;
    host::DialogPilot pilot(std::chrono::seconds(20));
    pilot.then("the message", host::anyMessageBox(), [&text](HWND box) {
        text = utf8(host::messageBoxText(box));
        return host::click(IDOK)(box) || host::click(IDCANCEL)(box);
    });
    command(host::commandAbout);
    EXPECT_TRUE(pilot.succeeded()) << pilot.failure();
    EXPECT_THAT(text, HasSubstr("ScanHost " PRODUCT_VERSION "\n"));
    EXPECT_THAT(text, HasSubstr(utf8(host::logFilePath())));
}

TEST_F(MainWindowTest, DoesNotExportWhatAShortcutCannotMean) {
    open();
    target.names = {L"untouched"};
    // Whatever an export would show.
    host::DialogPilot pilot(std::chrono::seconds(20));
    pilot.always(host::dialogWith(IDC_RESULT_TEXT), host::click(IDOK));
    command(host::commandExport);
    EXPECT_THAT(target.names, ElementsAre(L"untouched")) << "there are no pages";
}

TEST_F(MainWindowTest, NamesOnlySomeOfManyItemsLeftOut) {
    open();
    std::string told;
    host::DialogPilot pilot(std::chrono::seconds(20));
    pilot.then("the message", host::anyMessageBox(), [&told](HWND box) {
        told = utf8(host::messageBoxText(box));
        return host::click(IDOK)(box);
    });
    Names missing;
    for (int i = 0; i < 10; ++i)
        missing.push_back(folder / (L"missing" + std::to_wstring(i) + L".pdf"));
    addPaths(missing);

    EXPECT_TRUE(pilot.succeeded()) << pilot.failure();
    EXPECT_THAT(told, HasSubstr("missing7.pdf"));
    EXPECT_THAT(told, Not(HasSubstr("missing8.pdf")));
    EXPECT_THAT(told, testing::EndsWith("… and 2 more"));
}

TEST_F(MainWindowTest, GoesPastButtonsThatCannotBePressed) {
    const host::ComponentModule unavailable(
        host::fullPathOf(host::wide(TEST_COMPONENTS)) + L"\\SoundComponent.dll", manager);
    const bxbase::Reference<RecordingFactory> last(new bxbase::ReferencedImpl<RecordingFactory>(target));
    manager.registerFactory(last.get());
    open();
    addPages({L"a.pdf"});
    const HWND bar = child(TOOLBARCLASSNAMEW);
    SetFocus(bar);
    const auto hotAfter = [bar](WPARAM key) {
        SendMessageW(bar, WM_KEYDOWN, key, 0);
        return SendMessageW(bar, TB_GETHOTITEM, 0, 0);
    };
    EXPECT_EQ(hotAfter(VK_RIGHT), 3);
    EXPECT_EQ(hotAfter(VK_LEFT), 0);
    EXPECT_EQ(hotAfter(VK_END), 3);
    EXPECT_EQ(hotAfter(VK_HOME), 0);
}

class MainWindowTextsTest : public MainWindowTest, public testing::WithParamInterface<std::wstring> {};

INSTANTIATE_TEST_SUITE_P(Languages, MainWindowTextsTest, testing::ValuesIn(test::languageFiles()),
                         [](const testing::TestParamInfo<std::wstring>& info) {
                             return utf8(info.param.substr(0, info.param.find(L'.')));
                         });

TEST_P(MainWindowTextsTest, HasMenusWithALetterForEachCommand) {
    test::loadLanguage(GetParam());
    open();

    EXPECT_THAT(test::wrongAccessKeys(GetMenu(window)), IsEmpty());
    const HMENU pagesMenu = host::createPagesMenu({L"First", L"Second"});
    EXPECT_THAT(test::wrongAccessKeys(pagesMenu), IsEmpty());
    DestroyMenu(pagesMenu);
}

} // namespace
