// The command line of scanexport.
#include "host/Options.h"

#include "host/HostError.h"
#include "host/Text.h"

#include <gmock/gmock.h>

#include <climits>
#include <ostream>

namespace {

using host::Options;
using host::Overwrite;
using host::parseOptions;
using testing::ElementsAre;
using testing::Optional;

using Arguments = std::vector<std::wstring>;

TEST(OptionsTest, PagesKeepTheirOrderAmongOptions) {
    const Options options = parseOptions({L"b.tif", L"--to-dir", L"out", L"a.tif", L"@list"});

    EXPECT_EQ(options.command, Options::Command::Export);
    EXPECT_EQ(options.toDirectory.directory, L"out");
    EXPECT_FALSE(options.toZip);
    EXPECT_THAT(options.pages, ElementsAre(L"b.tif", L"a.tif", L"@list"));
}

TEST(OptionsTest, WhatIsNotGivenStaysOpen) {
    const Options options = parseOptions({L"--to-dir", L"out", L"a.tif"});

    EXPECT_FALSE(options.toDirectory.prefix);
    EXPECT_FALSE(options.toDirectory.digits);
    EXPECT_FALSE(options.toDirectory.firstNumber);
    EXPECT_FALSE(options.toDirectory.noNumber);
    EXPECT_FALSE(options.toDirectory.useParentFolderName);
    EXPECT_FALSE(options.overwrite);
    EXPECT_FALSE(options.language);
    EXPECT_FALSE(options.showDialog);
}

TEST(OptionsTest, ReadsEveryOptionWithTheValueBehindIt) {
    const Options options = parseOptions(
        {L"--to-dir", L"out", L"--prefix", L"Účet", L"--digits", L"3", L"--start", L"007", L"--no-number",
         L"--parent-name", L"--overwrite", L"yes", L"--lang", L"cs", L"--show-dialog", L"a.tif"});

    EXPECT_EQ(options.toDirectory.directory, L"out");
    EXPECT_THAT(options.toDirectory.prefix, Optional(std::wstring(L"Účet")));
    EXPECT_THAT(options.toDirectory.digits, Optional(3));
    EXPECT_THAT(options.toDirectory.firstNumber, Optional(7));
    EXPECT_TRUE(options.toDirectory.noNumber);
    EXPECT_TRUE(options.toDirectory.useParentFolderName);
    EXPECT_THAT(options.overwrite, Optional(Overwrite::Yes));
    EXPECT_THAT(options.language, Optional(std::wstring(L"cs")));
    EXPECT_TRUE(options.showDialog);
}

TEST(OptionsTest, ReadsTheOptionsOfTheZipArchive) {
    const Options options =
        parseOptions({L"--prefix", L"Účet", L"--to-zip", L"a.zip", L"--overwrite=yes", L"a.tif"});

    ASSERT_TRUE(options.toZip);
    EXPECT_EQ(options.toZip->archive, L"a.zip");
    EXPECT_EQ(options.toZip->prefix, L"Účet");
    EXPECT_THAT(options.overwrite, Optional(Overwrite::Yes));
    EXPECT_THAT(options.pages, ElementsAre(L"a.tif"));
    EXPECT_EQ(parseOptions({L"--to-zip=a.zip", L"a.tif"}).toZip->prefix, L"");
}

TEST(OptionsTest, ReadsTheOptionsOfTheMail) {
    const Options options = parseOptions({L"--to-mail", L"--subject", L"Účty", L"--max-size", L"-1", L"--yes",
                                          L"--show-dialog", L"--lang=cs", L"a.tif"});

    ASSERT_TRUE(options.toMail);
    EXPECT_FALSE(options.toZip);
    EXPECT_THAT(options.toMail->subject, Optional(std::wstring(L"Účty")));
    EXPECT_THAT(options.toMail->maxSizeInKb, Optional(-1));
    EXPECT_TRUE(options.toMail->sendAnySize);
    EXPECT_TRUE(options.showDialog);
    EXPECT_THAT(options.pages, ElementsAre(L"a.tif"));
}

TEST(OptionsTest, WhatIsNotGivenOfTheMailStaysOpen) {
    const Options options = parseOptions({L"a.tif", L"--to-mail"});

    ASSERT_TRUE(options.toMail);
    EXPECT_FALSE(options.toMail->subject);
    EXPECT_FALSE(options.toMail->maxSizeInKb);
    EXPECT_FALSE(options.toMail->sendAnySize);
}

TEST(OptionsTest, TakesEveryNumberOf32BitsAsTheLargestSize) {
    for (const int size : {INT_MIN, -1024, 0, 1, 4194305, INT_MAX}) {
        EXPECT_THAT(
            parseOptions({L"--to-mail", L"--max-size", std::to_wstring(size), L"a.tif"}).toMail->maxSizeInKb,
            Optional(size));
    }
}

TEST(OptionsTest, ReadsTheValueAttachedWithAnEqualsSign) {
    const Options options =
        parseOptions({L"--to-dir=C:\\a=b", L"--prefix=", L"--overwrite=no", L"--start=2147483647", L"a.tif"});

    EXPECT_EQ(options.toDirectory.directory, L"C:\\a=b");
    EXPECT_THAT(options.toDirectory.prefix, Optional(std::wstring()));
    EXPECT_THAT(options.overwrite, Optional(Overwrite::No));
    EXPECT_THAT(options.toDirectory.firstNumber, Optional(2147483647));
}

TEST(OptionsTest, TakesAnOptionsValueEvenWhenItLooksLikeAnOption) {
    EXPECT_THAT(parseOptions({L"--prefix", L"--", L"--to-dir", L"out", L"a.tif"}).toDirectory.prefix,
                Optional(std::wstring(L"--")));
}

TEST(OptionsTest, EverythingBehindTwoDashesIsAPage) {
    const Options options = parseOptions({L"--to-dir", L"out", L"--", L"--list", L"-x.tif", L"--"});

    EXPECT_EQ(options.command, Options::Command::Export);
    EXPECT_THAT(options.pages, ElementsAre(L"--list", L"-x.tif", L"--"));
}

TEST(OptionsTest, ListHelpAndVersionNeedNeitherTargetNorPages) {
    EXPECT_EQ(parseOptions({L"--list"}).command, Options::Command::List);
    EXPECT_EQ(parseOptions({L"--help"}).command, Options::Command::Help);
    EXPECT_EQ(parseOptions({L"--version"}).command, Options::Command::Version);
}

TEST(OptionsTest, RegisteringTheMailClientNeedsNeitherTargetNorPages) {
    EXPECT_EQ(parseOptions({L"--register-draft-mail"}).command, Options::Command::RegisterDraftMail);
    EXPECT_EQ(parseOptions({L"--lang=cs", L"--unregister-draft-mail"}).command,
              Options::Command::UnregisterDraftMail);
    EXPECT_EQ(parseOptions({L"--register-draft-mail", L"--help"}).command, Options::Command::Help);
}

struct WrongUsage {
    const char* name;
    Arguments arguments;
    const char* sentence;
};

void PrintTo(const WrongUsage& usage, std::ostream* stream) {
    *stream << usage.name;
}

class WrongUsageTest : public testing::TestWithParam<WrongUsage> {};

TEST_P(WrongUsageTest, IsToldInASentence) {
    try {
        parseOptions(GetParam().arguments);
        FAIL() << "was accepted";
    } catch (const host::UsageError& error) {
        EXPECT_STREQ(error.what(), GetParam().sentence);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Options, WrongUsageTest,
    testing::Values(
        WrongUsage{"Nothing", {}, "Say where to export to with --to-dir, --to-zip or --to-mail."},
        WrongUsage{"NoTarget", {L"a.tif"}, "Say where to export to with --to-dir, --to-zip or --to-mail."},
        WrongUsage{"TwoTargets",
                   {L"--to-dir", L"out", L"--to-zip", L"a.zip", L"a.tif"},
                   "--to-dir does not go with --to-zip."},
        WrongUsage{"DigitsInZip",
                   {L"--to-zip", L"a.zip", L"--digits", L"2", L"a.tif"},
                   "--digits does not go with --to-zip."},
        WrongUsage{"StartInZip",
                   {L"--start=2", L"--to-zip", L"a.zip", L"a.tif"},
                   "--start does not go with --to-zip."},
        WrongUsage{"NoNumberInZip",
                   {L"--to-zip", L"a.zip", L"--no-number", L"a.tif"},
                   "--no-number does not go with --to-zip."},
        WrongUsage{"ParentNameInZip",
                   {L"--to-zip", L"a.zip", L"--parent-name", L"a.tif"},
                   "--parent-name does not go with --to-zip."},
        WrongUsage{"OverwriteInMail",
                   {L"--to-mail", L"--overwrite=yes", L"a.tif"},
                   "--overwrite does not go with --to-mail."},
        WrongUsage{"PrefixInMail",
                   {L"--prefix", L"x", L"--to-mail", L"a.tif"},
                   "--prefix does not go with --to-mail."},
        WrongUsage{"DirectoryAndMail",
                   {L"--to-dir", L"out", L"--to-mail", L"a.tif"},
                   "--to-dir does not go with --to-mail."},
        WrongUsage{"ArchiveAndMail",
                   {L"--to-mail", L"--to-zip", L"a.zip", L"a.tif"},
                   "--to-zip does not go with --to-mail."},
        WrongUsage{"SubjectInDirectory",
                   {L"--to-dir", L"out", L"--subject=x", L"a.tif"},
                   "--subject does not go with --to-dir."},
        WrongUsage{"MaxSizeInZip",
                   {L"--to-zip", L"a.zip", L"--max-size=1", L"a.tif"},
                   "--max-size does not go with --to-zip."},
        WrongUsage{
            "YesInDirectory", {L"--to-dir", L"out", L"--yes", L"a.tif"}, "--yes does not go with --to-dir."},
        WrongUsage{"SubjectAlone",
                   {L"--subject=x", L"a.tif"},
                   "Say where to export to with --to-dir, --to-zip or --to-mail."},
        WrongUsage{"MailWithValue", {L"--to-mail=somebody", L"a.tif"}, "--to-mail takes no value."},
        WrongUsage{"NoPagesForMail", {L"--to-mail"}, "There are no pages to export."},
        WrongUsage{"SizeWithLetters",
                   {L"--to-mail", L"--max-size=1k", L"a.tif"},
                   "--max-size needs a number from -2147483648 to 2147483647, not \"1k\"."},
        WrongUsage{"SizeWithBlank",
                   {L"--to-mail", L"--max-size= 1", L"a.tif"},
                   "--max-size needs a number from -2147483648 to 2147483647, not \" 1\"."},
        WrongUsage{"SizeOfOnlyASign",
                   {L"--to-mail", L"--max-size=-", L"a.tif"},
                   "--max-size needs a number from -2147483648 to 2147483647, not \"-\"."},
        WrongUsage{"SizeTooSmall",
                   {L"--to-mail", L"--max-size=-2147483649", L"a.tif"},
                   "--max-size needs a number from -2147483648 to 2147483647, not \"-2147483649\"."},
        WrongUsage{"SizeTooLarge",
                   {L"--to-mail", L"--max-size=2147483648", L"a.tif"},
                   "--max-size needs a number from -2147483648 to 2147483647, not \"2147483648\"."},
        WrongUsage{"PagesBesideRegistering",
                   {L"--register-draft-mail", L"a.tif"},
                   "Pages do not go with --register-draft-mail."},
        WrongUsage{"MailBesideRegistering",
                   {L"--to-mail", L"--register-draft-mail"},
                   "--to-mail does not go with --register-draft-mail."},
        WrongUsage{"ListBesideUnregistering",
                   {L"--unregister-draft-mail", L"--list"},
                   "--list does not go with --unregister-draft-mail."},
        WrongUsage{"RegisteringAndUnregistering",
                   {L"--unregister-draft-mail", L"--register-draft-mail"},
                   "--unregister-draft-mail does not go with --register-draft-mail."},
        WrongUsage{"RegisteringWithValue",
                   {L"--register-draft-mail=DraftMail.dll"},
                   "--register-draft-mail takes no value."},
        WrongUsage{"ArchiveEmpty", {L"--to-zip=", L"a.tif"}, "--to-zip needs a value that is not empty."},
        WrongUsage{"ArchiveTwice", {L"--to-zip=a", L"--to-zip=b"}, "--to-zip is given twice."},
        WrongUsage{"NoPagesForZip", {L"--to-zip", L"a.zip"}, "There are no pages to export."},
        WrongUsage{"NoPages", {L"--to-dir", L"out"}, "There are no pages to export."},
        WrongUsage{"UnknownOption", {L"--to-disk", L"out"}, "There is no option --to-disk."},
        WrongUsage{"UnknownOptionWithValue", {L"--größe=3"}, "There is no option --größe."},
        WrongUsage{"SingleDash", {L"-o", L"out"}, "There is no option -o."},
        WrongUsage{"DirectoryMissing", {L"a.tif", L"--to-dir"}, "--to-dir needs a value."},
        WrongUsage{"DirectoryEmpty", {L"a.tif", L"--to-dir="}, "--to-dir needs a value that is not empty."},
        WrongUsage{"DirectoryTwice", {L"--to-dir", L"a", L"--to-dir=b"}, "--to-dir is given twice."},
        WrongUsage{"FlagTwice", {L"--no-number", L"--no-number"}, "--no-number is given twice."},
        WrongUsage{"FlagWithValue", {L"--no-number=1"}, "--no-number takes no value."},
        WrongUsage{"ListWithValue", {L"--list=all"}, "--list takes no value."},
        WrongUsage{"NegativeNumber",
                   {L"--digits", L"-1"},
                   "--digits needs a number from 0 to 2147483647, not \"-1\"."},
        WrongUsage{
            "NumberWithLetters", {L"--start=1a"}, "--start needs a number from 0 to 2147483647, not \"1a\"."},
        WrongUsage{"EmptyNumber", {L"--start="}, "--start needs a number from 0 to 2147483647, not \"\"."},
        WrongUsage{"NumberTooLarge",
                   {L"--start", L"2147483648"},
                   "--start needs a number from 0 to 2147483647, not \"2147483648\"."},
        WrongUsage{
            "OverwriteUnknown", {L"--overwrite=maybe"}, "--overwrite is ask, yes or no, not \"maybe\"."}),
    [](const auto& parameter) { return parameter.param.name; });

} // namespace
