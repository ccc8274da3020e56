// What the user does to the page view with the mouse and the keyboard. These tests move the real pointer.
#include "desktop/FileDrag.h"
#include "desktop/PageViewFixture.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;

class PageViewPointerTest : public PageViewFixture {
protected:
    PageViewPointerTest() { ShowWindow(source, SW_SHOWNOACTIVATE); }
    ~PageViewPointerTest() override { DestroyWindow(source); }

    auto middle(std::size_t index) const { return at(&PageViewPointerTest::middleOf, index); }
    auto leftPart(std::size_t index) const { return at(&PageViewPointerTest::leftPartOf, index); }
    auto rightPart(std::size_t index) const { return at(&PageViewPointerTest::rightPartOf, index); }

    auto nearTheBottom() const {
        return [this]() -> POINT {
            CRect rect;
            view.GetWindowRect(rect);
            return CPoint(rect.CenterPoint().x, rect.bottom - 5);
        };
    }
    /// Beside the view.
    auto outside() const {
        return []() -> POINT { return {20, 20}; };
    }

    /// Four pages and two.
    void addTwoRows() {
        addPages({L"a.pdf", L"b.pdf", L"c.pdf", L"d.pdf", L"e.pdf", L"f.pdf"});
        ASSERT_EQ(onScreen(3).top, onScreen(0).top);
        ASSERT_EQ(onScreen(4).left, onScreen(0).left);
    }

    /// Of ten rows.
    static Names manyNames() {
        Names many;
        for (int i = 0; i < 40; ++i)
            many.push_back(std::to_wstring(100 + i) + L".pdf");
        return many;
    }

    test::UserInput& dragPage(std::size_t index) {
        return user.moveTo(middle(index)).press().moveTo(leftPart(index));
    }

    /// Files come from a window beside the view.
    test::UserInput& dragFiles(const std::vector<std::wstring>& paths) {
        return drag(CF_HDROP, test::fileData(paths));
    }
    test::UserInput& drag(UINT format, HGLOBAL contents) {
        return user.moveTo(outside()).press().waitFor("drag", [this, format, contents] {
            effect = test::drag(source, format, contents);
            return true;
        });
    }

    /// Stands for the other program.
    const HWND source = CreateWindowExW(WS_EX_TOPMOST, L"Static", L"", WS_POPUP | SS_NOTIFY, 0, 0, 50, 50,
                                        nullptr, nullptr, nullptr, nullptr);
    DWORD effect = DROPEFFECT_NONE;
};

TEST_F(PageViewPointerTest, SelectsByClicks) {
    addPages({L"a.pdf", L"b.pdf", L"c.pdf"});
    user.click(middle(0)).keyDown(VK_CONTROL).click(middle(2)).keyUp(VK_CONTROL);
    ASSERT_TRUE(user.run());
    EXPECT_EQ(view.selection(), (Indices{0, 2}));
}

TEST_F(PageViewPointerTest, SelectsWithTheKeyboard) {
    addPages({L"a.pdf", L"b.pdf", L"c.pdf", L"d.pdf"});
    user.key(VK_END);
    ASSERT_TRUE(user.run());
    EXPECT_EQ(view.selection(), Indices{3});
    user.key(VK_HOME).keyDown(VK_SHIFT).key(VK_RIGHT).keyUp(VK_SHIFT);
    ASSERT_TRUE(user.run());
    EXPECT_EQ(view.selection(), (Indices{0, 1}));
    user.keyDown(VK_CONTROL).key('A').keyUp(VK_CONTROL);
    ASSERT_TRUE(user.run());
    EXPECT_EQ(view.selection(), (Indices{0, 1, 2, 3}));
}

TEST_F(PageViewPointerTest, GoesOnWithTheNextRowAtTheEndOfOne) {
    addTwoRows();
    user.key(VK_HOME).key(VK_RIGHT).key(VK_RIGHT).key(VK_RIGHT).key(VK_RIGHT);
    ASSERT_TRUE(user.run());
    EXPECT_EQ(view.selection(), Indices{4});
    user.key(VK_LEFT);
    ASSERT_TRUE(user.run());
    EXPECT_EQ(view.selection(), Indices{3});
    user.key(VK_UP).key(VK_DOWN);
    ASSERT_TRUE(user.run());
    EXPECT_EQ(view.selection(), Indices{5}) << "There is no page below, but a last one.";
    user.key(VK_UP);
    ASSERT_TRUE(user.run());
    EXPECT_EQ(view.selection(), Indices{1});
}

