// The ZIP dialog's template as it stands in the component's resources.
#include "support/DialogTemplate.h"

#include <gmock/gmock.h>

using test::buttonClass;
using test::DialogTemplate;
using test::editClass;
using test::staticClass;
using test::TemplateItem;
using testing::ElementsAre;

namespace {

TEST(ZipDialogTemplateTest, IsAPopupWithCaptionSystemMenuAndModalFrame) {
    const DialogTemplate dialog(321);
    EXPECT_EQ(dialog.style, DS_SETFONT | DS_MODALFRAME | WS_POPUP | WS_CAPTION | WS_SYSMENU);
    EXPECT_EQ(dialog.extendedStyle, 0u);
    EXPECT_THAT(dialog.rect, ElementsAre(0, 0, 311, 134));
    EXPECT_EQ(dialog.title, L"Dialog");
}

TEST(ZipDialogTemplateTest, AsksForTheDialogFontOfTheSystem) {
    const DialogTemplate dialog(321);
    EXPECT_EQ(dialog.font, L"MS Shell Dlg");
    EXPECT_EQ(dialog.fontSize, 8);
}

TEST(ZipDialogTemplateTest, HoldsNineControlsInTabOrder) {
    constexpr DWORD visible = WS_CHILD | WS_VISIBLE;
    constexpr DWORD edit = visible | WS_BORDER | WS_TABSTOP | ES_AUTOHSCROLL;
    constexpr DWORD button = visible | WS_TABSTOP;
    constexpr DWORD label = visible | WS_GROUP | SS_LEFT;
    EXPECT_THAT(
        DialogTemplate(321).items,
        ElementsAre(TemplateItem{1, buttonClass, button | BS_DEFPUSHBUTTON, {198, 113, 50, 14}, L"OK"},
                    TemplateItem{2, buttonClass, button | BS_PUSHBUTTON, {254, 113, 50, 14}, L"Cancel"},
                    TemplateItem{4032, staticClass, label, {7, 7, 239, 8}, L"IDC_EXPORT_TITLE"},
                    TemplateItem{4033, staticClass, label, {7, 23, 297, 32}, L"IDC_EXPORT_DESC"},
                    TemplateItem{4034, staticClass, label, {7, 73, 66, 8}, L"IDC_EXPORT_PATH_TEXT"},
                    TemplateItem{4036, staticClass, label, {7, 94, 66, 8}, L"IDC_EXPORT_PREFIX_TEXT"},
                    TemplateItem{4035, editClass, edit, {73, 70, 165, 14}, L""},
                    TemplateItem{4037, editClass, edit, {73, 91, 165, 14}, L""},
                    TemplateItem{4038, buttonClass, button | BS_PUSHBUTTON, {247, 71, 50, 14}, L"Button1"}));
}

} // namespace
