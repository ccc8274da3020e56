// The directory dialog as a window.
#include "DialogFixture.h"
#include "DirectoryDialogFixture.h"
#include "SorvaneBase/bxutils/ResourceManager.h"
#include "resource.h"
#include "support/ClippedTexts.h"
#include "support/DialogInspection.h"
#include "support/FolderBrowsing.h"
#include "support/HostTexts.h"

#include <shlobj.h>
#include <uxtheme.h>

using host::anyMessageBox;
using host::click;
using host::dialogWith;
using host::enterText;
using host::inOrder;
using test::controlText;
using test::edges;
using test::hostText;
using test::loadLanguage;
using test::now;
using test::pixels;
using test::pressKey;
using test::rectIn;
using test::waitForText;
using test::withFocus;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

constexpr int pathId = 4006;
constexpr int prefixId = 4008;
constexpr int firstNumberId = 4009;
constexpr int digitsId = 4010;
constexpr int appendIndexId = 4027;
constexpr int historyId = 4028;
constexpr int useFolderNameId = 4030;
/// Of the system's folder dialog.
constexpr int newFolderButtonId = 14150;

/// Adds the share of the dialog's growth that the control follows in percent, and the key of its text in section
/// "Scan" where it has one.
struct GrowingControl : Control {
    SIZE move;
    SIZE stretch;
    const char* textKey;
};

// In template order.
const GrowingControl controls[] = {
    {{4006, L"Edit", ES_AUTOHSCROLL, true, {83, 7, 237, 14}}, {0, 0}, {100, 0}, nullptr},
    {{4028, L"ListBox", LBS_NOTIFY | LBS_SORT | LBS_NOINTEGRALHEIGHT, true, {83, 30, 237, 42}},
     {0, 0},
     {100, 100},
     nullptr},
    {{4008, L"Edit", ES_AUTOHSCROLL, true, {83, 102, 237, 14}}, {0, 100}, {100, 0}, nullptr},
    {{4027, L"Button", BS_AUTOCHECKBOX, true, {83, 126, 10, 10}}, {0, 100}, {0, 0}, nullptr},
    {{4009, L"Edit", ES_AUTOHSCROLL | ES_NUMBER, true, {83, 140, 51, 14}}, {0, 100}, {50, 0}, nullptr},
    {{4010, L"Edit", ES_AUTOHSCROLL | ES_NUMBER, true, {202, 140, 50, 14}}, {50, 100}, {50, 0}, nullptr},
    {{1, L"Button", BS_DEFPUSHBUTTON, true, {208, 164, 50, 14}}, {100, 100}, {0, 0}, nullptr},
    {{2, L"Button", BS_PUSHBUTTON, true, {270, 164, 50, 14}}, {100, 100}, {0, 0}, nullptr},
    {{4011, L"Static", SS_RIGHT, false, {7, 9, 65, 8}}, {0, 0}, {0, 0}, "ScanExport.Directory.Path"},
    {{4012, L"Static", SS_RIGHT, false, {7, 104, 65, 8}}, {0, 100}, {0, 0}, "ScanExport.Directory.Prefix"},
    {{4013, L"Static", SS_RIGHT, false, {7, 143, 65, 8}},
     {0, 100},
     {0, 0},
     "ScanExport.Directory.FirstNumber"},
    {{4014, L"Static", SS_RIGHT, false, {135, 143, 59, 8}}, {50, 100}, {0, 0}, "ScanExport.Directory.Digits"},
    {{4015, L"Static", SS_RIGHT, false, {7, 126, 65, 8}},
     {0, 100},
     {0, 0},
     "ScanExport.Directory.AppendIndex"},
    {{4029, L"Static", SS_RIGHT, false, {7, 32, 65, 8}}, {0, 0}, {0, 0}, "ScanExport.Directory.LastExports"},
    {{4030, L"Button", BS_AUTOCHECKBOX, true, {83, 83, 10, 10}}, {0, 100}, {0, 0}, nullptr},
    {{4016, L"Static", SS_RIGHT, false, {7, 80, 65, 16}},
     {0, 100},
     {0, 0},
     "ScanExport.Directory.UseFolderName"},
};

bool isEnabled(HWND window, int id) {
    return IsWindowEnabled(GetDlgItem(window, id));
}

bool isTicked(HWND window, int id) {
    return IsDlgButtonChecked(window, id) == BST_CHECKED;
}

