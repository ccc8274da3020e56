// Localised texts by section and key.
#include "SorvaneBase/bxutils/ResourceManager.h"

#include "support/TempFolder.h"

#include <gtest/gtest.h>

#include <windows.h>

namespace {

class ResourceManagerTest : public testing::Test {
protected:
    bool load(const std::string& content) {
        return manager.loadLanguageFile(folder.write(L"test.ini", content));
    }

    test::TempFolder folder;
    bxutils::ResourceManager manager;
};

TEST_F(ResourceManagerTest, GivesTheTextOfSectionAndKey) {
    ASSERT_TRUE(load("[Scan]\nTitle=Export\n[Common]\nTitle=Chyba \xC5\xBE\n"));
    EXPECT_EQ(manager.getText("Scan", "Title"), "Export");
    EXPECT_EQ(manager.getText("Common", "Title"), "Chyba \xC5\xBE");
}

TEST_F(ResourceManagerTest, GivesTheKeyForWhatIsMissing) {
    EXPECT_EQ(manager.getText("Scan", "Title"), "Title");
    ASSERT_TRUE(load("[Scan]\nTitle=Export\nEmpty=\n"));
    EXPECT_EQ(manager.getText("Scan", "Other"), "Other");
    EXPECT_EQ(manager.getText("Common", "Title"), "Title");
    EXPECT_EQ(manager.getText("scan", "Title"), "Title");
    EXPECT_EQ(manager.getText("Scan", "Empty"), "");
}

TEST_F(ResourceManagerTest, ReadsEveryFormOfLine) {
    const std::pair<const char*, const char*> cases[] = {
        {"k=text", "text"},
        {"k = text with blanks \t", "text with blanks"},
        {"  k=text", "text"},
        {"k=a=b", "a=b"},
        {"k=a;b", "a;b"},
        {"k=[x]", "[x]"},
        {"k=first\nk=last", "last"},
        {";k=comment", "k"},
        {" ; k=comment", "k"},
        {"k", "k"},
        {"k=one\\ntwo", "one\ntwo"},
        {"k=C:\\\\new", "C:\\new"},
        {"k=\\t\\x", "\\t\\x"},
        {"k=end\\", "end\\"},
        {"k=100 %", "100 %"},
    };
    for (const auto& [line, text] : cases) {
        ASSERT_TRUE(load(std::string("[S]\n") + line + "\n")) << line;
        EXPECT_EQ(manager.getText("S", "k"), text) << line;
    }
}

TEST_F(ResourceManagerTest, ReadsEveryFormOfFile) {
    const std::string contents[] = {
        "[S]\nk=text",
        "[S]\r\nk=text\r\n",
        "\xEF\xBB\xBF[S]\nk=text\n",
        "\xEF\xBB\xBF; comment\r\n\r\n[ S ]\r\n\r\nk=text",
        "k=other\n[S]\nk=text\n[T]\nk=other\n",
        "[S]\nk=text\n[T\n=\n]\nlast line",
    };
    for (const std::string& content : contents) {
        ASSERT_TRUE(load(content)) << content;
        EXPECT_EQ(manager.getText("S", "k"), "text") << content;
    }
}

TEST_F(ResourceManagerTest, AFileReplacesAllTextsOfTheOneBefore) {
    ASSERT_TRUE(load("[S]\na=1\nb=2\n"));
    ASSERT_TRUE(load("[S]\na=3\n"));
    EXPECT_EQ(manager.getText("S", "a"), "3");
    EXPECT_EQ(manager.getText("S", "b"), "b");
    EXPECT_EQ(manager.getTexts().size(), 1u);
}

TEST_F(ResourceManagerTest, AFileThatCannotBeReadChangesNothing) {
    ASSERT_TRUE(load("[S]\na=1\n"));
    EXPECT_FALSE(manager.loadLanguageFile(folder / L"missing.ini"));
    EXPECT_FALSE(manager.loadLanguageFile(folder.path()));
    EXPECT_FALSE(manager.loadLanguageFile(L""));
    EXPECT_EQ(manager.getText("S", "a"), "1");
}

TEST_F(ResourceManagerTest, AnEmptyFileIsALanguageWithoutTexts) {
    ASSERT_TRUE(load("[S]\na=1\n"));
    ASSERT_TRUE(load(""));
    EXPECT_TRUE(manager.getTexts().empty());
}

TEST_F(ResourceManagerTest, ReadsAFileUnderALongUnicodePath) {
    std::wstring name = L"Čeština";
    for (int level = 0; level < 8; ++level) {
        ASSERT_TRUE(CreateDirectoryW((L"\\\\?\\" + (folder / name)).c_str(), nullptr));
        name += L"\\" + std::wstring(40, L'č');
    }
    ASSERT_TRUE(manager.loadLanguageFile(folder.write(name, "[S]\na=1\n")));
    EXPECT_EQ(manager.getText("S", "a"), "1");
}

TEST(ResourceManagerOfTheProcessTest, IsOneAndNeverNull) {
    ASSERT_NE(bxutils::getResourceManager(), nullptr);
    EXPECT_EQ(bxutils::getResourceManager(), bxutils::getResourceManager());
    EXPECT_EQ(bxutils::getResourceManager()->getText("Scan", "Any"), "Any");
}

} // namespace
