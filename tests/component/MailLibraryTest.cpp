// The mail transport and the mail engine where the system has no MAPI32.DLL, or one without MAPISendMail.
#include "MailExportFixture.h"
#include "SorvaneMail.h"
#include "host/DialogPilot.h"
#include "support/DialogInspection.h"
#include "support/LogRecords.h"
#include "support/mail/PlantedMailLibrary.h"

#include <afxwin.h>

#include <gmock/gmock.h>

#include <chrono>
#include <memory>
#include <string>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char initializing[] = "2 Components/BasicExport/SorvaneMail:188 Initializing SorvaneMail";
constexpr wchar_t invalidLibrary[] =
    L"The system’s mail library MAPI32.DLL is not valid, so no e-mail can be sent.";

// The transport.

class MissingMailLibraryTest : public testing::Test {
protected:
    void SetUp() override { test::expectNoMailLibrary(); }

    test::LogRecords log;
    SorvaneMail mail;
};

TEST_F(MissingMailLibraryTest, IsOnlyLogged) {
    const test::NoMessageBoxes noBoxes;
    EXPECT_FALSE(mail.initialize());
    EXPECT_THAT(log.all(), ElementsAre(initializing,
                                       "0 Components/BasicExport/SorvaneMail:193 Failed to load MAPI32.DLL"));
}

TEST_F(MissingMailLibraryTest, LeavesTheTransportWithoutMessages) {
    EXPECT_FALSE(mail.initialize());
    EXPECT_EQ(mail.createMessage(), nullptr);
    EXPECT_EQ(log.all().back(), "0 Components/BasicExport/SorvaneMail:213 Mail not available");
}

class InvalidMailLibraryTest : public testing::Test {
protected:
    /// Initialises the transport and presses OK in the box that this must show.
    bool initialize(SorvaneMail& mail) {
        host::DialogPilot pilot(std::chrono::seconds(30));
        pilot.then("the prompt", host::anyMessageBox(), [this](HWND box) {
            prompt = host::messageBoxText(box);
            EXPECT_EQ(GetDlgItem(box, IDCANCEL), nullptr) << "there is more than OK";
            return host::click(IDOK)(box);
        });
        const bool done = mail.initialize();
        EXPECT_TRUE(pilot.succeeded()) << pilot.failure();
        return done;
    }

    test::LogRecords log;
    std::wstring prompt;
};

TEST_F(InvalidMailLibraryTest, IsShownAndNotLoggedAsAFailure) {
    const test::PlantedMailLibrary library;
    SorvaneMail mail;
    EXPECT_FALSE(initialize(mail));
    EXPECT_EQ(prompt, invalidLibrary);
    EXPECT_THAT(log.all(), ElementsAre(initializing));
    EXPECT_EQ(mail.createMessage(), nullptr);
}

TEST_F(InvalidMailLibraryTest, StaysLoadedUntilTheTransportGoes) {
    auto library = std::make_unique<test::PlantedMailLibrary>();
    {
        SorvaneMail mail;
        EXPECT_FALSE(initialize(mail));
        EXPECT_FALSE(initialize(mail));
        library.reset();
        EXPECT_NE(GetModuleHandleW(L"MAPI32.DLL"), nullptr);
    }
    EXPECT_EQ(GetModuleHandleW(L"MAPI32.DLL"), nullptr);
}

// The engine.

class MailExportWithoutLibraryTest : public MailExportFixture {};

TEST_F(MailExportWithoutLibraryTest, IsReportedBeforeAnythingIsCopied) {
    ASSERT_NO_FATAL_FAILURE(test::expectNoMailLibrary());
    addPages(1);
    EXPECT_EQ(run(), 1);
    expectReport(155, "Failed to initialize mail");
    EXPECT_THAT(tempRoot.list(), IsEmpty());
}

class MailExportWithInvalidLibraryTest : public MailExportFixture {};

TEST_F(MailExportWithInvalidLibraryTest, IsShownAndReportedBeforeAnythingIsCopied) {
    const test::PlantedMailLibrary library;
    addPages(1);
    EXPECT_EQ(runAndPress(IDOK), 1);
    expectReport(155, "Failed to initialize mail");
    EXPECT_EQ(box.text, invalidLibrary);
    EXPECT_THAT(tempRoot.list(), IsEmpty());
}

} // namespace
