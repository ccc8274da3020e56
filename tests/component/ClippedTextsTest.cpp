// The check for clipped texts can fail.
#include "support/ClippedTexts.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

constexpr int controlId = 77;

/// A window with one control in the font of the dialogs.
class Window {
public:
    Window(const wchar_t* title, int width) {
        window = CreateWindowExW(0, L"#32770", title, WS_CAPTION | WS_SYSMENU | WS_POPUP | WS_VISIBLE, 0, 0,
                                 width, 200, nullptr, nullptr, nullptr, nullptr);
        LOGFONTW description = {};
        description.lfHeight = -11;
        description.lfCharSet = DEFAULT_CHARSET;
        wcscpy(description.lfFaceName, L"MS Shell Dlg");
        font = CreateFontIndirectW(&description);
    }
    ~Window() {
        DestroyWindow(window);
        DeleteObject(font);
    }
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    void add(const wchar_t* type, DWORD style, SIZE size, const wchar_t* text) {
        HWND control = CreateWindowExW(0, type, text, WS_CHILD | WS_VISIBLE | style, 10, 10, size.cx, size.cy,
                                       window, reinterpret_cast<HMENU>(INT_PTR{controlId}), nullptr, nullptr);
        SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
    }

    HWND window;

private:
    HFONT font;
};

struct TextCase {
    const char* name;
    const wchar_t* type;
    DWORD style;
    SIZE size;
    const wchar_t* text;
    bool clipped;
};

class ClippedTextsTest : public testing::TestWithParam<TextCase> {};

TEST_P(ClippedTextsTest, AreFound) {
    Window window(L"Title", 400);
    window.add(GetParam().type, GetParam().style, GetParam().size, GetParam().text);
    if (GetParam().clipped)
        EXPECT_THAT(test::clippedTexts(window.window), ElementsAre(StartsWith("77 ")));
    else
        EXPECT_THAT(test::clippedTexts(window.window), IsEmpty());
}

constexpr wchar_t longText[] = L"A text that is far too long for its place";

INSTANTIATE_TEST_SUITE_P(
    Controls, ClippedTextsTest,
    testing::Values(
        TextCase{"ShortLabel", L"Static", SS_RIGHT, {98, 13}, L"Path:", false},
        TextCase{"LongLabel", L"Static", SS_RIGHT, {98, 13}, longText, true},
        TextCase{"LongLabelWithRoomToWrap", L"Static", SS_LEFT, {120, 39}, longText, false},
        TextCase{"LongLabelWithRoomToWrapInVain", L"Static", SS_LEFT, {120, 13}, longText, true},
        TextCase{"WordThatCannotWrap", L"Static", SS_LEFT, {60, 39}, L"Unwrappablelongword", true},
        TextCase{"LabelThatMustNotWrap", L"Static", SS_LEFTNOWORDWRAP, {120, 39}, longText, true},
        TextCase{"LabelWithEllipsis", L"Static", SS_ENDELLIPSIS, {120, 39}, longText, true},
        TextCase{"LabelTooLow", L"Static", SS_LEFT, {98, 7}, L"Path:", true},
        TextCase{"EmptyLabel", L"Static", SS_LEFT, {1, 1}, L"", false},
        TextCase{"ShortButton", L"Button", BS_PUSHBUTTON, {75, 23}, L"Cancel", false},
        TextCase{"LongButton", L"Button", BS_PUSHBUTTON, {75, 23}, longText, true},
        TextCase{"LongDefaultButton", L"Button", BS_DEFPUSHBUTTON, {75, 23}, longText, true},
        TextCase{"ShortCheckBox", L"Button", BS_AUTOCHECKBOX, {75, 15}, L"Ask", false},
        TextCase{
            "CheckBoxWhoseBoxTakesTheRoom", L"Button", BS_AUTOCHECKBOX, {75, 15}, L"Cancel asking", true},
        TextCase{"LongGroupTitle", L"Button", BS_GROUPBOX, {100, 80}, longText, true},
        TextCase{"LongEntry", L"Edit", ES_AUTOHSCROLL, {50, 20}, longText, false}),
    [](const auto& info) { return std::string(info.param.name); });

class LeaningTextTest : public testing::Test {
protected:
    LeaningTextTest() {
        LOGFONTW description = {};
        description.lfHeight = -60;
        description.lfItalic = TRUE;
        wcscpy(description.lfFaceName, L"Times New Roman");
        font = CreateFontIndirectW(&description);
    }
    ~LeaningTextTest() override { DeleteObject(font); }

    void add(DWORD style) {
        window.add(L"Static", style, {100, 80}, L"f");
        SendDlgItemMessageW(window.window, controlId, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
    }

    HFONT font;
    Window window{L"Title", 400};
};

TEST_F(LeaningTextTest, OverTheEdgeIsFound) {
    add(SS_RIGHT);
    EXPECT_THAT(test::clippedTexts(window.window), ElementsAre("77 \"f\" is drawn over the edge"));
}

TEST_F(LeaningTextTest, AwayFromTheEdgesPasses) {
    add(SS_CENTER);
    EXPECT_THAT(test::clippedTexts(window.window), IsEmpty());
}

TEST(ClippedTextsTitleTest, TitleWithinTheCaptionPasses) {
    EXPECT_THAT(test::clippedTexts(Window(L"Export", 300).window), IsEmpty());
}

TEST(ClippedTextsTitleTest, TitleWiderThanTheCaptionIsFound) {
    EXPECT_THAT(test::clippedTexts(Window(longText, 150).window), ElementsAre(StartsWith("title ")));
}

TEST(ClippedTextsNestingTest, ControlsOfInnerWindowsAreChecked) {
    Window window(L"Title", 400);
    HWND panel = CreateWindowExW(0, L"Static", L"", WS_CHILD | WS_VISIBLE, 0, 0, 200, 100, window.window,
                                 nullptr, nullptr, nullptr);
    CreateWindowExW(0, L"Static", longText, WS_CHILD | WS_VISIBLE, 0, 0, 20, 10, panel,
                    reinterpret_cast<HMENU>(INT_PTR{78}), nullptr, nullptr);
    EXPECT_THAT(test::clippedTexts(window.window), ElementsAre(StartsWith("78 ")));
}

TEST(ClippedTextsNestingTest, HiddenControlsAreNot) {
    Window window(L"Title", 400);
    CreateWindowExW(0, L"Static", longText, WS_CHILD, 0, 0, 20, 10, window.window, nullptr, nullptr, nullptr);
    EXPECT_THAT(test::clippedTexts(window.window), IsEmpty());
}

} // namespace
