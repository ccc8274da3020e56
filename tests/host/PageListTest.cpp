// From page arguments to pages.
#include "host/PageList.h"

#include "host/HostError.h"
#include "host/Text.h"
#include "support/TempFolder.h"

#include <gmock/gmock.h>

#include <windows.h>

namespace {

using host::collectPages;
using host::utf8;
using testing::ElementsAre;
using testing::IsEmpty;

class PageListTest : public testing::Test {
protected:
    static std::vector<std::string> namesOf(const host::PageList& list) {
        std::vector<std::string> names;
        for (const auto& page : list.pages)
            names.push_back(utf8(page->fileName()));
        return names;
    }

    std::vector<std::string> namesFor(const std::vector<std::wstring>& arguments) {
        return namesOf(collectPages(arguments, nullptr));
    }

    static std::string refusalOf(const std::vector<std::wstring>& arguments) {
        try {
            collectPages(arguments, nullptr);
        } catch (const host::HostError& error) {
            return error.what();
        }
        return "accepted";
    }

    test::TempFolder folder;
};

TEST_F(PageListTest, FilesComeInTheOrderGivenAndAsOftenAsGiven) {
    const std::wstring a = folder.write(L"a.tif", "x");
    const std::wstring b = folder.write(L"b.xyz", "x");

    EXPECT_THAT(namesFor({b, a, b}), ElementsAre("b.xyz", "a.tif", "b.xyz"));
}

TEST_F(PageListTest, AFolderIsSortedAsPeopleCount) {
    for (const wchar_t* name : {L"page10.tif", L"page2.tif", L"Page1.TIF", L"page02.png", L"page100.jpg"})
        folder.write(name, "x");

    EXPECT_THAT(namesFor({folder.path()}),
                ElementsAre("Page1.TIF", "page02.png", "page2.tif", "page10.tif", "page100.jpg"));
    EXPECT_THAT(namesFor({folder.path() + L"\\"}).size(), 5) << "with a separator at the end";
}

TEST_F(PageListTest, AFolderGivesItsImagesAndPdfFilesAndSaysWhatItLeavesOut) {
    folder.write(L"a.PDF", "x");
    folder.write(L"b.jpeg", "x");
    folder.write(L"README.md", "x");
    folder.write(L"tif", "x");
    ASSERT_TRUE(CreateDirectoryW((folder / L"sub.tif").c_str(), nullptr));
    folder.write(L"sub.tif\\c.tif", "x");

    const host::PageList list = collectPages({folder.path()}, nullptr);

    EXPECT_THAT(namesOf(list), ElementsAre("a.PDF", "b.jpeg"));
    EXPECT_THAT(list.remarks, ElementsAre("Left out of " + folder.utf8() +
                                          ", neither image nor PDF: README.md and 1 more."));
}

TEST_F(PageListTest, AFolderWithPagesOnlyCausesNoRemark) {
    folder.write(L"a.tif", "x");

    EXPECT_THAT(collectPages({folder.path()}, nullptr).remarks, IsEmpty());
}

TEST_F(PageListTest, HiddenFilesOfAFolderAreLeftAlone) {
    folder.write(L"a.tif", "x");
    const std::wstring hidden = folder.write(L"b.tif", "x");
    ASSERT_TRUE(SetFileAttributesW(hidden.c_str(), FILE_ATTRIBUTE_HIDDEN));
    // Wine keeps it in an extended attribute, which some file systems do not take. No file is hidden there.
    if (!(GetFileAttributesW(hidden.c_str()) & FILE_ATTRIBUTE_HIDDEN))
        GTEST_SKIP() << "the file system does not keep the attribute";

    EXPECT_THAT(namesFor({folder.path()}), ElementsAre("a.tif"));
}

TEST_F(PageListTest, AFolderWithoutPagesIsRefused) {
    folder.write(L"README.md", "x");

    EXPECT_EQ(refusalOf({folder.path()}),
              "The folder " + folder.utf8() + " holds no pages (images or PDF files).");
}

TEST_F(PageListTest, AListNamesOneFilePerLine) {
    const std::wstring first = folder.write(L"č 2.tif", "x");
    const std::wstring second = folder.write(L"a.tif", "x");
    const std::wstring list =
        folder.write(L"list", "\xEF\xBB\xBF" + utf8(first) + "\r\n\r\n\n" + utf8(second));

    EXPECT_THAT(namesFor({L"@" + list}), ElementsAre("č 2.tif", "a.tif"));
}

TEST_F(PageListTest, AListIsNoPlaceForFolders) {
    const std::wstring list = folder.write(L"list", folder.utf8() + "\n");

    EXPECT_EQ(refusalOf({L"@" + list}), "The page " + folder.utf8() + " cannot be exported: it is a folder.");
}

TEST_F(PageListTest, AListThatIsNotUtf8IsRefusedWithTheLine) {
    const std::wstring list = folder.write(L"list", "\n\xE8.tif\n");

    EXPECT_EQ(refusalOf({L"@" + list}), "Line 2 of the list " + utf8(list) + " is not UTF-8 text.");
}

TEST_F(PageListTest, AListThatIsNotThereIsRefused) {
    EXPECT_EQ(refusalOf({L"@" + (folder / L"list")}),
              "The list " + utf8(folder / L"list") + " cannot be read: it does not exist.");
}

TEST_F(PageListTest, AnEmptyListHasNoPages) {
    EXPECT_THAT(namesFor({L"@" + folder.write(L"list", "\n")}), IsEmpty());
}

TEST_F(PageListTest, PagesOfOneFolderShareIt) {
    const host::PageList list =
        collectPages({folder.write(L"a.tif", "x"), folder.write(L"b.tif", "x")}, nullptr);

    EXPECT_EQ(list.pages[0]->getParentFolder(), list.pages[1]->getParentFolder());
}

TEST_F(PageListTest, PathsLongerThan260CharactersArePages) {
    std::wstring deep = folder.path();
    for (int i = 0; i < 3; ++i) {
        deep += L"\\" + std::wstring(100, L'd');
        ASSERT_TRUE(CreateDirectoryW((L"\\\\?\\" + deep).c_str(), nullptr));
    }
    folder.write(deep.substr(folder.path().size() + 1) + L"\\a.tif", "x");

    EXPECT_THAT(namesFor({deep}), ElementsAre("a.tif"));
    EXPECT_THAT(namesFor({deep + L"\\a.tif"}), ElementsAre("a.tif"));
}

} // namespace
