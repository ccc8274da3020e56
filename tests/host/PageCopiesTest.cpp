// What becomes of the copies that pages make for the ZIP engine, which leaves them to the host.
#include "support/ChildProcess.h"
#include "support/TempFolder.h"
#include "support/ZipParser.h"

#include <gmock/gmock.h>

#include <windows.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;

class PageCopiesTest : public testing::Test {
protected:
    unsigned run(std::vector<std::wstring> arguments) {
        arguments.insert(arguments.begin(), {temporary.path(), archive});
        return runProgram(L"CopyingHost.exe", arguments).exitCode;
    }

    /// The copies of pages that a killed host left in its root, sorted.
    static std::vector<std::string> copiesIn(const std::wstring& root) {
        std::vector<std::string> copies;
        for (const auto& directory : std::filesystem::directory_iterator(root))
            copies.push_back(test::readFile(directory.path().wstring() + L"\\page.txt"));
        std::ranges::sort(copies);
        return copies;
    }

    const test::TempFolder temporary;
    const test::TempFolder target;
    const std::wstring archive = target / L"scans.zip";
};

TEST_F(PageCopiesTest, AreGoneWhenTheHostHasEnded) {
    EXPECT_EQ(run({L"3"}), 0u);
    EXPECT_THAT(test::zipEntries(test::readFile(archive)),
                ElementsAre(Pair("1.txt", "page 1"), Pair("2.txt", "page 2"), Pair("3.txt", "page 3")));
    EXPECT_THAT(temporary.list(), IsEmpty());
}

TEST_F(PageCopiesTest, OfAKilledHostAreGoneAfterTheNextStart) {
    target.write(L"scans.zip", "old");
    ASSERT_EQ(run({L"5", L"3"}), 9u);
    ASSERT_THAT(temporary.list(), SizeIs(1)) << "nothing was left behind to be cleaned up";
    EXPECT_THAT(copiesIn(temporary / temporary.list().front()), ElementsAre("page 1", "page 2", "page 3"));
    EXPECT_EQ(test::readFile(archive), "old");

    EXPECT_EQ(run({L"2"}), 0u);

    EXPECT_THAT(temporary.list(), IsEmpty());
    EXPECT_THAT(test::zipEntries(test::readFile(archive)),
                ElementsAre(Pair("1.txt", "page 1"), Pair("2.txt", "page 2")));
    EXPECT_THAT(target.list(), ElementsAre(L"scans.zip"));
}

} // namespace
