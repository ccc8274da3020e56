// The mail transport where the system has no MAPI32.DLL, or one without MAPISendMail.
#include "SorvaneMail.h"

#include "host/DialogPilot.h"
#include "support/LogRecords.h"

#include <afxwin.h>

#include <gmock/gmock.h>

#include <chrono>
#include <string>

namespace {

using testing::ElementsAre;

class MailLibraryTest : public testing::Test {
protected:
    test::LogRecords log;
    SorvaneMail mail;
};

class MissingLibraryTest : public MailLibraryTest {
protected:
    void SetUp() override {
        const HMODULE found = LoadLibraryW(L"MAPI32.DLL");
        ASSERT_EQ(found, nullptr) << "these tests need Wine's override mapi32=n, which ctest sets";
    }
};

TEST_F(MissingLibraryTest, IsOnlyLogged) {
    // A box would have nobody to answer it.
    host::DialogPilot pilot(std::chrono::seconds(30));
    bool boxShown = false;
    pilot.always(host::anyMessageBox(), [&](HWND box) {
        boxShown = true;
        return host::click(IDOK)(box);
    });
    EXPECT_FALSE(mail.initialize());
    EXPECT_FALSE(boxShown);
    EXPECT_THAT(log.all(), ElementsAre("2 Components/BasicExport/SorvaneMail:188 Initializing SorvaneMail",
                                       "0 Components/BasicExport/SorvaneMail:193 Failed to load MAPI32.DLL"));
}

TEST_F(MissingLibraryTest, LeavesTheTransportWithoutMessages) {
    EXPECT_FALSE(mail.initialize());
    EXPECT_EQ(mail.createMessage(), nullptr);
    EXPECT_EQ(log.all().back(), "0 Components/BasicExport/SorvaneMail:213 Mail not available");
}

std::wstring besideTheProgram(const wchar_t* name) {
    wchar_t program[MAX_PATH] = L"";
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    return std::wstring(program, wcsrchr(program, L'\\') + 1) + name;
}

class LibraryWithoutMailTest : public MailLibraryTest {
protected:
    void SetUp() override {
        const std::wstring planted = folder / L"MAPI32.DLL";
        ASSERT_TRUE(CopyFileW(besideTheProgram(L"library_without_mail.dll").c_str(), planted.c_str(), TRUE));
        // The system gives this one for the name alone, too, as long as it is loaded.
        library = LoadLibraryW(planted.c_str());
        ASSERT_NE(library, nullptr);
        ASSERT_NE(GetProcAddress(library, "notMail"), nullptr)
            << "these tests need Wine's override mapi32=n, which ctest sets";
    }
    void TearDown() override {
        while (GetModuleHandleW(L"MAPI32.DLL"))
            FreeLibrary(library);
    }

    /// Initialises the transport and presses OK in the box that this must show.
    bool initialize() {
        host::DialogPilot pilot(std::chrono::seconds(30));
        pilot.then("the prompt", host::anyMessageBox(), [this](HWND box) {
            prompt = host::messageBoxText(box);
            return host::click(IDOK)(box);
        });
        const bool done = mail.initialize();
        EXPECT_TRUE(pilot.succeeded()) << pilot.failure();
        return done;
    }

    test::TempFolder folder;
    HMODULE library = nullptr;
    std::wstring prompt;
};

TEST_F(LibraryWithoutMailTest, IsShownAndNotLoggedAsAFailure) {
    EXPECT_FALSE(initialize());
    EXPECT_EQ(prompt, L"The system’s mail library MAPI32.DLL is not valid, so no e-mail can be sent.");
    EXPECT_THAT(log.all(), ElementsAre("2 Components/BasicExport/SorvaneMail:188 Initializing SorvaneMail"));
    EXPECT_EQ(mail.createMessage(), nullptr);
}

TEST_F(LibraryWithoutMailTest, StaysLoadedUntilTheTransportGoes) {
    {
        host::DialogPilot pilot(std::chrono::seconds(30));
        pilot.always(host::anyMessageBox(), host::click(IDOK));
        SorvaneMail other;
        EXPECT_FALSE(other.initialize());
        EXPECT_FALSE(other.initialize());
        FreeLibrary(library); // the test's own
        EXPECT_EQ(GetModuleHandleW(L"MAPI32.DLL"), library);
    }
    EXPECT_EQ(GetModuleHandleW(L"MAPI32.DLL"), nullptr);
}

} // namespace