/// A press of the left mouse button on an entry of the history.
host::DialogPilot::Action clickEntry(int index, UINT press = WM_LBUTTONDOWN) {
    return now([index, press](HWND window) {
        HWND list = GetDlgItem(window, historyId);
        RECT entry = {};
        ASSERT_NE(
            SendMessageW(list, LB_GETITEMRECT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&entry)),
            LB_ERR);
        const LPARAM point = MAKELPARAM(entry.left + 5, entry.top + 3);
        PostMessageW(list, press, MK_LBUTTON, point);
        PostMessageW(list, WM_LBUTTONUP, 0, point);
    });
}

std::vector<std::wstring> historyEntries(HWND window) {
    HWND list = GetDlgItem(window, historyId);
    std::vector<std::wstring> entries;
    const auto count = static_cast<WPARAM>(SendMessageW(list, LB_GETCOUNT, 0, 0));
    for (WPARAM i = 0; i < count; ++i) {
        std::wstring text(static_cast<std::size_t>(SendMessageW(list, LB_GETTEXTLEN, i, 0)) + 1, L'\0');
        SendMessageW(list, LB_GETTEXT, i, reinterpret_cast<LPARAM>(text.data()));
        text.pop_back();
        entries.push_back(text);
    }
    return entries;
}

class DirectoryDialogTest : public DirectoryDialogFixture {
protected:
    void storeHistory(const std::wstring& text) {
        store(L"ExportPath", REG_SZ, test::bytesOfTerminated(text));
    }

    bool isDirectory(const std::wstring& path) {
        const DWORD attributes = GetFileAttributesW(path.c_str());
        return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
    }
};

// The window.

TEST_F(DirectoryDialogTest, HoldsItsControlsInTheOrderOfTheTemplate) {
    inspect({now([](HWND window) {
        std::vector<int> expected;
        for (const GrowingControl& control : controls)
            expected.push_back(control.id);
        EXPECT_EQ(test::controlIds(window), expected);
    })});
}

TEST_F(DirectoryDialogTest, OpensInTheSizeOfTheTemplate) {
    inspect({now([](HWND window) {
        RECT client;
        GetClientRect(window, &client);
        EXPECT_EQ(edges(client), edges(pixels(window, {0, 0, 327, 183})));
    })});
}

TEST_F(DirectoryDialogTest, PlacesEveryControlExactly) {
    inspect({now([](HWND window) {
        for (const GrowingControl& control : controls)
            expectPlace(window, control);
    })});
}

TEST_F(DirectoryDialogTest, MakesEveryControlOfItsTypeAndStyle) {
    inspect({now([](HWND window) {
        for (const GrowingControl& control : controls)
            expectTypeAndStyle(window, control);
    })});
}

TEST_F(DirectoryDialogTest, BindsEveryControlToAnObject) {
    inspect({now([](HWND window) {
        for (const GrowingControl& control : controls)
            EXPECT_NE(CWnd::FromHandlePermanent(GetDlgItem(window, control.id)), nullptr) << control.id;
    })});
}

TEST_F(DirectoryDialogTest, TabGoesThroughItsFieldsWithTheParentFolderOptionLast) {
    std::vector<int> focused;
    inspect({withFocus([&focused](HWND window) { focused = test::focusedByTab(window, 9); })});
    EXPECT_THAT(focused, ElementsAre(4006, 4028, 4008, 4027, 4009, 4010, 1, 2, 4030, 4006));
}

TEST_F(DirectoryDialogTest, OpensWithTheFocusInThePath) {
    inspect({withFocus([](HWND) { EXPECT_EQ(GetDlgCtrlID(GetFocus()), pathId); })});
}

TEST_F(DirectoryDialogTest, HasThemedControls) {
    inspect({now([](HWND window) {
        for (const GrowingControl& control : controls) {
            if (control.type != std::wstring_view(L"Static")) {
                EXPECT_NE(GetWindowTheme(GetDlgItem(window, control.id)), nullptr) << control.id;
            }
        }
    })});
}

