// The mail dialog's template as it stands in the component's resources.
#include "support/DialogTemplate.h"

#include <gmock/gmock.h>

using test::buttonClass;
using test::DialogTemplate;
using test::editClass;
using test::staticClass;
using test::TemplateItem;
using testing::ElementsAre;

namespace {

TEST(MailDialogTemplateTest, IsAPopupWithCaptionSystemMenuAndModalFrame) {
    const DialogTemplate dialog(322);
    EXPECT_EQ(dialog.style, DS_SETFONT | DS_MODALFRAME | WS_POPUP | WS_CAPTION | WS_SYSMENU);
    EXPECT_EQ(dialog.extendedStyle, 0u);
    EXPECT_THAT(dialog.rect, ElementsAre(0, 0, 309, 115));
    EXPECT_EQ(dialog.title, L"Dialog");
}

TEST(MailDialogTemplateTest, AsksForTheDialogFontOfTheSystem) {
    const DialogTemplate dialog(322);
    EXPECT_EQ(dialog.font, L"MS Shell Dlg");
    EXPECT_EQ(dialog.fontSize, 8);
}

TEST(MailDialogTemplateTest, HoldsSixControlsInTabOrder) {
    constexpr DWORD visible = WS_CHILD | WS_VISIBLE;
    constexpr DWORD edit = visible | WS_BORDER | WS_TABSTOP | ES_AUTOHSCROLL;
    constexpr DWORD button = visible | WS_TABSTOP;
    constexpr DWORD label = visible | WS_GROUP | SS_LEFT;
    EXPECT_THAT(
        DialogTemplate(322).items,
        ElementsAre(TemplateItem{1, buttonClass, button | BS_DEFPUSHBUTTON, {198, 94, 50, 14}, L"OK"},
                    TemplateItem{2, buttonClass, button | BS_PUSHBUTTON, {252, 94, 50, 14}, L"Cancel"},
                    TemplateItem{4039, staticClass, label, {7, 7, 239, 8}, L"IDC_SEND_MAIL_TITLE"},
                    TemplateItem{4040, staticClass, label, {7, 23, 297, 32}, L"IDC_SEND_MAIL_PATH_TEXT"},
                    TemplateItem{4041, staticClass, label, {7, 73, 92, 8}, L"IDC_SEND_MAIL_SUBJECT_TEXT"},
                    TemplateItem{4042, editClass, edit, {73, 70, 229, 14}, L""}));
}

} // namespace
