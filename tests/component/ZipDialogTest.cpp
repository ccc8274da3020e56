// The ZIP dialog as a window.
#include "DialogFixture.h"
#include "ExportToZipDlg.h"
#include "SorvaneBase/bxutils/ResourceManager.h"
#include "support/ClippedTexts.h"
#include "support/FileBrowsing.h"
#include "support/TempFolder.h"

#include <gmock/gmock.h>

#include <string>
#include <utility>
#include <vector>

using host::click;
using host::dialogWith;
using host::enterText;
using host::inOrder;
using test::controlText;
using test::edges;
using test::hostText;
using test::now;
using test::withFocus;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

constexpr int titleId = 4032;
constexpr int descId = 4033;
constexpr int pathLabelId = 4034;
constexpr int pathId = 4035;
constexpr int prefixLabelId = 4036;
constexpr int prefixId = 4037;
constexpr int browseId = 4038;

// In template order.
const Control controls[] = {
    {IDOK, L"Button", BS_DEFPUSHBUTTON, true, {198, 113, 50, 14}},
    {IDCANCEL, L"Button", BS_PUSHBUTTON, true, {254, 113, 50, 14}},
    {titleId, L"Static", SS_LEFT, false, {7, 7, 239, 8}},
    {descId, L"Static", SS_LEFT, false, {7, 23, 297, 32}},
    {pathLabelId, L"Static", SS_LEFT, false, {7, 73, 66, 8}},
    {prefixLabelId, L"Static", SS_LEFT, false, {7, 94, 66, 8}},
    {pathId, L"Edit", ES_AUTOHSCROLL, true, {73, 70, 165, 14}},
    {prefixId, L"Edit", ES_AUTOHSCROLL, true, {73, 91, 165, 14}},
    {browseId, L"Button", BS_PUSHBUTTON, true, {247, 71, 50, 14}},
};

class ZipDialogTest : public DialogFixture<ExportToZipDlg> {
protected:
    ZipDialogTest() : DialogFixture(pathId) {}

    static Action enter(const std::wstring& path, const std::wstring& prefix) {
        return inOrder({enterText(pathId, path), enterText(prefixId, prefix)});
    }
};

// The window.

TEST_F(ZipDialogTest, HoldsItsControlsInTheOrderOfTheTemplate) {
    inspect({now([](HWND window) {
        EXPECT_THAT(test::controlIds(window), ElementsAre(1, 2, 4032, 4033, 4034, 4036, 4035, 4037, 4038));
    })});
}

TEST_F(ZipDialogTest, OpensInTheFixedSizeOfTheTemplate) {
    inspect({now([](HWND window) {
        RECT client;
        GetClientRect(window, &client);
        EXPECT_EQ(edges(client), edges(test::pixels(window, {0, 0, 311, 134})));
        EXPECT_FALSE(GetWindowLongPtrW(window, GWL_STYLE) & (WS_THICKFRAME | WS_MAXIMIZEBOX));
    })});
}

TEST_F(ZipDialogTest, PlacesEveryControlExactly) {
    inspect({now([](HWND window) {
        for (const Control& control : controls)
            expectPlace(window, control);
    })});
}

TEST_F(ZipDialogTest, MakesEveryControlOfItsTypeAndStyle) {
    inspect({now([](HWND window) {
        for (const Control& control : controls)
            expectTypeAndStyle(window, control);
    })});
}

TEST_F(ZipDialogTest, BindsEveryControlToAnObject) {
    inspect({now([](HWND window) {
        for (const Control& control : controls)
            EXPECT_NE(CWnd::FromHandlePermanent(GetDlgItem(window, control.id)), nullptr) << control.id;
    })});
}

TEST_F(ZipDialogTest, OpensWithTheFocusOnOkAndTabGoesOnFromThere) {
    std::vector<int> focused;
    inspect({withFocus([&](HWND window) { focused = test::focusedByTab(window, 5); })});
    EXPECT_THAT(focused, ElementsAre(IDOK, IDCANCEL, pathId, prefixId, browseId, IDOK));
}

// Texts.

