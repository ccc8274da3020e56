// The pages that the person has put together.
#include "host/desktop/PageCollection.h"

#include "host/HostError.h"
#include "support/OpenFile.h"
#include "support/TempFolder.h"

#include <gmock/gmock.h>

#include <windows.h>

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace {

using host::LeftOut;
using host::PageCollection;
using testing::ElementsAre;
using testing::IsEmpty;
using Indices = std::vector<std::size_t>;

class PageCollectionTest : public testing::Test {
protected:
    /// Adds a page for each letter.
    void fill(const std::wstring& letters) {
        for (const wchar_t letter : letters)
            insertAt(pages.size(), {file(std::wstring(1, letter))});
    }

    std::wstring file(const std::wstring& name) { return folder.write(name, "x"); }

    std::size_t insertAt(std::size_t position, const std::vector<std::wstring>& files) {
        const host::FilePages made = pages.make(files, leftOut);
        pages.insert(position, made);
        return made.size();
    }

    std::vector<std::wstring> paths() const {
        std::vector<std::wstring> result;
        for (const auto& page : pages.pages())
            result.push_back(page->path().substr(folder.path().size() + 1));
        return result;
    }

    std::wstring letters() const {
        std::wstring result;
        for (const std::wstring& path : paths())
            result += path;
        return result;
    }

    void makeFolder(const std::wstring& name) const {
        ASSERT_TRUE(CreateDirectoryW((folder / name).c_str(), nullptr));
    }

    void setWritten(const std::wstring& path, WORD day) const {
        const test::OpenFile file(path, FILE_WRITE_ATTRIBUTES);
        SYSTEMTIME time{};
        time.wYear = 2020;
        time.wMonth = 1;
        time.wDay = day;
        FILETIME written;
        SystemTimeToFileTime(&time, &written);
        ASSERT_TRUE(SetFileTime(file.get(), nullptr, nullptr, &written));
    }

    test::TempFolder folder;
    PageCollection pages{nullptr};
    std::vector<LeftOut> leftOut;
};

TEST_F(PageCollectionTest, InsertsBeforeThePageAtThePosition) {
    fill(L"abc");
    EXPECT_EQ(insertAt(1, {file(L"x"), file(L"y")}), 2U);
    EXPECT_EQ(letters(), L"axybc");
    insertAt(0, {file(L"v")});
    insertAt(6, {file(L"w")});
    EXPECT_EQ(letters(), L"vaxybcw");
    EXPECT_THAT(leftOut, IsEmpty());
}

TEST_F(PageCollectionTest, TakesAFileAsOftenAsItIsGiven) {
    fill(L"a");
    EXPECT_EQ(insertAt(1, {folder / L"a", folder / L"a"}), 2U);
    EXPECT_EQ(letters(), L"aaa");
    EXPECT_NE(pages[0].get(), pages[1].get()) << "moving one must not move the other";
}

TEST_F(PageCollectionTest, LeavesOutWhatCannotBeReadAndSaysWhy) {
    makeFolder(L"folder");
    const std::wstring locked = file(L"locked");
    const test::OpenFile lock(locked);

    const std::size_t added = insertAt(0, {folder / L"missing", file(L"a"), folder.write(L"empty", ""),
                                           locked, file(L"b"), folder / L"folder", L"\\\\.\\NUL"});

    EXPECT_EQ(added, 2U);
    EXPECT_EQ(letters(), L"ab");
    std::vector<std::pair<std::wstring, DWORD>> reasons;
    for (const LeftOut& one : leftOut) {
        EXPECT_EQ(one.why, LeftOut::Why::Unreadable);
        reasons.emplace_back(one.path, one.error);
    }
    EXPECT_THAT(reasons, ElementsAre(std::pair(folder / L"missing", DWORD{ERROR_FILE_NOT_FOUND}),
                                     std::pair(folder / L"empty", DWORD{ERROR_HANDLE_EOF}),
                                     std::pair(locked, DWORD{ERROR_SHARING_VIOLATION}),
                                     std::pair(folder / L"folder", DWORD{ERROR_DIRECTORY_NOT_SUPPORTED}),
                                     std::pair(std::wstring(L"\\\\.\\NUL"), DWORD{ERROR_BAD_FILE_TYPE})));
}

TEST_F(PageCollectionTest, PagesOfOneFolderShareItWheneverTheyCome) {
    makeFolder(L"other");
    insertAt(0, {file(L"a")});
    insertAt(1, {file(L"other\\b")});
    insertAt(2, {file(L"c")});
    EXPECT_EQ(pages[0]->getParentFolder(), pages[2]->getParentFolder());
    EXPECT_NE(pages[0]->getParentFolder(), pages[1]->getParentFolder());
}

TEST_F(PageCollectionTest, GivesItsWatcherToThePages) {
    struct Watcher : host::PageWatcher {
        void pageAsked(const host::FilePage&) override { ++asked; }
        int asked = 0;
    } watcher;
    PageCollection watched(&watcher);
    watched.insert(0, watched.make({file(L"a")}, leftOut));
    std::wstring path;
    watched[0]->getFilePath(path);
    EXPECT_EQ(watcher.asked, 1);
}

TEST_F(PageCollectionTest, RemovesScatteredPages) {
    fill(L"abcdef");
    pages.remove({0, 2, 3, 5});
    EXPECT_EQ(letters(), L"be");
    pages.remove({});
    EXPECT_EQ(letters(), L"be");
    pages.remove({0, 1});
    EXPECT_EQ(letters(), L"");
}

struct MoveCase {
    Indices indices;
    std::size_t position;
    const wchar_t* letters;
    Indices moved;
};

TEST_F(PageCollectionTest, MovesPagesAndTellsWhereTheyAre) {
    const MoveCase cases[] = {
        {{0}, 3, L"bcadef", {2}},
        {{0}, 6, L"bcdefa", {5}},
        {{5}, 0, L"fabcde", {0}},
        {{2}, 2, L"abcdef", {2}},
        {{2}, 3, L"abcdef", {2}},
        {{1, 3, 5}, 0, L"bdface", {0, 1, 2}},
        {{1, 3, 5}, 4, L"acbdfe", {2, 3, 4}},
        {{0, 2, 5}, 6, L"bdeacf", {3, 4, 5}},
        {{1, 3}, 2, L"abdcef", {1, 2}},
        {{0, 1, 2, 3, 4, 5}, 3, L"abcdef", {0, 1, 2, 3, 4, 5}},
        {{}, 3, L"abcdef", {}},
    };
    for (const MoveCase& c : cases) {
        pages = PageCollection(nullptr);
        fill(L"abcdef");
        EXPECT_EQ(pages.move(c.indices, c.position), c.moved);
        EXPECT_EQ(letters(), c.letters) << testing::PrintToString(c.indices) << " to " << c.position;
    }
}

TEST_F(PageCollectionTest, GivesThePagesAtIndices) {
    fill(L"abcd");
    const host::FilePages some = pages.pages({1, 3});
    ASSERT_EQ(some.size(), 2U);
    EXPECT_EQ(some[0], pages[1]);
    EXPECT_EQ(some[1], pages[3]);
}

TEST_F(PageCollectionTest, SortsByNameAsPeopleCountWithTheFoldersKeptTogether) {
    makeFolder(L"batch 10");
    makeFolder(L"batch 2");
    insertAt(0, {file(L"batch 10\\1"), file(L"batch 2\\20"), file(L"batch 10\\20"), file(L"batch 2\\3"),
                 file(L"batch 10\\3")});
    pages.sort(host::PageOrder::Name);
    EXPECT_THAT(paths(),
                ElementsAre(L"batch 2\\3", L"batch 2\\20", L"batch 10\\1", L"batch 10\\3", L"batch 10\\20"));
}

TEST_F(PageCollectionTest, SortsByDateAcrossFoldersAndByNameWithinAMoment) {
    makeFolder(L"x");
    const std::wstring files[] = {file(L"a"), file(L"b10"), file(L"b2"), file(L"x\\c")};
    setWritten(files[0], 4);
    setWritten(files[1], 3);
    setWritten(files[2], 3);
    setWritten(files[3], 1);
    insertAt(0, {files[0], files[1], files[2], files[3]});
    pages.sort(host::PageOrder::Date);
    EXPECT_THAT(paths(), ElementsAre(L"x\\c", L"b2", L"b10", L"a"));
}

TEST_F(PageCollectionTest, EqualPagesKeepTheirOrderWhenSorted) {
    fill(L"ba");
    insertAt(2, {folder / L"b"});
    const bxbase::Reference<host::FilePage> first = pages[0];
    pages.sort(host::PageOrder::Name);
    EXPECT_EQ(letters(), L"abb");
    EXPECT_EQ(pages[1], first);
}

} // namespace
