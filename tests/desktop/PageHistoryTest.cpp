// Going back to earlier states of the list of pages.
#include "host/desktop/PageHistory.h"

#include "support/TempFolder.h"

#include <gmock/gmock.h>

#include <string>

namespace {

using host::FilePages;
using host::PageHistory;
using host::PageOrder;
using testing::ElementsAre;

class PageHistoryTest : public testing::Test {
protected:
    void record(const FilePages& pages, PageOrder order = PageOrder::Own) { history.record({pages, order}); }

    const test::TempFolder folder;
    host::PageMaker maker{nullptr};
    const bxbase::Reference<host::FilePage> a = maker.make(folder.write(L"a", "x"));
    const bxbase::Reference<host::FilePage> b = maker.make(folder.write(L"b", "x"));
    PageHistory history{{{}, PageOrder::Own}};
};

TEST_F(PageHistoryTest, BeginsWithNothingToGoTo) {
    EXPECT_FALSE(history.canUndo());
    EXPECT_FALSE(history.canRedo());
}

TEST_F(PageHistoryTest, GoesBackAndForwardStepByStep) {
    record({a});
    record({a, b});
    EXPECT_THAT(history.undo().pages, ElementsAre(a));
    EXPECT_TRUE(history.undo().pages.empty());
    EXPECT_FALSE(history.canUndo());

    EXPECT_THAT(history.redo().pages, ElementsAre(a));
    EXPECT_THAT(history.redo().pages, ElementsAre(a, b));
    EXPECT_FALSE(history.canRedo());
}

TEST_F(PageHistoryTest, ForgetsWhatWasUndoneOnceSomethingElseIsDone) {
    record({a});
    history.undo();
    record({b});
    EXPECT_FALSE(history.canRedo());
    EXPECT_TRUE(history.undo().pages.empty());
}

TEST_F(PageHistoryTest, TakesWhatChangedNoPageForNoStep) {
    record({a, b});
    record({a, b}, PageOrder::Name);
    record({b}, PageOrder::Name);
    const host::PageState& last = history.undo();
    EXPECT_THAT(last.pages, ElementsAre(a, b));
    EXPECT_EQ(last.order, PageOrder::Name);
    history.undo();
    EXPECT_FALSE(history.canUndo());
}

TEST_F(PageHistoryTest, KeepsTheLastHundredStates) {
    for (int i = 0; i < 150; ++i)
        record(i % 2 ? FilePages{a} : FilePages{b});
    int steps = 0;
    for (; history.canUndo(); ++steps)
        history.undo();
    EXPECT_EQ(steps, 99);
}

} // namespace