TEST_F(DirectoryDialogTest, ShowsTheVisualStylesBackgroundBehindItsLabels) {
    inspect({now([](HWND window) {
        const HWND label = GetDlgItem(window, 4011);
        const HDC dc = GetDC(label);
        const LRESULT brush = SendMessageW(window, WM_CTLCOLORSTATIC, reinterpret_cast<WPARAM>(dc),
                                           reinterpret_cast<LPARAM>(label));
        ReleaseDC(label, dc);
        EXPECT_EQ(reinterpret_cast<HGDIOBJ>(brush), GetStockObject(HOLLOW_BRUSH));
    })});
}

// Resizing.

TEST_F(DirectoryDialogTest, HasASizingFrame) {
    inspect({now([](HWND window) { EXPECT_TRUE(GetWindowLongPtrW(window, GWL_STYLE) & WS_THICKFRAME); })});
}

TEST_F(DirectoryDialogTest, IsSizedByAGripInItsLowerRightCorner) {
    inspect({now([](HWND window) {
        RECT client;
        GetClientRect(window, &client);
        POINT corner = {client.right - 1, client.bottom - 1};
        ClientToScreen(window, &corner);
        EXPECT_EQ(SendMessageW(window, WM_NCHITTEST, 0, MAKELPARAM(corner.x, corner.y)), HTBOTTOMRIGHT);
    })});
}

TEST_F(DirectoryDialogTest, ShrinksNoFurtherThanTheSizeItOpensIn) {
    inspect({now([](HWND window) {
        RECT opened;
        GetWindowRect(window, &opened);
        SetWindowPos(window, nullptr, 0, 0, 50, 50, SWP_NOMOVE | SWP_NOZORDER);
        RECT shrunk;
        GetWindowRect(window, &shrunk);
        EXPECT_EQ(edges(shrunk), edges(opened));
    })});
}

TEST_F(DirectoryDialogTest, ControlsFollowTheGrowingWindowByTheirShare) {
    inspect({now([](HWND window) {
        const SIZE growth = {100, 60};
        std::vector<RECT> before;
        for (const GrowingControl& control : controls)
            before.push_back(rectIn(window, control.id));
        RECT frame;
        GetWindowRect(window, &frame);
        SetWindowPos(window, nullptr, 0, 0, frame.right - frame.left + growth.cx,
                     frame.bottom - frame.top + growth.cy, SWP_NOMOVE | SWP_NOZORDER);
        auto rect = before.begin();
        for (const GrowingControl& control : controls) {
            RECT expected = *rect++;
            OffsetRect(&expected, growth.cx * control.move.cx / 100, growth.cy * control.move.cy / 100);
            expected.right += growth.cx * control.stretch.cx / 100;
            expected.bottom += growth.cy * control.stretch.cy / 100;
            EXPECT_EQ(edges(rectIn(window, control.id)), edges(expected)) << control.id;
        }
    })});
}

TEST_F(DirectoryDialogTest, ControlsReturnToTheirPlacesWithTheWindow) {
    inspect({now([](HWND window) {
        RECT frame;
        GetWindowRect(window, &frame);
        const int width = frame.right - frame.left;
        const int height = frame.bottom - frame.top;
        for (const auto& [dx, dy] : {std::pair(33, 17), std::pair(201, 5), std::pair(0, 0)})
            SetWindowPos(window, nullptr, 0, 0, width + dx, height + dy, SWP_NOMOVE | SWP_NOZORDER);
        for (const GrowingControl& control : controls)
            expectPlace(window, control);
    })});
}

// Texts.

class DirectoryDialogLanguageTest : public DirectoryDialogTest,
                                    public testing::WithParamInterface<std::wstring> {
protected:
    void SetUp() override {
        DirectoryDialogTest::SetUp();
        loadLanguage(GetParam());
    }
};

TEST_P(DirectoryDialogLanguageTest, ShowsItsTextsInTheLanguage) {
    inspect({now([](HWND window) {
        EXPECT_EQ(host::windowText(window), hostText("Scan", "ScanExport.DirectoryDialog.Title"));
        EXPECT_EQ(controlText(window, IDOK), hostText("Common", "Button.OK"));
        EXPECT_EQ(controlText(window, IDCANCEL), hostText("Common", "Button.Cancel"));
        for (const GrowingControl& control : controls) {
            if (control.textKey) {
                EXPECT_EQ(controlText(window, control.id), hostText("Scan", control.textKey));
            }
        }
    })});
}

TEST_P(DirectoryDialogLanguageTest, ClipsNoText) {
    inspect({now([](HWND window) { EXPECT_THAT(test::clippedTexts(window), IsEmpty()); })});
}

