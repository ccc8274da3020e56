// Packing pages into a ZIP archive.
#include "ZipExportFixture.h"

#include "SorvaneBase/Conversions.h"
#include "bxbase/ReferencedImpl.h"
#include "support/OpenFile.h"

#include <windows.h>

#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;

class ZipExportTest : public ZipExportFixture {};

// Names.

struct Numbering {
    int pages;
    std::string first;
    std::string last;
};

class ZipNumberingTest : public ZipExportFixture, public testing::WithParamInterface<Numbering> {};

TEST_P(ZipNumberingTest, IsAsWideAsThePageCount) {
    test::TestPage& page = addPage(L"a.jpg", "data");
    for (int i = 1; i < GetParam().pages; ++i)
        engine->addData(&page);
    EXPECT_EQ(run(), 0);
    const std::vector<std::string> names = entryNames();
    ASSERT_THAT(names, SizeIs(GetParam().pages));
    EXPECT_EQ(names.front(), GetParam().first);
    EXPECT_EQ(names.back(), GetParam().last);
}

INSTANTIATE_TEST_SUITE_P(Cases, ZipNumberingTest,
                         testing::Values(Numbering{1, "Scan_1.jpg", "Scan_1.jpg"},
                                         Numbering{9, "Scan_1.jpg", "Scan_9.jpg"},
                                         Numbering{10, "Scan_01.jpg", "Scan_10.jpg"},
                                         Numbering{99, "Scan_01.jpg", "Scan_99.jpg"},
                                         Numbering{100, "Scan_001.jpg", "Scan_100.jpg"},
                                         Numbering{1000, "Scan_0001.jpg", "Scan_1000.jpg"}));

