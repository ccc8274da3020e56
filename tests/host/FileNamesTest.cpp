// Which names Windows can store.
#include "host/FileNames.h"

#include <gmock/gmock.h>

namespace {

using testing::Eq;
using testing::Optional;

TEST(FileNamesTest, DeviceNamesAreImpossibleOnlyAsTheWholeStem) {
    for (const wchar_t* name : {L"NUL", L"con.tif", L"COM1.tif", L"lpt9", L"NUL .tif"})
        EXPECT_FALSE(host::isPossibleFileName(name)) << testing::PrintToString(std::wstring(name));
    for (const wchar_t* name : {L"NUL001.tif", L"CONTRACT.tif", L"COM10.tif", L"a.NUL"})
        EXPECT_TRUE(host::isPossibleFileName(name)) << testing::PrintToString(std::wstring(name));
}

TEST(FileNamesTest, NamesThatWindowsWouldShortenAreImpossible) {
    EXPECT_FALSE(host::isPossibleFileName(L"Scan."));
    EXPECT_FALSE(host::isPossibleFileName(L"Scan "));
    EXPECT_FALSE(host::isPossibleFileName(L""));
    EXPECT_TRUE(host::isPossibleFileName(L"Scan .tif"));
    EXPECT_TRUE(host::isPossibleFileName(L".tif"));
}

TEST(FileNamesTest, NamesHoldAtMost255Characters) {
    EXPECT_TRUE(host::isPossibleFileName(std::wstring(255, L'a')));
    EXPECT_FALSE(host::isPossibleFileName(std::wstring(256, L'a')));
}

TEST(FileNamesTest, TextsWithForbiddenCharactersDoNotFitIntoANameAnywhere) {
    for (wchar_t forbidden : std::wstring(L"<>:\"/\\|?*\t\x01"))
        EXPECT_FALSE(host::isPossibleInFileName(L"a" + std::wstring(1, forbidden) + L"b")) << int(forbidden);
    for (const wchar_t* text : {L"", L"CON", L"Scan.", L"Scan ", L"Žluťoučký kůň"})
        EXPECT_TRUE(host::isPossibleInFileName(text)) << testing::PrintToString(std::wstring(text));
}

TEST(FileNamesTest, FindsTheImpossiblePartOfAPath) {
    EXPECT_THAT(host::impossiblePartOf(L"C:\\out\\NUL\\x"), Optional(Eq(L"NUL")));
    EXPECT_THAT(host::impossiblePartOf(L"/home/me/out."), Optional(Eq(L"out.")));
    EXPECT_THAT(host::impossiblePartOf(L"out \\x"), Optional(Eq(L"out ")));
    EXPECT_THAT(host::impossiblePartOf(L"a|b"), Optional(Eq(L"a|b")));
    EXPECT_THAT(host::impossiblePartOf(L"x\\C:\\y"), Optional(Eq(L"C:")));
    EXPECT_THAT(host::impossiblePartOf(L"CON"), Optional(Eq(L"CON")));
}

TEST(FileNamesTest, DriveShareAndRelativePartsOfAPathArePossible) {
    for (const wchar_t* path : {L"C:\\", L"C:\\out\\", L"C:out", L"..\\.\\out", L"\\\\server\\share\\out",
                                L"\\\\?\\C:\\out", L"/home/me/out/", L"out"})
        EXPECT_EQ(host::impossiblePartOf(path), std::nullopt) << testing::PrintToString(std::wstring(path));
}

} // namespace
