#include "host/desktop/Texts.h"

#include "SorvaneBase/bxutils/ResourceManager.h"
#include "support/TempFolder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using host::localCount;
using host::localText;

class TextsTest : public testing::Test {
protected:
    void speak(const std::string& language, const std::string& texts) {
        const std::wstring file =
            folder.write(L"texts.ini", "[Language]\nCode=" + language + "\n[Program]\n" + texts + "\n");
        ASSERT_TRUE(bxutils::getResourceManager()->loadLanguageFile(file));
    }

    std::vector<std::wstring> counted(const std::vector<std::size_t>& counts) {
        std::vector<std::wstring> texts;
        for (std::size_t count : counts)
            texts.push_back(localCount("Program", "Pages", count));
        return texts;
    }

    test::TempFolder folder;
};

using Forms = std::vector<std::wstring>;

TEST_F(TextsTest, FillsInEachPlaceholderWhereverItStands) {
    speak("en", "Copied={page} to {place}, {page}");
    EXPECT_EQ(localText("Program", "Copied", {{L"place", L"C:\\Scans"}, {L"page", L"a.tif"}}),
              L"a.tif to C:\\Scans, a.tif");
}

TEST_F(TextsTest, LeavesWhatLooksLikeAPlaceholderInAValue) {
    speak("en", "Copied={page} to {place}");
    EXPECT_EQ(localText("Program", "Copied", {{L"page", L"{place}.tif"}, {L"place", L"{page}"}}),
              L"{place}.tif to {page}");
}

TEST_F(TextsTest, LeavesAPlaceholderWithoutAValue) {
    speak("en", "Odd=} {page} {open");
    EXPECT_EQ(localText("Program", "Odd", {{L"other", L"x"}}), L"} {page} {open");
}

TEST_F(TextsTest, GivesTheKeyOfATextThatIsMissing) {
    speak("en", "");
    EXPECT_EQ(localText("Program", "Nothing"), L"Nothing");
    EXPECT_EQ(localCount("Program", "Nothing", 3), L"Nothing");
}

TEST_F(TextsTest, CountsInGermanicAndRomanceLanguages) {
    for (const char* language : {"en", "de", "es", "it", "xx"}) {
        speak(language, "Pages={count} A|{count} B");
        EXPECT_EQ(counted({0, 1, 2, 21}), (Forms{L"0 B", L"1 A", L"2 B", L"21 B"})) << language;
    }
    speak("fr", "Pages={count} A|{count} B");
    EXPECT_EQ(counted({0, 1, 2, 21}), (Forms{L"0 A", L"1 A", L"2 B", L"21 B"}));
}

TEST_F(TextsTest, CountsInSlavicLanguages) {
    for (const char* language : {"cs", "sk"}) {
        speak(language, "Pages={count} A|{count} B|{count} C");
        EXPECT_EQ(counted({0, 1, 2, 4, 5, 22}), (Forms{L"0 C", L"1 A", L"2 B", L"4 B", L"5 C", L"22 C"}))
            << language;
    }
    speak("pl", "Pages={count} A|{count} B|{count} C");
    EXPECT_EQ(counted({0, 1, 2, 4, 5, 12, 14, 21, 22, 112, 122}),
              (Forms{L"0 C", L"1 A", L"2 B", L"4 B", L"5 C", L"12 C", L"14 C", L"21 C", L"22 B", L"112 C",
                     L"122 B"}));
}

TEST_F(TextsTest, TakesTheLastFormWhenThereAreTooFew) {
    speak("cs", "Pages={count} A|{count} B");
    EXPECT_EQ(counted({5}), Forms{L"5 B"});
}

TEST_F(TextsTest, FillsInOtherValuesOfACountingTextToo) {
    speak("en", "Pages={count} page of {name}|{count} pages of {name}");
    EXPECT_EQ(localCount("Program", "Pages", 2, {{L"name", L"{count}"}}), L"2 pages of {count}");
}

TEST_F(TextsTest, KnowsHowManyFormsALanguageHas) {
    for (const char* language : {"en", "de", "es", "it", "fr"})
        EXPECT_EQ(host::countForms(language), 2U) << language;
    for (const char* language : {"cs", "sk", "pl"})
        EXPECT_EQ(host::countForms(language), 3U) << language;
}

} // namespace
