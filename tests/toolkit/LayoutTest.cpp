// Resizable dialogs: which control goes where, the smallest size, the grip.
#include "SampleDialogTest.h"

#include <ostream>
#include <random>

namespace {

using L = CBCGPStaticLayout;
using test::rectInParent;

class LayoutTest : public test::SampleDialogTest {
protected:
    LayoutTest() { dialog.EnableLayout(TRUE, nullptr, TRUE); }

    CBCGPStaticLayout* layout() { return DYNAMIC_DOWNCAST(CBCGPStaticLayout, dialog.GetLayout()); }

    void growTo(CSize window) {
        dialog.SetWindowPos(nullptr, 0, 0, window.cx, window.cy, SWP_NOMOVE | SWP_NOZORDER);
    }
    void growBy(int x, int y) {
        const CSize size = windowSize();
        growTo({size.cx + x, size.cy + y});
    }
    CSize windowSize() const {
        CRect rect;
        dialog.GetWindowRect(rect);
        return rect.Size();
    }
};

struct Follow {
    const char* name;
    L::XMoveType move;
    L::XSizeType size;
    CPoint percMove;
    CPoint percSize;
    CRect expected; ///< what is added to each edge when the dialog grows by 100 and 60
};

void PrintTo(const Follow& value, std::ostream* stream) {
    *stream << value.name;
}

class LayoutFollowTest : public LayoutTest, public testing::WithParamInterface<Follow> {};

TEST_P(LayoutFollowTest, MovesEdgesByTheirShare) {
    const Follow& follow = GetParam();
    dialog.onInit = [&] {
        ASSERT_TRUE(
            layout()->AddAnchor(dialog.name, follow.move, follow.size, follow.percMove, follow.percSize));
        const CRect before = rectInParent(dialog.name);
        growBy(100, 60);
        const CRect after = rectInParent(dialog.name);
        EXPECT_EQ(after.left - before.left, follow.expected.left);
        EXPECT_EQ(after.top - before.top, follow.expected.top);
        EXPECT_EQ(after.right - before.right, follow.expected.right);
        EXPECT_EQ(after.bottom - before.bottom, follow.expected.bottom);
    };
    showAnd([] {});
}

const CPoint c_whole(100, 100);

INSTANTIATE_TEST_SUITE_P(
    Anchors, LayoutFollowTest,
    testing::Values(
        Follow{"Nothing", L::e_MoveTypeNone, L::e_SizeTypeNone, c_whole, c_whole, {0, 0, 0, 0}},
        Follow{"MoveHorizontally", L::e_MoveTypeHorz, L::e_SizeTypeNone, c_whole, c_whole, {100, 0, 100, 0}},
        Follow{"MoveVertically", L::e_MoveTypeVert, L::e_SizeTypeNone, c_whole, c_whole, {0, 60, 0, 60}},
        Follow{"MoveBoth", L::e_MoveTypeBoth, L::e_SizeTypeNone, c_whole, c_whole, {100, 60, 100, 60}},
        Follow{
            "MoveHalfAndWhole", L::e_MoveTypeBoth, L::e_SizeTypeNone, {50, 100}, c_whole, {50, 60, 50, 60}},
        Follow{"SizeHorizontally", L::e_MoveTypeNone, L::e_SizeTypeHorz, c_whole, c_whole, {0, 0, 100, 0}},
        Follow{"SizeVertically", L::e_MoveTypeNone, L::e_SizeTypeVert, c_whole, c_whole, {0, 0, 0, 60}},
        Follow{"SizeBoth", L::e_MoveTypeNone, L::e_SizeTypeBoth, c_whole, c_whole, {0, 0, 100, 60}},
        Follow{"SizeHalf", L::e_MoveTypeVert, L::e_SizeTypeHorz, c_whole, {50, 0}, {0, 60, 50, 60}},
        Follow{
            "MoveHalfSizeHalf", L::e_MoveTypeBoth, L::e_SizeTypeHorz, {50, 100}, {50, 0}, {50, 60, 100, 60}},
        Follow{"OnlyNamedAxes", L::e_MoveTypeHorz, L::e_SizeTypeVert, {10, 90}, {90, 50}, {10, 0, 10, 30}}),
    [](const auto& info) { return info.param.name; });

TEST_F(LayoutTest, ComesBackExactlyAfterManyResizings) {
    dialog.onInit = [this] {
        layout()->AddAnchor(dialog.first, L::e_MoveTypeVert, L::e_SizeTypeHorz, c_whole, {50, 0});
        layout()->AddAnchor(dialog.second, L::e_MoveTypeBoth, L::e_SizeTypeHorz, {50, 100}, {50, 0});
        const CSize size = windowSize();
        const CRect first = rectInParent(dialog.first);
        const CRect second = rectInParent(dialog.second);
        std::mt19937 random(1);
        std::uniform_int_distribution<int> growth(0, 201);
        for (int round = 0; round < 100; ++round)
            growTo({size.cx + growth(random), size.cy + growth(random)});
        growTo(size);
        EXPECT_EQ(rectInParent(dialog.first), first);
        EXPECT_EQ(rectInParent(dialog.second), second);
    };
    showAnd([] {});
}

TEST_F(LayoutTest, ANewAnchorReplacesTheFormerOne) {
    dialog.onInit = [this] {
        layout()->AddAnchor(dialog.name, L::e_MoveTypeBoth, L::e_SizeTypeNone);
        layout()->AddAnchor(dialog.name, L::e_MoveTypeNone, L::e_SizeTypeNone);
        const CRect before = rectInParent(dialog.name);
        growBy(40, 40);
        EXPECT_EQ(rectInParent(dialog.name), before);
    };
    showAnd([] {});
}

TEST_F(LayoutTest, RefusesWindowsThatAreNoChildren) {
    dialog.onInit = [this] {
        EXPECT_FALSE(layout()->AddAnchor(nullptr, L::e_MoveTypeBoth, L::e_SizeTypeNone));
        EXPECT_FALSE(layout()->AddAnchor(dialog, L::e_MoveTypeBoth, L::e_SizeTypeNone));
    };
    showAnd([] {});
}

TEST_F(LayoutTest, DoesNotShrinkBelowTheTemplate) {
    showAnd([this] {
        const CSize size = windowSize();
        growTo({100, 50});
        EXPECT_EQ(windowSize(), size);
        growTo({size.cx + 30, 50});
        EXPECT_EQ(windowSize(), CSize(size.cx + 30, size.cy));
    });
}

TEST_F(LayoutTest, TakesAClientAreaOfTheTemplatesSize) {
    showAnd([this] {
        CRect expected(0, 0, 327, 183);
        MapDialogRect(dialog, expected);
        CRect client;
        dialog.GetClientRect(client);
        EXPECT_EQ(client.Size(), expected.Size());
    });
}

TEST_F(LayoutTest, MakesTheFrameResizable) {
    showAnd([this] {
        EXPECT_TRUE(dialog.GetStyle() & WS_THICKFRAME);
        EXPECT_FALSE(dialog.GetStyle() & DS_MODALFRAME);
        EXPECT_TRUE(dialog.GetStyle() & WS_CLIPCHILDREN);
    });
}

TEST_F(LayoutTest, HasASizeGripInTheCorner) {
    showAnd([this] {
        CRect client;
        dialog.GetClientRect(client);
        CPoint corner(client.right - 2, client.bottom - 2);
        dialog.ClientToScreen(&corner);
        EXPECT_EQ(dialog.SendMessage(WM_NCHITTEST, 0, MAKELPARAM(corner.x, corner.y)), HTBOTTOMRIGHT);
        corner.Offset(-40, -40);
        EXPECT_EQ(dialog.SendMessage(WM_NCHITTEST, 0, MAKELPARAM(corner.x, corner.y)), HTCLIENT);
    });
}

TEST_F(LayoutTest, HasNoGripWhenNotAskedFor) {
    dialog.EnableLayout(TRUE, nullptr, FALSE);
    showAnd([this] {
        CRect client;
        dialog.GetClientRect(client);
        CPoint corner(client.right - 2, client.bottom - 2);
        dialog.ClientToScreen(&corner);
        EXPECT_EQ(dialog.SendMessage(WM_NCHITTEST, 0, MAKELPARAM(corner.x, corner.y)), HTCLIENT);
    });
}

TEST_F(LayoutTest, IsOfTheClassAskedFor) {
    dialog.EnableLayout(TRUE, RUNTIME_CLASS(CBCGPControlsLayout));
    EXPECT_EQ(dialog.GetLayout()->GetRuntimeClass(), RUNTIME_CLASS(CBCGPControlsLayout));
    EXPECT_EQ(layout(), nullptr);
}

TEST_F(LayoutTest, CanBeTakenBack) {
    dialog.EnableLayout(FALSE);
    EXPECT_EQ(dialog.GetLayout(), nullptr);
    showAnd([this] { EXPECT_FALSE(dialog.GetStyle() & WS_THICKFRAME); });
}

} // namespace