TEST_F(PageViewPointerTest, GoesByAsManyRowsAsAreSeen) {
    addPages(manyNames());
    CRect client;
    ::GetClientRect(list, client);
    const auto seen = static_cast<std::size_t>(client.Height() / (onScreen(4).top - onScreen(0).top)) * 4;
    ASSERT_GT(seen, 4U);
    user.key(VK_HOME).key(VK_RIGHT).key(VK_NEXT);
    ASSERT_TRUE(user.run());
    EXPECT_EQ(view.selection(), Indices{1 + seen});
    CRect window;
    ::GetWindowRect(list, window);
    EXPECT_LE(onScreen(1 + seen).bottom, window.bottom) << "It is out of sight.";
    user.key(VK_PRIOR);
    ASSERT_TRUE(user.run());
    EXPECT_EQ(view.selection(), Indices{1});
    user.key(VK_PRIOR);
    ASSERT_TRUE(user.run());
    EXPECT_EQ(view.selection(), Indices{0});
    user.key(VK_END).key(VK_NEXT);
    ASSERT_TRUE(user.run());
    EXPECT_EQ(view.selection(), Indices{39});
}

TEST_F(PageViewPointerTest, SelectsAllPagesBetweenTwoInTheirOrder) {
    addTwoRows();
    user.click(middle(2)).keyDown(VK_SHIFT).click(middle(4)).keyUp(VK_SHIFT);
    ASSERT_TRUE(user.run());
    EXPECT_EQ(view.selection(), (Indices{2, 3, 4}));
    EXPECT_EQ(view.focused(), 4U);
    user.keyDown(VK_SHIFT).click(middle(1)).keyUp(VK_SHIFT);
    ASSERT_TRUE(user.run());
    EXPECT_EQ(view.selection(), (Indices{1, 2}));
    user.key(VK_RIGHT).keyDown(VK_SHIFT).key(VK_DOWN).keyUp(VK_SHIFT);
    ASSERT_TRUE(user.run());
    EXPECT_EQ(view.selection(), (Indices{2, 3, 4, 5}));
    user.keyDown(VK_SHIFT).key(VK_HOME).keyUp(VK_SHIFT);
    ASSERT_TRUE(user.run());
    EXPECT_EQ(view.selection(), (Indices{0, 1, 2}));
}

TEST_F(PageViewPointerTest, GoesOnSelectingFromWhereItBeganWhilePagesComeAndGo) {
    addTwoRows();
    user.click(middle(1)).keyDown(VK_SHIFT).key(VK_RIGHT).keyUp(VK_SHIFT);
    ASSERT_TRUE(user.run());
    std::vector<host::LeftOut> leftOut;
    pages.insert(0, pages.make({folder.write(L"new.pdf", "%PDF-1.4")}, leftOut));
    view.pagesChanged();
    user.keyDown(VK_SHIFT).key(VK_RIGHT).keyUp(VK_SHIFT);
    ASSERT_TRUE(user.run());
    EXPECT_EQ(view.selection(), (Indices{2, 3, 4}));

    pages.remove(view.selection());
    view.pagesChanged();
    user.keyDown(VK_SHIFT).key(VK_LEFT).keyUp(VK_SHIFT);
    ASSERT_TRUE(user.run());
    EXPECT_EQ(view.selection(), (Indices{2, 3})) << "Where it began is gone: it begins at the keyboard.";
}

TEST_F(PageViewPointerTest, AddsAllPagesBetweenTwoWhileControlIsHeldToo) {
    addTwoRows();
    user.click(middle(0)).keyDown(VK_CONTROL).click(middle(2));
    user.keyDown(VK_SHIFT).click(middle(4)).keyUp(VK_SHIFT).keyUp(VK_CONTROL);
    ASSERT_TRUE(user.run());
    EXPECT_EQ(view.selection(), (Indices{0, 2, 3, 4}));
}

TEST_F(PageViewPointerTest, GoesWithoutSelectingWhileControlIsHeld) {
    addTwoRows();
    user.click(middle(1)).keyDown(VK_CONTROL).key(VK_DOWN).keyUp(VK_CONTROL);
    ASSERT_TRUE(user.run());
    EXPECT_EQ(view.selection(), Indices{1});
    EXPECT_EQ(view.focused(), 5U);
}

TEST_F(PageViewPointerTest, MovesPagesWithTheKeyboard) {
    addPages({L"a.pdf", L"b.pdf", L"c.pdf"});
    view.select({1});
    user.keyDown(VK_CONTROL).keyDown(VK_SHIFT).key(VK_RIGHT).keyUp(VK_SHIFT).keyUp(VK_CONTROL);
    ASSERT_TRUE(user.run());
    EXPECT_THAT(names(), ElementsAre(L"a.pdf", L"c.pdf", L"b.pdf"));
    user.keyDown(VK_CONTROL).keyDown(VK_SHIFT).key(VK_UP).key(VK_UP).keyUp(VK_SHIFT).keyUp(VK_CONTROL);
    ASSERT_TRUE(user.run());
    EXPECT_THAT(names(), ElementsAre(L"b.pdf", L"a.pdf", L"c.pdf"));
    EXPECT_EQ(view.selection(), Indices{0});
}

