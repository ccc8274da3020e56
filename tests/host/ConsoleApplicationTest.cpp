// How the console program answers what is asked of the host.
#include "host/ConsoleApplication.h"

#include "SorvaneBase/bxutils/ResourceManager.h"
#include "SorvaneCommon/MessageDialog.h"
#include "bxbase/ReferencedImpl.h"
#include "host/FakeConsole.h"
#include "host/OverwriteQuestion.h"
#include "host/Text.h"
#include "support/TempFolder.h"

#include <gmock/gmock.h>

#include <windows.h>

namespace {

using host::Overwrite;
using host::utf8;
using SorvaneCommon::MessageDialog;
using SorvaneCommon::MessageDlgResult;
using SorvaneCommon::MessageDlgType;
using testing::HasSubstr;

class ConsoleApplicationTest : public testing::Test {
protected:
    void SetUp() override {
        loadTexts("[Common]\nQuestion.OverwriteFile=Overwrite “%ls”\\nor not?\n");
        pagePath = folder.write(L"stránka.tif", "x");
        pages.emplace_back(new bxbase::ReferencedImpl<host::FilePage>(
            pagePath, std::make_shared<host::FileFolder>(folder.path()), nullptr));
    }

    void loadTexts(const std::string& texts) {
        ASSERT_TRUE(bxutils::getResourceManager()->loadLanguageFile(folder.write(L"texts.ini", texts)));
    }

    static std::string question(const std::wstring& path) {
        return "Overwrite “" + utf8(path) + "”\nor not?";
    }

    MessageDlgResult ask(Overwrite overwrite, const std::string& text) {
        host::ConsoleApplication application(L"Test", console, overwrite, pages);
        const MessageDlgResult result = MessageDialog(nullptr, MessageDlgType::Question, text, "");
        protectedPage = application.hasProtectedPage();
        return result;
    }

    test::TempFolder folder;
    test::FakeConsole console;
    std::wstring pagePath;
    host::FilePages pages;
    bool protectedPage = false;
};

TEST_F(ConsoleApplicationTest, FindsThePathInTheQuestion) {
    EXPECT_EQ(host::pathToOverwrite(question(L"C:\\účty\\a.tif")), L"C:\\účty\\a.tif");
    EXPECT_EQ(host::pathToOverwrite("Shall I go on?"), std::nullopt);
    EXPECT_EQ(host::pathToOverwrite("Overwrite “”\nor not?"), std::nullopt);
    loadTexts("[Common]\n");
    EXPECT_EQ(host::pathToOverwrite(question(L"C:\\a.tif")), std::nullopt);
}

TEST_F(ConsoleApplicationTest, OverwritesWithoutAskingWhenToldSo) {
    EXPECT_EQ(ask(Overwrite::Yes, question(folder / L"a.tif")), MessageDlgResult::Yes);
    EXPECT_EQ(console.errors, "");
}

TEST_F(ConsoleApplicationTest, StopsAtAnExistingFileWhenToldSo) {
    console.answers = {"y"};

    EXPECT_EQ(ask(Overwrite::No, question(L"C:\\č.tif")), MessageDlgResult::No);
    EXPECT_EQ(console.errors, "scanexport: Stopped, because C:\\č.tif exists already.\n");
    EXPECT_EQ(console.questions, "");
}

TEST_F(ConsoleApplicationTest, AsksOnTheConsole) {
    for (const char* yes : {"y", "Y", "yes"}) {
        console.answers = {yes};
        EXPECT_EQ(ask(Overwrite::Ask, question(L"C:\\č.tif")), MessageDlgResult::Yes) << yes;
    }
    EXPECT_THAT(console.questions, HasSubstr("C:\\č.tif exists already. Overwrite it? [y/N] "));
    for (const char* no : {"", "n", "no", " y"}) {
        console.answers = {no};
        EXPECT_EQ(ask(Overwrite::Ask, question(L"C:\\č.tif")), MessageDlgResult::No) << no;
    }
}

TEST_F(ConsoleApplicationTest, StopsWhereNobodyCanBeAsked) {
    EXPECT_EQ(ask(Overwrite::Ask, question(L"C:\\č.tif")), MessageDlgResult::No);
    EXPECT_EQ(console.errors,
              "scanexport: Stopped, because C:\\č.tif exists already; --overwrite=yes overwrites.\n");
}

TEST_F(ConsoleApplicationTest, NeverOverwritesAPageByWhateverName) {
    ASSERT_TRUE(CreateHardLinkW((folder / L"link.tif").c_str(), pagePath.c_str(), nullptr));

    EXPECT_EQ(ask(Overwrite::Yes, question(folder / L"link.tif")), MessageDlgResult::No);
    EXPECT_TRUE(protectedPage);
    EXPECT_EQ(console.errors, "scanexport: " + utf8(folder / L"link.tif") +
                                  " is itself a page to export and is not overwritten.\n");
}

TEST_F(ConsoleApplicationTest, FilesBesideThePagesAreNotProtected) {
    EXPECT_EQ(ask(Overwrite::Yes, question(folder.write(L"copy.tif", "x"))), MessageDlgResult::Yes);
    EXPECT_FALSE(protectedPage);
}

TEST_F(ConsoleApplicationTest, TheOverwriteOptionAnswersNoOtherQuestion) {
    EXPECT_EQ(ask(Overwrite::Yes, "Shall I go on?"), MessageDlgResult::No);
    console.answers = {"y"};
    EXPECT_EQ(ask(Overwrite::Yes, "Shall I go on?"), MessageDlgResult::Yes);
}

TEST_F(ConsoleApplicationTest, PrintsMessagesInsteadOfShowingThem) {
    host::ConsoleApplication application(L"Test", console, Overwrite::Ask, pages);

    EXPECT_EQ(MessageDialog(nullptr, MessageDlgType::Error, "Něco se nepovedlo.", "Chyba"),
              MessageDlgResult::Ok);
    EXPECT_EQ(console.errors, "scanexport: Něco se nepovedlo.\n");
}

} // namespace