INSTANTIATE_TEST_SUITE_P(Languages, DirectoryDialogLanguageTest, testing::ValuesIn(test::languageFiles()),
                         languageName);

TEST_F(DirectoryDialogTest, ClippedTextsAreFoundInEveryLabelAndButtonAndTheTitle) {
    inspect({now([](HWND window) {
        const std::wstring tooLong(100, L'W');
        for (int id : {IDOK, IDCANCEL, 4011, 4012, 4013, 4014, 4015, 4016, 4029}) {
            const std::wstring text = controlText(window, id);
            SetDlgItemTextW(window, id, tooLong.c_str());
            EXPECT_THAT(test::clippedTexts(window), ElementsAre(StartsWith(std::to_string(id) + " ")));
            SetDlgItemTextW(window, id, text.c_str());
        }
        SetWindowTextW(window, tooLong.c_str());
        EXPECT_THAT(test::clippedTexts(window), ElementsAre(StartsWith("title ")));
    })});
}

TEST_F(DirectoryDialogTest, ShowsTheKeysOfTextsThatTheHostLacks) {
    *bxutils::getResourceManager() = {};
    inspect({now([](HWND window) {
        EXPECT_EQ(host::windowText(window), L"ScanExport.DirectoryDialog.Title");
        EXPECT_EQ(controlText(window, IDOK), L"Button.OK");
        EXPECT_EQ(controlText(window, 4016), L"ScanExport.Directory.UseFolderName");
    })});
}

// What it opens with.

TEST_F(DirectoryDialogTest, OpensWithTheDefaultsWhenNothingIsStored) {
    inspect({now([](HWND window) {
        EXPECT_EQ(controlText(window, pathId), L"");
        EXPECT_THAT(historyEntries(window), IsEmpty());
        EXPECT_EQ(controlText(window, prefixId), L"");
        EXPECT_EQ(controlText(window, firstNumberId), L"1");
        EXPECT_EQ(controlText(window, digitsId), L"4");
        EXPECT_TRUE(isTicked(window, appendIndexId));
        EXPECT_FALSE(isTicked(window, useFolderNameId));
    })});
}

TEST_F(DirectoryDialogTest, ShowsNumbersAsUnsigned) {
    store(L"FirstNumber", REG_DWORD, test::bytesOf(0xFFFFFFFF));
    store(L"Digits", REG_DWORD, test::bytesOf(0x80000000));
    inspect({now([](HWND window) {
        EXPECT_EQ(controlText(window, firstNumberId), L"4294967295");
        EXPECT_EQ(controlText(window, digitsId), L"2147483648");
    })});
}

TEST_F(DirectoryDialogTest, OffersTheNameOfTheFirstPagesFolderBeforeTheStoredPrefix) {
    store(L"Prefix", REG_SZ, test::bytesOfTerminated(L"Stored"));
    pages.clear();
    addPage(L"Faktury");
    addPage(L"Smlouvy");
    inspect({now([](HWND window) { EXPECT_EQ(controlText(window, prefixId), L"Faktury"); })});
}

TEST_F(DirectoryDialogTest, OffersTheStoredPrefixWhenTheFirstPageLiesInNoFolder) {
    store(L"Prefix", REG_SZ, test::bytesOfTerminated(L"Stored"));
    addPage(L"Smlouvy");
    inspect({now([](HWND window) { EXPECT_EQ(controlText(window, prefixId), L"Stored"); })});
}

TEST_F(DirectoryDialogTest, OffersTheStoredPrefixWhenTheFoldersNameIsEmpty) {
    store(L"Prefix", REG_SZ, test::bytesOfTerminated(L"Stored"));
    pages.clear();
    addPage(L"");
    inspect({now([](HWND window) { EXPECT_EQ(controlText(window, prefixId), L"Stored"); })});
}

TEST_F(DirectoryDialogTest, OffersTheStoredPrefixWhenThereAreNoPages) {
    store(L"Prefix", REG_SZ, test::bytesOfTerminated(L"Stored"));
    store(L"AppendIndex", REG_DWORD, test::bytesOf(0));
    pages.clear();
    inspect({now([](HWND window) {
        EXPECT_EQ(controlText(window, prefixId), L"Stored");
        EXPECT_FALSE(isTicked(window, appendIndexId));
    })});
}

