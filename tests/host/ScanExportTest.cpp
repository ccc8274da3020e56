// The console program with the real component, run inside the test.
#include "host/ScanExportFixture.h"

#include "host/DirectoryDialogControls.h"
#include "host/Text.h"

#include <gmock/gmock.h>

namespace {

using host::utf8;
using test::OpenFile;
using test::Person;
using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class ScanExportTest : public ScanExportFixture {
protected:
    /// Exports to `out` with names that begin with "Scan".
    int exportScans(std::vector<std::wstring> arguments) {
        arguments.insert(arguments.begin(), {L"--to-dir", out, L"--prefix", L"Scan", L"--digits", L"3"});
        return run(std::move(arguments));
    }
};

TEST_F(ScanExportTest, CopiesPagesByteForByteUnderNumberedNames) {
    const std::string binary("\0\r\n\x1A\xFF", 5);
    const std::wstring a = addPage(L"a.TIF", binary);
    const std::wstring b = addPage(L"b.jpg", std::string(1 << 20, 'b'));

    EXPECT_EQ(exportScans({b, a}), 0);

    EXPECT_THAT(outNames(), ElementsAre(L"Scan001.jpg", L"Scan002.TIF"));
    EXPECT_EQ(outFile(L"Scan001.jpg"), std::string(1 << 20, 'b'));
    EXPECT_EQ(outFile(L"Scan002.TIF"), binary);
    EXPECT_EQ(console.output, "") << "output that nobody watches";
    EXPECT_EQ(console.errors, "");
}

TEST_F(ScanExportTest, RemembersWhatWasConfirmed) {
    addPage(L"a.tif");

    ASSERT_EQ(exportScans({L"--start", L"7", pages}), 0);

    EXPECT_EQ(rememberedText(L"ExportPath"), out);
    EXPECT_EQ(rememberedText(L"Prefix"), L"Scan");
    EXPECT_EQ(rememberedNumber(L"FirstNumber"), 7);
    EXPECT_EQ(rememberedNumber(L"Digits"), 3);
    EXPECT_EQ(rememberedNumber(L"AppendIndex"), 1);
}

TEST_F(ScanExportTest, WhatIsNotGivenStaysAsRememberedExceptThePrefixWhichIsTheFoldersName) {
    addPage(L"a.tif");
    ASSERT_EQ(exportScans({L"--start", L"7", L"--digits=2", pages}), 7) << "--digits is given twice";
    ASSERT_EQ(run({L"--to-dir", out, L"--prefix=Scan", L"--start=7", L"--digits=2", pages}), 0);

    EXPECT_EQ(run({L"--to-dir", out, pages}), 0);

    EXPECT_THAT(outNames(), ElementsAre(L"Faktury07.tif", L"Scan07.tif"));
}

TEST_F(ScanExportTest, ASinglePageNeedsNoNumber) {
    addPage(L"a.tif");

    EXPECT_EQ(run({L"--to-dir", out, L"--prefix=Scan", L"--no-number", pages}), 0);
    EXPECT_THAT(outNames(), ElementsAre(L"Scan.tif"));
    EXPECT_EQ(rememberedNumber(L"AppendIndex"), 0);

    EXPECT_EQ(run({L"--to-dir", out, L"--prefix=Next", L"--digits=1", pages}), 0);
    EXPECT_THAT(outNames(), ElementsAre(L"Next1.tif", L"Scan.tif")) << "--digits switches numbers on again";
}

TEST_F(ScanExportTest, TheFoldersNameComesBeforeThePrefix) {
    addPage(L"a.tif");

    EXPECT_EQ(exportScans({L"--parent-name", pages}), 0);

    EXPECT_THAT(outNames(), ElementsAre(L"FakturyScan001.tif"));
}

TEST_F(ScanExportTest, WorksInCzech) {
    const std::wstring page = addPage(L"ž.tif");
    const std::wstring target = folder / L"výstup";

    EXPECT_EQ(host::runScanExport({L"--lang=cs", L"--to-dir", target, L"--prefix=Účet", L"--digits=1", page},
                                  console, surroundings),
              0);
    EXPECT_THAT(namesIn(target), ElementsAre(L"Účet1.tif"));
    EXPECT_EQ(host::runScanExport({L"--lang=cs", L"--to-dir", target, L"--prefix=Účet", L"--digits=1", page},
                                  console, surroundings),
              2);
    EXPECT_EQ(console.errors, "scanexport: Stopped, because " + utf8(target) +
                                  "\\Účet1.tif exists already; --overwrite=yes overwrites.\n");
}

TEST_F(ScanExportTest, ExistingFilesAreKeptOrReplacedAsTheOptionSays) {
    addPage(L"a.tif", "old");
    ASSERT_EQ(exportScans({pages}), 0);
    addPage(L"a.tif", "new");

    EXPECT_EQ(exportScans({L"--overwrite=no", pages}), 2);
    EXPECT_EQ(outFile(L"Scan001.tif"), "old");
    EXPECT_EQ(console.errors,
              "scanexport: Stopped, because " + utf8(out) + "\\Scan001.tif exists already.\n");

    console.errors.clear();
    EXPECT_EQ(exportScans({L"--overwrite=yes", pages}), 0);
    EXPECT_EQ(outFile(L"Scan001.tif"), "new");
    EXPECT_EQ(console.errors, "");
}

TEST_F(ScanExportTest, APersonCanBeAskedAboutEachExistingFile) {
    addPage(L"a.tif", "old a");
    addPage(L"b.tif", "old b");
    ASSERT_EQ(exportScans({pages}), 0);
    addPage(L"a.tif", "new a");
    addPage(L"b.tif", "new b");
    console.answers = {"y", "n"};

    EXPECT_EQ(exportScans({pages}), 2);

    EXPECT_EQ(outFile(L"Scan001.tif"), "new a");
    EXPECT_EQ(outFile(L"Scan002.tif"), "old b");
}

TEST_F(ScanExportTest, ShowsProgressToAPersonWhoWatches) {
    addPage(L"a.tif");
    addPage(L"b.tif");
    console.watched = true;

    EXPECT_EQ(exportScans({pages}), 0);

    EXPECT_THAT(console.output, AllOf(HasSubstr("Exporting page 1 of 2"), HasSubstr("Exporting page 2 of 2"),
                                      EndsWith("\r2 pages exported to " + utf8(out) + ".\n")));
}

TEST_F(ScanExportTest, ListsTheKindsOfExport) {
    EXPECT_EQ(run({L"--list"}), 0);

    EXPECT_EQ(console.output, "com.brellix.sorvane.exportdata-factory.dir.file\tExport to folder\t32x32\n"
                              "com.brellix.sorvane.exportdata-factory.mail.file\tSend as e-mail\t32x32\n"
                              "com.brellix.sorvane.exportdata-factory.zip.file\tExport to ZIP\t24x24\n");
}

TEST_F(ScanExportTest, HelpAndVersionArePrinted) {
    EXPECT_EQ(run({L"--help"}), 0);
    EXPECT_THAT(console.output, HasSubstr("scanexport --to-dir DIR [options] PAGE..."));
    EXPECT_THAT(console.output, HasSubstr("scanexport --to-zip FILE [options] PAGE..."));
    console.output.clear();
    EXPECT_EQ(run({L"--version"}), 0);
    EXPECT_THAT(console.output, testing::MatchesRegex("scanexport \\d+\\.\\d+\\.\\d+\n"));
}

TEST_F(ScanExportTest, LeavesNoTemporaryFiles) {
    addPage(L"a.tif");

    ASSERT_EQ(exportScans({pages}), 0);

    EXPECT_THAT(namesIn(folder / L"temp"), IsEmpty());
    WIN32_FIND_DATAW entry;
    HANDLE search = FindFirstFileW((folder / L"temp\\*-*").c_str(), &entry);
    EXPECT_EQ(search, INVALID_HANDLE_VALUE) << "the root is still there";
    FindClose(search);
}

// What a command line asks for that cannot be. Nothing may be made, changed or lost.

TEST_F(ScanExportTest, WrongUsageIsToldWithAHint) {
    EXPECT_EQ(run({L"--to-disk"}), 7);
    EXPECT_EQ(console.errors, "scanexport: There is no option --to-disk. (--help explains the usage.)\n");
}

TEST_F(ScanExportTest, AnUnknownLanguageIsWrongUsage) {
    for (const wchar_t* language : {L"xx", L"..\\lang\\en", L""}) {
        EXPECT_EQ(
            host::runScanExport({L"--list", std::wstring(L"--lang=") + language}, console, surroundings), 7);
    }
    EXPECT_THAT(console.errors, StartsWith("scanexport: There is no language \"xx\"."));
}

// The language without --lang.

TEST_F(ScanExportTest, SpeaksTheLanguageOfWindowsInWhateverVariant) {
    const std::pair<LANGID, const char*> languages[] = {
        {MAKELANGID(LANG_CZECH, SUBLANG_DEFAULT), "\tExport do složky\t"},
        {MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_UK), "\tExport to folder\t"},
        {MAKELANGID(LANG_FRENCH, SUBLANG_FRENCH_CANADIAN), "\tExporter vers un dossier\t"},
        {MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN_AUSTRIAN), "\tIn Ordner exportieren\t"},
        {MAKELANGID(LANG_ITALIAN, SUBLANG_ITALIAN_SWISS), "\tEsporta in una cartella\t"},
        {MAKELANGID(LANG_POLISH, SUBLANG_DEFAULT), "\tEksportuj do folderu\t"},
        {MAKELANGID(LANG_SLOVAK, SUBLANG_DEFAULT), "\tExport do priečinka\t"},
        {MAKELANGID(LANG_SPANISH, SUBLANG_SPANISH_MEXICAN), "\tExportar a carpeta\t"},
    };
    for (const auto& [language, name] : languages) {
        surroundings.uiLanguage = language;
        console.output.clear();
        EXPECT_EQ(host::runScanExport({L"--list"}, console, surroundings), 0);
        EXPECT_THAT(console.output, HasSubstr(name));
    }
}

