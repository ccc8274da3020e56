// Messages through the host application, and the system's box that it shows by default.
#include "SorvaneCommon/MessageDialog.h"
#include "SorvaneCommon/Application.h"
#include "SorvaneCommon/ExportEnginesManager.h"
#include "host/DialogPilot.h"
#include "support/TestHost.h"

#include <gmock/gmock.h>

namespace {

using SorvaneCommon::MessageDialog;
using SorvaneCommon::MessageDlgResult;
using SorvaneCommon::MessageDlgType;

TEST(MessageDialogTest, LeavesTheMessageToTheHostApplication) {
    test::TestHost application;
    application.answers = {MessageDlgResult::Yes};
    auto* const owner = reinterpret_cast<HWND>(7);
    EXPECT_EQ(MessageDialog(owner, MessageDlgType::Question, "Overwrite?", "Title"), MessageDlgResult::Yes);
    ASSERT_EQ(application.messages.size(), 1U);
    EXPECT_EQ(application.messages[0].owner, owner);
    EXPECT_EQ(application.messages[0].type, MessageDlgType::Question);
    EXPECT_EQ(application.messages[0].text, "Overwrite?");
    EXPECT_EQ(application.messages[0].title, "Title");
}

TEST(MessageDialogTest, NumbersOfTypesAndAnswersAreThoseComponentsUse) {
    EXPECT_EQ(static_cast<int>(MessageDlgType::Question), 3);
    EXPECT_EQ(static_cast<int>(MessageDlgResult::Yes), 2);
}

TEST(ApplicationTest, IsTheOneThatTheHostHasSet) {
    EXPECT_EQ(SorvaneCommon::GetApplication(), nullptr);
    {
        const test::TestHost application;
        EXPECT_EQ(SorvaneCommon::GetApplication(), &application);
        EXPECT_EQ(SorvaneCommon::getRegistryVersion(), L"2.0");
    }
    EXPECT_EQ(SorvaneCommon::GetApplication(), nullptr);
}

TEST(ExportEnginesManagerTest, IsTheOneThatTheHostHasSet) {
    EXPECT_EQ(SorvaneCommon::getExportEnginesManager(), nullptr);
    const test::TestEnginesManager manager;
    EXPECT_EQ(SorvaneCommon::getExportEnginesManager(), &manager);
}

/// An application that leaves messages to the default.
class PlainApplication : public SorvaneCommon::Application {
public:
    std::wstring getBaseRegistryPath() const override { return {}; }
    std::wstring getRegistryVersion() const override { return {}; }
    SorvaneCommon::SettingsStore* getSettingsStore() override { return nullptr; }
};

struct Box {
    MessageDlgType type;
    std::vector<int> buttons;
    int pressed;
    MessageDlgResult result;
};

class DefaultMessageBoxTest : public testing::TestWithParam<Box> {};

TEST_P(DefaultMessageBoxTest, HasTheButtonsOfItsTypeAndGivesTheAnswer) {
    PlainApplication application;
    const HWND owner = CreateWindowExW(0, L"Static", L"owner", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 100,
                                       100, nullptr, nullptr, nullptr, nullptr);
    std::wstring text;
    std::vector<int> buttons;
    HWND boxOwner = nullptr;
    host::DialogPilot pilot(std::chrono::seconds(10));
    pilot.then("answer", host::dialogTitled(L"Otázka"), [&](HWND box) {
        text = host::messageBoxText(box);
        boxOwner = GetWindow(box, GW_OWNER);
        for (int id : {IDOK, IDCANCEL, IDABORT, IDRETRY, IDIGNORE, IDYES, IDNO}) {
            if (GetDlgItem(box, id))
                buttons.push_back(id);
        }
        return host::click(GetParam().pressed)(box);
    });

    const MessageDlgResult result =
        application.showMessage(owner, GetParam().type, "Příliš žluťoučký", "Otázka");

    EXPECT_TRUE(pilot.succeeded()) << pilot.failure();
    EXPECT_EQ(result, GetParam().result);
    EXPECT_EQ(text, L"Příliš žluťoučký");
    EXPECT_THAT(buttons, testing::ElementsAreArray(GetParam().buttons));
    EXPECT_EQ(boxOwner, owner);
    EXPECT_TRUE(IsWindowEnabled(owner));
    DestroyWindow(owner);
}

INSTANTIATE_TEST_SUITE_P(
    Types, DefaultMessageBoxTest,
    testing::Values(Box{MessageDlgType::Information, {IDOK}, IDOK, MessageDlgResult::Ok},
                    Box{MessageDlgType::Warning, {IDOK}, IDOK, MessageDlgResult::Ok},
                    Box{MessageDlgType::Error, {IDOK}, IDOK, MessageDlgResult::Ok},
                    Box{MessageDlgType::Question, {IDYES, IDNO}, IDYES, MessageDlgResult::Yes},
                    Box{MessageDlgType::Question, {IDYES, IDNO}, IDNO, MessageDlgResult::No}));

} // namespace