// Numbering.

TEST_F(DirectoryDialogTest, LeavesTheNumberControlsEnabledWhenItOpensWithoutNumbering) {
    store(L"AppendIndex", REG_DWORD, test::bytesOf(0));
    inspect({now([](HWND window) {
        EXPECT_FALSE(isTicked(window, appendIndexId));
        for (int id : {4013, 4009, 4014, 4010})
            EXPECT_TRUE(isEnabled(window, id)) << id;
    })});
}

TEST_F(DirectoryDialogTest, NumberControlsFollowTheClicksOnTheirCheckBox) {
    const auto expectEnabled = [](bool enabled) {
        return [enabled](HWND window) {
            if (isTicked(window, appendIndexId) != enabled)
                return false; // the click is still on its way
            for (int id : {4013, 4009, 4014, 4010})
                EXPECT_EQ(isEnabled(window, id), enabled) << id;
            return true;
        };
    };
    inspect({click(appendIndexId), expectEnabled(false), click(appendIndexId), expectEnabled(true)});
    EXPECT_EQ(dialog->appendIndex, 1);
}

TEST_F(DirectoryDialogTest, ParentFolderOptionEnablesAndDisablesNothing) {
    inspect({click(useFolderNameId), [](HWND window) {
                 if (!isTicked(window, useFolderNameId))
                     return false;
                 for (const GrowingControl& control : controls)
                     EXPECT_TRUE(isEnabled(window, control.id)) << control.id;
                 return true;
             }});
}

TEST_F(DirectoryDialogTest, SinglePageMayGoWithoutNumber) {
    inspect({now([](HWND window) {
        EXPECT_TRUE(isTicked(window, appendIndexId));
        EXPECT_TRUE(isEnabled(window, appendIndexId));
    })});
}

TEST_F(DirectoryDialogTest, SeveralPagesAreNumberedInAnyCase) {
    store(L"AppendIndex", REG_DWORD, test::bytesOf(0));
    addPage();
    inspect({now([](HWND window) {
        EXPECT_TRUE(isTicked(window, appendIndexId));
        EXPECT_FALSE(isEnabled(window, appendIndexId));
        for (int id : {4013, 4009, 4014, 4010})
            EXPECT_TRUE(isEnabled(window, id)) << id;
    })});
}

// The history.

TEST_F(DirectoryDialogTest, ShowsTheHistoryInAlphabeticalOrderWithNothingSelected) {
    storeHistory(L"D:\\Scans;C:\\Out;;D:\\Scans;b:\\lower");
    inspect({now([](HWND window) {
        EXPECT_THAT(historyEntries(window),
                    ElementsAre(L"b:\\lower", L"C:\\Out", L"D:\\Scans", L"D:\\Scans"));
        EXPECT_EQ(SendDlgItemMessageW(window, historyId, LB_GETCURSEL, 0, 0), LB_ERR);
        EXPECT_EQ(controlText(window, pathId), L"D:\\Scans");
    })});
}

TEST_F(DirectoryDialogTest, ClickOnAnEntryPutsItIntoThePathAndChangesNothingElse) {
    storeHistory(L"D:\\Scans;C:\\Out");
    inspect({clickEntry(0), waitForText(pathId, L"C:\\Out"), now([this](HWND window) {
                 EXPECT_EQ(dialog->exportPath, L"D:\\Scans");
                 EXPECT_EQ(controlText(window, prefixId), L"");
                 EXPECT_EQ(controlText(window, firstNumberId), L"1");
                 EXPECT_THAT(historyEntries(window), ElementsAre(L"C:\\Out", L"D:\\Scans"));
             })});
}

TEST_F(DirectoryDialogTest, DoubleClickOnAnEntryDoesNoMoreThanAClick) {
    storeHistory(L"D:\\Scans;" + folder.path());
    int ticks = 0;
    inspect({clickEntry(0), clickEntry(0, WM_LBUTTONDBLCLK), waitForText(pathId, folder.path()),
             // What the double click might have posted comes before later ticks of a timer.
             [&ticks](HWND) { return ++ticks == 3; }});
    EXPECT_EQ(dialog->exportPath, L"D:\\Scans");
    EXPECT_FALSE(test::readValue(key, L"Prefix"));
}