TEST_F(PageViewPointerTest, ReordersByDragging) {
    addPages({L"a.pdf", L"b.pdf", L"c.pdf", L"d.pdf"});
    dragPage(0).moveTo(middle(1)).moveTo(leftPart(3)).release();
    ASSERT_TRUE(user.run());
    EXPECT_THAT(names(), ElementsAre(L"b.pdf", L"c.pdf", L"a.pdf", L"d.pdf"));
    EXPECT_EQ(view.selection(), Indices{2});
    EXPECT_EQ(reordered, 1);
}

TEST_F(PageViewPointerTest, DragsAllSelectedPages) {
    addPages({L"a.pdf", L"b.pdf", L"c.pdf", L"d.pdf"});
    view.select({0, 2});
    dragPage(2).moveTo(leftPart(3)).moveTo(rightPart(3)).release();
    ASSERT_TRUE(user.run());
    EXPECT_THAT(names(), ElementsAre(L"b.pdf", L"d.pdf", L"a.pdf", L"c.pdf"));
    EXPECT_EQ(view.selection(), (Indices{2, 3}));
}

TEST_F(PageViewPointerTest, LeavesTheOrderWhenEscapeIsPressedWhileDragging) {
    addPages({L"a.pdf", L"b.pdf", L"c.pdf"});
    dragPage(0).moveTo(middle(1)).moveTo(rightPart(2)).key(VK_ESCAPE).release();
    ASSERT_TRUE(user.run());
    EXPECT_THAT(names(), ElementsAre(L"a.pdf", L"b.pdf", L"c.pdf"));
    EXPECT_EQ(reordered, 0);
}

TEST_F(PageViewPointerTest, LeavesTheOrderWhenPagesAreDroppedOutside) {
    addPages({L"a.pdf", L"b.pdf", L"c.pdf"});
    dragPage(0).moveTo(middle(2)).moveTo(outside()).release();
    ASSERT_TRUE(user.run());
    EXPECT_THAT(names(), ElementsAre(L"a.pdf", L"b.pdf", L"c.pdf"));
    EXPECT_EQ(reordered, 0);
}

TEST_F(PageViewPointerTest, TakesFilesWhereTheyAreDropped) {
    addPages({L"a.pdf", L"b.pdf", L"c.pdf"});
    dragFiles({L"C:\\x.tif", L"C:\\ř\\folder"}).moveTo(leftPart(0)).moveTo(rightPart(1)).release();
    ASSERT_TRUE(user.run());
    EXPECT_THAT(dropped, ElementsAre(L"C:\\x.tif", L"C:\\ř\\folder"));
    EXPECT_EQ(dropPosition, 2U);
    EXPECT_EQ(effect, static_cast<DWORD>(DROPEFFECT_COPY));
}

TEST_F(PageViewPointerTest, TakesFilesIntoAnEmptyView) {
    dragFiles({L"C:\\x.tif"}).moveTo(nearTheBottom()).moveTo(nearTheBottom()).release();
    ASSERT_TRUE(user.run());
    EXPECT_THAT(dropped, ElementsAre(L"C:\\x.tif"));
    EXPECT_EQ(dropPosition, 0U);
}

TEST_F(PageViewPointerTest, TakesFilesBelowThePagesAtTheEnd) {
    addPages({L"a.pdf", L"b.pdf"});
    dragFiles({L"C:\\x.tif"}).moveTo(middle(0)).moveTo(nearTheBottom()).release();
    ASSERT_TRUE(user.run());
    EXPECT_THAT(dropped, ElementsAre(L"C:\\x.tif"));
    EXPECT_EQ(dropPosition, 2U);
}

TEST_F(PageViewPointerTest, RefusesWhatIsNoFile) {
    addPages({L"a.pdf"});
    HGLOBAL text = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, 64);
    drag(CF_UNICODETEXT, text).moveTo(leftPart(0)).moveTo(middle(0)).release();
    ASSERT_TRUE(user.run());
    EXPECT_THAT(dropped, ElementsAre());
    EXPECT_EQ(effect, static_cast<DWORD>(DROPEFFECT_NONE));
}

TEST_F(PageViewPointerTest, ScrollsWhileSomethingIsDraggedNearItsEdges) {
    addPages(manyNames());
    const LONG top = onScreen(0).top;
    dragFiles({L"C:\\x.tif"})
        .moveTo(middle(0))
        .moveTo(nearTheBottom())
        .waitFor("scrolled to the end", [this] { return onScreen(39).bottom < nearTheBottom()().y; })
        .moveTo(middle(39))
        .moveTo([this]() -> POINT {
            CRect rect;
            view.GetWindowRect(rect);
            return CPoint(rect.CenterPoint().x, rect.top + 5);
        })
        .waitFor("scrolled back", [this, top] { return onScreen(0).top == top; })
        .moveTo(leftPart(1))
        .release();
    ASSERT_TRUE(user.run());
    EXPECT_EQ(dropPosition, 1U);
}

} // namespace
