// scanexport.exe as a program: what it prints, writes, remembers and ends with.
#include "host/CommandLinePath.h"
#include "host/CurrentDirectory.h"
#include "host/HostApplication.h"
#include "host/ProgramCopy.h"
#include "host/Text.h"
#include "host/VisibleDesktop.h"
#include "support/ChildProcess.h"
#include "support/OpenFile.h"
#include "support/ScopedRegistryKey.h"
#include "support/ScopedVariable.h"
#include "support/TempFolder.h"
#include "support/UnixName.h"
#include "support/ZipParser.h"

#include <gmock/gmock.h>

#include <windows.h>

namespace {

using host::utf8;
using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Pair;
using testing::StartsWith;

class ScanExportProgramTest : public testing::Test {
protected:
    ScanExportProgramTest() {
        for (const wchar_t* name : {L"Faktury", L"temp", L"local"})
            CreateDirectoryW((folder / name).c_str(), nullptr);
    }

    std::wstring addPage(const std::wstring& name, const std::string& data = "data") {
        return folder.write(L"Faktury\\" + name, data);
    }

    ChildResult run(std::vector<std::wstring> arguments) {
        arguments.insert(arguments.begin(), {L"--lang", L"en"});
        return runProgram(program, arguments);
    }

    ChildResult exportTo(const std::wstring& target, std::vector<std::wstring> arguments) {
        arguments.insert(arguments.begin(),
                         {L"--to-dir", target, L"--prefix", L"Faktura", L"--digits", L"3"});
        return run(std::move(arguments));
    }

    std::string outFile(const std::wstring& name) const { return test::readFile(out + L"\\" + name); }

    std::string log() const { return test::readFile(folder / L"local\\Sorvane\\ScanHost\\ScanHost.log"); }

    /// From now on runs a copy of the program whose component is one of those for tests.
    void replaceComponent(const std::wstring& name) {
        CreateDirectoryW((folder / L"bin").c_str(), nullptr);
        CreateDirectoryW((folder / L"bin\\lang").c_str(), nullptr);
        test::copyPrograms(folder / L"bin", {L"scanexport.exe", L"lang\\en.ini"});
        ASSERT_TRUE(
            CopyFileW((host::fullPathOf(host::wide(TEST_COMPONENTS)) + L"\\" + name + L".dll").c_str(),
                      (folder / L"bin\\BasicExport.dll").c_str(), FALSE));
        program = folder / L"bin\\scanexport.exe";
    }

    const test::TempFolder folder;
    const std::wstring pages = folder / L"Faktury";
    const std::wstring out = folder / L"out";
    const test::ScopedRegistryKey registryKey{std::wstring(L"SOFTWARE\\") +
                                              host::HostApplication::defaultBasePath};
    const test::ScopedVariable temp{L"TEMP", folder / L"temp"};
    const test::ScopedVariable tmp{L"TMP", folder / L"temp"};
    const test::ScopedVariable local{L"LOCALAPPDATA", folder / L"local"};
    std::wstring program = L"scanexport.exe";
};

TEST_F(ScanExportProgramTest, ExportsPagesAndRemembersTheSettings) {
    addPage(L"page10.jpg", "ten");
    addPage(L"page2.tif", "two");

    const ChildResult result = exportTo(out, {pages});

    EXPECT_EQ(result.exitCode, 0u);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(outFile(L"Faktura001.tif"), "two");
    EXPECT_EQ(outFile(L"Faktura002.jpg"), "ten");

    HKEY key = nullptr;
    ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, L"SOFTWARE\\Sorvane\\ScanHost\\1.0\\Components\\BasicExport",
                            0, KEY_READ, &key),
              ERROR_SUCCESS);
    DWORD values = 0;
    RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &values, nullptr, nullptr,
                     nullptr, nullptr);
    EXPECT_EQ(values, 5u);
    wchar_t text[MAX_PATH] = {};
    DWORD size = sizeof text;
    EXPECT_EQ(RegGetValueW(key, nullptr, L"ExportPath", RRF_RT_REG_SZ, nullptr, text, &size), ERROR_SUCCESS);
    EXPECT_EQ(text, out);
    RegCloseKey(key);
}