TEST_F(DirectoryDialogTest, MovingThroughTheHistoryByKeyboardPutsEachEntryIntoThePath) {
    storeHistory(L"D:\\Scans;C:\\Out");
    const auto down = now([](HWND window) { pressKey(GetDlgItem(window, historyId), VK_DOWN); });
    inspect({now([](HWND window) { SetFocus(GetDlgItem(window, historyId)); }), down, down,
             waitForText(pathId, L"D:\\Scans")});
}

// The browse button.

/// The visible child of this class that holds the text, or null.
HWND childOfClass(HWND window, const wchar_t* type, const std::wstring& text = {}) {
    struct Search {
        const wchar_t* type;
        const std::wstring& text;
        HWND found;
    } search = {type, text, nullptr};
    EnumChildWindows(
        window,
        [](HWND child, LPARAM data) -> BOOL {
            auto& search = *reinterpret_cast<Search*>(data);
            if (!IsWindowVisible(child) || host::windowClass(child) != search.type ||
                host::windowText(child).find(search.text) == std::wstring::npos)
                return TRUE;
            search.found = child;
            return FALSE;
        },
        reinterpret_cast<LPARAM>(&search));
    return search.found;
}

bool isFolderDialog(HWND window) {
    return childOfClass(window, L"SysTreeView32");
}

class BrowseButtonTest : public DirectoryDialogTest {
protected:
    void SetUp() override {
        DirectoryDialogTest::SetUp();
        wchar_t windows[MAX_PATH] = {};
        GetWindowsDirectoryW(windows, MAX_PATH);
        start = windows;
    }

    /// Opens the dialog with the start as its path, presses the button, does something in the folder dialog,
    /// and cancels when the path shows what is expected.
    void browse(std::vector<Action> actions, const std::wstring& expected) {
        host::DialogPilot pilot(patience);
        pilot.then("browse", dialogWith(pathId),
                   inOrder({enterText(pathId, start), test::pressBrowseButton(pathId)}));
        for (Action& action : actions)
            pilot.then("in the folder dialog", isFolderDialog, std::move(action));
        pilot.then("back", dialogWith(pathId), waitForText(pathId, expected));
        pilot.then("cancel", dialogWith(pathId), click(IDCANCEL));
        dialog = std::make_unique<ExportDirectoryDialog>(nullptr, &pages);
        EXPECT_EQ(dialog->DoModal(), IDCANCEL);
        EXPECT_TRUE(pilot.succeeded()) << pilot.failure();
    }

    /// A folder whose neighbours nobody removes, for that can make the system's dialog leave some out.
    std::wstring start;
};

TEST_F(BrowseButtonTest, PutsTheChosenFolderIntoThePath) {
    wchar_t chosen[MAX_PATH] = {};
    GetSystemDirectoryW(chosen, MAX_PATH);
    browse({test::chooseFolder(start, chosen, IDOK)}, chosen);
}

TEST_F(BrowseButtonTest, LeavesThePathWhenNoFolderIsChosen) {
    browse({click(IDCANCEL)}, start);
}

TEST_F(BrowseButtonTest, OpensADialogWithTitleEditAndNewFolderButton) {
    browse({[](HWND window) {
               EXPECT_NE(
                   childOfClass(window, L"Static", hostText("Scan", "ScanExport.Directory.FolderForFiles")),
                   nullptr);
               EXPECT_NE(childOfClass(window, L"Edit"), nullptr);
               EXPECT_TRUE(IsWindowVisible(GetDlgItem(window, newFolderButtonId)));
               return click(IDCANCEL)(window);
           }},
           start);
}

TEST_F(BrowseButtonTest, OffersFoldersOfTheFileSystemOnly) {
    browse(
        {now([](HWND window) {
             LPITEMIDLIST computer = nullptr;
             SHGetSpecialFolderLocation(nullptr, CSIDL_DRIVES, &computer);
             SendMessageW(window, BFFM_SETSELECTIONW, FALSE, reinterpret_cast<LPARAM>(computer));
             CoTaskMemFree(computer);
         }),
         [](HWND window) { return !IsWindowEnabled(GetDlgItem(window, IDOK)) && click(IDCANCEL)(window); }},
        start);
}

// OK.