TEST_F(ScanExportTest, SpeaksEnglishWhereWindowsSpeaksALanguageThatItDoesNot) {
    surroundings.uiLanguage = MAKELANGID(LANG_PORTUGUESE, SUBLANG_PORTUGUESE);
    EXPECT_EQ(host::runScanExport({L"--list"}, console, surroundings), 0);
    EXPECT_THAT(console.output, HasSubstr("\tExport to folder\t"));
}

TEST_F(ScanExportTest, SpeaksTheLanguageAskedForWhateverThatOfWindows) {
    surroundings.uiLanguage = MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN);
    EXPECT_EQ(host::runScanExport({L"--list", L"--lang=fr"}, console, surroundings), 0);
    EXPECT_THAT(console.output, HasSubstr("\tExporter vers un dossier\t"));
}

TEST_F(ScanExportTest, NumbersCannotBeLeftOutForSeveralPages) {
    addPage(L"a.tif");
    addPage(L"b.tif");

    EXPECT_EQ(run({L"--to-dir", out, L"--no-number", pages}), 7);
    EXPECT_THAT(console.errors,
                StartsWith("scanexport: --no-number is for a single page; 2 pages would all get one name."));
    EXPECT_FALSE(outExists());
}

TEST_F(ScanExportTest, ABadPageStopsTheExportBeforeItBegins) {
    const std::wstring good = addPage(L"a.tif");

    EXPECT_EQ(exportScans({good, pages + L"\\x.tif"}), 1);
    EXPECT_EQ(console.errors,
              "scanexport: The page " + utf8(pages) + "\\x.tif cannot be exported: it does not exist.\n");
    EXPECT_FALSE(outExists());
}

