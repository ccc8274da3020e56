// The console program packing pages into a ZIP archive with the real component, run inside the test.
#include "host/ScanExportFixture.h"

#include "host/HostError.h"
#include "host/Text.h"
#include "host/ZipDialogControls.h"
#include "host/ZipTarget.h"
#include "support/SoundArchives.h"
#include "support/ZipParser.h"

#include <gmock/gmock.h>

namespace {

using host::utf8;
using host::zipDialog::pathEdit;
using host::zipDialog::prefixEdit;
using test::OpenFile;
using test::Person;
using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;
using testing::StartsWith;

class ZipTargetTest : public ScanExportFixture {
protected:
    void TearDown() override { test::expectSoundArchives(folder); }

    /// Packs into `archive` under names that begin with "Scan".
    int pack(std::vector<std::wstring> arguments) {
        arguments.insert(arguments.begin(), {L"--to-zip", archive, L"--prefix", L"Scan"});
        return run(std::move(arguments));
    }

    std::vector<std::wstring> filesBeside() const { return namesIn(folder.path()); }

    const std::wstring archive = folder / L"skeny.zip";
};

TEST_F(ZipTargetTest, PacksPagesByteForByteUnderNumberedNames) {
    const std::string binary("\0\r\n\x1A\xFF", 5);
    const std::wstring a = addPage(L"a.TIF", binary);
    const std::wstring b = addPage(L"b.jpg", std::string(1 << 20, 'b'));

    EXPECT_EQ(pack({b, a}), 0);

    EXPECT_THAT(test::zipEntries(test::readFile(archive)),
                ElementsAre(Pair("Scan1.jpg", std::string(1 << 20, 'b')), Pair("Scan2.TIF", binary)));
    EXPECT_THAT(filesBeside(), ElementsAre(L"skeny.zip"));
    EXPECT_EQ(console.output, "") << "output that nobody watches";
    EXPECT_EQ(console.errors, "");
    EXPECT_EQ(rememberedText(L"Prefix"), std::nullopt);
}

TEST_F(ZipTargetTest, WithoutPrefixNamesAreNumbersEveryTime) {
    addPage(L"a.tif");
    ASSERT_EQ(pack({pages}), 0);

    EXPECT_EQ(run({L"--to-zip", archive, pages}), 0);

    EXPECT_THAT(test::zipEntries(test::readFile(archive)), ElementsAre(Pair("1.tif", "data")));
}

TEST_F(ZipTargetTest, PrefixMayHoldWhatFileNamesCannot) {
    addPage(L"a.tif");
    EXPECT_EQ(run({L"--to-zip", archive, L"--prefix", L"účty/2024: ", pages}), 0);
    EXPECT_THAT(test::zipEntries(test::readFile(archive)), ElementsAre(Pair("účty/2024: 1.tif", "data")));
}

TEST_F(ZipTargetTest, WorksInCzech) {
    const std::wstring page = addPage(L"ž.tif");
    EXPECT_EQ(host::runScanExport({L"--lang=cs", L"--to-zip", folder / L"výstup.zip", L"--prefix=Účet", page},
                                  console, surroundings),
              0);
    EXPECT_THAT(test::zipEntries(test::readFile(folder / L"výstup.zip")),
                ElementsAre(Pair("Účet1.tif", "data")));
}

TEST_F(ZipTargetTest, PacksIntoAPathOfAnyLength) {
    addPage(L"a.tif");
    std::wstring path = folder.path();
    for (const wchar_t letter : {L'á', L'b', L'c'}) {
        path += L"\\" + std::wstring(100, letter);
        ASSERT_TRUE(CreateDirectoryW((L"\\\\?\\" + path).c_str(), nullptr));
    }
    path += L"\\skeny.zip";

    for (int round = 0; round < 2; ++round)
        EXPECT_EQ(run({L"--to-zip", path, pages}), 0);

    EXPECT_EQ(console.errors, "");
    EXPECT_THAT(test::zipEntries(test::readFile(path)), ElementsAre(Pair("1.tif", "data")));
}

TEST_F(ZipTargetTest, ShowsProgressToAPersonWhoWatches) {
    addPage(L"a.tif");
    addPage(L"b.tif");
    console.watched = true;

    EXPECT_EQ(pack({pages}), 0);

    EXPECT_THAT(console.output, AllOf(HasSubstr("Exporting page 1 of 2"), HasSubstr("Exporting page 2 of 2"),
                                      EndsWith("\r2 pages exported to " + utf8(archive) + ".\n")));
}

// An archive that exists. The engine would replace it without a question.

TEST_F(ZipTargetTest, AnExistingArchiveIsReplaced) {
    addPage(L"a.tif");
    for (const std::vector<std::wstring>& option : {std::vector<std::wstring>{}, {L"--overwrite=yes"}}) {
        folder.write(L"skeny.zip", "old");
        std::vector<std::wstring> arguments = option;
        arguments.push_back(pages);
        EXPECT_EQ(pack(arguments), 0);
        EXPECT_THAT(test::zipEntries(test::readFile(archive)), ElementsAre(Pair("Scan1.tif", "data")));
        EXPECT_THAT(filesBeside(), ElementsAre(L"skeny.zip"));
    }
    EXPECT_EQ(console.errors, "");
}

TEST_F(ZipTargetTest, AnExistingArchiveIsKeptWhenTheOptionSaysSo) {
    addPage(L"a.tif");
    folder.write(L"skeny.zip", "old");

    EXPECT_EQ(pack({L"--overwrite=no", pages}), 2);
    EXPECT_EQ(pack({L"--overwrite=ask", pages}), 2) << "nobody is there to be asked";
    EXPECT_EQ(test::readFile(archive), "old");
    EXPECT_EQ(console.errors, "scanexport: Stopped, because " + utf8(archive) +
                                  " exists already.\nscanexport: Stopped, because " + utf8(archive) +
                                  " exists already; --overwrite=yes overwrites.\n");
}

TEST_F(ZipTargetTest, APersonIsAskedAboutTheExistingArchiveWhenTheOptionSaysSo) {
    addPage(L"a.tif");
    folder.write(L"skeny.zip", "old");
    console.answers = {"n", "y"};

    EXPECT_EQ(pack({L"--overwrite=ask", pages}), 2);
    EXPECT_EQ(test::readFile(archive), "old");
    EXPECT_EQ(pack({L"--overwrite=ask", pages}), 0);

    EXPECT_THAT(test::zipEntries(test::readFile(archive)), ElementsAre(Pair("Scan1.tif", "data")));
    EXPECT_THAT(console.questions, StartsWith(utf8(archive) + " exists already. Overwrite it? [y/N] \n"));
}

TEST_F(ZipTargetTest, APageIsNotReplacedByItsOwnArchive) {
    const std::wstring page = folder.write(L"skeny.zip", "the only copy");
    addPage(L"a.tif");

    for (const std::wstring& target : {archive, folder / L"SKENY.zip", folder / L"Faktury\\..\\skeny.zip"}) {
        console.errors.clear();
        EXPECT_EQ(run({L"--to-zip", target, pages, page}), 1);
        EXPECT_THAT(console.errors, EndsWith("is itself a page to export and is not overwritten.\n"));
    }
    EXPECT_EQ(test::readFile(page), "the only copy");
}

// What a command line asks for that cannot be. Nothing may be made, changed or lost.

TEST_F(ZipTargetTest, ATargetThatIsAFolderIsRefused) {
    addPage(L"a.tif");
    for (const std::wstring& target : {pages, pages + L"\\"}) {
        console.errors.clear();
        EXPECT_EQ(run({L"--to-zip", target, pages}), 1);
        EXPECT_THAT(console.errors, EndsWith(" is a folder, not a file.\n"));
    }
    EXPECT_THAT(namesIn(pages), ElementsAre(L"a.tif"));
}

TEST_F(ZipTargetTest, ATargetWithoutParentIsRefused) {
    const std::wstring page = addPage(L"a.tif");
    for (const std::wstring& parent : {folder / L"none\\", page + L"\\"}) {
        console.errors.clear();
        EXPECT_EQ(run({L"--to-zip", parent + L"a.zip", pages}), 1);
        EXPECT_EQ(console.errors,
                  "scanexport: The folder " + utf8(parent) + " of the target does not exist.\n");
    }
}

TEST_F(ZipTargetTest, ForbiddenNamesAreRefused) {
    addPage(L"a.tif");
    for (const wchar_t* name : {L"CON", L"NUL.zip", L"dot.", L"space ", L"a|b.zip"}) {
        console.errors.clear();
        EXPECT_EQ(run({L"--to-zip", folder / name, pages}), 7);
        EXPECT_THAT(console.errors, HasSubstr("Windows cannot have a file named \""));
    }
    EXPECT_THAT(filesBeside(), IsEmpty());
}

TEST_F(ZipTargetTest, ALockedArchiveIsNamedAndKept) {
    addPage(L"a.tif");
    folder.write(L"skeny.zip", "old");
    {
        const OpenFile lock(archive);
        EXPECT_EQ(pack({pages}), 1);
    }
    EXPECT_EQ(console.errors, "scanexport: The target " + utf8(archive) +
                                  " cannot be replaced: another program is using it.\n");
    EXPECT_EQ(test::readFile(archive), "old");
}

TEST_F(ZipTargetTest, AReadOnlyArchiveIsNamedAndKept) {
    addPage(L"a.tif");
    folder.write(L"skeny.zip", "old");
    ASSERT_TRUE(SetFileAttributesW(archive.c_str(), FILE_ATTRIBUTE_READONLY));

    EXPECT_EQ(pack({pages}), 1);

    EXPECT_EQ(console.errors,
              "scanexport: The target " + utf8(archive) + " cannot be replaced: it is read-only.\n");
    EXPECT_EQ(test::readFile(archive), "old");
    EXPECT_THAT(filesBeside(), ElementsAre(L"skeny.zip"));
}

TEST_F(ZipTargetTest, AnArchiveThatGetsLockedAfterTheCheckIsNamed) {
    addPage(L"a.tif");
    folder.write(L"skeny.zip", "old");
    std::optional<OpenFile> lock;
    console.answers = {"y"};
    console.onAsk = [&] { lock.emplace(archive); };

    EXPECT_EQ(pack({L"--overwrite=ask", pages}), 1);

    EXPECT_EQ(console.errors,
              "scanexport: The export to " + utf8(archive) + " failed: Failed to create zip file.\n");
    lock.reset();
    EXPECT_EQ(test::readFile(archive), "old");
}

// Failures on the way.

TEST_F(ZipTargetTest, APageThatVanishesEndsTheExportWithItsNameAndTheEntriesSoFar) {
    addPage(L"a.tif", "a");
    const std::wstring b = addPage(L"b.tif");
    addPage(L"c.tif");
    folder.write(L"skeny.zip", "old");
    whenAtPage(1, [&] { DeleteFileW(b.c_str()); });

    EXPECT_EQ(pack({pages}), 1);

    EXPECT_EQ(console.errors,
              "scanexport: The page " + utf8(b) + " cannot be exported: it does not exist.\n");
    EXPECT_THAT(test::zipEntries(test::readFile(archive)), ElementsAre(Pair("Scan1.tif", "a")));
    EXPECT_EQ(test::readFile(archive + L".bak"), "old");
}

TEST_F(ZipTargetTest, APageThatGetsLockedEndsTheExportWithItsName) {
    addPage(L"a.tif", "a");
    const std::wstring b = addPage(L"b.tif");
    std::optional<OpenFile> lock;
    whenAtPage(2, [&] { lock.emplace(b); });

    EXPECT_EQ(pack({pages}), 1);

    EXPECT_EQ(console.errors,
              "scanexport: The page " + utf8(b) + " cannot be exported: another program is using it.\n");
    EXPECT_THAT(test::zipEntries(test::readFile(archive)), ElementsAre(Pair("Scan1.tif", "a")));
}

TEST_F(ZipTargetTest, APageThatCannotBeAddedIsNamedWithoutGuessingWhoseFaultItIs) {
    const std::wstring page = addPage(L"a.tif");

    EXPECT_EQ(run({L"--to-zip", archive, L"--prefix", std::wstring(65'536, L'x'), page}), 1);

    EXPECT_EQ(console.errors, "scanexport: The page " + utf8(page) +
                                  " was not exported: it could not be added to " + utf8(archive) +
                                  "; the log says why.\n");
}

TEST_F(ZipTargetTest, AnArchiveThatCannotTakeItsPlaceAtTheEndIsNotCalledDone) {
    addPage(L"a.tif");
    folder.write(L"skeny.zip", "old");
    // A reader that came in time keeps the old archive where it is.
    std::optional<OpenFile> reader;
    whenAtPage(1, [&] { reader.emplace(archive, GENERIC_READ, OpenFile::shareAll); });

    EXPECT_EQ(pack({pages}), 1);

    EXPECT_EQ(console.errors,
              "scanexport: The new archive could not be put at " + utf8(archive) + "; the log says why.\n");
    EXPECT_THAT(console.output, testing::Not(HasSubstr("exported")));
    EXPECT_EQ(test::readFile(archive), "old");
}

/// The record at the end of an archive that says where its directory is.
std::string endRecord() {
    return "PK\x05\x06" + std::string(18, '\0');
}

TEST_F(ZipTargetTest, OnlyANewFileAtThePathCountsAsDone) {
    host::ZipTarget target({archive, L""});
    target.beforeExport();
    EXPECT_THROW(target.checkDone(), host::HostError) << "there is none";

    folder.write(L"skeny.zip", endRecord());
    EXPECT_NO_THROW(target.checkDone());

    target.beforeExport();
    EXPECT_THROW(target.checkDone(), host::HostError) << "it is the one from before";

    ASSERT_TRUE(MoveFileExW(folder.write(L"next.zip", "next" + endRecord()).c_str(), archive.c_str(),
                            MOVEFILE_REPLACE_EXISTING));
    EXPECT_NO_THROW(target.checkDone());
}

TEST_F(ZipTargetTest, AnArchiveWithoutItsEndIsNotCalledDone) {
    host::ZipTarget target({archive, L""});
    target.beforeExport();
    for (const std::string& content : {std::string(), endRecord().substr(1), "page" + endRecord() + "x"}) {
        folder.write(L"skeny.zip", content);
        EXPECT_THROW(target.checkDone(), host::HostError) << content.size() << " bytes";
    }
}

// A person in the dialog.

TEST_F(ZipTargetTest, ThePersonsEntriesInTheDialogCount) {
    addPage(L"a.tif");
    const Person person(prefixEdit, [this](HWND dialog) {
        SetDlgItemTextW(dialog, pathEdit, (folder / L"mine.zip").c_str());
        SetDlgItemTextW(dialog, prefixEdit, L"Mine");
        PostMessageW(GetDlgItem(dialog, IDOK), BM_CLICK, 0, 0);
    });

    EXPECT_EQ(pack({L"--show-dialog", pages}), 0);
    EXPECT_THAT(test::zipEntries(test::readFile(folder / L"mine.zip")),
                ElementsAre(Pair("Mine1.tif", "data")));
    EXPECT_THAT(filesBeside(), ElementsAre(L"mine.zip"));
}

TEST_F(ZipTargetTest, TheOptionCountsForAnArchiveThatThePersonChooses) {
    addPage(L"a.tif");
    folder.write(L"mine.zip", "old");
    const auto packInto = [this](const std::wstring& path, std::vector<std::wstring> arguments) {
        const Person person(prefixEdit, [path](HWND dialog) {
            SetDlgItemTextW(dialog, pathEdit, path.c_str());
            PostMessageW(GetDlgItem(dialog, IDOK), BM_CLICK, 0, 0);
        });
        arguments.insert(arguments.end(), {L"--show-dialog", pages});
        return pack(std::move(arguments));
    };

    EXPECT_EQ(packInto(folder / L"mine.zip", {L"--overwrite=no"}), 2);
    EXPECT_EQ(test::readFile(folder / L"mine.zip"), "old");
    EXPECT_EQ(packInto(folder / L"mine.zip", {}), 0);
    EXPECT_THAT(test::zipEntries(test::readFile(folder / L"mine.zip")),
                ElementsAre(Pair("Scan1.tif", "data")));
}

TEST_F(ZipTargetTest, APersonCannotChooseAPageAsTheArchive) {
    const std::wstring page = addPage(L"a.tif", "the only copy");
    const Person person(prefixEdit, [&page](HWND dialog) {
        SetDlgItemTextW(dialog, pathEdit, page.c_str());
        PostMessageW(GetDlgItem(dialog, IDOK), BM_CLICK, 0, 0);
    });

    EXPECT_EQ(pack({L"--show-dialog", pages}), 1);
    EXPECT_THAT(console.errors, EndsWith("is itself a page to export and is not overwritten.\n"));
    EXPECT_EQ(test::readFile(page), "the only copy");
    EXPECT_THAT(namesIn(pages), ElementsAre(L"a.tif"));
}

TEST_F(ZipTargetTest, ADialogConfirmedWithoutPathIsToldAbout) {
    addPage(L"a.tif");
    const Person person(prefixEdit, [](HWND dialog) {
        SetDlgItemTextW(dialog, pathEdit, L"");
        PostMessageW(GetDlgItem(dialog, IDOK), BM_CLICK, 0, 0);
    });

    EXPECT_EQ(pack({L"--show-dialog", pages}), 1);
    EXPECT_EQ(console.errors, "scanexport: The dialog was confirmed without the path of an archive.\n");
}

TEST_F(ZipTargetTest, ADialogThatThePersonCancelsStopsTheExport) {
    addPage(L"a.tif");
    const Person person(prefixEdit, [](HWND dialog) { PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0); });

    EXPECT_EQ(pack({L"--show-dialog", pages}), 2);
    EXPECT_THAT(filesBeside(), IsEmpty());
}

} // namespace