TEST_F(DirectoryDialogTest, OkGivesTheEntriesToTheEngine) {
    confirm({inOrder({enterText(pathId, folder.path()), enterText(prefixId, L"Účet"),
                      enterText(firstNumberId, L"998"), enterText(digitsId, L"3")}),
             click(appendIndexId), click(useFolderNameId)});
    EXPECT_EQ(dialog->exportPath, folder.path());
    EXPECT_STREQ(dialog->prefix, L"Účet");
    EXPECT_EQ(dialog->firstNumber, 998);
    EXPECT_EQ(dialog->digits, 3);
    EXPECT_EQ(dialog->appendIndex, 0);
    EXPECT_EQ(dialog->useParentFolderName, 1);
}

struct NumberEntry {
    const char* name;
    std::wstring entered;
    int number;
};

class DirectoryDialogNumberTest : public DirectoryDialogTest,
                                  public testing::WithParamInterface<NumberEntry> {};

TEST_P(DirectoryDialogNumberTest, IsTakenWithoutRangeCheck) {
    confirm({inOrder({enterText(pathId, folder.path()), enterText(firstNumberId, GetParam().entered),
                      enterText(digitsId, GetParam().entered)})});
    EXPECT_EQ(dialog->firstNumber, GetParam().number);
    EXPECT_EQ(dialog->digits, GetParam().number);
    const std::wstring shown = std::to_wstring(GetParam().number);
    inspect({now([&shown](HWND window) {
        EXPECT_EQ(controlText(window, firstNumberId), shown);
        EXPECT_EQ(controlText(window, digitsId), shown);
    })});
}