TEST_F(ScanExportTest, AListWithoutPagesIsRefused) {
    const std::wstring list = folder.write(L"list", "\n");

    EXPECT_EQ(exportScans({L"@" + list}), 1);
    EXPECT_EQ(console.errors, "scanexport: There are no pages to export.\n");
    EXPECT_FALSE(outExists());
}

TEST_F(ScanExportTest, ForbiddenNamesAreRefused) {
    const std::wstring page = addPage(L"a.tif");

    EXPECT_EQ(run({L"--to-dir", out, L"--prefix", L"a?b", page}), 7);
    EXPECT_THAT(console.errors, StartsWith("scanexport: --prefix \"a?b\" holds a character that Windows does "
                                           "not allow in file names."));
    for (const wchar_t* name : {L"CON", L"dot.", L"space ", L"a|b", L"NUL\\below"}) {
        console.errors.clear();
        EXPECT_EQ(run({L"--to-dir", folder / name, page}), 7);
        EXPECT_THAT(console.errors, HasSubstr("Windows cannot have a folder named \""));
    }
    EXPECT_THAT(folder.list(), ElementsAre(L"Faktury"));
}

TEST_F(ScanExportTest, NamesThatWouldBecomeADeviceAreRefusedInTheDialog) {
    const std::wstring page = addPage(L"a.tif");

    EXPECT_EQ(run({L"--to-dir", out, L"--prefix=NUL", L"--no-number", page}), 1);
    EXPECT_EQ(console.errors, "scanexport: Windows cannot have a file named \"NUL.tif\", as the page " +
                                  utf8(page) + " would be.\n");
    EXPECT_EQ(run({L"--to-dir", out, L"--prefix=COM", L"--digits=1", page}), 1);
    EXPECT_EQ(run({L"--to-dir", out, L"--prefix=a", L"--digits=2000000000", page}), 1);
    EXPECT_FALSE(outExists());
    EXPECT_EQ(rememberedText(L"Prefix"), std::nullopt) << "the dialog was confirmed";

    EXPECT_EQ(run({L"--to-dir", out, L"--prefix=CON", L"--digits=3", page}), 0);
    EXPECT_THAT(outNames(), ElementsAre(L"CON001.tif"));
}

