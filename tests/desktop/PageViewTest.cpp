#include "desktop/Canvas.h"
#include "desktop/PageViewFixture.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace {

using testing::ElementsAre;

class PageViewTest : public PageViewFixture {
protected:
    /// The first has a file of its own; a hundred others share theirs with every hundredth.
    void addManyPages(std::size_t count) {
        std::vector<std::wstring> shared;
        for (std::size_t i = 0; i < 100; ++i)
            shared.push_back(folder.write(std::to_wstring(i) + L".pdf", "%PDF-1.4"));
        std::vector<std::wstring> files{folder.write(L"first.pdf", "%PDF-1.4")};
        while (files.size() < count)
            files.push_back(shared[files.size() % shared.size()]);
        std::vector<host::LeftOut> leftOut;
        pages.insert(0, pages.make(files, leftOut));
        ASSERT_EQ(pages.size(), count);
        view.pagesChanged();
    }

    void draw() { ::SendMessageW(list, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(canvas.dc), PRF_CLIENT); }

    /// Whether there is a text at the top of a page's strip.
    bool isTextOver(std::size_t index) const {
        CRect top = onScreen(index);
        ::MapWindowPoints(nullptr, list, reinterpret_cast<POINT*>(&top), 2);
        top.bottom = top.top + 8;
        return !canvas.holds(top, GetSysColor(COLOR_WINDOW));
    }

    test::Canvas canvas{{800, 560}};
};

TEST_F(PageViewTest, TellsScreenReadersNumberNameAndFolderOfAPage) {
    addPages({L"a.pdf", L"účet.pdf"}, L"březen");
    EXPECT_EQ(itemText(1), L"2, účet.pdf, folder březen");
    test::loadLanguage(L"cs.ini");
    view.setTexts();
    EXPECT_EQ(itemText(1), L"2, účet.pdf, složka březen");
}

TEST_F(PageViewTest, SelectsWhatItIsToldTo) {
    addPages({L"a.pdf", L"b.pdf", L"c.pdf"});
    view.select({0, 2});
    EXPECT_EQ(view.selection(), (Indices{0, 2}));
    view.selectAll();
    EXPECT_EQ(view.selection(), (Indices{0, 1, 2}));
    view.select({});
    EXPECT_EQ(view.selection(), Indices{});
}

TEST_F(PageViewTest, TellsOfManyChangesOfTheSelectionOnce) {
    addPages({L"a.pdf", L"b.pdf", L"c.pdf"});
    test::pumpUntil([this] { return selectionChanges > 0; });
    selectionChanges = 0;
    view.selectAll();
    view.select({1});
    EXPECT_EQ(selectionChanges, 0);
    EXPECT_TRUE(test::pumpUntil([this] { return selectionChanges > 0; }));
    EXPECT_EQ(selectionChanges, 1);
}

TEST_F(PageViewTest, KeepsTheSelectedPagesWhenOthersComeAndGo) {
    addPages({L"a.pdf", L"b.pdf", L"c.pdf", L"d.pdf"});
    view.select({1, 3});
    std::vector<host::LeftOut> leftOut;
    pages.insert(0, pages.make({folder.write(L"new.pdf", "%PDF-1.4")}, leftOut));
    view.pagesChanged();
    EXPECT_EQ(view.selection(), (Indices{2, 4}));
    pages.remove({0, 2});
    view.pagesChanged();
    EXPECT_EQ(view.selection(), Indices{2});
    pages.remove({0, 1, 2});
    view.pagesChanged();
    EXPECT_EQ(view.selection(), Indices{});
}

TEST_F(PageViewTest, InsertsAfterTheSelectionOrAtTheEnd) {
    EXPECT_EQ(view.insertPosition(), 0U);
    addPages({L"a.pdf", L"b.pdf", L"c.pdf"});
    EXPECT_EQ(view.insertPosition(), 3U);
    view.select({0, 1});
    EXPECT_EQ(view.insertPosition(), 2U);
}

TEST_F(PageViewTest, MovesTheSelectedPagesTogether) {
    addPages({L"a.pdf", L"b.pdf", L"c.pdf", L"d.pdf", L"e.pdf"});
    view.select({1, 3});
    view.moveSelectionForward();
    EXPECT_THAT(names(), ElementsAre(L"a.pdf", L"c.pdf", L"e.pdf", L"b.pdf", L"d.pdf"));
    EXPECT_EQ(view.selection(), (Indices{3, 4}));
    view.moveSelectionBack();
    EXPECT_THAT(names(), ElementsAre(L"a.pdf", L"c.pdf", L"b.pdf", L"d.pdf", L"e.pdf"));
    EXPECT_EQ(view.selection(), (Indices{2, 3}));
    EXPECT_EQ(reordered, 2);
}