INSTANTIATE_TEST_SUITE_P(Entries, DirectoryDialogNumberTest,
                         testing::Values(NumberEntry{"Empty", L"", 0}, NumberEntry{"LeadingZeros", L"007", 7},
                                         NumberEntry{"Largest", L"2147483647", 2147483647},
                                         NumberEntry{"TooLarge", L"2147483648", 2147483647},
                                         NumberEntry{"FarTooLarge", std::wstring(600, L'9'), 2147483647},
                                         NumberEntry{"BehindTheBuffersEnd", std::wstring(511, L'0') + L"7",
                                                     0},
                                         NumberEntry{"JustInTheBuffer", std::wstring(510, L'0') + L"7", 7}),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(DirectoryDialogTest, NumberFieldsTakeNothingButDigits) {
    const auto type = [](int id) {
        return now([id](HWND window) {
            HWND edit = GetDlgItem(window, id);
            SendMessageW(edit, EM_SETSEL, 0, -1);
            for (wchar_t typed : std::wstring(L"a-0+0 7x"))
                SendMessageW(edit, WM_CHAR, typed, 1);
        });
    };
    inspect({type(firstNumberId), waitForText(firstNumberId, L"007"), type(digitsId),
             waitForText(digitsId, L"007")});
}

TEST_F(DirectoryDialogTest, OkMakesAMissingDirectoryWithItsParents) {
    const std::wstring path = folder / L"New\\Účty\\2024";
    confirm({enterText(pathId, path)});
    EXPECT_TRUE(isDirectory(path));
}

TEST_F(DirectoryDialogTest, OkKeepsWhatIsInAnExistingDirectory) {
    folder.write(L"page.tif", "data");
    confirm({enterText(pathId, folder.path())});
    EXPECT_THAT(folder.list(), ElementsAre(L"page.tif"));
}

TEST_F(DirectoryDialogTest, EnterConfirms) {
    EXPECT_EQ(show({enterText(pathId, folder.path()),
                    now([](HWND window) { pressKey(GetDlgItem(window, pathId), VK_RETURN); })}),
              IDOK);
}

class UnusableDirectoryTest : public DirectoryDialogTest {
protected:
    /// Presses OK with a path that cannot be made a directory, looks at the message box, answers it, looks at
    /// the dialog, and cancels.
    void confirmInVain(const std::wstring& path, std::function<void(HWND)> lookAtBox,
                       std::function<void(HWND)> lookAtDialog) {
        host::DialogPilot pilot(patience);
        pilot
            .then(
                "enter", dialogWith(pathId),
                inOrder({enterText(pathId, path), enterText(prefixId, L"Kept"),
                         enterText(firstNumberId, L"55"), enterText(digitsId, L"6"), click(useFolderNameId)}))
            .then("press OK", dialogWith(pathId),
                  [](HWND window) { return isTicked(window, useFolderNameId) && click(IDOK)(window); })
            .then("read the box", anyMessageBox(), inOrder({now(std::move(lookAtBox)), click(IDOK)}))
            .then("look at the dialog", dialogWith(pathId),
                  inOrder({now(std::move(lookAtDialog)), click(IDCANCEL)}));
        dialog = std::make_unique<ExportDirectoryDialog>(nullptr, &pages);
        EXPECT_EQ(dialog->DoModal(), IDCANCEL);
        EXPECT_TRUE(pilot.succeeded()) << pilot.failure();
    }

    static void nothing(HWND) {}
};

TEST_F(UnusableDirectoryTest, ShowsAnErrorBoxOnTheDialog) {
    const std::wstring path = folder.write(L"file", "data") + L"\\below";
    confirmInVain(
        path,
        [this](HWND box) {
            EXPECT_EQ(host::windowText(box), hostText("Common", "Error"));
            EXPECT_EQ(host::messageBoxText(box), hostText("Scan", "ScanExport.Error.PathNotExists"));
            EXPECT_EQ(host::messageBoxIcon(box), LoadIconW(nullptr, IDI_ERROR));
            EXPECT_EQ(GetWindow(box, GW_OWNER), dialog->GetSafeHwnd());
            EXPECT_FALSE(IsWindowEnabled(dialog->GetSafeHwnd()));
            EXPECT_NE(GetDlgItem(box, IDOK), nullptr);
            EXPECT_EQ(GetDlgItem(box, IDCANCEL), nullptr);
        },
        nothing);
}

TEST_F(UnusableDirectoryTest, LeavesTheDialogOpenWithItsEntries) {
    const std::wstring path = folder.write(L"file", "data");
    confirmInVain(path, nothing, [&path](HWND window) {
        EXPECT_EQ(controlText(window, pathId), path);
        EXPECT_EQ(controlText(window, prefixId), L"Kept");
        EXPECT_EQ(controlText(window, firstNumberId), L"55");
        EXPECT_EQ(controlText(window, digitsId), L"6");
        EXPECT_TRUE(isTicked(window, appendIndexId));
        EXPECT_TRUE(isTicked(window, useFolderNameId));
    });
}

TEST_F(UnusableDirectoryTest, SavesNothing) {
    confirmInVain(folder.write(L"file", "data"), nothing, nothing);
    EXPECT_FALSE(test::keyExists(key));
    EXPECT_EQ(dialog->firstNumber, 1);
    EXPECT_STREQ(dialog->prefix, L"");
}

TEST_F(UnusableDirectoryTest, MayBeEmptyOrOnADriveThatDoesNotExist) {
    for (const wchar_t* path : {L"", L"Q:\\Scans"})
        confirmInVain(path, nothing, nothing);
    EXPECT_FALSE(test::keyExists(key));
}

// Cancel.

struct WayOut {
    const char* name;
    host::DialogPilot::Action action;
};

class DirectoryDialogCancelTest : public DirectoryDialogTest, public testing::WithParamInterface<WayOut> {};

TEST_P(DirectoryDialogCancelTest, SavesAndMakesNothing) {
    storeHistory(L"D:\\Scans");
    const std::wstring path = folder / L"New";
    EXPECT_EQ(show({inOrder({enterText(pathId, path), enterText(prefixId, L"Dropped"),
                             enterText(firstNumberId, L"55")}),
                    GetParam().action}),
              IDCANCEL);
    EXPECT_EQ(storedHistory(), L"D:\\Scans");
    EXPECT_FALSE(stored(L"Prefix"));
    EXPECT_FALSE(stored(L"FirstNumber"));
    EXPECT_FALSE(isDirectory(path));
    EXPECT_EQ(dialog->exportPath, L"D:\\Scans");
    EXPECT_EQ(dialog->firstNumber, 1);
}

INSTANTIATE_TEST_SUITE_P(Ways, DirectoryDialogCancelTest,
                         testing::Values(WayOut{"Button", click(IDCANCEL)},
                                         WayOut{"Escape", now([](HWND window) {
                                                    pressKey(GetDlgItem(window, pathId), VK_ESCAPE);
                                                })},
                                         WayOut{"CloseBox", now([](HWND window) {
                                                    PostMessageW(window, WM_SYSCOMMAND, SC_CLOSE, 0);
                                                })}),
                         [](const auto& info) { return std::string(info.param.name); });

} // namespace