class ZipDialogLanguageTest : public ZipDialogTest, public testing::WithParamInterface<std::wstring> {
protected:
    void SetUp() override { test::loadLanguage(GetParam()); }
};

TEST_P(ZipDialogLanguageTest, ShowsItsTextsInTheLanguage) {
    inspect({now([](HWND window) {
        const std::wstring title = hostText("Common", "ExportToZipDlg.ExportToZipFile");
        EXPECT_EQ(host::windowText(window), title);
        EXPECT_EQ(controlText(window, titleId), title);
        EXPECT_EQ(controlText(window, descId), hostText("Common", "ExportToZipDlg.Desc"));
        EXPECT_EQ(controlText(window, pathLabelId), hostText("Common", "ExportToZipDlg.Path"));
        EXPECT_EQ(controlText(window, prefixLabelId), hostText("Common", "ExportToZipDlg.PagesPrefix"));
        EXPECT_EQ(controlText(window, browseId), hostText("Common", "ExportToZipDlg.Browse"));
        EXPECT_EQ(controlText(window, IDCANCEL), hostText("Common", "Button.Cancel"));
    })});
}

TEST_P(ZipDialogLanguageTest, ClipsNoText) {
    inspect({now([](HWND window) { EXPECT_THAT(test::clippedTexts(window), IsEmpty()); })});
}

INSTANTIATE_TEST_SUITE_P(Languages, ZipDialogLanguageTest, testing::ValuesIn(test::languageFiles()),
                         languageName);

TEST_F(ZipDialogTest, ClippedTextsAreFoundInEveryLabelAndButtonAndTheTitle) {
    inspect({now([](HWND window) {
        const std::wstring tooLong(400, L'W');
        for (int id : {IDOK, IDCANCEL, titleId, descId, pathLabelId, prefixLabelId, browseId}) {
            const std::wstring text = controlText(window, id);
            SetDlgItemTextW(window, id, tooLong.c_str());
            EXPECT_THAT(test::clippedTexts(window), ElementsAre(StartsWith(std::to_string(id) + " ")));
            SetDlgItemTextW(window, id, text.c_str());
        }
        SetWindowTextW(window, tooLong.c_str());
        EXPECT_THAT(test::clippedTexts(window), ElementsAre(StartsWith("title ")));
    })});
}

TEST_F(ZipDialogTest, ShowsTheKeysOfTextsThatTheHostLacksButItsOwnOk) {
    *bxutils::getResourceManager() = {};
    inspect({now([](HWND window) {
        EXPECT_EQ(host::windowText(window), L"ExportToZipDlg.ExportToZipFile");
        EXPECT_EQ(controlText(window, descId), L"ExportToZipDlg.Desc");
        EXPECT_EQ(controlText(window, IDCANCEL), L"Button.Cancel");
        EXPECT_EQ(controlText(window, IDOK), L"OK");
    })});
}

// What it takes.

TEST_F(ZipDialogTest, OkGivesWhatWasEnteredAsItIs) {
    EXPECT_EQ(show({enter(L" C:\\Skeny\\účty. ", L"a/b\\Účet "), click(IDOK)}), IDOK);
    EXPECT_EQ(dialog->getPath(), L" C:\\Skeny\\účty. ");
    EXPECT_EQ(dialog->getPrefix(), L"a/b\\Účet ");
}

TEST_F(ZipDialogTest, OkTakesTextsOfAnyLength) {
    const std::wstring path = L"C:\\" + std::wstring(5000, L'á');
    EXPECT_EQ(show({enter(path, std::wstring(5000, L'p')), click(IDOK)}), IDOK);
    EXPECT_EQ(dialog->getPath(), path);
    EXPECT_EQ(dialog->getPrefix(), std::wstring(5000, L'p'));
}

TEST_F(ZipDialogTest, OkTakesEmptyFields) {
    EXPECT_EQ(show({click(IDOK)}), IDOK);
    EXPECT_EQ(dialog->getPath(), L"");
    EXPECT_EQ(dialog->getPrefix(), L"");
}

