// The check for access keys can fail.
#include "support/AccessKeys.h"

#include <gmock/gmock.h>

using test::wrongAccessKeys;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class AccessKeysTest : public testing::Test {
protected:
    ~AccessKeysTest() override {
        DestroyWindow(window);
        DestroyMenu(menu);
    }

    void add(const wchar_t* type, const wchar_t* text, int id = 77,
             DWORD style = WS_TABSTOP | WS_VISIBLE) const {
        CreateWindowExW(0, type, text, WS_CHILD | style, 0, 0, 50, 20, window,
                        reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), nullptr, nullptr);
    }
    void addLabel(const wchar_t* text, DWORD style = WS_VISIBLE) const { add(L"Static", text, 76, style); }
    void addCommand(const wchar_t* text) const { AppendMenuW(menu, MF_STRING, 1, text); }

    const HWND window =
        CreateWindowExW(0, L"#32770", L"", WS_POPUP, 0, 0, 200, 200, nullptr, nullptr, nullptr, nullptr);
    const HMENU menu = CreateMenu();
};

TEST_F(AccessKeysTest, OfTheirOwnPass) {
    addLabel(L"&Name:");
    add(L"Edit", L"&n is what the person wrote");
    add(L"Button", L"&Open");
    EXPECT_THAT(wrongAccessKeys(window), IsEmpty());
}

TEST_F(AccessKeysTest, ThatTwoHaveAreFoundInAnyCase) {
    add(L"Button", L"&Open");
    add(L"Button", L"C&opy");
    EXPECT_THAT(wrongAccessKeys(window), ElementsAre("\"C&opy\" has the access key of \"&Open\""));
    addLabel(L"&Úhel:");
    add(L"Button", L"&účet");
    EXPECT_EQ(wrongAccessKeys(window).size(), 2);
}

TEST_F(AccessKeysTest, MissingOnAButtonAreFound) {
    add(L"Button", L"Open");
    add(L"Button", L"Cut && copy");
    EXPECT_THAT(wrongAccessKeys(window),
                ElementsAre("\"Open\" has no access key", "\"Cut && copy\" has no access key"));
}

TEST_F(AccessKeysTest, MissingOnAFieldAreFound) {
    add(L"Edit", L"", 5);
    addLabel(L"Name:");
    add(L"ComboBox", L"", 6);
    addLabel(L"&Path:", WS_VISIBLE | SS_NOPREFIX);
    add(L"Edit", L"", 7);
    addLabel(L"&Folder:");
    add(L"Edit", L"", 8);
    add(L"Edit", L"", 9);
    EXPECT_THAT(wrongAccessKeys(window),
                ElementsAre("5 after \"\" has no access key", "6 after \"Name:\" has no access key",
                            "7 after \"\" has no access key", "9 after \"\" has no access key"));
}

TEST_F(AccessKeysTest, AreNotAskedOfWhatNeedsNone) {
    add(L"Button", L"OK", IDOK);
    add(L"Button", L"Cancel", IDCANCEL);
    add(L"Button", L"Group", 77, WS_VISIBLE | BS_GROUPBOX);
    add(L"Button", L"Hidden", 77, WS_TABSTOP);
    EXPECT_THAT(wrongAccessKeys(window), IsEmpty());
}

TEST_F(AccessKeysTest, OfCommandsPass) {
    addCommand(L"&Open…\tCtrl+O");
    AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
    addCommand(L"&Close");
    EXPECT_THAT(wrongAccessKeys(menu), IsEmpty());
}

TEST_F(AccessKeysTest, OfCommandsAreFoundOnEachLevel) {
    HMENU inner = CreatePopupMenu();
    AppendMenuW(inner, MF_STRING, 2, L"&Open");
    AppendMenuW(inner, MF_STRING, 3, L"Print\tCtrl+&P");
    AppendMenuW(menu, MF_POPUP, reinterpret_cast<UINT_PTR>(inner), L"&File");
    addCommand(L"&Open");
    addCommand(L"&File again");
    EXPECT_THAT(wrongAccessKeys(menu), ElementsAre("\"&File again\" has the access key of \"&File\"",
                                                   "\"Print\" has no access key"));
}

} // namespace