TEST_F(ZipExportTest, PacksEveryPageByteForByteInOrder) {
    const std::string binary("\0\r\n\x1A\xFF", 5);
    addPage(L"z.tif", "first");
    addPage(L"a.jpg", binary);
    addPage(L"m.png", std::string(100'000, 'm'));
    addPage(L"empty.pdf", "");
    EXPECT_EQ(run(), 0);
    EXPECT_THAT(entries(),
                ElementsAre(Pair("Scan_1.tif", "first"), Pair("Scan_2.jpg", binary),
                            Pair("Scan_3.png", std::string(100'000, 'm')), Pair("Scan_4.pdf", "")));
    EXPECT_TRUE(errors.isEmpty());
}

TEST_F(ZipExportTest, TakesTheExtensionFromThePagesNameRatherThanItsFile) {
    addPage(L"a.tmp", "data").fileName = "Účet č. 1.PDF";
    EXPECT_EQ(run(), 0);
    EXPECT_THAT(entryNames(), ElementsAre("Scan_1.PDF"));
}

TEST_F(ZipExportTest, GivesNoDotWithoutExtension) {
    addPage(L"page", "data");
    EXPECT_EQ(run(), 0);
    EXPECT_THAT(entryNames(), ElementsAre("Scan_1"));
}

TEST_F(ZipExportTest, WithoutPrefixNamesAreBareNumbers) {
    engine->prefix.clear();
    addPages(2);
    EXPECT_EQ(run(), 0);
    EXPECT_THAT(entryNames(), ElementsAre("1.tif", "2.tif"));
}

TEST_F(ZipExportTest, NewEngineHasNoPrefix) {
    const std::string path = engine->targetPath;
    engine = new bxbase::ReferencedImpl<OpenZipEngine>;
    engine->targetPath = path;
    addPages(1);
    EXPECT_EQ(run(), 0);
    EXPECT_THAT(entryNames(), ElementsAre("1.tif"));
}

TEST_F(ZipExportTest, PrefixGoesIntoTheNamesAsItIs) {
    for (const char* prefix : {"faktury/2024/", "faktury\\2024\\", "Žluťoučký kůň 🐴 ", " . "}) {
        engine->prefix = prefix;
        engine->targetPath = target.utf8() + "\\scans.zip";
        if (pages.empty())
            addPages(1);
        EXPECT_EQ(run(), 0) << prefix;
        EXPECT_THAT(entryNames(), ElementsAre(prefix + std::string("1.tif")));
    }
}

// The archive.

TEST_F(ZipExportTest, WithoutPagesMakesAnEmptyArchive) {
    EXPECT_EQ(run(), 0);
    EXPECT_THAT(entries(), IsEmpty());
    EXPECT_TRUE(errors.isEmpty());
}

TEST_F(ZipExportTest, UsesTheTargetPathAsTyped) {
    addPages(1);
    for (const wchar_t* name : {L"skeny", L"účty.archiv", L"scans.ZIP"}) {
        engine->targetPath = target.utf8();
        Sorvane::u8string typed;
        Sorvane::c_u16u8(typed, name);
        engine->targetPath += "\\" + typed;
        EXPECT_EQ(run(), 0);
        EXPECT_THAT(test::zipEntries(test::readFile(target / name)), ElementsAre(Pair("Scan_1.tif", "1")));
    }
    EXPECT_THAT(target.list(), SizeIs(3));
}

TEST_F(ZipExportTest, TakesATargetPathOfAnyLength) {
    std::wstring path = target.path();
    for (const wchar_t letter : {L'á', L'b', L'c'}) {
        path += L"\\" + std::wstring(100, letter);
        ASSERT_TRUE(CreateDirectoryW((L"\\\\?\\" + path).c_str(), nullptr));
    }
    path += L"\\scans.zip";
    Sorvane::c_u16u8(engine->targetPath, path);
    addPages(2);
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(run(), 0);
        EXPECT_THAT(test::zipEntries(test::readFile(path)),
                    ElementsAre(Pair("Scan_1.tif", "1"), Pair("Scan_2.tif", "2")));
    }
}

TEST_F(ZipExportTest, ReplacesAnExistingArchive) {
    target.write(L"scans.zip", "old");
    addPages(1);
    EXPECT_EQ(run(), 0);
    EXPECT_THAT(entries(), ElementsAre(Pair("Scan_1.tif", "1")));
    EXPECT_THAT(target.list(), ElementsAre(L"scans.zip"));
}

TEST_F(ZipExportTest, IsClosedWhenTheExportReturns) {
    addPages(1);
    EXPECT_EQ(run(), 0);
    const test::OpenFile openForNobodyElse(target / L"scans.zip", GENERIC_READ | GENERIC_WRITE);
}

// Where the data comes from.

TEST_F(ZipExportTest, PageWithAFileIsNeverAskedForACopy) {
    test::TestPage& page = addPage(L"a.tif", "a");
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(page.copies, 0);
}

TEST_F(ZipExportTest, PageWithoutAFileIsPackedFromACopyThatStays) {
    test::TestPage& page = addPageWithoutFile("rendered");
    EXPECT_EQ(run(), 0);
    EXPECT_THAT(entries(), ElementsAre(Pair("Scan_1.tif", "rendered")));
    EXPECT_EQ(page.copies, 1);
    EXPECT_EQ(test::readFile(temporaryCopy), "rendered");
}

/// Keeps how many references there are to it whenever it is asked for its data.
class WatchedPage : public test::TestPage {
public:
    using TestPage::TestPage;
    bool getFilePath(std::wstring& path) override {
        referencesMeanwhile.push_back(references);
        return TestPage::getFilePath(path);
    }
    bool createDataCopy(std::wstring& path, SorvaneException& error) override {
        referencesMeanwhile.push_back(references);
        return TestPage::createDataCopy(path, error);
    }
    std::vector<int> referencesMeanwhile;
};

TEST_F(ZipExportTest, HoldsEachPageWhileItIsPacked) {
    WatchedPage page("a.tif", "a", temporaryCopy);
    engine->addData(&page);
    EXPECT_EQ(run(), 0);
    EXPECT_THAT(page.referencesMeanwhile, ElementsAre(2, 2));
    EXPECT_EQ(page.references, 1);
    engine.clear();
    EXPECT_EQ(page.references, 0);
}

TEST_F(ZipExportTest, HoldsThePageThatCannotBeCopiedUntilThatIsReported) {
    class WatchingSink : public SorvaneException {
    public:
        explicit WatchingSink(const WatchedPage& page) : page(page) {}
        void reportError(const Sorvane::u8string&, int line, const Sorvane::u8string&) override {
            referencesAt[line] = page.references;
        }
        const WatchedPage& page;
        std::map<int, int> referencesAt;
    };
    WatchedPage page("a.tif", std::nullopt, temporaryCopy);
    engine->addData(&page);
    WatchingSink sink(page);
    EXPECT_EQ(engine->exportData(nullptr, sink), 1);
    EXPECT_THAT(sink.referencesAt, testing::Contains(Pair(97, 2)));
    EXPECT_EQ(page.references, 1);
    engine.clear();
}

TEST_F(ZipExportTest, DoesNotReadTheContext) {
    addPages(1);
    void* const unreadable = reinterpret_cast<void*>(1);
    EXPECT_EQ(engine->exportData(unreadable, errors), 0);
    EXPECT_THAT(entryNames(), ElementsAre("Scan_1.tif"));
}

// Failures.

TEST_F(ZipExportTest, WithoutTargetPathIsReported) {
    engine->targetPath.clear();
    test::TestPage& page = addPageWithoutFile("data");
    EXPECT_EQ(run(), 1);
    expectReport(49, "targetPath is empty");
    EXPECT_EQ(page.copies, 0);
}

TEST_F(ZipExportTest, NewEngineHasNoTargetPath) {
    engine = new bxbase::ReferencedImpl<OpenZipEngine>;
    EXPECT_EQ(run(), 1);
    expectReport(49, "targetPath is empty");
}

struct BadArchive {
    const char* what;
    std::function<std::string(const test::TempFolder&)> path;
};

class BadArchiveTest : public ZipExportFixture, public testing::WithParamInterface<BadArchive> {};

TEST_P(BadArchiveTest, IsReportedAndNoPageIsAsked) {
    target.write(L"file", "content");
    engine->targetPath = GetParam().path(target);
    test::TestPage& page = addPageWithoutFile("data");
    EXPECT_EQ(run(), 1);
    expectReport(56, "Failed to create zip file");
    EXPECT_EQ(page.copies, 0);
    EXPECT_THAT(target.list(), ElementsAre(L"file"));
    EXPECT_EQ(test::readFile(target / L"file"), "content");
}

INSTANTIATE_TEST_SUITE_P(
    Cases, BadArchiveTest,
    testing::Values(
        BadArchive{"IsAFolder", [](const auto& target) { return target.utf8(); }},
        BadArchive{"LiesInAFile", [](const auto& target) { return target.utf8() + "\\file\\a.zip"; }},
        BadArchive{"HasNoParent", [](const auto& target) { return target.utf8() + "\\none\\a.zip"; }},
        BadArchive{"IsOnADriveThatDoesNotExist", [](const auto&) { return std::string("Q:\\a.zip"); }}),
    [](const auto& info) { return std::string(info.param.what); });

TEST_F(ZipExportTest, LockedArchiveIsReported) {
    const std::wstring path = target.write(L"scans.zip", "old");
    const test::OpenFile lock(path, GENERIC_READ, FILE_SHARE_READ);
    addPages(1);
    EXPECT_EQ(run(), 1);
    expectReport(56, "Failed to create zip file");
    EXPECT_EQ(test::readFile(path), "old");
}

TEST_F(ZipExportTest, PageThatCannotBeCopiedEndsTheExportWithTheEntriesSoFar) {
    addPages(2);
    test::TestPage& failing = addPageWithoutFile(std::nullopt);
    test::TestPage& after = addPageWithoutFile("after");
    EXPECT_EQ(run(), 1);
    // The page says why before the engine says what.
    ASSERT_THAT(errors.getReports(), SizeIs(2));
    EXPECT_EQ(errors.getReports()[0].message, "no data");
    EXPECT_EQ(errors.getReports()[1].sourceFile, "Components/BasicExport/ExportToZip");
    EXPECT_EQ(errors.getReports()[1].line, 97);
    EXPECT_EQ(errors.getReports()[1].message, "Failed to get data copy");
    EXPECT_THAT(entries(), ElementsAre(Pair("Scan_1.tif", "1"), Pair("Scan_2.tif", "2")));
    EXPECT_EQ(failing.references, 1);
    EXPECT_EQ(after.copies, 0);
}

TEST_F(ZipExportTest, PageThatCannotBeReadEndsTheExportWithTheEntriesSoFar) {
    addPages(2);
    test::TestPage& vanished = addPage(L"3.tif", "3");
    test::TestPage& after = addPageWithoutFile("after");
    DeleteFileW((pageFolder / L"3.tif").c_str());
    EXPECT_EQ(run(), 1);
    expectReport(105, "Failed to add item");
    EXPECT_THAT(entries(), ElementsAre(Pair("Scan_1.tif", "1"), Pair("Scan_2.tif", "2")));
    EXPECT_EQ(vanished.references, 1);
    EXPECT_EQ(after.copies, 0);
}

TEST_F(ZipExportTest, CopyStaysWhenItCannotBePacked) {
    test::TestPage& page = addPageWithoutFile("data");
    engine->addData(&page);
    engine->prefix = std::string(65'535, 'x');
    EXPECT_EQ(run(), 1);
    expectReport(105, "Failed to add item");
    EXPECT_EQ(test::readFile(temporaryCopy), "data");
}

TEST_F(ZipExportTest, AnExceptionOnTheWayKeepsTheExistingArchive) {
    class ThrowingPage : public test::TestPage {
    public:
        using TestPage::TestPage;
        bool getFilePath(std::wstring&) override { throw std::runtime_error("page"); }
    };
    target.write(L"scans.zip", "old");
    addPages(1);
    ThrowingPage page(pageFolder / L"thrown.tif");
    engine->addData(&page);
    EXPECT_THROW(run(), std::runtime_error);
    EXPECT_THAT(target.list(), ElementsAre(L"scans.zip", L"scans.zip.bak"));
    EXPECT_EQ(test::readFile(target / L"scans.zip.bak"), "old");
    EXPECT_THAT(entries(), ElementsAre(Pair("Scan_1.tif", "1")));
    EXPECT_EQ(page.references, 1);
    engine.clear();
}

class ZipBackupTest : public ZipExportFixture, public testing::WithParamInterface<bool> {};

TEST_P(ZipBackupTest, OfTheExistingArchiveIsKeptAfterAFailure) {
    target.write(L"scans.zip", "old");
    addPages(1);
    if (GetParam()) {
        addPageWithoutFile(std::nullopt);
    } else {
        addPage(L"gone.tif", "");
        DeleteFileW((pageFolder / L"gone.tif").c_str());
    }
    EXPECT_EQ(run(), 1);
    EXPECT_THAT(entries(), ElementsAre(Pair("Scan_1.tif", "1")));
    EXPECT_THAT(target.list(), ElementsAre(L"scans.zip", L"scans.zip.bak"));
    EXPECT_EQ(test::readFile(target / L"scans.zip.bak"), "old");
}

INSTANTIATE_TEST_SUITE_P(Failures, ZipBackupTest, testing::Bool(),
                         [](const auto& info) { return std::string(info.param ? "OfACopy" : "OfAnEntry"); });

} // namespace
