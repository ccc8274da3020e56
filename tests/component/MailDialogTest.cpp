// The mail dialog as a window.
#include "DialogFixture.h"
#include "ExportToMailDlg.h"
#include "SorvaneBase/bxutils/ResourceManager.h"
#include "support/ClippedTexts.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

using host::click;
using host::enterText;
using test::controlText;
using test::edges;
using test::hostText;
using test::now;
using test::withFocus;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

constexpr int titleId = 4039;
constexpr int descId = 4040;
constexpr int subjectLabelId = 4041;
constexpr int subjectId = 4042;

// In template order.
const Control controls[] = {
    {IDOK, L"Button", BS_DEFPUSHBUTTON, true, {198, 94, 50, 14}},
    {IDCANCEL, L"Button", BS_PUSHBUTTON, true, {252, 94, 50, 14}},
    {titleId, L"Static", SS_LEFT, false, {7, 7, 239, 8}},
    {descId, L"Static", SS_LEFT, false, {7, 23, 297, 32}},
    {subjectLabelId, L"Static", SS_LEFT, false, {7, 73, 92, 8}},
    {subjectId, L"Edit", ES_AUTOHSCROLL, true, {73, 70, 229, 14}},
};

/// The dialog with a subject that need not outlive its making.
class MailDialog : public ExportToMailDlg {
public:
    explicit MailDialog(const std::wstring& subject = L"") : ExportToMailDlg(nullptr, &subject) {}
};

class MailDialogTest : public DialogFixture<MailDialog> {
protected:
    MailDialogTest() : DialogFixture(subjectId) {}
};

// The window.

TEST_F(MailDialogTest, HoldsItsControlsInTheOrderOfTheTemplate) {
    inspect({now([](HWND window) {
        EXPECT_THAT(test::controlIds(window), ElementsAre(1, 2, 4039, 4040, 4041, 4042));
    })});
}

TEST_F(MailDialogTest, OpensInTheFixedSizeOfTheTemplate) {
    inspect({now([](HWND window) {
        RECT client;
        GetClientRect(window, &client);
        EXPECT_EQ(edges(client), edges(test::pixels(window, {0, 0, 309, 115})));
        EXPECT_FALSE(GetWindowLongPtrW(window, GWL_STYLE) & (WS_THICKFRAME | WS_MAXIMIZEBOX));
    })});
}

TEST_F(MailDialogTest, PlacesEveryControlExactly) {
    inspect({now([](HWND window) {
        for (const Control& control : controls)
            expectPlace(window, control);
    })});
}

TEST_F(MailDialogTest, MakesEveryControlOfItsTypeAndStyle) {
    inspect({now([](HWND window) {
        for (const Control& control : controls)
            expectTypeAndStyle(window, control);
    })});
}

TEST_F(MailDialogTest, BindsEveryControlToAnObjectOfItsClass) {
    inspect({now([](HWND window) {
        const auto isA = [window]<class Type>(int id) {
            return dynamic_cast<Type*>(CWnd::FromHandlePermanent(GetDlgItem(window, id))) != nullptr;
        };
        for (int id : {titleId, descId, subjectLabelId})
            EXPECT_TRUE(isA.operator()<CBCGPStatic>(id)) << id;
        for (int id : {IDOK, IDCANCEL})
            EXPECT_TRUE(isA.operator()<CBCGPButton>(id)) << id;
        EXPECT_TRUE(isA.operator()<CBCGPEdit>(subjectId));
    })});
}

TEST_F(MailDialogTest, KeepsThePlainLook) {
    inspect({now([this](HWND) {
        EXPECT_FALSE(dialog->IsVisualManagerStyle());
        EXPECT_EQ(dialog->GetLayout(), nullptr);
    })});
}

TEST_F(MailDialogTest, OpensWithTheFocusOnOkAndTabGoesOnFromThere) {
    std::vector<int> focused;
    inspect({withFocus([&](HWND window) { focused = test::focusedByTab(window, 3); })});
    EXPECT_THAT(focused, ElementsAre(IDOK, IDCANCEL, subjectId, IDOK));
}

// Texts.

class MailDialogLanguageTest : public MailDialogTest, public testing::WithParamInterface<std::wstring> {
protected:
    void SetUp() override { test::loadLanguage(GetParam()); }
};

TEST_P(MailDialogLanguageTest, ShowsItsTextsInTheLanguage) {
    inspect({now([](HWND window) {
        const std::wstring title = hostText("Common", "ExportToMailDlg.ExportToMail");
        EXPECT_EQ(host::windowText(window), title);
        EXPECT_EQ(controlText(window, titleId), title);
        EXPECT_EQ(controlText(window, descId), hostText("Common", "ExportToMailDlg.Desc"));
        EXPECT_EQ(controlText(window, subjectLabelId), hostText("Common", "ExportToMailDlg.Subject"));
        EXPECT_EQ(controlText(window, IDCANCEL), hostText("Common", "Button.Cancel"));
        EXPECT_EQ(controlText(window, IDOK), L"OK");
    })});
}

TEST_P(MailDialogLanguageTest, ClipsNoText) {
    inspect({now([](HWND window) { EXPECT_THAT(test::clippedTexts(window), IsEmpty()); })});
}