TEST_F(ScanExportTest, ATargetThatIsAFileIsRefused) {
    const std::wstring page = addPage(L"a.tif");
    const std::wstring file = folder.write(L"file", "x");

    EXPECT_EQ(run({L"--to-dir", file, page}), 1);
    EXPECT_EQ(console.errors, "scanexport: The target " + utf8(file) + " is a file, not a folder.\n");
    EXPECT_EQ(test::readFile(file), "x");
}

TEST_F(ScanExportTest, ATargetThatCannotBeMadeIsRefusedByTheDialog) {
    const std::wstring page = addPage(L"a.tif");
    const std::wstring file = folder.write(L"file", "x");

    EXPECT_EQ(run({L"--to-dir", file + L"\\below", page}), 1);
    EXPECT_EQ(console.errors,
              "scanexport: The export to " + utf8(file) +
                  "\\below is not possible: The folder does not exist and could not be created.\n");
    EXPECT_EQ(rememberedText(L"ExportPath"), std::nullopt);
}

TEST_F(ScanExportTest, APagesOwnFolderIsNoTarget) {
    const std::wstring a = addPage(L"Scan002.tif", "a");
    const std::wstring b = addPage(L"Scan001.tif", "b");

    for (const std::wstring& target : {pages, pages + L"\\", folder / L"FAKTURY", pages + L"\\..\\Faktury"}) {
        console.errors.clear();
        EXPECT_EQ(run({L"--to-dir", target, L"--prefix=Scan", L"--digits=3", L"--overwrite=yes", a, b}), 1);
        EXPECT_THAT(console.errors,
                    HasSubstr("is the folder of the page " + utf8(a) + ", which a copy could overwrite."));
    }
    EXPECT_EQ(test::readFile(a), "a");
    EXPECT_EQ(test::readFile(b), "b");
}

TEST_F(ScanExportTest, APageIsNotOverwrittenThroughAnotherNameOfItsFile) {
    const std::wstring page = addPage(L"a.tif", "a");
    CreateDirectoryW(out.c_str(), nullptr);
    ASSERT_TRUE(CreateHardLinkW((out + L"\\Scan001.tif").c_str(), page.c_str(), nullptr));

    EXPECT_EQ(exportScans({L"--overwrite=yes", page}), 1);

    EXPECT_EQ(console.errors, "scanexport: " + utf8(out) +
                                  "\\Scan001.tif is itself a page to export and is not overwritten.\n");
    EXPECT_EQ(test::readFile(page), "a");
}

TEST_F(ScanExportTest, APageThatVanishesEndsTheExportWithItsName) {
    addPage(L"a.tif");
    const std::wstring b = addPage(L"b.tif");
    addPage(L"c.tif");
    whenAtPage(1, [&] { DeleteFileW(b.c_str()); });

    EXPECT_EQ(exportScans({pages}), 1);

    EXPECT_EQ(console.errors,
              "scanexport: The page " + utf8(b) + " cannot be exported: it does not exist.\n");
    EXPECT_THAT(outNames(), ElementsAre(L"Scan001.tif"));
}

TEST_F(ScanExportTest, APageThatGetsLockedEndsTheExportWithItsName) {
    addPage(L"a.tif");
    const std::wstring b = addPage(L"b.tif");
    std::optional<OpenFile> lock;
    whenAtPage(2, [&] { lock.emplace(b); });

    EXPECT_EQ(exportScans({pages}), 1);

    EXPECT_EQ(console.errors,
              "scanexport: The page " + utf8(b) + " cannot be exported: another program is using it.\n");
}

TEST_F(ScanExportTest, ALockedTargetKeepsItsContent) {
    const std::wstring a = addPage(L"a.tif", "old");
    ASSERT_EQ(exportScans({pages}), 0);
    addPage(L"a.tif", "new");
    {
        const OpenFile lock(out + L"\\Scan001.tif");
        EXPECT_EQ(exportScans({L"--overwrite=yes", pages}), 1);
    }
    EXPECT_EQ(outFile(L"Scan001.tif"), "old");
    EXPECT_EQ(console.errors, "scanexport: The page " + utf8(a) + " was not exported: " + utf8(out) +
                                  "\\Scan001.tif cannot be written: another program is using it.\n");
}