TEST_F(ZipDialogTest, OkTakesAFolder) {
    const test::TempFolder folder;
    EXPECT_EQ(show({enter(folder.path(), L""), click(IDOK)}), IDOK);
    EXPECT_EQ(dialog->getPath(), folder.path());
}

TEST_F(ZipDialogTest, EnterInAnEditIsOk) {
    for (int id : {pathId, prefixId}) {
        EXPECT_EQ(show({enter(L"C:\\a.zip", L"Scan"), withFocus([id](HWND window) {
                            HWND edit = GetDlgItem(window, id);
                            SendMessageW(window, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(edit), TRUE);
                            test::pressKey(edit, VK_RETURN);
                        })}),
                  IDOK)
            << id;
        EXPECT_EQ(dialog->getPath(), L"C:\\a.zip");
        EXPECT_EQ(dialog->getPrefix(), L"Scan");
    }
}

TEST_F(ZipDialogTest, CancelStoresNothing) {
    inspect({enter(L"C:\\a.zip", L"Scan")});
    EXPECT_EQ(dialog->getPath(), L"");
    EXPECT_EQ(dialog->getPrefix(), L"");
}

TEST_F(ZipDialogTest, ClosingTheWindowIsCancel) {
    EXPECT_EQ(show({enter(L"C:\\a.zip", L"Scan"),
                    now([](HWND window) { PostMessageW(window, WM_SYSCOMMAND, SC_CLOSE, 0); })}),
              IDCANCEL);
    EXPECT_EQ(dialog->getPath(), L"");
    EXPECT_EQ(dialog->getPrefix(), L"");
}

TEST_F(ZipDialogTest, OpensEmptyEveryTime) {
    const auto expectEmpty = now([](HWND window) {
        EXPECT_EQ(controlText(window, pathId), L"");
        EXPECT_EQ(controlText(window, prefixId), L"");
    });
    EXPECT_EQ(show({expectEmpty, enter(L"C:\\a.zip", L"Scan"), click(IDOK)}), IDOK);
    inspect({expectEmpty});
}

// The browse button.

class ZipBrowseTest : public ZipDialogTest {
protected:
    /// Opens the dialog with an entered path, presses the button, acts on the file dialog, and gives the path
    /// shown after that.
    std::wstring browse(Action inFileDialog) {
        pilot.then("browse", dialogWith(pathId),
                   inOrder({enter(L"C:\\typed.zip", L"Scan"), click(browseId)}));
        pilot.then("in the file dialog", test::fileDialog(), std::move(inFileDialog));
        std::wstring shown;
        inspect({[&shown](HWND window) {
            if (test::isFileDialogOpen())
                return false; // on its way out
            shown = controlText(window, pathId);
            EXPECT_EQ(controlText(window, prefixId), L"Scan");
            return true;
        }});
        return shown;
    }

    const test::TempFolder folder;
};

TEST_F(ZipBrowseTest, PutsTheNameOfANewFileIntoThePath) {
    EXPECT_EQ(browse(test::typeFileName(folder / L"nový archiv")), folder / L"nový archiv");
    EXPECT_THAT(folder.list(), IsEmpty());
}

TEST_F(ZipBrowseTest, PutsTheNameOfAnExistingFileIntoThePath) {
    const std::wstring file = folder.write(L"old.zip", "old");
    EXPECT_EQ(browse(test::typeFileName(file)), file);
    EXPECT_EQ(test::readFile(file), "old");
}

TEST_F(ZipBrowseTest, LeavesThePathWhenCancelled) {
    EXPECT_EQ(browse([this](HWND window) {
                  SetWindowTextW(test::fileNameEditOf(window), (folder / L"other.zip").c_str());
                  return click(IDCANCEL)(window);
              }),
              L"C:\\typed.zip");
}

TEST_F(ZipBrowseTest, OpensTheKindThatOpensWithoutOwnerAndName) {
    browse([](HWND window) {
        EXPECT_EQ(GetWindow(window, GW_OWNER), nullptr);
        EXPECT_EQ(host::windowText(test::fileNameEditOf(window)), L"");
        EXPECT_THAT(controlText(window, IDOK), testing::HasSubstr(L"Open"));
        return click(IDCANCEL)(window);
    });
}

} // namespace
