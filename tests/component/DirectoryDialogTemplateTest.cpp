// The directory dialog's template as it stands in the component's resources.
#include "resource.h"
#include "support/DialogTemplate.h"

#include <gmock/gmock.h>

using test::buttonClass;
using test::DialogTemplate;
using test::editClass;
using test::listBoxClass;
using test::staticClass;
using test::TemplateItem;
using testing::ElementsAre;

namespace {

TEST(DirectoryDialogTemplateTest, IsAPopupWithCaptionSystemMenuAndModalFrame) {
    const DialogTemplate dialog(4002);
    EXPECT_EQ(dialog.style, DS_SETFONT | DS_MODALFRAME | WS_POPUP | WS_CAPTION | WS_SYSMENU);
    EXPECT_EQ(dialog.extendedStyle, 0u);
    EXPECT_THAT(dialog.rect, ElementsAre(0, 0, 327, 183));
    EXPECT_EQ(dialog.title, L"");
}

TEST(DirectoryDialogTemplateTest, AsksForTheDialogFontOfTheSystem) {
    const DialogTemplate dialog(4002);
    EXPECT_EQ(dialog.font, L"MS Shell Dlg");
    EXPECT_EQ(dialog.fontSize, 8);
}

TEST(DirectoryDialogTemplateTest, HoldsSixteenControlsInTabOrder) {
    constexpr DWORD visible = WS_CHILD | WS_VISIBLE;
    constexpr DWORD edit = visible | WS_BORDER | WS_TABSTOP | ES_AUTOHSCROLL;
    constexpr DWORD list =
        visible | WS_BORDER | WS_TABSTOP | WS_VSCROLL | LBS_NOTIFY | LBS_SORT | LBS_NOINTEGRALHEIGHT;
    constexpr DWORD check = visible | WS_TABSTOP | BS_AUTOCHECKBOX;
    constexpr DWORD label = visible | WS_GROUP | SS_RIGHT;
    EXPECT_THAT(
        DialogTemplate(4002).items,
        ElementsAre(
            TemplateItem{4006, editClass, edit, {83, 7, 237, 14}, L""},
            TemplateItem{4028, listBoxClass, list, {83, 30, 237, 42}, L""},
            TemplateItem{4008, editClass, edit, {83, 102, 237, 14}, L""},
            TemplateItem{4027, buttonClass, check, {83, 126, 10, 10}, L""},
            TemplateItem{4009, editClass, edit | ES_NUMBER, {83, 140, 51, 14}, L""},
            TemplateItem{4010, editClass, edit | ES_NUMBER, {202, 140, 50, 14}, L""},
            TemplateItem{1, buttonClass, visible | WS_TABSTOP | BS_DEFPUSHBUTTON, {208, 164, 50, 14}, L"OK"},
            TemplateItem{2, buttonClass, visible | WS_TABSTOP | BS_PUSHBUTTON, {270, 164, 50, 14}, L"Cancel"},
            TemplateItem{4011, staticClass, label, {7, 9, 65, 8}, L"Path:"},
            TemplateItem{4012, staticClass, label, {7, 104, 65, 8}, L"Name:"},
            TemplateItem{4013, staticClass, label, {7, 143, 65, 8}, L"First Index:"},
            TemplateItem{4014, staticClass, label, {135, 143, 59, 8}, L"Index Length:"},
            TemplateItem{4015, staticClass, label, {7, 126, 65, 8}, L"Append Index:"},
            TemplateItem{4029, staticClass, label, {7, 32, 65, 8}, L"Last Exports:"},
            TemplateItem{4030, buttonClass, check, {83, 83, 10, 10}, L""},
            TemplateItem{4016, staticClass, label, {7, 80, 65, 16}, L"Použít název nadřazené složky:"}));
}

} // namespace