TEST_F(PageViewTest, TellsOfNoMoveBeyondTheEnds) {
    addPages({L"a.pdf", L"b.pdf"});
    view.moveSelectionBack();
    view.select({0});
    view.moveSelectionBack();
    view.select({1});
    view.moveSelectionForward();
    EXPECT_THAT(names(), ElementsAre(L"a.pdf", L"b.pdf"));
    EXPECT_EQ(reordered, 0);
}

TEST_F(PageViewTest, ArrangesNewPagesAtOnce) {
    addPages({L"a.pdf"});
    addPages({L"b.pdf", L"c.pdf"});
    EXPECT_GT(onScreen(1).left, onScreen(0).left);
    EXPECT_GT(onScreen(2).left, onScreen(1).left);
}

TEST_F(PageViewTest, FindsAPageByItsNumberOrItsName) {
    addPages({L"a.pdf", L"beta.pdf", L"c.pdf"});
    const auto find = [this](const wchar_t* typed) {
        LVFINDINFOW wanted{};
        wanted.flags = LVFI_PARTIAL | LVFI_WRAP;
        wanted.psz = typed;
        return ::SendMessageW(list, LVM_FINDITEMW, static_cast<WPARAM>(-1),
                              reinterpret_cast<LPARAM>(&wanted));
    };
    EXPECT_EQ(find(L"3"), 2);
    EXPECT_EQ(find(L"Be"), 1);
    EXPECT_EQ(find(L"x"), -1);
}

TEST_F(PageViewTest, TakesTheKeyboardForItsList) {
    SetFocus(frame);
    view.SetFocus();
    EXPECT_EQ(GetFocus(), list);
}

TEST_F(PageViewTest, AsksForAMenuAtThePageOfTheKeyboard) {
    addPages({L"a.pdf", L"b.pdf"});
    view.select({1});
    CPoint place;
    view.whenMenuWanted = [&place](CPoint screen) { place = screen; };
    ::SendMessageW(list, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(list), -1);
    EXPECT_TRUE(onScreen(1).PtInRect(place));
}

TEST_F(PageViewTest, WritesALongNameOfAFolderOverItsNextPage) {
    addPages({L"a.pdf", L"b.pdf"}, L"contracts, invoices and delivery notes");
    draw();
    EXPECT_TRUE(isTextOver(0));
    EXPECT_TRUE(isTextOver(1));
}

TEST_F(PageViewTest, AsksForThePagesThatAreSeenTheFirstBeforeOthers) {
    addManyPages(1000);
    draw();
    ASSERT_GT(thumbnails.waiting.size(), 4U);
    EXPECT_LT(thumbnails.waiting.size(), 40U);
    EXPECT_EQ(thumbnails.waiting.back(), pages[0]->path());
}

TEST_F(PageViewTest, ForgetsThePagesThatAreNoLongerSeen) {
    addManyPages(1000);
    draw();
    const std::size_t seen = thumbnails.waiting.size();
    for (std::size_t index : {300U, 700U, 999U}) {
        view.select({index});
        draw();
        EXPECT_LE(thumbnails.waiting.size(), seen + 8);
        EXPECT_EQ(std::ranges::count(thumbnails.waiting, pages[0]->path()), 0);
        EXPECT_EQ(std::ranges::count(thumbnails.waiting, pages[index]->path()), 1);
    }
}

TEST_F(PageViewTest, FollowsTheSystemsColours) {
    ::SendMessageW(list, LVM_SETBKCOLOR, 0, RGB(1, 2, 3));
    view.SendMessage(WM_SYSCOLORCHANGE);
    EXPECT_EQ(static_cast<COLORREF>(::SendMessageW(list, LVM_GETBKCOLOR, 0, 0)), GetSysColor(COLOR_WINDOW));
}

TEST_F(PageViewTest, OutlivesItsWindow) {
    addPages({L"a.pdf"});
    frame.DestroyWindow();
    EXPECT_FALSE(IsWindow(list));
}

} // namespace
