// Adding many files while the message loop goes on.
#include "host/desktop/PageAdder.h"

#include "host/desktop/CallbackWindow.h"
#include "support/MessageLoop.h"
#include "support/OpenFile.h"
#include "support/TempFolder.h"

#include <gmock/gmock.h>

#include <windows.h>

#include <chrono>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace {

using host::LeftOut;
using testing::ElementsAre;
using testing::IsEmpty;

class PageAdderTest : public testing::Test {
protected:
    std::wstring file(const std::wstring& name) { return folder.write(name, "x"); }

    void makeFolder(const std::wstring& name) const {
        ASSERT_TRUE(CreateDirectoryW((folder / name).c_str(), nullptr));
    }

    void finish() {
        ASSERT_TRUE(test::handleMessagesUntil([this] { return !adder.isAdding(); }));
    }

    std::vector<std::wstring> paths() const {
        std::vector<std::wstring> result;
        for (const auto& page : pages.pages())
            result.push_back(page->path().substr(folder.path().size() + 1));
        return result;
    }

    test::TempFolder folder;
    host::PageCollection pages{nullptr};
    std::vector<std::size_t> additions;
    std::vector<LeftOut> leftOut;
    int done = 0;
    host::PageAdder adder{pages, [this](std::size_t added) { additions.push_back(added); },
                          [this](std::vector<LeftOut> all) {
                              leftOut = std::move(all);
                              ++done;
                          }};
};

TEST_F(PageAdderTest, AddsFilesOfAnyTypeAndThePagesOfFolders) {
    makeFolder(L"batch");
    file(L"batch\\page 10.tif");
    file(L"batch\\page 2.pdf");
    adder.add({file(L"b.xyz"), folder / L"batch", file(L"a.tif")}, 0);
    EXPECT_EQ(pages.size(), 0U) << "added before the message loop came";
    EXPECT_TRUE(adder.isAdding());
    finish();
    EXPECT_THAT(paths(), ElementsAre(L"b.xyz", L"batch\\page 2.pdf", L"batch\\page 10.tif", L"a.tif"));
    EXPECT_EQ(done, 1);
    EXPECT_THAT(leftOut, IsEmpty());
}

TEST_F(PageAdderTest, SaysWhatItLeavesOutAndWhy) {
    makeFolder(L"batch");
    file(L"batch\\a.tif");
    const std::wstring notes = file(L"batch\\notes.txt");
    const std::wstring empty = folder.write(L"batch\\b.tif", "");
    makeFolder(L"nothing");
    const std::wstring locked = file(L"locked.tif");
    const test::OpenFile lock(locked);

    adder.add({folder / L"batch\\", folder / L"nothing", locked}, 0);
    finish();

    EXPECT_THAT(paths(), ElementsAre(L"batch\\a.tif"));
    ASSERT_EQ(leftOut.size(), 4U);
    EXPECT_EQ(leftOut[0].why, LeftOut::Why::NoPage);
    EXPECT_EQ(leftOut[0].path, notes);
    EXPECT_EQ(leftOut[1].why, LeftOut::Why::Unreadable);
    EXPECT_EQ(leftOut[1].path, empty);
    EXPECT_EQ(leftOut[1].error, DWORD{ERROR_HANDLE_EOF});
    EXPECT_EQ(leftOut[2].why, LeftOut::Why::NoPages);
    EXPECT_EQ(leftOut[2].path, folder / L"nothing");
    EXPECT_EQ(leftOut[3].why, LeftOut::Why::Unreadable);
    EXPECT_EQ(leftOut[3].path, locked);
    EXPECT_EQ(leftOut[3].error, DWORD{ERROR_SHARING_VIOLATION});
}

TEST_F(PageAdderTest, TellsOfEndEvenWhenNothingWasAdded) {
    adder.add({}, 0);
    finish();
    EXPECT_EQ(done, 1);
    EXPECT_THAT(additions, IsEmpty());
}

TEST_F(PageAdderTest, KeepsThePlaceWhenOthersAddAndRemoveBeforeIt) {
    adder.add({file(L"a"), file(L"z")}, 0);
    finish();
    adder.add({file(L"m"), file(L"n")}, 1);
    adder.add({file(L"o")}, 1);
    pages.remove({0});
    finish();
    EXPECT_THAT(paths(), ElementsAre(L"m", L"n", L"o", L"z"));
}

TEST_F(PageAdderTest, AddsWhereItsPlaceWasWhenThePageThereHasGone) {
    adder.add({file(L"a"), file(L"b"), file(L"c")}, 0);
    finish();
    adder.add({file(L"x"), file(L"y")}, 1);
    pages.remove({1});
    finish();
    EXPECT_THAT(paths(), ElementsAre(L"a", L"x", L"y", L"c"));
    adder.add({file(L"z")}, 3);
    pages.remove({1, 2, 3});
    finish();
    EXPECT_THAT(paths(), ElementsAre(L"a", L"z"));
}

TEST_F(PageAdderTest, LetsTheMessageLoopGoOnWhileItAddsThousands) {
    constexpr std::size_t count = 5000;
    const std::vector<std::wstring> files(count, file(L"a.tif"));
    static std::size_t ticks;
    ticks = 0;
    const UINT_PTR timer =
        SetTimer(nullptr, 0, USER_TIMER_MINIMUM, [](HWND, UINT, UINT_PTR, DWORD) { ++ticks; });

    adder.add(files, 0);
    ASSERT_TRUE(test::handleMessagesUntil([&] { return !adder.isAdding(); }, std::chrono::seconds(90)));
    KillTimer(nullptr, timer);

    EXPECT_EQ(pages.size(), count);
    EXPECT_GT(additions.size(), 1U) << "all at once";
    EXPECT_GT(ticks, 2 * additions.size()) << "the loop came only when pages were added";
}

TEST_F(PageAdderTest, GoesOnInTheMessageLoopOfADialog) {
    adder.add({file(L"a")}, 0);
    host::CallbackWindow closing([&] {
        if (!adder.isAdding())
            EndDialog(GetActiveWindow(), IDOK);
    });
    closing.startCalls();
    MessageBoxW(nullptr, L"text", L"title", MB_OK);
    EXPECT_THAT(paths(), ElementsAre(L"a"));
}

TEST_F(PageAdderTest, MayBeGivenMoreWhenItIsDone) {
    bool more = true;
    host::PageAdder again(
        pages, [](std::size_t) {},
        [&](const std::vector<LeftOut>&) {
            if (std::exchange(more, false))
                again.add({file(L"b")}, pages.size());
        });
    again.add({file(L"a")}, 0);
    ASSERT_TRUE(test::handleMessagesUntil([&] { return !again.isAdding(); }));
    EXPECT_THAT(paths(), ElementsAre(L"a", L"b"));
}

TEST_F(PageAdderTest, MayEndWhileItAdds) {
    {
        host::PageAdder ending(
            pages, [](std::size_t) {}, [](const std::vector<LeftOut>&) { FAIL() << "told after the end"; });
        ending.add({file(L"a")}, 0);
    }
    adder.add({file(L"b")}, 0);
    finish();
    EXPECT_THAT(paths(), ElementsAre(L"b"));
}

} // namespace
