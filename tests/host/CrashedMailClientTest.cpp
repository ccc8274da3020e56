// The console program and a mail client that crashes.
#include "host/ScanExportFixture.h"

#include "host/VisibleWindow.h"
#include "support/mail/MailClient.h"

#include <gmock/gmock.h>

#include <string>
#include <utility>

namespace {

using testing::MatchesRegex;

class CrashedMailClientTest : public ScanExportFixture {
protected:
    int mailAnd(test::MailClient::Behaviour behaviour) {
        client.behaviour = std::move(behaviour);
        addPage(L"a.tif", "the page");
        return run({L"--to-mail", L"--subject", L"Invoices", pages});
    }

    test::MailClient client;
};

TEST_F(CrashedMailClientTest, IsAFailureThatIsTold) {
    EXPECT_EQ(mailAnd(test::crashes()), host::exitFailed);
    EXPECT_EQ(client.calls.size(), 1u);
    EXPECT_EQ(console.output, "");
    EXPECT_THAT(console.errors,
                MatchesRegex("scanexport: The export crashed with exception 0xc000\\w+ at "
                             "guarded_export_tests.exe.0x\\w+, and nobody knows whether the pages were taken "
                             "over\\.\n"));
}

TEST_F(CrashedMailClientTest, LeavesTheAttachmentsThatItMayHaveTakenOver) {
    EXPECT_EQ(mailAnd(test::crashes()), host::exitFailed);
    ASSERT_EQ(client.calls.size(), 1u);
    ASSERT_EQ(client.calls[0].files.size(), 1u);
    const std::string path = client.calls[0].files[0].path.value();
    EXPECT_EQ(test::readFile(std::wstring(path.begin(), path.end())), "the page");
}

TEST_F(CrashedMailClientTest, LeavesOtherWindowsUsable) {
    const test::VisibleWindow window;
    bool enabled = true;
    EXPECT_EQ(mailAnd([&](const test::MailCall& call) {
                  enabled = window.isEnabled();
                  return test::crashes()(call);
              }),
              host::exitFailed);
    EXPECT_FALSE(enabled) << "there was nothing to put right";
    EXPECT_TRUE(window.isEnabled());
}

TEST_F(CrashedMailClientTest, LetsTheNextExportInTheProcessPass) {
    EXPECT_EQ(mailAnd(test::crashes()), host::exitFailed);
    EXPECT_EQ(mailAnd(test::returns(SUCCESS_SUCCESS)), host::exitDone);
    EXPECT_EQ(client.calls.size(), 2u);
    EXPECT_EQ(client.finished, 1);
}

} // namespace
