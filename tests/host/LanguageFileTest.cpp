// The languages that a program offers, and using one.
#include "host/LanguageFile.h"

#include "host/HostError.h"
#include "host/ThreadLanguage.h"
#include "support/HostTexts.h"
#include "support/TempFolder.h"

#include <gmock/gmock.h>

namespace host {

static bool operator==(const Language& one, const Language& other) {
    return one.code == other.code && one.name == other.name;
}

} // namespace host

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class LanguageFileTest : public testing::Test {
protected:
    void addFile(const std::wstring& name, const std::string& text) const {
        CreateDirectoryW((folder / L"lang").c_str(), nullptr);
        folder.write(L"lang\\" + name, text);
    }

    const test::TempFolder folder;
    const host::ThreadLanguageKeeper keeper;
};

TEST_F(LanguageFileTest, OffersTheLanguagesByTheirNames) {
    addFile(L"cs.ini", "[Language]\nName=Čeština\n");
    addFile(L"de.ini", "[Language]\nName=Deutsch\n");
    addFile(L"en.ini", "[Language]\nName=English\n");
    EXPECT_THAT(host::offeredLanguages(folder.path()),
                ElementsAre(host::Language{L"cs", L"Čeština"}, host::Language{L"de", L"Deutsch"},
                            host::Language{L"en", L"English"}));
}

TEST_F(LanguageFileTest, OffersNoFileThatIsNotALanguage) {
    addFile(L"notes.ini", "[Other]\nName=Notes\n");
    addFile(L"de (2).ini", "[Language]\nName=Deutsch\n");
    addFile(L"de.ini.bak", "[Language]\nName=Deutsch\n");
    CreateDirectoryW((folder / L"lang\\fr.ini").c_str(), nullptr);
    EXPECT_THAT(host::offeredLanguages(folder.path()), IsEmpty());
}

TEST_F(LanguageFileTest, OffersNothingWithoutTheFolder) {
    EXPECT_THAT(host::offeredLanguages(folder / L"missing"), IsEmpty());
}

TEST_F(LanguageFileTest, ACodeThatIsAPathIsNoLanguage) {
    folder.write(L"de.ini", "");
    addFile(L"de.ini", "");
    EXPECT_TRUE(host::isLanguageOffered(folder.path(), L"de"));
    for (const wchar_t* text : {L"", L"fr", L"..\\de", L"*", L"de.ini"})
        EXPECT_FALSE(host::isLanguageOffered(folder.path(), text)) << text;
}

TEST_F(LanguageFileTest, PrefersTheLanguageOfWindows) {
    addFile(L"de.ini", "");
    EXPECT_EQ(host::preferredLanguage(folder.path(), MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN_SWISS)), L"de");
    EXPECT_EQ(host::preferredLanguage(folder.path(), MAKELANGID(LANG_JAPANESE, SUBLANG_DEFAULT)), L"en");
}

TEST_F(LanguageFileTest, UsingOneChangesTheTextsAndTheThread) {
    addFile(L"de.ini", "[S]\nkey=Wort\n");
    host::useLanguage(folder.path(), L"de");
    EXPECT_EQ(test::hostText("S", "key"), L"Wort");
    EXPECT_EQ(PRIMARYLANGID(LANGIDFROMLCID(GetThreadLocale())), LANG_GERMAN);
}

TEST_F(LanguageFileTest, UsingOneThatCannotBeReadChangesNothing) {
    addFile(L"de.ini", "[S]\nkey=Wort\n");
    host::useLanguage(folder.path(), L"de");
    EXPECT_THROW(host::useLanguage(folder.path(), L"fr"), host::HostError);
    EXPECT_EQ(test::hostText("S", "key"), L"Wort");
    EXPECT_EQ(PRIMARYLANGID(LANGIDFROMLCID(GetThreadLocale())), LANG_GERMAN);
}

} // namespace