TEST_F(ScanExportProgramTest, EndsWith2AndChangesNothingAtADeclinedOverwrite) {
    addPage(L"a.tif", "old");
    ASSERT_EQ(exportTo(out, {pages}).exitCode, 0u);
    addPage(L"a.tif", "new");

    EXPECT_EQ(exportTo(out, {L"--overwrite=no", pages}).exitCode, 2u);
    EXPECT_EQ(exportTo(out, {pages}).exitCode, 2u) << "nobody is there to be asked";
    EXPECT_EQ(outFile(L"Faktura001.tif"), "old");

    EXPECT_EQ(exportTo(out, {L"--overwrite=yes", pages}).exitCode, 0u);
    EXPECT_EQ(outFile(L"Faktura001.tif"), "new");
}

TEST_F(ScanExportProgramTest, PacksPagesIntoAZipArchiveTwiceInARow) {
    addPage(L"page10.jpg", "ten");
    for (const char* data : {"first", "second"}) {
        addPage(L"page2.tif", data);
        const ChildResult result = run({L"--to-zip", folder / L"účty.zip", L"--prefix", L"Faktura_", pages});
        EXPECT_EQ(result.exitCode, 0u);
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(result.errors, "");
        EXPECT_THAT(test::zipEntries(test::readFile(folder / L"účty.zip")),
                    ElementsAre(Pair("Faktura_1.tif", data), Pair("Faktura_2.jpg", "ten")));
    }
    EXPECT_EQ(run({L"--to-zip", folder / L"účty.zip", L"--overwrite=no", pages}).exitCode, 2u);
    EXPECT_EQ(run({L"--to-zip", folder / L"účty.zip", L"--digits=2", pages}).exitCode, 7u);
    EXPECT_EQ(run({L"--to-zip", pages, pages}).exitCode, 1u);
}

TEST_F(ScanExportProgramTest, PrintsUtf8ToFilesAndPipes) {
    const ChildResult result = exportTo(out, {pages + L"\\žluťoučký kůň 🐴.tif"});

    EXPECT_EQ(result.exitCode, 1u);
    EXPECT_EQ(result.errors, "scanexport: The page " + utf8(pages) +
                                 "\\žluťoučký kůň 🐴.tif cannot be exported: it does not exist.\n");
}

TEST_F(ScanExportProgramTest, EndsWith7AtWrongUsage) {
    const ChildResult result = run({L"--to-disk", L"x"});

    EXPECT_EQ(result.exitCode, 7u);
    EXPECT_EQ(result.errors, "scanexport: There is no option --to-disk. (--help explains the usage.)\n");
    EXPECT_EQ(result.output, "");
}

TEST_F(ScanExportProgramTest, PrintsHelpVersionAndListToItsOutput) {
    EXPECT_THAT(run({L"--help"}).output, StartsWith("Exports scanned pages"));
    EXPECT_THAT(run({L"--version"}).output, StartsWith("scanexport "));
    const ChildResult list = runProgram(program, {L"--list", L"--lang=cs"});
    EXPECT_EQ(list.exitCode, 0u);
    EXPECT_THAT(list.output,
                HasSubstr("com.brellix.sorvane.exportdata-factory.dir.file\tExport do složky\t32x32\n"));
    EXPECT_EQ(list.errors, "");
}

TEST_F(ScanExportProgramTest, TakesUnixPathsUnderWineWhateverTheCurrentDrive) {
    const auto unixName = test::unixName(folder.path());
    // Only Wine has a second way to write the path of the same file.
    if (!unixName)
        GTEST_SKIP() << "there are no Unix paths on Windows";
    std::wstring unixFolder = host::wide(*unixName);
    // A person writes the real name of drive C's folder rather than Wine's link to it.
    constexpr std::wstring_view link = L"/dosdevices/c:/";
    ASSERT_NE(unixFolder.find(link), std::wstring::npos);
    unixFolder.replace(unixFolder.find(link), link.size(), L"/drive_c/");
    addPage(L"č.tif", "data");
    const std::wstring list = folder.write(L"list", utf8(unixFolder) + "/Faktury/č.tif\n");
    const test::CurrentDirectory driveC(L"C:\\");

    const ChildResult result =
        exportTo(unixFolder + L"/out/",
                 {unixFolder + L"/Faktury", unixFolder + L"/Faktury/č.tif", L"@" + unixFolder + L"/list"});

    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.exitCode, 0u);
    for (const wchar_t* name : {L"Faktura001.tif", L"Faktura002.tif", L"Faktura003.tif"})
        EXPECT_EQ(outFile(name), "data");
}