TEST_P(MailDialogLanguageTest, HidesNoPartOfTheSubjectsLabelUnderTheEdit) {
    inspect({now([](HWND window) {
        HWND label = GetDlgItem(window, subjectLabelId);
        RECT free = test::rectIn(window, subjectLabelId);
        free.right = test::rectIn(window, subjectId).left;
        SetWindowPos(label, nullptr, 0, 0, free.right - free.left, free.bottom - free.top,
                     SWP_NOMOVE | SWP_NOZORDER);
        EXPECT_THAT(test::clippedTexts(window), IsEmpty());
    })});
}

INSTANTIATE_TEST_SUITE_P(Languages, MailDialogLanguageTest, testing::ValuesIn(test::languageFiles()),
                         languageName);

TEST_F(MailDialogTest, ClippedTextsAreFoundInEveryLabelAndButtonAndTheTitle) {
    inspect({now([](HWND window) {
        const std::wstring tooLong(400, L'W');
        for (int id : {IDOK, IDCANCEL, titleId, descId, subjectLabelId}) {
            const std::wstring text = controlText(window, id);
            SetDlgItemTextW(window, id, tooLong.c_str());
            EXPECT_THAT(test::clippedTexts(window), ElementsAre(StartsWith(std::to_string(id) + " ")));
            SetDlgItemTextW(window, id, text.c_str());
        }
        SetWindowTextW(window, tooLong.c_str());
        EXPECT_THAT(test::clippedTexts(window), ElementsAre(StartsWith("title ")));
    })});
}

TEST_F(MailDialogTest, ShowsTheKeysOfTextsThatTheHostLacksButItsOwnOk) {
    *bxutils::getResourceManager() = {};
    inspect({now([](HWND window) {
        EXPECT_EQ(host::windowText(window), L"ExportToMailDlg.ExportToMail");
        EXPECT_EQ(controlText(window, titleId), L"ExportToMailDlg.ExportToMail");
        EXPECT_EQ(controlText(window, descId), L"ExportToMailDlg.Desc");
        EXPECT_EQ(controlText(window, subjectLabelId), L"ExportToMailDlg.Subject");
        EXPECT_EQ(controlText(window, IDCANCEL), L"Button.Cancel");
        EXPECT_EQ(controlText(window, IDOK), L"OK");
    })});
}

// The subject.

TEST_F(MailDialogTest, ShowsTheSubjectItWasGiven) {
    const std::wstring subject = L" Faktury říjen 漢字 ";
    inspect({now([&](HWND window) { EXPECT_EQ(controlText(window, subjectId), subject); })}, subject);
    EXPECT_EQ(dialog->getSubject(), subject);
}

TEST_F(MailDialogTest, KeepsACopyOfTheSubjectItWasGiven) {
    std::wstring subject = L"first";
    const ExportToMailDlg copying(nullptr, &subject);
    subject = L"second";
    EXPECT_EQ(copying.getSubject(), L"first");
}

TEST_F(MailDialogTest, OkGivesTheSubjectUnchangedWhenNothingWasEntered) {
    for (const wchar_t* subject : {L"", L"Invoices"}) {
        EXPECT_EQ(show({click(IDOK)}, subject), IDOK);
        EXPECT_EQ(dialog->getSubject(), subject);
    }
}

TEST_F(MailDialogTest, OkGivesWhatWasEnteredAsItIs) {
    EXPECT_EQ(show({enterText(subjectId, L"  Účty: 1/2 "), click(IDOK)}, L"before"), IDOK);
    EXPECT_EQ(dialog->getSubject(), L"  Účty: 1/2 ");
}

TEST_F(MailDialogTest, OkTakesAnEmptySubject) {
    EXPECT_EQ(show({enterText(subjectId, L""), click(IDOK)}, L"before"), IDOK);
    EXPECT_EQ(dialog->getSubject(), L"");
}

TEST_F(MailDialogTest, OkTakesASubjectOfAnyLength) {
    const std::wstring subject(5000, L'á');
    EXPECT_EQ(show({enterText(subjectId, subject), click(IDOK)}), IDOK);
    EXPECT_EQ(dialog->getSubject(), subject);
}

TEST_F(MailDialogTest, EnterInTheEditIsOk) {
    EXPECT_EQ(show({enterText(subjectId, L"Invoices"), withFocus([](HWND window) {
                        HWND edit = GetDlgItem(window, subjectId);
                        SendMessageW(window, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(edit), TRUE);
                        test::pressKey(edit, VK_RETURN);
                    })}),
              IDOK);
    EXPECT_EQ(dialog->getSubject(), L"Invoices");
}

TEST_F(MailDialogTest, CancelDropsWhatWasEntered) {
    inspect({enterText(subjectId, L"after")}, L"before");
    EXPECT_EQ(dialog->getSubject(), L"before");
}

TEST_F(MailDialogTest, EscapeIsCancel) {
    EXPECT_EQ(show({enterText(subjectId, L"after"),
                    withFocus([](HWND window) { test::pressKey(GetDlgItem(window, IDOK), VK_ESCAPE); })},
                   L"before"),
              IDCANCEL);
    EXPECT_EQ(dialog->getSubject(), L"before");
}

TEST_F(MailDialogTest, ClosingTheWindowIsCancel) {
    EXPECT_EQ(show({enterText(subjectId, L"after"),
                    now([](HWND window) { PostMessageW(window, WM_SYSCOMMAND, SC_CLOSE, 0); })},
                   L"before"),
              IDCANCEL);
    EXPECT_EQ(dialog->getSubject(), L"before");
}

} // namespace