TEST_F(ScanExportTest, AFailureIsToldInOneSentenceWhateverTheLanguageOfTheDialogs) {
    const std::wstring a = addPage(L"a.tif");
    std::optional<OpenFile> lock;
    whenAtPage(1, [&] { lock.emplace(a); });

    EXPECT_EQ(host::runScanExport({L"--lang=cs", L"--to-dir", out, L"--prefix=Scan", L"--digits=3", a},
                                  console, surroundings),
              1);
    EXPECT_EQ(console.errors,
              "scanexport: The page " + utf8(a) + " cannot be exported: another program is using it.\n");
}

TEST_F(ScanExportTest, ATargetFolderThatVanishesIsNamed) {
    const std::wstring a = addPage(L"a.tif");
    const std::wstring b = addPage(L"b.tif");
    whenAtPage(2, [&] {
        DeleteFileW((out + L"\\Scan001.tif").c_str());
        RemoveDirectoryW(out.c_str());
    });

    EXPECT_EQ(exportScans({pages}), 1);

    EXPECT_EQ(console.errors,
              "scanexport: The page " + utf8(b) + " was not exported: " + utf8(out) + " is not a folder.\n");
}

TEST_F(ScanExportTest, AMissingComponentIsNamed) {
    surroundings.programFolder = folder.path();
    CreateDirectoryW((folder / L"lang").c_str(), nullptr);
    folder.write(L"lang\\en.ini", "[Common]\n");

    EXPECT_EQ(run({L"--list"}), 1);
    EXPECT_EQ(console.errors, "scanexport: The component " + folder.utf8() +
                                  "\\BasicExport.dll cannot be loaded: it does not exist.\n");
}

TEST_F(ScanExportTest, AMissingLanguageFileIsNamed) {
    surroundings.programFolder = folder.path();

    EXPECT_EQ(host::runScanExport({L"--list"}, console, surroundings), 1);
    EXPECT_EQ(console.errors,
              "scanexport: The language file " + folder.utf8() + "\\lang\\en.ini cannot be read.\n");
}

TEST_F(ScanExportTest, ADialogThatNobodyCouldSeeIsRefused) {
    addPage(L"a.tif");
    surroundings.isDesktopVisible = [] { return false; };

    EXPECT_EQ(exportScans({L"--show-dialog", pages}), 1);
    EXPECT_EQ(
        console.errors,
        "scanexport: --show-dialog is not possible, because there is no desktop to see the dialog on.\n");
    EXPECT_FALSE(outExists());
}

TEST_F(ScanExportTest, ADialogThatThePersonCancelsStopsTheExport) {
    addPage(L"a.tif");
    const Person person(host::directoryDialog::prefixEdit,
                        [](HWND dialog) { PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0); });

    EXPECT_EQ(exportScans({L"--show-dialog", pages}), 2);
    EXPECT_FALSE(outExists());
}

TEST_F(ScanExportTest, ThePersonsEntriesInTheDialogCount) {
    addPage(L"a.tif");
    const Person person(host::directoryDialog::prefixEdit, [](HWND dialog) {
        SetDlgItemTextW(dialog, host::directoryDialog::prefixEdit, L"Mine");
        PostMessageW(GetDlgItem(dialog, IDOK), BM_CLICK, 0, 0);
    });

    EXPECT_EQ(exportScans({L"--show-dialog", pages}), 0);
    EXPECT_THAT(outNames(), ElementsAre(L"Mine001.tif"));
}

TEST_F(ScanExportTest, APersonCannotChooseAPagesOwnFolderEither) {
    const std::wstring page = addPage(L"Scan001.tif", "a");
    const Person person(host::directoryDialog::prefixEdit, [this](HWND dialog) {
        SetDlgItemTextW(dialog, host::directoryDialog::pathEdit, pages.c_str());
        PostMessageW(GetDlgItem(dialog, IDOK), BM_CLICK, 0, 0);
    });

    EXPECT_EQ(exportScans({L"--show-dialog", L"--overwrite=yes", pages}), 1);
    EXPECT_THAT(console.errors, HasSubstr("is the folder of the page " + utf8(page)));
    EXPECT_EQ(test::readFile(page), "a");
}

} // namespace
