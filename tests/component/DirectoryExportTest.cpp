// What the directory engine writes, asks and reports.
#include "DirectoryExportFixture.h"

#include "SorvaneBase/bxutils/ResourceManager.h"
#include "host/Text.h"

#include <locale>

namespace {

using SorvaneCommon::MessageDlgResult;
using SorvaneCommon::MessageDlgType;
using testing::ElementsAre;
using testing::IsEmpty;

class DirectoryExportTest : public DirectoryExportFixture {};

// Names.

struct Naming {
    const char* what;
    std::string prefix;
    bool appendIndex;
    std::uint32_t digits;
    std::uint32_t firstNumber;
    bool useParentFolderName;
    std::optional<std::wstring> folder;
    std::string pageName;
    std::wstring written;
};

class NamingTest : public DirectoryExportFixture, public testing::WithParamInterface<Naming> {};

TEST_P(NamingTest, PutsFolderPrefixNumberAndExtensionTogether) {
    const Naming& naming = GetParam();
    engine->prefix = naming.prefix;
    engine->appendIndex = naming.appendIndex;
    engine->digits = naming.digits;
    engine->firstNumber = naming.firstNumber;
    engine->useParentFolderName = naming.useParentFolderName;
    test::TestFolder folder(naming.folder);
    test::TestPage& page = addPage(L"source", "data");
    page.fileName = naming.pageName;
    page.folder = &folder;

    EXPECT_EQ(run(), 0);

    EXPECT_THAT(target.list(), ElementsAre(naming.written));
    EXPECT_EQ(written(naming.written), "data");
}

INSTANTIATE_TEST_SUITE_P(
    Cases, NamingTest,
    testing::Values(
        Naming{"PrefixAndNumber", "Scan", true, 3, 1, false, L"Invoices", "p.tif", L"Scan001.tif"},
        Naming{"PageCountAlone", "Scan", true, 0, 1, false, {}, "p.tif", L"Scan1.tif"},
        Naming{"NumberWiderThanTheWidth", "Scan", true, 3, 12345, false, {}, "p.tif", L"Scan12345.tif"},
        Naming{"LargestNumber", "", true, 1, 4294967295, false, {}, "p.tif", L"4294967295.tif"},
        Naming{"Zero", "", true, 3, 0, false, {}, "p.tif", L"000.tif"},
        Naming{"NoNumber", "Scan", false, 3, 1, false, {}, "p.tif", L"Scan.tif"},
        Naming{"NothingButTheExtension", "", false, 3, 1, false, {}, "p.tif", L".tif"},
        Naming{"FolderAndNumber", "", true, 3, 7, true, L"Invoices", "p.pdf", L"Invoices007.pdf"},
        Naming{"FolderPrefixAndNumber", "Scan", true, 2, 7, true, L"Invoices", "p.pdf",
               L"InvoicesScan07.pdf"},
        Naming{"FolderWithForbiddenCharacters", "", true, 1, 7, true, L"a/b:c?", "p.pdf", L"a_b_c_7.pdf"},
        Naming{"FolderOfDots", "", true, 1, 7, true, L"...", "p.pdf", L"7.pdf"},
        Naming{"FolderWithEmptyName", "", true, 1, 7, true, L"", "p.pdf", L"7.pdf"},
        Naming{"FolderWithoutName", "", true, 1, 7, true, {}, "p.pdf", L"7.pdf"},
        Naming{"CzechFolder", "Účet", true, 1, 7, true, L"Žluťoučký kůň", "p.pdf", L"Žluťoučký kůňÚčet7.pdf"},
        Naming{"NoExtension", "Scan", true, 3, 1, false, {}, "page", L"Scan001"},
        Naming{"EmptyExtension", "Scan", true, 3, 1, false, {}, "page.", L"Scan001"},
        Naming{"LastOfSeveralExtensions", "Scan", true, 3, 1, false, {}, "p.tar.gz", L"Scan001.gz"},
        Naming{"ExtensionInItsOwnCase", "Scan", true, 3, 1, false, {}, "p.JPG", L"Scan001.JPG"},
        Naming{"NoNameAtAll", "Scan", true, 3, 1, false, {}, "", L"Scan001"}),
    [](const auto& info) { return std::string(info.param.what); });

TEST_F(DirectoryExportTest, PageWithoutFolderGetsTheNameWithoutIt) {
    engine->useParentFolderName = true;
    addPages(1);
    EXPECT_EQ(run(), 0);
    EXPECT_THAT(target.list(), ElementsAre(L"Scan001.tif"));
}

TEST_F(DirectoryExportTest, EachPageGetsTheNameOfItsOwnFolder) {
    engine->useParentFolderName = true;
    engine->prefix.clear();
    test::TestFolder invoices(L"Invoices");
    test::TestFolder letters(L"Letters");
    addPage(L"a.tif", "a").folder = &invoices;
    addPage(L"b.tif", "b").folder = &letters;
    EXPECT_EQ(run(), 0);
    EXPECT_THAT(target.list(), ElementsAre(L"Invoices001.tif", L"Letters002.tif"));
}

TEST_F(DirectoryExportTest, WithoutDialogNumbersFromOneWithThreeDigits) {
    engine->prefix.clear();
    addPages(2);
    EXPECT_EQ(run(), 0);
    EXPECT_THAT(target.list(), ElementsAre(L"001.tif", L"002.tif"));
}

TEST_F(DirectoryExportTest, WithoutDialogLeavesTheFolderNameOut) {
    test::TestFolder folder(L"Invoices");
    addPage(L"a.tif", "a").folder = &folder;
    EXPECT_EQ(run(), 0);
    EXPECT_THAT(target.list(), ElementsAre(L"Scan001.tif"));
}

TEST_F(DirectoryExportTest, NumbersDoNotFollowTheProgramsLocale) {
    struct Grouping : std::numpunct<char> {
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };
    const std::locale before = std::locale::global(std::locale(std::locale::classic(), new Grouping));
    engine->firstNumber = 1234567;
    addPages(1);
    EXPECT_EQ(run(), 0);
    std::locale::global(before);
    EXPECT_THAT(target.list(), ElementsAre(L"Scan1234567.tif"));
}

// Many pages.

TEST_F(DirectoryExportTest, WritesEveryPageByteForByteInOrder) {
    addPages(12);
    const std::string binary("\0\r\n\x1A\xFF", 5);
    pageFolder.write(L"12.tif", binary);
    EXPECT_EQ(run(), 0);
    ASSERT_EQ(target.list().size(), 12U);
    EXPECT_EQ(written(L"Scan001.tif"), "1");
    EXPECT_EQ(written(L"Scan009.tif"), "9");
    EXPECT_EQ(written(L"Scan010.tif"), "10");
    EXPECT_EQ(written(L"Scan012.tif"), binary);
    EXPECT_TRUE(errors.isEmpty());
}

TEST_F(DirectoryExportTest, NumbersGrowBeyondTheWidth) {
    engine->firstNumber = 998;
    addPages(3);
    EXPECT_EQ(run(), 0);
    EXPECT_THAT(target.list(), ElementsAre(L"Scan1000.tif", L"Scan998.tif", L"Scan999.tif"));
}

TEST_F(DirectoryExportTest, NumbersStartAgainAtZeroAfterTheLargest) {
    engine->firstNumber = 4294967295;
    addPages(2);
    EXPECT_EQ(run(), 0);
    EXPECT_THAT(target.list(), ElementsAre(L"Scan000.tif", L"Scan4294967295.tif"));
    EXPECT_EQ(written(L"Scan000.tif"), "2");
}

struct Width {
    int pages;
    std::uint32_t digits;
    std::wstring first;
};

class WidthTest : public DirectoryExportFixture, public testing::WithParamInterface<Width> {};

TEST_P(WidthTest, IsTheLargerOfTheSettingAndThePageCountsDigits) {
    engine->digits = GetParam().digits;
    addPages(1);
    if (GetParam().pages > 1) {
        // The first name tells the width; the second page fails so that the others need not be written.
        test::TestPage& failing = addPageWithoutFile(std::nullopt);
        for (int i = 2; i < GetParam().pages; ++i)
            engine->addData(&failing);
    }
    run();
    EXPECT_THAT(target.list(), ElementsAre(GetParam().first));
}

INSTANTIATE_TEST_SUITE_P(Cases, WidthTest,
                         testing::Values(Width{1, 0, L"Scan1.tif"}, Width{9, 1, L"Scan1.tif"},
                                         Width{10, 1, L"Scan01.tif"}, Width{99, 1, L"Scan01.tif"},
                                         Width{100, 1, L"Scan001.tif"}, Width{10, 5, L"Scan00001.tif"},
                                         Width{999, 3, L"Scan001.tif"}, Width{1200, 3, L"Scan0001.tif"}));

TEST_F(DirectoryExportTest, WidthBeyondAnyNameFailsLikeAnyOtherCopy) {
    for (const std::uint32_t digits : {256U, 2'000'000'000U, 4'294'967'295U}) {
        errors = {};
        engine->digits = digits;
        if (pages.empty())
            addPages(1);
        EXPECT_EQ(runWithErrorBox(), 1) << digits;
        expectReport(76, "Failed to export file");
    }
    EXPECT_THAT(target.list(), IsEmpty());
}

TEST_F(DirectoryExportTest, PageAddedTwiceIsWrittenTwice) {
    engine->addData(&addPage(L"a.tif", "a"));
    EXPECT_EQ(run(), 0);
    EXPECT_THAT(target.list(), ElementsAre(L"Scan001.tif", L"Scan002.tif"));
    EXPECT_EQ(written(L"Scan002.tif"), "a");
}

TEST_F(DirectoryExportTest, HoldsEachPageWhileItIsWritten) {
    class WatchedPage : public test::TestPage {
    public:
        using TestPage::TestPage;
        bool getFilePath(std::wstring& path) override {
            referencesMeanwhile = references;
            return TestPage::getFilePath(path);
        }
        int referencesMeanwhile = 0;
    };
    WatchedPage page(pageFolder.write(L"a.tif", "a"));
    engine->addData(&page);
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(page.referencesMeanwhile, 2);
    EXPECT_EQ(page.references, 1);
    engine.clear();
    EXPECT_EQ(page.references, 0);
}

// The target directory.

TEST_F(DirectoryExportTest, WithoutPagesMakesTheDirectoryAndIsDone) {
    engine->targetPath = host::utf8(target / L"new");
    EXPECT_EQ(run(), 0);
    EXPECT_THAT(target.list(), ElementsAre(L"new"));
    EXPECT_TRUE(errors.isEmpty());
}

TEST_F(DirectoryExportTest, MakesTheDirectoryWithItsParents) {
    engine->targetPath = host::utf8(target / L"a\\Žluťoučký\\c");
    addPages(1);
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(written(L"a\\Žluťoučký\\c\\Scan001.tif"), "1");
}

TEST_F(DirectoryExportTest, WritesIntoPathsOfAnyLength) {
    std::wstring deep = target.path();
    for (int i = 0; i < 5; ++i)
        deep += L"\\" + std::wstring(80, L'x');
    engine->targetPath = host::utf8(deep);
    addPages(1);
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(test::readFile(deep + L"\\Scan001.tif"), "1");
}

struct BadTarget {
    const char* what;
    std::function<std::string(const test::TempFolder&)> path;
};

class BadTargetTest : public DirectoryExportFixture, public testing::WithParamInterface<BadTarget> {};

TEST_P(BadTargetTest, IsReportedAndNothingIsWritten) {
    target.write(L"file", "content");
    engine->targetPath = GetParam().path(target);
    test::TestPage& page = addPageWithoutFile("data");
    EXPECT_EQ(run(), 1);
    expectReport(52, "targetPath is not directory");
    EXPECT_EQ(page.copies, 0);
    EXPECT_THAT(target.list(), ElementsAre(L"file"));
    EXPECT_EQ(written(L"file"), "content");
}

TEST_P(BadTargetTest, IsReportedEvenWithoutPages) {
    target.write(L"file", "content");
    engine->targetPath = GetParam().path(target);
    EXPECT_EQ(run(), 1);
    expectReport(52, "targetPath is not directory");
}

INSTANTIATE_TEST_SUITE_P(
    Cases, BadTargetTest,
    testing::Values(
        BadTarget{"NamesAFile", [](const auto& target) { return host::utf8(target / L"file"); }},
        BadTarget{"LiesInAFile", [](const auto& target) { return host::utf8(target / L"file\\sub"); }},
        BadTarget{"IsOnADriveThatDoesNotExist", [](const auto&) { return std::string("Q:\\scans"); }},
        BadTarget{"IsEmpty", [](const auto&) { return std::string(); }}),
    [](const auto& info) { return std::string(info.param.what); });

// Overwriting.

TEST_F(DirectoryExportTest, AsksWithTheFullPathBeforeItOverwrites) {
    engine->prefix = "Žluťoučký kůň ";
    target.write(L"Žluťoučký kůň 001.tif", "a longer old content");
    addPages(1);
    host.answers = {MessageDlgResult::Yes};

    EXPECT_EQ(run(), 0);

    ASSERT_EQ(host.messages.size(), 1U);
    EXPECT_EQ(host.messages[0].text, "Přepsat „" + target.utf8() + "\\Žluťoučký kůň 001.tif“?");
    EXPECT_EQ(host.messages[0].title, "");
    EXPECT_EQ(host.messages[0].type, MessageDlgType::Question);
    EXPECT_EQ(host.messages[0].owner, owner.GetSafeHwnd());
    EXPECT_EQ(written(L"Žluťoučký kůň 001.tif"), "1");
}

TEST_F(DirectoryExportTest, QuestionHoldsPathsOfAnyLength) {
    std::wstring name;
    for (int i = 0; i < 5; ++i)
        name += std::wstring(100, static_cast<wchar_t>(L'á' + i)) + L"\\";
    engine->targetPath = host::utf8(target / name);
    addPages(1);
    ASSERT_EQ(run(), 0);
    host.answers = {MessageDlgResult::Yes};
    EXPECT_EQ(run(), 0);
    ASSERT_EQ(host.messages.size(), 1U);
    EXPECT_THAT(host.messages[0].text, testing::StartsWith("Přepsat „"));
    EXPECT_THAT(host.messages[0].text, testing::HasSubstr(host::utf8(name) + "Scan001.tif“?"));
}

TEST_F(DirectoryExportTest, QuestionInAnUnknownLanguageIsStillAsked) {
    const std::wstring empty = scratch.write(L"empty.ini", "");
    ASSERT_TRUE(bxutils::getResourceManager()->loadLanguageFile(empty));
    target.write(L"Scan001.tif", "old");
    addPages(1);
    host.answers = {MessageDlgResult::Yes};
    EXPECT_EQ(run(), 0);
    ASSERT_EQ(host.messages.size(), 1U);
    EXPECT_EQ(host.messages[0].text, "Question.OverwriteFile");
}

TEST_F(DirectoryExportTest, AsksAgainForEveryExistingFile) {
    for (const wchar_t* name : {L"Scan001.tif", L"Scan003.tif"})
        target.write(name, "old");
    addPages(3);
    host.answers = {MessageDlgResult::Yes, MessageDlgResult::Yes};
    EXPECT_EQ(run(), 0);
    ASSERT_EQ(host.messages.size(), 2U);
    EXPECT_THAT(host.messages[0].text, testing::HasSubstr("Scan001.tif"));
    EXPECT_THAT(host.messages[1].text, testing::HasSubstr("Scan003.tif"));
    EXPECT_EQ(written(L"Scan001.tif"), "1");
    EXPECT_EQ(written(L"Scan003.tif"), "3");
}

TEST_F(DirectoryExportTest, DecliningOnePageStopsTheExportThere) {
    target.write(L"Scan005.tif", "old");
    addPages(10);
    host.answers = {MessageDlgResult::No};
    EXPECT_EQ(run(), 2);
    EXPECT_THAT(target.list(),
                ElementsAre(L"Scan001.tif", L"Scan002.tif", L"Scan003.tif", L"Scan004.tif", L"Scan005.tif"));
    EXPECT_EQ(written(L"Scan004.tif"), "4");
    EXPECT_EQ(written(L"Scan005.tif"), "old");
    EXPECT_TRUE(errors.isEmpty());
}

TEST_F(DirectoryExportTest, DeclinedPageIsNotEvenCopied) {
    target.write(L"Scan001.tif", "old");
    test::TestPage& page = addPageWithoutFile("data");
    host.answers = {MessageDlgResult::No};
    EXPECT_EQ(run(), 2);
    EXPECT_EQ(page.copies, 0);
}

class AnswerTest : public DirectoryExportFixture, public testing::WithParamInterface<MessageDlgResult> {};

TEST_P(AnswerTest, OtherThanYesIsNoConsent) {
    target.write(L"Scan001.tif", "old");
    addPages(1);
    host.answers = {GetParam()};
    EXPECT_EQ(run(), 2);
    EXPECT_EQ(written(L"Scan001.tif"), "old");
    EXPECT_TRUE(errors.isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Answers, AnswerTest,
                         testing::Values(MessageDlgResult::No, MessageDlgResult::Closed,
                                         MessageDlgResult::Ok));

TEST_F(DirectoryExportTest, WithoutNumbersEachPageOverwritesTheOneBefore) {
    engine->appendIndex = false;
    addPages(3);
    host.answers = {MessageDlgResult::Yes, MessageDlgResult::Yes};
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(host.messages.size(), 2U);
    EXPECT_THAT(target.list(), ElementsAre(L"Scan.tif"));
    EXPECT_EQ(written(L"Scan.tif"), "3");
}

TEST_F(DirectoryExportTest, SecondExportWritesTheSameNamesAgain) {
    addPages(2);
    ASSERT_EQ(run(), 0);
    host.answers = {MessageDlgResult::Yes, MessageDlgResult::Yes};
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(host.messages.size(), 2U);
    EXPECT_THAT(target.list(), ElementsAre(L"Scan001.tif", L"Scan002.tif"));
}

TEST_F(DirectoryExportTest, FolderOfTheNameCountsAsExistingAndCannotBeOverwritten) {
    CreateDirectoryW((target / L"Scan001.tif").c_str(), nullptr);
    addPages(1);
    host.answers = {MessageDlgResult::Yes};
    EXPECT_EQ(runWithErrorBox(), 1);
    EXPECT_EQ(host.messages.size(), 1U);
    expectReport(76, "Failed to export file");
}

TEST_F(DirectoryExportTest, PageIsNeverDestroyedByItsOwnCopy) {
    engine->addData(&pages.emplace_back(target.write(L"Scan001.tif", "the only copy")));
    host.answers = {MessageDlgResult::Yes};
    EXPECT_EQ(runWithErrorBox(), 1);
    EXPECT_EQ(written(L"Scan001.tif"), "the only copy");
}

// Where the data comes from.

TEST_F(DirectoryExportTest, PageWithAFileIsNotCopiedTwice) {
    test::TestPage& page = addPage(L"a.tif", "a");
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(page.copies, 0);
    EXPECT_THAT(pageFolder.list(), ElementsAre(L"a.tif"));
}

TEST_F(DirectoryExportTest, PageMayLieAtAPathOfAnyLength) {
    std::wstring deep = pageFolder.path();
    for (int i = 0; i < 5; ++i) {
        deep += L"\\" + std::wstring(80, L'x');
        CreateDirectoryW((L"\\\\?\\" + deep).c_str(), nullptr);
    }
    addPage(deep.substr(pageFolder.path().size() + 1) + L"\\a.tif", "far away");
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(written(L"Scan001.tif"), "far away");
}

TEST_F(DirectoryExportTest, PageWithoutAFileIsWrittenFromATemporaryCopyThatGoes) {
    test::TestPage& page = addPageWithoutFile("rendered");
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(written(L"Scan001.tif"), "rendered");
    EXPECT_EQ(page.copies, 1);
    EXPECT_EQ(GetFileAttributesW(temporaryCopy.c_str()), INVALID_FILE_ATTRIBUTES);
}

TEST_F(DirectoryExportTest, TemporaryCopyGoesEvenWhenItCannotBeCopied) {
    addPageWithoutFile("rendered");
    lock(target / L"Scan001.tif");
    host.answers = {MessageDlgResult::Yes};
    EXPECT_EQ(runWithErrorBox(), 1);
    EXPECT_EQ(GetFileAttributesW(temporaryCopy.c_str()), INVALID_FILE_ATTRIBUTES);
    EXPECT_EQ(box.text, L"Nelze zkopírovat soubor:\n" + temporaryCopy);
}

TEST_F(DirectoryExportTest, PageThatCannotWriteACopyFailsWithoutABox) {
    addPages(1);
    addPageWithoutFile(std::nullopt);
    addPage(L"3.tif", "3");
    EXPECT_EQ(run(), 1);
    // The page has recorded its own reason in an object that nobody sees.
    expectReport(76, "Failed to export file");
    EXPECT_THAT(target.list(), ElementsAre(L"Scan001.tif"));
}

// Failed copies.

TEST_F(DirectoryExportTest, FailedCopyShowsTheSourceAndIsReported) {
    addPages(1);
    addPage(L"Žluťoučký kůň.tif", "2");
    addPage(L"3.tif", "3");
    DeleteFileW((pageFolder / L"Žluťoučký kůň.tif").c_str());

    EXPECT_EQ(runWithErrorBox(), 1);

    EXPECT_EQ(box.text, L"Nelze zkopírovat soubor:\n" + (pageFolder / L"Žluťoučký kůň.tif"));
    EXPECT_EQ(box.caption, L"Chyba");
    EXPECT_EQ(box.owner, owner.GetSafeHwnd());
    EXPECT_EQ(box.icon, LoadIconW(nullptr, IDI_ERROR));
    EXPECT_THAT(box.buttons, ElementsAre(IDOK));
    expectReport(76, "Failed to export file");
    EXPECT_THAT(target.list(), ElementsAre(L"Scan001.tif"));
}

TEST_F(DirectoryExportTest, PathThatIsNoUnicodeTextIsShownUnchanged) {
    const std::wstring source = pageFolder / L"lone \xD83D surrogate.tif";
    engine->addData(&pages.emplace_back(source));
    EXPECT_EQ(runWithErrorBox(), 1);
    EXPECT_EQ(box.text, L"Nelze zkopírovat soubor:\n" + source);
}

TEST_F(DirectoryExportTest, LockedTargetFailsAndKeepsItsContent) {
    target.write(L"Scan002.tif", "old");
    addPages(3);
    lock(target / L"Scan002.tif");
    host.answers = {MessageDlgResult::Yes};
    EXPECT_EQ(runWithErrorBox(), 1);
    expectReport(76, "Failed to export file");
    EXPECT_EQ(box.text, L"Nelze zkopírovat soubor:\n" + (pageFolder / L"2.tif"));
    EXPECT_THAT(target.list(), ElementsAre(L"Scan001.tif", L"Scan002.tif"));
}

TEST_F(DirectoryExportTest, LockedPageFails) {
    addPages(1);
    lock(pageFolder / L"1.tif");
    EXPECT_EQ(runWithErrorBox(), 1);
    expectReport(76, "Failed to export file");
}

} // namespace