TEST_F(ScanExportProgramTest, LogsWhatTheEngineReports) {
    addPage(L"a.tif", "old");
    ASSERT_EQ(exportTo(out, {pages}).exitCode, 0u);
    {
        const test::OpenFile lock(out + L"\\Faktura001.tif");
        EXPECT_EQ(exportTo(out, {L"--overwrite=yes", pages}).exitCode, 1u);
    }
    EXPECT_EQ(outFile(L"Faktura001.tif"), "old");
    EXPECT_THAT(log(), AllOf(HasSubstr("Failed to export file"),
                             HasSubstr("Components/BasicExport/ExportToDirectory")));
}

TEST_F(ScanExportProgramTest, LeavesNoTemporaryFiles) {
    addPage(L"a.tif");

    ASSERT_EQ(exportTo(out, {pages}).exitCode, 0u);
    ASSERT_EQ(run({L"--to-zip", folder / L"a.zip", pages}).exitCode, 0u);

    EXPECT_FALSE(RemoveDirectoryW((folder / L"temp").c_str())) << "the temporary root was made elsewhere";
    EXPECT_TRUE(RemoveDirectoryW((folder / L"temp\\Sorvane\\ScanHost").c_str())) << "it is not empty";
}

TEST_F(ScanExportProgramTest, RefusesToLeaveADialogToAPersonWhoCannotSeeIt) {
    // With a display the dialog would open and wait for a person. ./test has none.
    if (host::isDesktopVisible())
        GTEST_SKIP() << "here the dialog can be seen";
    addPage(L"a.tif");

    const ChildResult result = exportTo(out, {L"--show-dialog", pages});

    EXPECT_EQ(result.exitCode, 1u);
    EXPECT_THAT(result.errors, StartsWith("scanexport: --show-dialog is not possible"));
}

TEST_F(ScanExportProgramTest, AComponentWithoutThisKindOfExportIsToldAbout) {
    addPage(L"a.tif");
    replaceComponent(L"RegistersNothing");

    const ChildResult result = exportTo(out, {pages});

    EXPECT_EQ(result.exitCode, 1u);
    EXPECT_EQ(result.errors, "scanexport: The component does not offer this kind of export.\n");
    EXPECT_EQ(run({L"--list"}).output, "");
}

TEST_F(ScanExportProgramTest, ABrokenComponentIsToldAbout) {
    replaceComponent(L"RefusesToStart");

    const ChildResult result = run({L"--list"});

    EXPECT_EQ(result.exitCode, 1u);
    EXPECT_EQ(result.errors, "scanexport: The component " + folder.utf8() +
                                 "\\bin\\BasicExport.dll cannot be loaded: it refused to start.\n");
}

TEST_F(ScanExportProgramTest, HasAnAnsiCodePageThatLacksNoCharacter) {
    replaceComponent(L"TellsCodePage");

    EXPECT_EQ(run({L"--list"}).errors, "scanexport: The component " + folder.utf8() +
                                           "\\bin\\BasicExport.dll cannot be loaded: it failed while "
                                           "starting: code page 65001.\n");
}

TEST_F(ScanExportProgramTest, ACrashEndsItWithOneSentence) {
    replaceComponent(L"Crashes");

    const ChildResult result = run({L"--list"});

    EXPECT_EQ(result.exitCode, 99u);
    EXPECT_THAT(result.errors,
                MatchesRegex("scanexport: Crashed with exception 0xc000001d at BasicExport.dll.0x\\w+\\.\n"));
    EXPECT_THAT(log(), HasSubstr(" 0 host/CrashFilter:"));
    EXPECT_THAT(log(), EndsWith(" " + result.errors));
}

TEST_F(ScanExportProgramTest, ACrashOfTheExportIsAFailureLikeOthers) {
    addPage(L"a.tif");
    replaceComponent(L"CrashesInExport");

    const ChildResult result = exportTo(out, {pages});

    EXPECT_EQ(result.exitCode, 1u);
    EXPECT_THAT(result.errors,
                MatchesRegex("scanexport: The export crashed with exception 0xc000001d at BasicExport.dll"
                             ".0x\\w+, and nobody knows whether the pages were taken over\\.\n"));
    EXPECT_TRUE(RemoveDirectoryW((folder / L"temp\\Sorvane\\ScanHost").c_str()))
        << "the program did not come to its ordinary end";
}

TEST_F(ScanExportProgramTest, AnExceptionThatNobodyCatchesEndsItWithOneSentence) {
    replaceComponent(L"ThrowsAtExit");

    const ChildResult result = run({L"--list"});

    EXPECT_EQ(result.exitCode, 99u);
    EXPECT_EQ(result.errors, "scanexport: Crashed with an exception that nobody caught.\n");
}

} // namespace
