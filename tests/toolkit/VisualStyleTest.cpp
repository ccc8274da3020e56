// The visual style of dialogs: whose background shows through.
#include "SampleDialogTest.h"

#include <uxtheme.h>

namespace {

class VisualStyleTest : public test::SampleDialogTest {
protected:
    void SetUp() override { ASSERT_TRUE(IsThemeActive()); }

    /// Whether the control is drawn without a background of its own.
    bool isTransparent(const CWnd& control) const {
        const HDC dc = GetDC(control);
        const LRESULT brush = dialog.SendMessage(WM_CTLCOLORSTATIC, reinterpret_cast<WPARAM>(dc),
                                                 reinterpret_cast<LPARAM>(control.m_hWnd));
        ReleaseDC(control, dc);
        return reinterpret_cast<HGDIOBJ>(brush) == GetStockObject(HOLLOW_BRUSH);
    }
};

TEST_F(VisualStyleTest, ShowsThroughLabelsAndCheckBoxes) {
    dialog.EnableVisualManagerStyle(TRUE, FALSE, nullptr);
    showAnd([this] {
        EXPECT_TRUE(isTransparent(dialog.label));
        EXPECT_TRUE(isTransparent(dialog.check));
    });
}

TEST_F(VisualStyleTest, LeavesReadOnlyEditsTheirBackground) {
    dialog.EnableVisualManagerStyle();
    showAnd([this] { EXPECT_FALSE(isTransparent(dialog.path)); });
}

TEST_F(VisualStyleTest, LeavesListedControlsTheirBackground) {
    CList<UINT, UINT> plain;
    plain.AddTail(IDC_LABEL);
    dialog.EnableVisualManagerStyle(TRUE, FALSE, &plain);
    showAnd([this] {
        EXPECT_FALSE(isTransparent(dialog.label));
        EXPECT_TRUE(isTransparent(dialog.check));
    });
}

TEST_F(VisualStyleTest, IsOffUntilAskedFor) {
    EXPECT_FALSE(dialog.IsVisualManagerStyle());
    showAnd([this] { EXPECT_FALSE(isTransparent(dialog.label)); });
}

} // namespace
